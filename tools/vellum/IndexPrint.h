#pragma once
// Detail lines of an index table segment for `vellum klv --index`.

#include "IndexTables/IndexTableSegment.h"

namespace VellumTool
{
// The segment's identifiers, span, edit unit size, counts and delta entries; with `entries`,
// each index entry too.
void printIndexSegment(Vellum::IndexTables::IndexTableSegment const & segment, bool entries);
} // namespace VellumTool
