#pragma once

#include <cstddef>
#include <cstring>

/// Variants of one loop for newer processors, chosen at run time. The body is written once, in
/// vectors of kLanes doubles; the compiler turns it into whatever the variant's processor has.
/// All variants give the same bits: every lane is one pixel, whose operations keep their order,
/// and contraction is off for the whole project.
///
///     ORVEL_INLINE void scaleBody(const double *in, double factor, std::size_t n, double *out)
///     { ... }
///     ORVEL_KERNEL(scale, (const double *in, double factor, std::size_t n, double *out),
///                  (in, factor, n, out))
///
/// declares scale() that calls the best variant of scaleBody().

namespace orvel {

enum class SimdLevel { Base, Avx2, Avx512 };

/// The best this processor has, or what limitSimd() allows.
SimdLevel simdLevel();

/// Keeps kernels at a level that the processor has; for tests and measurements. Not for use while
/// kernels run.
void limitSimd(SimdLevel most);

/// A pixel a lane. Local variables only: passing one by value depends on the variant.
inline constexpr int kLanes = 8;
using Lanes = double __attribute__((vector_size(kLanes * sizeof(double))));

} // namespace orvel

#define ORVEL_INLINE static inline __attribute__((always_inline))

namespace orvel {

/// The last lanes of a run may be missing: bytes counts those that are there.
ORVEL_INLINE void loadLanes(const double *from, std::size_t bytes, Lanes &to)
{
    to = Lanes{};
    bytes == sizeof to ? std::memcpy(&to, from, sizeof to) : std::memcpy(&to, from, bytes);
}

ORVEL_INLINE void storeLanes(const Lanes &from, std::size_t bytes, double *to)
{
    bytes == sizeof from ? std::memcpy(to, &from, sizeof from) : std::memcpy(to, &from, bytes);
}

/// Square root, of each lane; not-a-number below 0. Sources that use it are compiled with
/// -fno-math-errno, or every lane is a call.
ORVEL_INLINE void rootLanes(Lanes &x)
{
    for (int lane = 0; lane < kLanes; ++lane) {
        x[lane] = __builtin_sqrt(x[lane]);
    }
}

} // namespace orvel

#if defined(__x86_64__) && !defined(__SANITIZE_THREAD__)
#define ORVEL_KERNEL(NAME, PARAMETERS, ARGUMENTS)                                                  \
    static void NAME##Base PARAMETERS                                                              \
    {                                                                                              \
        NAME##Body ARGUMENTS;                                                                      \
    }                                                                                              \
    __attribute__((target("avx2"))) static void NAME##Avx2 PARAMETERS                              \
    {                                                                                              \
        NAME##Body ARGUMENTS;                                                                      \
    }                                                                                              \
    __attribute__((target("avx512f,avx512dq,avx512vl"))) static void NAME##Avx512 PARAMETERS       \
    {                                                                                              \
        NAME##Body ARGUMENTS;                                                                      \
    }                                                                                              \
    static void NAME PARAMETERS                                                                    \
    {                                                                                              \
        switch (orvel::simdLevel()) {                                                              \
        case orvel::SimdLevel::Avx512:                                                             \
            NAME##Avx512 ARGUMENTS;                                                                \
            break;                                                                                 \
        case orvel::SimdLevel::Avx2:                                                               \
            NAME##Avx2 ARGUMENTS;                                                                  \
            break;                                                                                 \
        case orvel::SimdLevel::Base:                                                               \
            NAME##Base ARGUMENTS;                                                                  \
            break;                                                                                 \
        }                                                                                          \
    }
#else
#define ORVEL_KERNEL(NAME, PARAMETERS, ARGUMENTS)                                                  \
    static void NAME PARAMETERS                                                                    \
    {                                                                                              \
        NAME##Body ARGUMENTS;                                                                      \
    }
#endif
