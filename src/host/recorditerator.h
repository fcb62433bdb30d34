#pragma once

#include "record.h"
#include "recordsexport.h"

// How a host hands over its records.
namespace MCCommon {

// The host's source of records, read forward once. The host implements it.
//
// The reader calls HasMore() and Next() in turn, once per record, on its own thread.
// An operation that throws ends the run with an error status.
class MCRECORDS_API RecordIterator {
 public:
  virtual ~RecordIterator();

  // True while Next() can be called.
  virtual bool HasMore() = 0;

  // The next record, or null for a record that is to be passed over. The record stays
  // the iterator's and must live until the next call. Position i holds the value of the
  // variable with index i in the variable list. A record with fewer positions than the list has
  // variables ends the run with error 120003; a record must not change its size.
  virtual const Record* Next() = 0;
};

}  // namespace MCCommon
