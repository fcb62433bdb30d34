#include "host/recorditerator.h"

namespace MCCommon {

RecordIterator::~RecordIterator() = default;

}  // namespace MCCommon
