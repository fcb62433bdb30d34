#include "common/largepages.h"

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace MCBinning {

void UseLargePages([[maybe_unused]] void* memory, [[maybe_unused]] std::size_t byteCount) noexcept {
#ifdef MADV_HUGEPAGE
  ::madvise(memory, byteCount, MADV_HUGEPAGE);  // a refusal costs time only
#endif
}

}  // namespace MCBinning
