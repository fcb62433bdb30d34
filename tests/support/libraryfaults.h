#pragma once

// Calls of the C library that fail when told to, in a program that links libraryfaults.cpp.
namespace libraryfaults {

enum class Call { kClose, kFdopen, kFread, kOpen };

// While the object lives, the call fails once, with `error` in errno, after `count` that succeed.
class Failing {
 public:
  Failing(Call call, int count, int error);
  ~Failing();
  Failing(const Failing&) = delete;
  Failing& operator=(const Failing&) = delete;

  // Whether it has failed.
  bool HasFailed() const;
};

}  // namespace libraryfaults
