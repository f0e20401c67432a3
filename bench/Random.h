#pragma once

#include <cmath>
#include <cstdint>
#include <numbers>
#include <random>

namespace orvel::bench {

/// Random numbers that are the same everywhere: the standard fixes the engine, but leaves its
/// distributions to each library.
class Random {
public:
    explicit Random(std::uint64_t seed) : m_engine(seed) {}

    /// In [0, 1).
    double uniform() { return static_cast<double>(m_engine() >> 11) * 0x1p-53; }
    double exponential() { return -std::log(1.0 - uniform()); }
    double normal()
    {
        const double radius = std::sqrt(2.0 * exponential());
        return radius * std::cos(2.0 * std::numbers::pi * uniform());
    }

private:
    std::mt19937_64 m_engine;
};

} // namespace orvel::bench
