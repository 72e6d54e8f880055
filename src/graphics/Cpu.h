#pragma once

/// What the processor can do beyond what every program may use.
namespace graphics {

/// Whether it and the operating system support AVX2, 256-bit integer vectors. Any thread.
bool hasAvx2();

} // namespace graphics

/// In front of a function that is only called when hasAvx2() and may use its instructions.
#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
#define VALVECELL_AVX2 __attribute__((target("avx2")))
#elif defined(_M_X64)
#define VALVECELL_AVX2
#endif
