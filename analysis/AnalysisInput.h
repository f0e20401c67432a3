#pragma once

#include "images/ImageData.h"
#include "spectra/AMutE.h"

#include <array>
#include <memory>
#include <vector>

namespace orvel {

inline constexpr int kReferenceRows = 4;
inline constexpr int kPointRows = 8;

/// One reference compound of known valence.
struct ReferenceInput {
    int row = 0; ///< 0 to 3
    bool use = false;
    AMutE spectrum; ///< a copy that shares its points
    double valence = 0.0;

    bool isValid() const { return use && spectrum.isValid(); }
};

/// One energy at which an image was taken.
struct EnergyPointInput {
    int row = 0; ///< 0 to 7
    bool use = false;
    bool lcf = false;    ///< bounds the range of the linear combination fit
    bool vPoint = false; ///< where the references differ most (four-points method)
    double energyEv = 0.0;
    /// The row's absorption fields read back: six significant digits, 0 where a field is empty.
    double targetMu = 0.0;
    std::array<double, kReferenceRows> referenceMu = {};
    std::shared_ptr<const ImageData> map; ///< null: no image

    /// Whether maps take the point; for spectra use alone decides.
    bool isUsedOnMaps() const { return use && map != nullptr; }
};

/// Constraints on the non-equivalent fit of a map or of the target.
enum class NonEquivBounds {
    Free,
    NonNegative, ///< no reference's coefficient below 0; the background stays free
};

/// Constraints on the linear combination fit; its base stays free.
enum class LcfBounds {
    Free,
    NonNegative,
    SumToOne,
    NonNegativeSumToOne,
};

/// What is to be computed, and how.
struct MethodChoice {
    bool nonEquiv = false;         ///< otherwise the four-points method
    bool exact = true;             ///< four points solved exactly; otherwise least squares
    bool subPostForRef = false;    ///< references minus their post-edge line; otherwise pre-edge
    bool subPostForTarget = false; ///< the same for the target
    bool linearBackground = false; ///< otherwise a Victoreen background
    NonEquivBounds nonEquivBounds = NonEquivBounds::Free;
    LcfBounds lcfBounds = LcfBounds::Free;
};

/// Where the standard deviation s of one measured absorption is taken from. Noise is taken as
/// independent from energy to energy and from pixel to pixel.
enum class NoiseSource {
    Pooled, ///< from the residuals of all pixels of the map together
    Pixel,  ///< from the residuals of the pixel itself: with 1 or 2 degrees of freedom a guess
    Given,  ///< a number
    Counts, ///< variance 1/I + 1/I0 at each energy: both columns are counted photons
};

/// Standard deviations beside the results; no result depends on it.
struct PrecisionChoice {
    bool maps = false; ///< whether maps get planes of residuals and standard deviations
    NoiseSource noise = NoiseSource::Pooled;
    double givenSigma = 0.0; ///< [1], of an absorption, with Given; else nothing is determined
};

/// Limits of a histogram as entered: the centres of its first and last box.
struct HistogramSettings {
    double from = 0.0;
    double to = 0.0;
    int boxes = 2;
    bool autoRange = false; ///< the finite range of the values replaces the limits

    bool operator==(const HistogramSettings &) const = default;
};

/// Everything an analysis reads, taken from the form or from a session at one moment.
struct AnalysisInput {
    std::vector<ReferenceInput> references; ///< in row order
    std::vector<EnergyPointInput> points;   ///< in row order
    AMutE target;
    MethodChoice method;
    PrecisionChoice precision;
    HistogramSettings valenceHistogram;
    HistogramSettings amountHistogram;
};

/// The references that take part: used and loaded, in row order.
std::vector<const ReferenceInput *> validReferences(const std::vector<ReferenceInput> &references);

} // namespace orvel
