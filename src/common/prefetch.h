#pragma once

#include <cstddef>
#include <cstdint>

namespace MCBinning {

inline constexpr std::size_t kLine = 64;        // bytes, of most processors' caches
inline constexpr std::size_t kFarAhead = 4096;  // bytes

// Asks for the memory so many bytes behind an item, which a pass comes to before long: what the
// processor fetches by itself comes too late where memory is far away or a pass goes to many places
// at once. Nothing is read, so that memory may be nobody's.
template <bool kIsToBeWritten = false, typename Item>
void FetchAhead(const Item* item, std::size_t byteCount) {
#ifdef __GNUC__
  const auto address = reinterpret_cast<std::uintptr_t>(item) + byteCount;
  __builtin_prefetch(reinterpret_cast<const void*>(address), kIsToBeWritten ? 1 : 0);
#else
  static_cast<void>(item);
  static_cast<void>(byteCount);
#endif
}

}  // namespace MCBinning
