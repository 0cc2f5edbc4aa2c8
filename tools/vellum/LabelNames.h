#pragma once
// Names of the labels of the SMPTE register that `vellum info` shows: operational patterns,
// essence container mappings and data definitions.

#include <string>

namespace VellumTool
{
// The register's name of the label, or "" when it is unknown. Byte 7, the register version, is
// not compared. A label that is not in the table takes the name of the closest node above it
// (its last non-zero bytes dropped one by one), so qualifier bytes still give a family name.
std::string labelName(unsigned char const * label);
} // namespace VellumTool
