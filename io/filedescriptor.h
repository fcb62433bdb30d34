#pragma once

#include <unistd.h>

namespace MCBin {

// Owns an open file; -1 is none.
class FileDescriptor {
 public:
  explicit FileDescriptor(int number = -1) : fNumber(number) {}
  ~FileDescriptor() { Close(); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  int Get() const { return fNumber; }
  bool IsOpen() const { return fNumber >= 0; }

  // Closes the file it holds, then owns `number`.
  void Reset(int number) {
    Close();
    fNumber = number;
  }

  // Gives the file up to the caller.
  int Release() {
    const int number = fNumber;
    fNumber = -1;
    return number;
  }

  // False, with errno set, when the last writes failed.
  bool Close() {
    const int number = Release();
    return number < 0 || close(number) == 0;
  }

 private:
  int fNumber;
};

}  // namespace MCBin
