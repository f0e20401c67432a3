#pragma once

#include <QtGlobal>

#include <bit>
#include <random>

// What tests share that hold a fast way against the plain one.

/// Random cases to try: ORVEL_CASES, or the quick sample of a daily run.
inline int randomCases(int usual)
{
    bool ok = false;
    const int wanted = qEnvironmentVariableIntValue("ORVEL_CASES", &ok);
    return ok && wanted > 0 ? wanted : usual;
}

/// A double of any bits: mostly of extreme magnitude, some not-a-numbers and denormals.
inline double anyDouble(std::mt19937_64 &random)
{
    return std::bit_cast<double>(static_cast<quint64>(random()));
}

/// Equal to the bit: unlike ==, tells -0 from 0 and takes not-a-numbers.
inline bool sameBits(double a, double b)
{
    return std::bit_cast<quint64>(a) == std::bit_cast<quint64>(b);
}
