#include "metadata/binaryrecorditerator.h"

#include <fcntl.h>

#include <new>
#include <utility>

#include "common/displayframe.h"
#include "metadata/pass/descriptor.h"

namespace MCBinning {

namespace {

constexpr std::size_t kBufferValues = 4096;

}  // namespace

BinaryRecordIterator::BinaryRecordIterator(const std::string& fileName)
    : BinaryRecordIterator(std::string(fileName)) {
  Descriptor file(fFileName.c_str(), O_RDONLY);
  Open(file);
}

BinaryRecordIterator::BinaryRecordIterator(const std::string& fileName, Descriptor& file)
    : BinaryRecordIterator(std::string(fileName)) {
  Open(file);
}

BinaryRecordIterator::BinaryRecordIterator(std::string&& fileName)
    : fCurrent(0.0),
      fLookAhead(0.0),
      fFile(nullptr),
      fValuesPerRead(1),
      fState(StateReadFailed),
      fFileName(std::move(fileName)),
      fBuffer(kBufferValues),
      fBufferNext(0),
      fBufferEnd(0) {}

void BinaryRecordIterator::Open(Descriptor& file) {
  if (!file.IsOpen()) {
    std::fputs("Error: file handle is NULL in BinaryRecordIterator constructor", stdout);
    std::fflush(stdout);  // where standard output leads now, not where it does later
    return;
  }
  fFile = ::fdopen(file.Get(), "rb");
  if (fFile == nullptr) throw std::bad_alloc();  // nothing else can be wrong with an open file
  file.Release();
  std::setvbuf(fFile, nullptr, _IONBF, 0);  // the buffer here is the only one needed
  fState = StateOk;
  NextRecord();
}

BinaryRecordIterator::~BinaryRecordIterator() {
  if (fFile != nullptr) std::fclose(fFile);
}

bool BinaryRecordIterator::HasMore() const { return fState == StateOk; }

double BinaryRecordIterator::Next() {
  if (fState != StateOk) return 0.0;
  NextRecord();
  return fCurrent;
}

int BinaryRecordIterator::GetFailReason() const { return fState; }

int BinaryRecordIterator::NewPass() {
  if (fState == StateClosed || fFile == nullptr) return fState;
  fBufferNext = fBufferEnd = 0;
  if (std::fseek(fFile, 0, SEEK_SET) != 0) return fState = StateReadFailed;
  fState = StateOk;
  return NextRecord();
}

int BinaryRecordIterator::NextRecord() {
  fCurrent = fLookAhead;
  if (fState == StateOk) {
    if (fBufferNext == fBufferEnd) Refill();
    if (fState == StateOk) fLookAhead = fBuffer[fBufferNext++];
  }
  return fState;
}

BinaryRecordIterator::Block BinaryRecordIterator::NextBlock() {
  if (fState != StateOk) return {nullptr, 0};
  const std::size_t first = fBufferNext - 1;  // the look-ahead value
  const Block block{fBuffer.data() + first, fBufferEnd - first};
  std::swap(fBuffer, fHandedOut);
  fLookAhead = block.values[block.count - 1];
  fBufferNext = fBufferEnd = 0;
  NextRecord();
  return block;
}

int BinaryRecordIterator::GetFileDescriptor() const {
  return fFile == nullptr ? -1 : fileno(fFile);
}

// The end of a file is not asked for twice; and only a file of several blocks takes two buffers.
void BinaryRecordIterator::Refill() {
  fBufferNext = fBufferEnd = 0;
  if (std::feof(fFile) != 0) {
    fState = StateEndOfFile;
    return;
  }
  fBuffer.resize(kBufferValues);
  fBufferEnd = std::fread(fBuffer.data(), sizeof(double), kBufferValues, fFile);
  if (fBufferEnd == 0) fState = std::feof(fFile) != 0 ? StateEndOfFile : StateReadFailed;
}

std::ostream& BinaryRecordIterator::Display(std::ostream& os) const {
  DisplayStart(os, "BinaryRecordIterator");
  os << "File name = " << fFileName << '\n' << "State = " << fState << '\n';
  return DisplayEnd(os, "BinaryRecordIterator");
}

}  // namespace MCBinning
