#pragma once

#include <cstddef>
#include <cstdio>
#include <ostream>
#include <string>
#include <vector>

#include "../common/export.h"

namespace MCBinning {

class Descriptor;

// Reads a temporary file: doubles in native byte order, one per stored record, without
// header or trailer.
//
// One value is read ahead, so HasMore() needs no read. Owns its stream and up to two buffers of
// 32 KiB. A file that cannot be opened gives an iterator without values, and prints "Error: file
// handle is NULL in BinaryRecordIterator constructor" on standard output: at once, whatever
// output is buffered, and without an end of line.
//
// Its destructor is not virtual: delete one as what it is.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wnon-virtual-dtor"
#pragma GCC diagnostic ignored "-Weffc++"
class MCBINNING_API BinaryRecordIterator {
 public:
  // What GetFailReason() answers. A partial value at the end of a file counts as its end.
  enum State { StateOk = 0, StateEndOfFile = 1, StateReadFailed = 3, StateClosed = 4 };

  // Consecutive values of the file.
  struct Block {
    const double* values;  // stays the iterator's
    std::size_t count;     // of values
  };

  // Opens the file and reads the first block. It waits for nobody: a pipe holds the values that
  // are in it. Throws std::bad_alloc.
  explicit BinaryRecordIterator(const std::string& fileName);

  // The same with the file open already, and taken from `file`; `fileName` is for Display() alone.
  BinaryRecordIterator(const std::string& fileName, Descriptor& file);
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
  explicit BinaryRecordIterator(std::string&& fileName);

  // Takes the file and reads the first block.
  void Open(Descriptor& file);

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
#pragma GCC diagnostic pop

}  // namespace MCBinning
