#pragma once

#include "analysis/Regions.h"

#include <QColor>
#include <QImage>

#include <array>
#include <cstddef>
#include <memory>
#include <vector>

class ChCoord;
class DispABase;
class QString;
class QStylePainter;

namespace orvel {

/// Pixels of the map whose dots lie over the others, in a colour of their own.
struct ScatterPart {
    const std::vector<PixelSpan> &pixels;
    QColor colour;
};
struct ScatterParts {
    std::vector<ScatterPart> list = {};
    int width = 0;      ///< pixels in a row of the map
    bool alone = false; ///< without the dots of the whole map
    int revision = 0;   ///< other parts have another
};

/// A dot for every pixel of a map, one quantity against another. The dots are rasterised into a
/// picture that is kept until the values, the range or the size change.
class ScatterPlot {
public:
    /// x, y   n values each; null without any
    /// owner  what keeps them alive and unchanged; other values have another owner
    void draw(QStylePainter *p, DispABase &dab, const QString &xTitle, const QString &yTitle,
              const double *x, const double *y, std::size_t n,
              const std::shared_ptr<const void> &owner, const QColor &colour,
              const ScatterParts &parts = {});

private:
    struct Range {
        double xMin = 0.0;
        double yMin = 0.0;
        double xMax = 1.0;
        double yMax = 1.0;
        bool operator==(const Range &) const = default;
    };

    void findRange(const double *x, const double *y, std::size_t n);
    void clearPicture(const QSize &size, double devicePixelRatio);
    void rasterise(const ChCoord &coord, const double *x, const double *y, std::size_t n,
                   QRgb colour);

    std::weak_ptr<const void> m_owner;
    Range m_range; ///< of the finite values
    std::array<double, 11> m_picturedAt = {};
    QImage m_picture;
};

} // namespace orvel
