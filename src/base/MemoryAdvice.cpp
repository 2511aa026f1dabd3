#include "base/MemoryAdvice.h"

#include <cstdint>

#if defined(__linux__)
#include <sys/mman.h>
#endif

namespace ba {

void AdviseHugePages(const void* data, std::size_t bytes)
{
#if defined(MADV_HUGEPAGE)
    if (bytes < kHugePageAdviceBytes) return;
    constexpr std::uintptr_t kPage = 4096;
    const auto start = reinterpret_cast<std::uintptr_t>(data);
    const std::uintptr_t begin = (start + kPage - 1) & ~(kPage - 1);
    const std::uintptr_t end = (start + bytes) & ~(kPage - 1);
    if (end > begin) ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_HUGEPAGE); // advice only
#else
    (void)data;
    (void)bytes;
#endif
}

} // namespace ba
