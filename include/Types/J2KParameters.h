#pragma once
// The JPEG 2000 coding parameters that picture descriptors carry: the size of one picture
// component, the coding style default and the quantisation default.

#include "Platform/Types.h"
#include "Types/DataStream.h"
#include "Types/ValueHandle.h"

namespace Vellum
{
namespace KLV
{
class Value;
}

namespace Types
{
// Three bytes: sSizi, xRSizi, yRSizi.
class J2KPictureComponent : public SimpleDataType
{
public:
    // Reads 3 bytes.
    explicit J2KPictureComponent(KLV::Value & value);
    J2KPictureComponent(unsigned char sSizi, unsigned char xRSizi, unsigned char yRSizi);

    unsigned char sSizi() const;
    unsigned char xRSizi() const;
    unsigned char yRSizi() const;

    VELLUM_VALUE_HANDLE(J2KPictureComponent)
};

// scod (1 byte), sGcod (4 bytes, big-endian), spcod (5 bytes or more).
class J2KCodingStyleDefault : public SimpleDataType
{
public:
    static constexpr unsigned int MINIMUM_J2KCODINGSTYLEDEFAULT_SIZE = 10;
    static constexpr unsigned int MINIMUM_J2KCODINGSTYLEDEFAULT_SPCOD_SIZE = 5;

    // Reads all that remains of the value, which must be 10 bytes at least (InvalidValue).
    explicit J2KCodingStyleDefault(KLV::Value & value);
    // `size` bytes of spcod, 5 at least (InvalidValue).
    J2KCodingStyleDefault(unsigned char scod, unsigned int sGcod, unsigned char const * spcod, uint64 size);

    unsigned char scod() const;
    unsigned int sGcod() const;
    DataStream const & spcod() const;

    VELLUM_VALUE_HANDLE(J2KCodingStyleDefault)
};

// sqcd (1 byte), sPgcd (1 byte or more).
class J2KQuantisationDefault : public SimpleDataType
{
public:
    static constexpr unsigned int MINIMUM_J2KQUANTISATIONDEFAULT_SIZE = 2;
    static constexpr unsigned int MINIMUM_J2KQUANTISATIONDEFAULT_SPGCD_SIZE = 1;

    // Reads all that remains of the value, which must be 2 bytes at least (InvalidValue).
    explicit J2KQuantisationDefault(KLV::Value & value);
    // `size` bytes of sPgcd, 1 at least (InvalidValue).
    J2KQuantisationDefault(unsigned char sqcd, unsigned char const * sPgcd, uint64 size);

    unsigned char sqcd() const;
    DataStream const & sPgcd() const;

    VELLUM_VALUE_HANDLE(J2KQuantisationDefault)
};
} // namespace Types
} // namespace Vellum
