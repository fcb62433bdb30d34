#pragma once

#include <cstddef>
#include <new>

namespace MCBinning {

// Asks the system to back the memory with large pages, where it knows how.
void UseLargePages(void* memory, std::size_t byteCount) noexcept;

// Allocates as std::allocator does, large blocks on large pages where possible: whoever writes
// to many places of one in turn, as a sort does, would have the processor look up a page for
// almost every write.
template <typename T>
class LargePageAllocator {
 public:
  using value_type = T;

  LargePageAllocator() = default;
  template <typename Other>
  LargePageAllocator(const LargePageAllocator<Other>&) noexcept {
  }  // NOLINT(google-explicit-constructor)

  T* allocate(std::size_t count) {
    const std::size_t byteCount = count * sizeof(T);
    if (byteCount < kLargeBlock) return static_cast<T*>(::operator new(byteCount));
    void* const memory = ::operator new(byteCount, kPage);
    UseLargePages(memory, byteCount);
    return static_cast<T*>(memory);
  }

  void deallocate(T* memory, std::size_t count) noexcept {
    if (count * sizeof(T) < kLargeBlock) {
      ::operator delete(memory);
    } else {
      ::operator delete(memory, kPage);
    }
  }

  bool operator==(const LargePageAllocator&) const = default;

 private:
  static constexpr std::align_val_t kPage{std::size_t{2} << 20};
  static constexpr std::size_t kLargeBlock = std::size_t{4} << 20;  // bytes
};

}  // namespace MCBinning
