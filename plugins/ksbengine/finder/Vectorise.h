#pragma once

/// Marks a function whose loops gain from wide vector registers: where the compiler can, it is compiled for newer
/// processors as well, and the right one is taken at run time. Sanitizers do not get along with that choice.
#if defined(__GNUC__) && !defined(__clang__) && defined(__x86_64__) && defined(__linux__) &&                           \
    !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
#define VC_VECTORISED __attribute__((target_clones("arch=haswell", "default")))
#else
#define VC_VECTORISED
#endif

#if defined(__GNUC__) || defined(_MSC_VER)
#define VC_RESTRICT __restrict
#else
#define VC_RESTRICT
#endif

/// For the parts of a VC_VECTORISED loop: a call that stays would keep the loop from wide registers.
#if defined(__GNUC__)
#define VC_INLINE inline __attribute__((always_inline))
#elif defined(_MSC_VER)
#define VC_INLINE __forceinline
#else
#define VC_INLINE inline
#endif
