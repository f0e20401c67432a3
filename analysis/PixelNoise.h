#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/ResultMaps.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace orvel {

/// Total amounts below this many of their own standard deviations have no fractions worth an error
/// bar: the ratio of two numbers near 0 has a distribution without one. Not determined then.
inline constexpr double kLeastAmountInSigmas = 3.0;

/// Pixels for which some image has no measurement but a stand-in: no record, or a signal of 0.
/// Their residuals tell nothing of noise.
std::vector<std::size_t>
unmeasuredPixels(const ResultMaps &maps,
                 const std::vector<std::shared_ptr<const ImageData>> &images);

/// Variance of the absorptions of each pixel of a map, by what the user chose.
class PixelNoise {
public:
    /// maps     with its Residual plane, where there are degrees of freedom
    /// images   of the fit's points, for counts; in the order in which variances are wanted
    /// points   that the residual is a mean over
    /// freedom  points minus unknowns, of a pixel that touches no bound
    /// pooled   pixels that the pooled noise is taken from; empty: all
    PixelNoise(const ResultMaps &maps, const std::vector<std::shared_ptr<const ImageData>> &images,
               const PrecisionChoice &choice, int points, int freedom,
               const std::vector<bool> &pooled = {});

    const MapPrecision &found() const { return m_found; }

    /// s of a pixel where its energies share one; not-a-number when not determined.
    double sigma(std::size_t i) const;
    /// s over the Residual of a pixel, for that many references held at bounds.
    double perResidual(unsigned held) const;
    /// variances  out: one for each image; not-a-number when not determined
    void variances(std::size_t i, double *variances) const;

private:
    const ResultMaps &m_maps;
    const std::vector<std::shared_ptr<const ImageData>> &m_images;
    int m_points;
    MapPrecision m_found;
    const double *m_residual;
};

} // namespace orvel
