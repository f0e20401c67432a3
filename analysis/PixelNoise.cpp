#include "analysis/PixelNoise.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

/// s from all residuals: the root of (sum of residual sums of squares) / (sum of degrees of
/// freedom) over the pixels with finite residuals. Summed in blocks of one size, so that the
/// result does not depend on threads.
double pooledSigma(const ResultMaps &maps, int points, int freedom, const std::vector<bool> &pooled)
{
    constexpr qint64 kBlock = 4096;
    const double *residual = maps.plane(Quantity::Residual);
    if (residual == nullptr) {
        return kNan;
    }
    const std::vector<std::uint8_t> &held = maps.heldReferences();
    double sum = 0.0;
    double freedoms = 0.0;
    for (qint64 begin = 0; begin < maps.size(); begin += kBlock) {
        const qint64 end = std::min(begin + kBlock, maps.size());
        // Side by side, or every addition would wait for the one before.
        constexpr qint64 kSums = 8;
        double sums[kSums] = {};
        double counts[kSums] = {};
        qint64 bounds = 0;
        const auto add = [&](qint64 i, qint64 k) {
            const double square = residual[i] * residual[i];
            const bool finite = square <= std::numeric_limits<double>::max();
            sums[k] += finite ? square : 0.0;
            counts[k] += finite ? 1.0 : 0.0;
        };
        if (pooled.empty() && held.empty()) {
            qint64 i = begin;
            for (; i + kSums <= end; i += kSums) {
                for (qint64 k = 0; k < kSums; ++k) {
                    add(i + k, k);
                }
            }
            for (; i < end; ++i) {
                add(i, 0);
            }
        } else {
            for (qint64 i = begin; i < end; ++i) {
                if (!pooled.empty() && !pooled[static_cast<size_t>(i)]) {
                    continue;
                }
                const double before = counts[0];
                add(i, 0);
                if (!held.empty() && counts[0] > before) {
                    bounds += __builtin_popcount(held[static_cast<size_t>(i)]);
                }
            }
        }
        double blockSum = 0.0;
        double pixels = 0.0;
        for (qint64 k = 0; k < kSums; ++k) {
            blockSum += sums[k];
            pixels += counts[k];
        }
        sum += blockSum;
        freedoms += pixels * freedom + static_cast<double>(bounds);
    }
    return freedoms > 0.0 && sum > 0.0 ? std::sqrt(sum * points / freedoms) : kNan;
}

} // namespace

std::vector<std::size_t>
unmeasuredPixels(const ResultMaps &maps,
                 const std::vector<std::shared_ptr<const ImageData>> &images)
{
    const auto width = static_cast<std::size_t>(maps.width());
    const auto isWhole = [&maps](const std::shared_ptr<const ImageData> &image) {
        return image->xNum() == maps.width() && image->size() >= maps.size() &&
               !image->hasDeadPixels();
    };
    std::vector<std::size_t> found;
    if (std::all_of(images.begin(), images.end(), isWhole)) {
        return found;
    }
    for (std::size_t i = 0; i < static_cast<std::size_t>(maps.size()); ++i) {
        for (const auto &image : images) {
            const std::size_t at = i / width * static_cast<std::size_t>(image->xNum()) + i % width;
            if (at >= static_cast<std::size_t>(image->size()) || image->isDead(at)) {
                found.push_back(i);
                break;
            }
        }
    }
    return found;
}

PixelNoise::PixelNoise(const ResultMaps &maps,
                       const std::vector<std::shared_ptr<const ImageData>> &images,
                       const PrecisionChoice &choice, int points, int freedom,
                       const std::vector<bool> &pooled)
    : m_maps(maps), m_images(images), m_points(points), m_residual(maps.plane(Quantity::Residual))
{
    m_found.noise = choice.noise;
    m_found.freedom = freedom;
    if (choice.noise == NoiseSource::Pooled) {
        m_found.sigma = pooledSigma(maps, points, freedom, pooled);
    } else if (choice.noise == NoiseSource::Given && choice.givenSigma > 0.0) {
        m_found.sigma = choice.givenSigma;
    }
}

double PixelNoise::perResidual(unsigned held) const
{
    const int freedom = m_found.freedom + __builtin_popcount(held);
    return freedom > 0 ? std::sqrt(static_cast<double>(m_points) / freedom) : kNan;
}

double PixelNoise::sigma(std::size_t i) const
{
    if (m_found.noise != NoiseSource::Pixel) {
        return m_found.sigma;
    }
    const unsigned held = m_maps.isBounded() ? m_maps.heldReferences()[i] : 0U;
    return m_residual != nullptr ? m_residual[i] * perResidual(held) : kNan;
}

void PixelNoise::variances(std::size_t i, double *variances) const
{
    if (m_found.noise != NoiseSource::Counts) {
        const double s = sigma(i);
        std::fill_n(variances, m_images.size(), s > 0.0 ? s * s : kNan);
        return;
    }
    const auto width = static_cast<std::size_t>(m_maps.width());
    for (std::size_t e = 0; e < m_images.size(); ++e) {
        const ImageData &image = *m_images[e];
        const std::size_t at = i / width * static_cast<std::size_t>(image.xNum()) + i % width;
        variances[e] = kNan;
        if (image.columns() != nullptr && at < static_cast<std::size_t>(image.size())) {
            const double signal = image.columns()->signal[at];
            const double reference = image.columns()->reference[at];
            if (signal > 0.0 && reference > 0.0) {
                variances[e] = 1.0 / signal + 1.0 / reference;
            }
        }
    }
}

} // namespace orvel
