#include "display/CurvePainter.h"

#include "display/ChCoord.h"

#include <QPaintDevice>
#include <QPainter>
#include <QPen>
#include <QPolygonF>

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

/// The part of a segment inside a rectangle (Liang and Barsky, ACM Trans. Graph. 3 (1984) 1):
/// drawing to points far outside would overflow the rasteriser's fixed-point numbers.
bool clip(const QRectF &box, QPointF &a, QPointF &b)
{
    const QPointF d = b - a;
    double enter = 0.0;
    double leave = 1.0;
    const double steps[] = {-d.x(), d.x(), -d.y(), d.y()};
    const double distances[] = {a.x() - box.left(), box.right() - a.x(), a.y() - box.top(),
                                box.bottom() - a.y()};
    for (int side = 0; side < 4; ++side) {
        if (steps[side] == 0.0) {
            if (distances[side] < 0.0) {
                return false;
            }
            continue;
        }
        const double at = distances[side] / steps[side];
        if (steps[side] < 0.0) {
            enter = std::max(enter, at);
        } else {
            leave = std::min(leave, at);
        }
    }
    if (!(enter <= leave)) {
        return false;
    }
    b = a + leave * d;
    a += enter * d;
    return true;
}

/// Collects the visible part of a line as strips.
///
/// Lines of up to one device pixel are rasterised directly; for wider ones an outline is built and
/// filled, at a hundred times the cost. So where a pixel is up to two device pixels the line is
/// drawn as three thin ones, at the corners of a triangle: together they are as wide as one pixel
/// in every direction.
class Strips {
public:
    Strips(QPainter &painter, const QRectF &box) : m_painter(painter), m_box(box)
    {
        const double ratio = painter.device()->devicePixelRatioF();
        m_isDouble = ratio > 1.0 && ratio <= 2.0;
        if (m_isDouble) {
            m_offset = (ratio - 1.0) / 2.0 / ratio;
            QPen pen = painter.pen();
            pen.setWidthF(1.0 / ratio);
            painter.setPen(pen);
        }
    }

    void to(const QPointF &point)
    {
        if (m_hasLast) {
            QPointF a = m_last;
            QPointF b = point;
            if (!clip(m_box, a, b)) {
                flush();
            } else {
                if (m_strip.isEmpty() || m_strip.last() != a) {
                    flush();
                    m_strip.append(a);
                }
                m_strip.append(b);
            }
        }
        m_last = point;
        m_hasLast = true;
    }
    void part()
    {
        flush();
        m_hasLast = false;
    }

private:
    void flush()
    {
        if (!m_strip.isEmpty() && m_isDouble) {
            for (const QPointF &offset : {QPointF(-m_offset, -m_offset),
                                          QPointF(m_offset, -m_offset), QPointF(0.0, m_offset)}) {
                m_painter.drawPolyline(m_strip.translated(offset));
            }
        } else if (!m_strip.isEmpty()) {
            m_painter.drawPolyline(m_strip);
        }
        m_strip.clear();
    }

    QPainter &m_painter;
    QRectF m_box;
    bool m_isDouble; ///< drawn by thin lines side by side
    double m_offset = 0.0;
    QPolygonF m_strip;
    QPointF m_last;
    bool m_hasLast = false;
};

/// The points of one pixel column, reduced to what shows.
class PixelColumn {
public:
    explicit PixelColumn(Strips &strips) : m_strips(strips) {}

    void add(double column, const QPointF &point)
    {
        if (m_count > 0 && column != m_column) {
            flush();
        }
        m_column = column;
        if (m_count == 0) {
            m_first = m_least = m_greatest = point;
            m_leastAt = m_greatestAt = 0;
        }
        if (point.y() < m_least.y()) {
            m_least = point;
            m_leastAt = m_count;
        }
        if (point.y() > m_greatest.y()) {
            m_greatest = point;
            m_greatestAt = m_count;
        }
        m_last = point;
        ++m_count;
    }

    void flush()
    {
        if (m_count == 0) {
            return;
        }
        m_strips.to(m_first);
        const bool leastFirst = m_leastAt < m_greatestAt;
        const int last = m_count - 1;
        for (const bool least : {leastFirst, !leastFirst}) {
            const int at = least ? m_leastAt : m_greatestAt;
            if (at != 0 && at != last) {
                m_strips.to(least ? m_least : m_greatest);
            }
        }
        if (last > 0) {
            m_strips.to(m_last);
        }
        m_count = 0;
    }

private:
    Strips &m_strips;
    double m_column = 0.0;
    int m_count = 0;
    int m_leastAt = 0;
    int m_greatestAt = 0;
    QPointF m_first;
    QPointF m_least;
    QPointF m_greatest;
    QPointF m_last;
};

} // namespace

void drawCurve(QPainter &painter, const ChCoord &coord, const double *x, const double *y,
               std::size_t n, const QColor &colour)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, 1.0));
    const QRectF frame =
        QRectF(QPointF(coord.frameX0(), coord.frameY1()), QPointF(coord.frameX1(), coord.frameY0()))
            .normalized();
    painter.setClipRect(frame);
    constexpr double kFar = 1e12;   // differences of points stay finite and exact to a pixel
    constexpr double kBeside = 4.0; // so that clipped ends stay out of sight
    Strips strips(painter, frame.adjusted(-kBeside, -kBeside, kBeside, kBeside));
    PixelColumn column(strips);
    const double columnsPerPixel = painter.device()->devicePixelRatioF();
    for (std::size_t i = 0; i < n; ++i) {
        const double sx = coord.sx(x[i]);
        const double sy = coord.sy(y[i]);
        if (std::isfinite(sx) && std::isfinite(sy)) {
            const QPointF point(std::clamp(sx, -kFar, kFar), std::clamp(sy, -kFar, kFar));
            column.add(std::floor(point.x() * columnsPerPixel), point);
        } else {
            column.flush();
            strips.part();
        }
    }
    column.flush();
    strips.part();
    painter.restore();
}

} // namespace orvel
