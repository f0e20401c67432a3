#include "base/Simd.h"

#include <algorithm>

namespace orvel {
namespace {

SimdLevel levelOfProcessor()
{
#if defined(__x86_64__)
    __builtin_cpu_init();
    if (__builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512dq") &&
        __builtin_cpu_supports("avx512vl")) {
        return SimdLevel::Avx512;
    }
    if (__builtin_cpu_supports("avx2")) {
        return SimdLevel::Avx2;
    }
#endif
    return SimdLevel::Base;
}

SimdLevel &level()
{
    static SimdLevel chosen = levelOfProcessor();
    return chosen;
}

} // namespace

SimdLevel simdLevel()
{
    return level();
}

void limitSimd(SimdLevel most)
{
    level() = std::min(most, levelOfProcessor());
}

} // namespace orvel
