#pragma once

#include "analysis/Checks.h"
#include "images/ImageData.h"

#include "base/Column.h"

#include <array>
#include <cstdint>
#include <limits>
#include <memory>
#include <optional>
#include <vector>

namespace orvel {

/// What a map can show. The order is that of the result vector of a non-equivalent fit and of the
/// columns of a result file.
enum class Quantity {
    Ratio1,
    Ratio2,
    Ratio3,
    Ratio4,
    DMut1,
    DMut2,
    DMut3,
    DMut4,
    Mut0,
    C1,
    C2,
    Valence,
    Amount,
    // Beside the results, only where standard deviations are asked for:
    Residual,
    SigmaRatio1,
    SigmaRatio2,
    SigmaRatio3,
    SigmaRatio4,
    SigmaValence,
    SigmaAmount,
};
inline constexpr int kQuantities = 13;    ///< those of a fit and of a result file
inline constexpr int kMapQuantities = 20; ///< with those beside the results

inline constexpr Quantity quantityAt(int index)
{
    return static_cast<Quantity>(index);
}
inline constexpr int indexOf(Quantity quantity)
{
    return static_cast<int>(quantity);
}

/// What a map calculation may use; no result depends on it.
struct MapResources {
    int threads = 1;                            ///< 0: all cores
    std::shared_ptr<ColumnPool> pool = nullptr; ///< keeps planes between calculations
    std::size_t pixelsPerThread = 16384;        ///< fewer are not worth a thread of their own
};

/// What stands behind the standard deviations of a map.
struct MapPrecision {
    NoiseSource noise = NoiseSource::Pooled;
    /// s [1], the standard deviation of an absorption: pooled or given; not-a-number where it is
    /// not determined or differs from pixel to pixel.
    double sigma = std::numeric_limits<double>::quiet_NaN();
    int freedom = 0; ///< energies minus unknowns, of a pixel that touches no bound
};

/// The maps that one calculation gave: a plane of width * height doubles for every quantity its
/// method fills, row by row, x fastest. Quantities without a plane read 0.
///
/// The non-equivalent method fills ratios and amounts by the i-th valid reference (not by row),
/// the background, valence and total amount. The four-points methods fill Ratio1 (the fraction a),
/// Valence and Amount (three points: dMut over the mean edge step of the references; otherwise
/// t/ts); their Ratio2 reads 1 - a and has no plane of its own.
///
/// Where standard deviations are asked for (PrecisionChoice), Residual holds the root of the mean
/// squared difference between absorption and fit, SigmaRatio1 ... SigmaAmount one standard
/// deviation of ratio, valence and total amount (docs/numerics.md derives them); not-a-number
/// stands for "not determined".
class ResultMaps {
public:
    /// origin  the image that the computation iterates over: size, positions, header lines
    /// pool    where planes come from and go back to; null: none are kept
    ResultMaps(Method method, std::shared_ptr<const ImageData> origin,
               std::shared_ptr<ColumnPool> pool = nullptr);
    ~ResultMaps();
    ResultMaps(ResultMaps &&) = default;
    ResultMaps &operator=(ResultMaps &&) = delete;

    Method method() const { return m_method; }
    int width() const { return m_origin->xNum(); }
    int height() const { return m_origin->yNum(); }
    qint64 size() const { return static_cast<qint64>(width()) * height(); }
    const ImageData &origin() const { return *m_origin; }

    /// Makes the plane of a quantity; its contents are undefined.
    double *addPlane(Quantity quantity);
    /// The plane of a quantity, or null.
    const double *plane(Quantity quantity) const;
    double *plane(Quantity quantity);

    /// Set where standard deviations were asked for.
    const std::optional<MapPrecision> &precision() const { return m_precision; }
    void setPrecision(const MapPrecision &precision) { m_precision = precision; }

    /// The references that bounds hold at 0 in each pixel, bit i for the i-th valid reference;
    /// empty unless the fit is bounded.
    const std::vector<std::uint8_t> &heldReferences() const { return m_held; }
    std::vector<std::uint8_t> &makeHeldReferences();
    bool isBounded() const { return !m_held.empty(); }
    /// Pixels that touch at least one bound; those where reference i is held at 0.
    qint64 pixelsOnBounds() const;
    qint64 pixelsHolding(int i) const;

    /// Whether the method gave this quantity (its button is then enabled).
    bool fills(Quantity quantity) const;
    /// Value of one pixel, 0 <= i < size().
    double at(Quantity quantity, qint64 i) const;

private:
    Method m_method;
    std::shared_ptr<const ImageData> m_origin;
    std::shared_ptr<ColumnPool> m_pool;
    std::array<Column, kMapQuantities> m_planes;
    std::optional<MapPrecision> m_precision;
    std::vector<std::uint8_t> m_held;
};

} // namespace orvel
