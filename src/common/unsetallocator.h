#pragma once

#include <memory>
#include <new>
#include <utility>

namespace MCBinning {

// Of a vector that makes room without writing to it: items that resize() adds have no value before
// they get one. To clear much memory first takes as long as to fill it.
template <typename Item>
struct UnsetAllocator : std::allocator<Item> {
  UnsetAllocator() = default;
  template <typename Other>
  UnsetAllocator(const UnsetAllocator<Other>& /*other*/) noexcept {}

  template <typename Other>
  struct rebind {
    using other = UnsetAllocator<Other>;
  };

  template <typename Made>
  void construct(Made* place) noexcept {
    ::new (static_cast<void*>(place)) Made;
  }
  template <typename Made, typename... Arguments>
  void construct(Made* place, Arguments&&... arguments) {
    ::new (static_cast<void*>(place)) Made(std::forward<Arguments>(arguments)...);
  }
};

}  // namespace MCBinning
