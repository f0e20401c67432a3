#pragma once

#include "analysis/Checks.h"
#include "images/ImageData.h"

#include "base/Column.h"

#include <array>
#include <memory>

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
};
inline constexpr int kQuantities = 13;

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

/// The maps that one calculation gave: a plane of width * height doubles for every quantity its
/// method fills, row by row, x fastest. Quantities without a plane read 0.
///
/// The non-equivalent method fills ratios and amounts by the i-th valid reference (not by row),
/// the background, valence and total amount. The four-points methods fill Ratio1 (the fraction a),
/// Valence and Amount (three points: dMut over the mean edge step of the references; otherwise
/// t/ts); their Ratio2 reads 1 - a and has no plane of its own.
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

    /// Whether the method gave this quantity (its button is then enabled).
    bool fills(Quantity quantity) const;
    /// Value of one pixel, 0 <= i < size().
    double at(Quantity quantity, qint64 i) const;

private:
    Method m_method;
    std::shared_ptr<const ImageData> m_origin;
    std::shared_ptr<ColumnPool> m_pool;
    std::array<Column, kQuantities> m_planes;
};

} // namespace orvel
