#include "graphics/Cpu.h"

#if defined(_MSC_VER) && defined(_M_X64)
#include <immintrin.h>
#include <intrin.h>
#endif

namespace graphics {

bool hasAvx2()
{
#if defined(__GNUC__) && defined(VALVECELL_AVX2)
    return __builtin_cpu_supports("avx2") != 0;
#elif defined(VALVECELL_AVX2)
    constexpr int savesVectors = 1 << 27; // leaf 1, ecx: the operating system has switched on xgetbv
    constexpr unsigned wideState = 6;     // xgetbv: it keeps the lower and upper halves of the vectors
    constexpr int avx2 = 1 << 5;          // leaf 7, ebx
    int info[4] = {};
    __cpuid(info, 0);
    if (info[0] < 7)
        return false;
    __cpuid(info, 1);
    if (!(info[2] & savesVectors) || (_xgetbv(0) & wideState) != wideState)
        return false;
    __cpuidex(info, 7, 0);
    return (info[1] & avx2) != 0;
#else
    return false;
#endif
}

} // namespace graphics
