#pragma once

#include <QStringList>
#include <QVector>

#include "base/Column.h"

#include <atomic>
#include <memory>

namespace orvel {

/// One pixel of an image as its file gives it.
struct PixelRecord {
    double x = 0.0; ///< position, unit of the file
    double y = 0.0;
    double signal = 0.0;    ///< intensity behind the sample, or the absorption itself
    double reference = 0.0; ///< intensity without the sample; 0: signal is the absorption
    QVector<double> extra;  ///< nothing of ours fills it
};

/// Columns of an image in file order, all of the same length.
struct MapColumns {
    Column x;
    Column y;
    Column signal;
    Column reference;
};

/// Absorption mu*t of one pixel from its two intensities: the signal itself when the reference
/// is 0, 1.0 when the signal is 0, else ln(reference / signal). A negative ratio gives
/// not-a-number.
double absorptionOf(double signal, double reference);

/// The same for columns of n values; out has room for n.
void fillAbsorption(const double *signal, const double *reference, std::size_t n, double *out,
                    int threads = 1);

/// A two-dimensional image of the sample at one photon energy. Immutable, so that it is shared by
/// pointer between rows, analyses and results.
///
/// Pixels lie row by row, x fastest: pixel (x, y) is record y * xNum + x. The grid comes from the
/// file's header and need not match the number of records.
class ImageData {
public:
    /// Largest number of pixels of any map.
    static constexpr qint64 kMostPixels = qint64(1) << 27;

    /// From a text map; takes the logarithms once.
    static std::shared_ptr<const ImageData> fromColumns(QStringList header, int xNum, int yNum,
                                                        MapColumns columns);
    /// From a processed map of xNum * yNum absorptions; positions are the pixel indices and the
    /// references 0.
    static std::shared_ptr<const ImageData> fromAbsorption(int xNum, int yNum, Column absorption);

    const QStringList &header() const { return m_header; } ///< comment lines of the file
    int xNum() const { return m_xNum; }
    int yNum() const { return m_yNum; }
    qint64 size() const { return static_cast<qint64>(absorptionPlane().size()); } ///< records

    /// Whether the grid and the list of records are both non-empty.
    bool isMap() const { return m_xNum > 0 && m_yNum > 0 && size() > 0; }

    /// Record i; zeros for an index outside.
    PixelRecord pixel(qint64 i) const;
    /// Positions of record i without the rest; zeros outside.
    double positionX(qint64 i) const;
    double positionY(qint64 i) const;

    /// Absorption of the pixel at column x, row y; -1.0 where no record is. In a map narrower
    /// than the one that is iterated over, x runs on into the next row.
    double absorption(int x, int y) const
    {
        const qint64 i = static_cast<qint64>(y) * m_xNum + x;
        return i >= 0 && i < size() ? absorptionPlane()[static_cast<size_t>(i)] : -1.0;
    }
    /// Whether both intensity columns can be counts of photons: none below 1, and references that
    /// are not all 1, as they are read where the column is missing.
    bool hasCounts() const;
    /// Whether a record has no signal, so that its absorption is a stand-in.
    bool isDead(std::size_t i) const
    {
        return !m_processed && m_columns.signal[i] == 0.0 && m_columns.reference[i] != 0.0;
    }
    bool hasDeadPixels() const;
    /// The columns of the file; null for a processed map, which has absorptions alone.
    const MapColumns *columns() const { return m_processed ? nullptr : &m_columns; }
    const Column &absorptionPlane() const { return m_processed ? m_columns.signal : m_absorption; }

private:
    ImageData() = default;

    bool inside(qint64 i) const { return i >= 0 && i < size(); }

    QStringList m_header;
    int m_xNum = 0;
    int m_yNum = 0;
    bool m_processed = false; ///< only the signal column is stored, and it is the absorption
    MapColumns m_columns;
    Column m_absorption;
    mutable std::atomic<int> m_hasCounts = -1; ///< not looked at yet
    mutable std::atomic<int> m_hasDeadPixels = -1;
};

} // namespace orvel
