#pragma once
// Large arrays of samples are written once from end to end right after they are made.
// Where the system hands out huge pages only on request (Linux's usual setting), asking
// for them makes those first writes fault in 2 MiB at a time instead of 4 KiB, which on a
// log of ten million samples is most of the time a fresh array costs. Elsewhere, and for
// small arrays, this does nothing; it is advice and never changes a value.

#include <cstddef>

namespace ba {

// Arrays below this size are left alone.
inline constexpr std::size_t kHugePageAdviceBytes = std::size_t{8} << 20;

void AdviseHugePages(const void* data, std::size_t bytes);

} // namespace ba
