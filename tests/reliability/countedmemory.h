#pragma once

#include <cstddef>

// What operator new does in this program.
namespace counted_memory {

// Allocations that were not freed yet.
std::size_t Live();

// Which allocations fail after those that still succeed: the next one, or all.
enum class Failure { kOnce, kForGood };

// Makes allocations fail while the object lives, after `count` that succeed.
class Failing {
 public:
  Failing(std::size_t count, Failure failure);
  ~Failing();
  Failing(const Failing&) = delete;
  Failing& operator=(const Failing&) = delete;

  // Whether one failed.
  bool HasFailed() const;
};

}  // namespace counted_memory
