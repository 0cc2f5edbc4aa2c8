#pragma once
// A host's stream of KLV data carried in Generic Stream partitions of its own body SID.

#include "MXFIO/KLVSource.h"

namespace Vellum
{
namespace GenericStream
{
class Source : public MXFIO::KLVSource
{
};
}
}
