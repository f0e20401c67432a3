#pragma once

#include <QColor>

#include <cstddef>
#include <cstdint>
#include <vector>

class ChCoord;
class QPainter;

namespace orvel {

/// A palette and the way from values to its colours.
///
/// Entry k of n belongs to the values about zMin + (k - bottom) / (top - bottom) * (zMax - zMin).
/// Without a stretch bottom is 0 and top is n. Moving the ends of that range past the palette's
/// ends shows values near zMin and zMax in one colour each and spreads the rest.
class ColourScale {
public:
    static constexpr int kTypes = 12;

    /// 0 to 11; any other number is type 0.
    explicit ColourScale(int type = 0) { setType(type); }
    /// Builds the palette of a type and undoes a stretch.
    void setType(int type);
    int type() const { return m_type; }

    int size() const { return static_cast<int>(m_palette.size()); }
    QRgb entry(int i) const { return m_palette[static_cast<std::size_t>(i)]; }
    /// Entry i as shown: from the other end when inverted.
    QRgb shownEntry(int i) const { return entry(m_isInverted ? size() - 1 - i : i); }

    double zMin() const { return m_zMin; }
    double zMax() const { return m_zMax; }
    void setLimits(double zMin, double zMax);

    bool isInverted() const { return m_isInverted; }
    void setInverted(bool f) { m_isInverted = f; }

    /// Palette indices at the lower and the upper limit line: 0 and n.
    static constexpr int lowerIndex() { return 0; }
    int upperIndex() const { return size(); }
    double bottom() const { return m_bottom; }
    double top() const { return m_top; }
    void setStretch(double bottom, double top);

    /// Index of a value in 0 .. n - 1, before inversion. What is no finite number or far beyond
    /// any index counts as below.
    int indexOf(double value) const;
    QRgb colourOf(double value) const { return shownEntry(indexOf(value)); }
    /// The colours of values[columns[i]], i = 0 .. n - 1, equal to colourOf() bit by bit; white
    /// where columns[i] is negative, as it may be at both ends.
    void coloursOf(const double *values, const std::int32_t *columns, int n, QRgb *out) const;

    bool operator==(const ColourScale &) const = default;

private:
    double scale() const { return (m_top - m_bottom) / (m_zMax - m_zMin); }

    int m_type = 0;
    std::vector<QRgb> m_palette;
    double m_zMin = 0.0;
    double m_zMax = 1.0;
    double m_bottom = 0.0;
    double m_top = 0.0;
    bool m_isInverted = false;
};

/// The scale as a vertical bar that fills the area of `coord`, small values at the bottom. Sets
/// the ranges of `coord`.
struct LimitLines {
    int upper; ///< screen rows of the two lines
    int lower;
};
LimitLines drawColourBar(QPainter &painter, ChCoord &coord, const ColourScale &scale);

} // namespace orvel
