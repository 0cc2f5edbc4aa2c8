#pragma once
// The text forms of fixed-length identifiers (keys, labels, UUIDs, UMIDs, local tags).

namespace Vellum
{
namespace Types
{
enum StringRepresentationEncodingType
{
    // Hexadecimal pairs joined by ".": "06.0e.2b.34...". Every identifier has it.
    Dotted = 0,
    // "0x" and all bytes as hexadecimal digits.
    Hexadecimal = 1,
    // Decimal numbers joined by ".", behind the identifier's own prefix.
    OID = 2,
    // Hexadecimal pairs with "-" behind given bytes: "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx".
    RFC4122 = 3,
    // Whichever of the above is the identifier's own.
    TypeDefault = 4
};
} // namespace Types
} // namespace Vellum
