#include "display/RegionPainter.h"

#include "display/ChCoord.h"
#include "display/Letters.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

void drawMark(QPainter &painter, const QPointF &at, const QColor &colour)
{
    constexpr double kHalf = 3.0; // pixels
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(Qt::white);
    const QRectF square(at.x() - kHalf, at.y() - kHalf, 2 * kHalf, 2 * kHalf);
    painter.drawRect(square);
    painter.fillRect(square.adjusted(1.5, 1.5, -1.0, -1.0), colour);
}

/// Beside the corner, and on the surface as long as the corner is.
void drawLabel(QPainter &painter, const ChCoord &coord, const QPointF &corner,
               const OutlinedShape &shape)
{
    QFont font = painter.font();
    font.setPixelSize(qRound(12 * letterPixelScale()));
    font.setBold(true);
    painter.setFont(font);
    constexpr double kBeside = 3.0;
    const double width = painter.fontMetrics().horizontalAdvance(shape.label) + 6.0;
    const double right = std::max(coord.areaX0(), coord.areaX1());
    const double left = std::min(corner.x() + kBeside, right - width - kBeside);
    const QRectF box(left, corner.y() + kBeside, width, 15.0);
    painter.fillRect(box, Qt::white);
    painter.setPen(QPen(Qt::black, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(box);
    painter.setPen(shape.colour.darker(130));
    painter.drawText(box, Qt::AlignCenter, shape.label);
}

} // namespace

void drawOutline(QPainter &painter, const ChCoord &coord, const OutlinedShape &shape)
{
    QPolygonF outline;
    for (const QPointF &corner : shape.corners) {
        const QPointF at(coord.sx(corner.x()), coord.sy(corner.y()));
        // Deep in a zoom corners lie far beyond what a painter's numbers hold.
        constexpr double kFar = 1e6;
        if (!std::isfinite(at.x()) || !std::isfinite(at.y())) {
            return;
        }
        outline.append(QPointF(std::clamp(at.x(), -kFar, kFar), std::clamp(at.y(), -kFar, kFar)));
    }
    if (outline.isEmpty()) {
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const struct {
        QColor colour;
        double width;
    } lines[] = {{Qt::black, 6.0}, {Qt::white, 4.0}, {shape.colour, 2.0}};
    for (const auto &line : lines) {
        QPen pen(line.colour, line.width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin);
        if (shape.isOpen && line.colour == shape.colour) {
            pen.setDashPattern({4.0, 3.0});
        }
        painter.setPen(pen);
        shape.isOpen ? painter.drawPolyline(outline) : painter.drawPolygon(outline);
    }
    if (shape.isSelected || shape.isOpen) {
        for (const QPointF &corner : outline) {
            drawMark(painter, corner, shape.colour);
        }
    }
    if (!shape.label.isEmpty()) {
        const QPointF top = *std::min_element(
            outline.begin(), outline.end(), [](const QPointF &a, const QPointF &b) {
                return a.y() != b.y() ? a.y() < b.y() : a.x() < b.x();
            });
        drawLabel(painter, coord, top, shape);
    }
    painter.restore();
}

} // namespace orvel
