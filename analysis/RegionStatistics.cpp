#include "analysis/RegionStatistics.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace orvel {
namespace {

/// Without a branch: in a map with holes it would be guessed wrong at every border.
bool isFinite(double value)
{
    constexpr std::uint64_t kExponent = 0x7FF0000000000000;
    std::uint64_t bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return (bits & kExponent) != kExponent;
}

/// Calls add(lane, value) for every value, lanes 0 to 7 in turn: not one long chain of additions
/// that wait for each other, and the same order everywhere.
constexpr std::size_t kLanes = 8;
using Lanes = std::array<double, kLanes>;

template <class Add> void inLanes(const double *values, std::size_t n, Add add)
{
    const std::size_t whole = n - n % kLanes;
    for (std::size_t i = 0; i < whole; i += kLanes) {
        for (std::size_t k = 0; k < kLanes; ++k) {
            add(k, values[i + k]);
        }
    }
    for (std::size_t i = whole; i < n; ++i) {
        add(i - whole, values[i]);
    }
}

double total(const Lanes &lanes)
{
    return ((lanes[0] + lanes[1]) + (lanes[2] + lanes[3])) +
           ((lanes[4] + lanes[5]) + (lanes[6] + lanes[7]));
}

/// Middle of the two values around rank n / 2 of an even number, else the one; reorders the values.
double medianBySelection(double *values, std::size_t n)
{
    double *const middle = values + n / 2;
    std::nth_element(values, middle, values + n);
    if (n % 2 != 0) {
        return *middle;
    }
    const double below = *std::max_element(values, middle);
    return 0.5 * below + 0.5 * *middle;
}

/// The same for many values: a sample tells between which two values the middle lies; only what is
/// between is selected from. Where the sample misleads (it cannot, but for odd orders of the
/// pixels) all of them are.
double medianOf(Column &values, std::size_t n, Column &middle)
{
    constexpr std::size_t kMany = 1 << 15;
    constexpr std::size_t kSample = 1 << 12;
    if (n < kMany) {
        return medianBySelection(values.data(), n);
    }
    std::array<double, kSample> sample;
    for (std::size_t i = 0; i < kSample; ++i) {
        sample[i] = values[i * n / kSample];
    }
    constexpr std::size_t kBeside = 128; // four standard deviations of a rank: sqrt(kSample) / 2
    constexpr std::size_t kLow = kSample / 2 - kBeside;
    constexpr std::size_t kHigh = kSample / 2 + kBeside;
    std::nth_element(sample.begin(), sample.begin() + kLow, sample.end());
    const double low = sample[kLow];
    std::nth_element(sample.begin() + kLow + 1, sample.begin() + kHigh, sample.end());
    const double high = sample[kHigh];
    middle.resize(std::max(middle.size(), n));
    std::size_t below = 0;
    std::size_t inside = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const double value = values[i];
        below += value < low ? 1 : 0;
        middle[inside] = value;
        inside += static_cast<std::size_t>(value >= low) & static_cast<std::size_t>(value <= high);
    }
    const std::size_t rank = n / 2;
    const std::size_t first = n % 2 != 0 ? rank : rank - 1; // of the one or two that are asked for
    if (first < below || rank >= below + inside) {
        return medianBySelection(values.data(), n);
    }
    const auto at = [&middle](std::size_t i) { return middle.begin() + static_cast<qint64>(i); };
    std::nth_element(at(0), at(rank - below), at(inside));
    const double upper = *at(rank - below);
    if (first == rank) {
        return upper;
    }
    return 0.5 * *std::max_element(at(0), at(rank - below)) + 0.5 * upper;
}

} // namespace

RegionStatistics RegionStatistician::of(const double *plane, int width,
                                        const std::vector<PixelSpan> &spans)
{
    const qint64 pixels = countOf(spans);
    m_values.resize(std::max(m_values.size(), static_cast<std::size_t>(pixels) + 1));
    double *const out = m_values.data();
    std::size_t finite = 0;
    for (const PixelSpan &span : spans) {
        const double *const row = plane + static_cast<qint64>(span.row) * width;
        for (int x = span.begin; x < span.end; ++x) {
            out[finite] = row[x];
            finite += isFinite(row[x]) ? 1 : 0;
        }
    }
    return summed(pixels, finite);
}

RegionStatistics RegionStatistician::of(const ResultMaps &maps, Quantity quantity,
                                        const std::vector<PixelSpan> &spans)
{
    if (const double *plane = maps.plane(quantity)) {
        return of(plane, maps.width(), spans);
    }
    const qint64 pixels = countOf(spans);
    m_values.resize(std::max(m_values.size(), static_cast<std::size_t>(pixels) + 1));
    std::size_t finite = 0;
    for (const PixelSpan &span : spans) {
        const qint64 row = static_cast<qint64>(span.row) * maps.width();
        for (int x = span.begin; x < span.end; ++x) {
            m_values[finite] = maps.at(quantity, row + x);
            finite += isFinite(m_values[finite]) ? 1 : 0;
        }
    }
    return summed(pixels, finite);
}

/// Of the first `finite` of the gathered values.
RegionStatistics RegionStatistician::summed(qint64 pixels, std::size_t finite)
{
    RegionStatistics found;
    found.pixels = pixels;
    found.finite = static_cast<qint64>(finite);
    if (finite == 0) {
        return found;
    }
    const auto n = static_cast<double>(finite);
    const double *const values = m_values.data();
    Lanes sums = {};
    inLanes(values, finite, [&sums](std::size_t k, double value) { sums[k] += value; });
    const double mean = total(sums) / n;
    // The rounded mean lies a little beside the true one: what is left over mends it, and the
    // squares about it.
    Lanes rests = {};
    Lanes squares = {};
    inLanes(values, finite, [&](std::size_t k, double value) {
        const double rest = value - mean;
        rests[k] += rest;
        squares[k] += rest * rest;
    });
    const double rest = total(rests);
    found.mean = mean + rest / n;
    if (finite > 1) {
        const double about = std::max(total(squares) - rest * rest / n, 0.0);
        found.deviation = std::sqrt(about / (n - 1.0));
    }
    if (!isFinite(found.mean) || (finite > 1 && !isFinite(found.deviation))) {
        return summedScaled(pixels, finite);
    }
    found.median = medianOf(m_values, finite, m_middle);
    return found;
}

/// Sums or squares are too large for a number, while mean and deviation need not be: by a power of
/// two nothing but the exponents changes.
RegionStatistics RegionStatistician::summedScaled(qint64 pixels, std::size_t finite)
{
    double *const values = m_values.data();
    double largest = 0.0;
    for (std::size_t i = 0; i < finite; ++i) {
        largest = std::max(largest, std::abs(values[i]));
    }
    const int exponent = std::ilogb(largest);
    for (std::size_t i = 0; i < finite; ++i) {
        values[i] = std::scalbn(values[i], -exponent);
    }
    RegionStatistics found = summed(pixels, finite); // below 2 each: no further time
    for (double *number : {&found.mean, &found.deviation, &found.median}) {
        *number = std::scalbn(*number, exponent);
    }
    return found;
}

bool isDetermined(const ResultMaps &maps, int references, Quantity quantity)
{
    if (!maps.fills(quantity)) {
        return false;
    }
    if (!isNonEquiv(maps.method())) {
        return true;
    }
    if (quantity < Quantity::Mut0) {
        return indexOf(quantity) % kReferenceRows < references;
    }
    return quantity != Quantity::C2 || maps.method() != Method::NonEquivLinear;
}

} // namespace orvel
