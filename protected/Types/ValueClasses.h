#pragma once
// Every value class of the type system apart from the identifiers and references.

#include "Types/Boolean.h"
#include "Types/Collection.h"
#include "Types/DataStream.h"
#include "Types/DataValue.h"
#include "Types/ISO7String.h"
#include "Types/Integers.h"
#include "Types/J2KParameters.h"
#include "Types/Orientation.h"
#include "Types/ProductVersion.h"
#include "Types/RGBALayout.h"
#include "Types/Rational.h"
#include "Types/SignalStandard.h"
#include "Types/Timestamp.h"
#include "Types/UTF16.h"
#include "Types/UTF16String.h"
#include "Types/Unknown.h"
#include "Types/VersionType.h"

// Expands X(Type) for each of them that derives straight from SimpleDataType.
#define VELLUM_FOR_EACH_PLAIN_SIMPLE_TYPE(X)                                                      \
    X(Boolean)                                                                                    \
    X(DataStream)                                                                                 \
    X(DataValue)                                                                                  \
    X(ISO7String)                                                                                 \
    X(Int16)                                                                                      \
    X(Int32)                                                                                      \
    X(Int64)                                                                                      \
    X(Int8)                                                                                       \
    X(J2KCodingStyleDefault)                                                                      \
    X(J2KPictureComponent)                                                                        \
    X(J2KQuantisationDefault)                                                                     \
    X(Length)                                                                                     \
    X(Orientation)                                                                                \
    X(Position)                                                                                   \
    X(ProductVersion)                                                                             \
    X(RGBALayout)                                                                                 \
    X(Rational)                                                                                   \
    X(SignalStandard)                                                                             \
    X(Timestamp)                                                                                  \
    X(UInt16)                                                                                     \
    X(UInt32)                                                                                     \
    X(UInt64)                                                                                     \
    X(UInt8)                                                                                      \
    X(UTF16)                                                                                      \
    X(UTF16String)                                                                                \
    X(Unknown)                                                                                    \
    X(VersionType)
