#include "panel/plots/ScatterPlot.h"

#include "panel/plots/PlotSteps.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel {
namespace {

/// Least and greatest finite value, a twentieth wider both ways.
void widen(const double *values, std::size_t n, double &low, double &high)
{
    double least = std::numeric_limits<double>::max();
    double most = std::numeric_limits<double>::lowest();
    for (std::size_t i = 0; i < n; ++i) {
        const double value = values[i];
        if (std::isfinite(value)) {
            least = std::min(least, value);
            most = std::max(most, value);
        }
    }
    if (least > most) { // none
        least = 0.0;
        most = 1.0;
    }
    const double beside = most > least ? 0.05 * (most - least) : 0.5;
    low = least - beside;
    high = most + beside;
}

} // namespace

void ScatterPlot::findRange(const double *x, const double *y, std::size_t n)
{
    widen(x, n, m_range.xMin, m_range.xMax);
    widen(y, n, m_range.yMin, m_range.yMax);
}

void ScatterPlot::clearPicture(const QSize &size, double devicePixelRatio)
{
    const QSize device = size * devicePixelRatio;
    if (m_picture.size() != device) {
        m_picture = QImage(device, QImage::Format_ARGB32_Premultiplied);
        m_picture.setDevicePixelRatio(devicePixelRatio);
    }
    m_picture.fill(Qt::transparent);
}

void ScatterPlot::rasterise(const ChCoord &coord, const double *x, const double *y, std::size_t n,
                            QRgb colour)
{
    const double devicePixelRatio = m_picture.devicePixelRatio();
    const double sx0 = coord.sx(0.0) * devicePixelRatio;
    const double sxScale = coord.sdx(1.0) * devicePixelRatio;
    const double sy0 = coord.sy(0.0) * devicePixelRatio;
    const double syScale = coord.sdy(1.0) * devicePixelRatio;
    const int dot = std::max(2, static_cast<int>(2 * devicePixelRatio));
    const int width = m_picture.width() - dot;
    const int height = m_picture.height() - dot;
    const qint64 stride = m_picture.bytesPerLine() / static_cast<int>(sizeof(QRgb));
    QRgb *const bits = reinterpret_cast<QRgb *>(m_picture.bits());
    for (std::size_t i = 0; i < n; ++i) {
        const double px = sxScale * x[i] + sx0;
        const double py = syScale * y[i] + sy0;
        if (px >= 0.0 && px < width && py >= 0.0 && py < height) { // never a not-a-number
            QRgb *at = bits + static_cast<qint64>(py) * stride + static_cast<qint64>(px);
            for (int row = 0; row < dot; ++row, at += stride) {
                std::fill_n(at, dot, colour);
            }
        }
    }
}

void ScatterPlot::draw(QStylePainter *p, DispABase &dab, const QString &xTitle,
                       const QString &yTitle, const double *x, const double *y, std::size_t n,
                       const std::shared_ptr<const void> &owner, const QColor &colour,
                       const ScatterParts &parts)
{
    beginPlot(p, dab, xTitle, yTitle);
    ChCoord &coord = *dab.coord();
    coord.setHasContent(n > 0 && x != nullptr && y != nullptr);
    if (!coord.hasContent()) {
        return;
    }
    const bool isNew = m_owner.owner_before(owner) || owner.owner_before(m_owner);
    if (isNew) {
        const Range before = m_range;
        findRange(x, y, n);
        m_owner = owner;
        if (!(m_range == before)) {
            dab.clearScale(); // or new dots might all lie outside
        }
    }
    dab.setInitialRange(m_range.xMin, m_range.yMin, m_range.xMax, m_range.yMax);
    const double ratio = finenessOf(*p);
    const std::array<double, 11> now = {coord.frameX0(),
                                        coord.frameX1(),
                                        coord.frameY0(),
                                        coord.frameY1(),
                                        coord.xMin(),
                                        coord.xMax(),
                                        coord.yMin(),
                                        coord.yMax(),
                                        ratio,
                                        parts.alone ? 1.0 : 0.0,
                                        static_cast<double>(parts.revision)};
    const QSize size = dab.area()->size();
    if (isNew || now != m_picturedAt || m_picture.size() != size * ratio) {
        clearPicture(size, ratio);
        if (!parts.alone) {
            rasterise(coord, x, y, n, colour.rgb());
        }
        for (const ScatterPart &part : parts.list) {
            for (const PixelSpan &span : part.pixels) {
                const auto first = static_cast<std::size_t>(
                    static_cast<qint64>(span.row) * parts.width + span.begin);
                const auto length = static_cast<std::size_t>(span.end - span.begin);
                if (first + length <= n) {
                    rasterise(coord, x + first, y + first, length, part.colour.rgb());
                }
            }
        }
        m_picturedAt = now;
    }
    p->drawImage(0, 0, m_picture);
    dab.drawFrame(p, true);
}

} // namespace orvel
