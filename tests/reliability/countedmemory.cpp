#include "reliability/countedmemory.h"

#include <atomic>
#include <cstdlib>
#include <limits>
#include <new>

namespace counted_memory {

namespace {

constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

std::atomic<std::size_t> gLive = 0;
std::atomic<std::size_t> gLeft = kNever;  // allocations that still succeed
std::atomic<bool> gForGood = false;
std::atomic<bool> gHasFailed = false;

// Of several threads' allocations, one takes each that is left.
bool Fails() {
  std::size_t left = gLeft;
  while (left != kNever && left > 0) {
    if (gLeft.compare_exchange_weak(left, left - 1)) return false;
  }
  if (left == kNever) return false;
  const bool isFirst = !gHasFailed.exchange(true);
  return isFirst || gForGood;
}

}  // namespace

void* AllocateOrNull(std::size_t size) {
  void* const memory = Fails() ? nullptr : std::malloc(size == 0 ? 1 : size);
  if (memory != nullptr) ++gLive;
  return memory;
}

void* Allocate(std::size_t size) {
  void* const memory = AllocateOrNull(size);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

void Free(void* memory) {
  if (memory == nullptr) return;
  --gLive;
  std::free(memory);
}

std::size_t Live() { return gLive; }

Failing::Failing(std::size_t count, Failure failure) {
  gForGood = failure == Failure::kForGood;
  gHasFailed = false;
  gLeft = count;
}

Failing::~Failing() { gLeft = kNever; }

bool Failing::HasFailed() const { return gHasFailed; }

}  // namespace counted_memory

// All forms that a sanitizer would otherwise provide, but those for over-aligned types, of which
// there are none.
void* operator new(std::size_t size) { return counted_memory::Allocate(size); }
void* operator new[](std::size_t size) { return counted_memory::Allocate(size); }
void* operator new(std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return counted_memory::AllocateOrNull(size);
}
void* operator new[](std::size_t size, const std::nothrow_t& /*tag*/) noexcept {
  return counted_memory::AllocateOrNull(size);
}
void operator delete(void* memory) noexcept { counted_memory::Free(memory); }
void operator delete[](void* memory) noexcept { counted_memory::Free(memory); }
void operator delete(void* memory, std::size_t /*size*/) noexcept { counted_memory::Free(memory); }
void operator delete[](void* memory, std::size_t /*size*/) noexcept {
  counted_memory::Free(memory);
}
