#pragma once
// BA_ALSO_FOR_AVX2 before a function asks the compiler for a second copy of it built for
// processors with AVX2, chosen when the program starts on such a processor (GCC's function
// multi-versioning, through the dynamic loader's indirect functions). Loops over blocks of
// samples then handle 4 doubles or 8 floats at a time instead of 2 or 4, and the program
// still runs on any x86-64. FMA stays off in both copies, so that both round every product
// and sum alike and give the same results. Elsewhere the macro is empty.

//
// BA_INLINE_IN_CLONES before a helper that such a function calls has it built into each
// copy, so that the AVX2 copy runs the helper's loops with AVX2 too.

#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__linux__)
#define BA_ALSO_FOR_AVX2 __attribute__((target_clones("avx2", "default")))
#else
#define BA_ALSO_FOR_AVX2
#endif

#if defined(__GNUC__)
#define BA_INLINE_IN_CLONES [[gnu::always_inline]] inline
#else
#define BA_INLINE_IN_CLONES inline
#endif
