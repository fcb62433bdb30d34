#pragma once

#include <memory>

#include "host/recorditerator.h"

// Four records of two values, (1, 0) to (4, 1), of classes that were compiled with -fno-rtti.
std::unique_ptr<MCCommon::RecordIterator> MakeRecordsWithoutRtti();
std::unique_ptr<MCCommon::RecordIterator> MakeColumnsWithoutRtti();
