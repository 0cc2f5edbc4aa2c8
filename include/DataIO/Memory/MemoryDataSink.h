#pragma once
// MemoryDataSink lives beside MemoryDataSource.
#include "DataIO/Memory/MemoryDataSource.h"
