#pragma once

// In a program that links libraryfaults.cpp, the next close() fails while the object lives, once,
// with `error` in errno. The descriptor is closed all the same.
class FailingClose {
 public:
  explicit FailingClose(int error);
  ~FailingClose();
  FailingClose(const FailingClose&) = delete;
  FailingClose& operator=(const FailingClose&) = delete;
};
