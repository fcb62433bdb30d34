#pragma once

#include <cstddef>
#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "../common/export.h"

namespace MCBinning {

// Reads a temporary file: doubles in native byte order, one per stored record, without
// header or trailer.
//
// One value is read ahead, so HasMore() needs no read. Owns its stream and two buffers of
// 32 KiB. A file that cannot be opened prints one line on standard output and gives an
// iterator without values.
class MCBINNING_API BinaryRecordIterator {
 public:
  // What GetFailReason() answers. A partial value at the end of a file counts as its end.
  enum State { StateOk = 0, StateEndOfFile = 1, StateReadFailed = 3, StateClosed = 4 };

  // Consecutive values of the file.
  struct Block {
    const double* values;  // stays the iterator's
    std::size_t count;     // of values
  };

  // Opens the file and reads the first block.
  explicit BinaryRecordIterator(const std::string& fileName);
  BinaryRecordIterator(const BinaryRecordIterator&) = delete;
  BinaryRecordIterator& operator=(const BinaryRecordIterator&) = delete;
  ~BinaryRecordIterator();

  // True while Next() returns a value of the file.
  virtual bool HasMore() const;

  // The next value; 0.0 once there is none.
  virtual double Next();

  // A State.
  virtual int GetFailReason() const;

  // Starts again at the first value. Returns the new state; a file that could not be opened
  // is not opened again.
  virtual int NewPass();

  // Moves on by one value, without handing it out. Returns the new state.
  int NextRecord();

  // As many calls of Next() as the buffer allows: at least one value while HasMore(), none
  // otherwise. The values stay valid until the next call of NextBlock() or NewPass().
  Block NextBlock();

  // The open file, or -1.
  int GetFileDescriptor() const;

  // Writes a readable dump, in the stream's own formatting.
  std::ostream& Display(std::ostream& os) const;

 private:
  // Reads the next block into the buffer, and the state with it.
  void Refill();

  double fCurrent;
  double fLookAhead;
  std::FILE* fFile;
  [[maybe_unused]] int fValuesPerRead;
  int fState;
  std::string fFileName;

  std::vector<double> fBuffer;
  std::vector<double> fHandedOut;  // the block that NextBlock() returned last
  std::size_t fBufferNext;         // of the buffer, the value after the look-ahead value
  std::size_t fBufferEnd;
};

}  // namespace MCBinning
