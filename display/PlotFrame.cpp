#include "display/PlotFrame.h"

#include "display/ChCoord.h"
#include "display/DrawText.h"

#include <QPainter>

#include <cmath>

namespace orvel {
namespace {

constexpr double kLargestPoints = 12.0;

double rowHeight(const ChCoord &coord) // negative: upwards on the screen
{
    return std::trunc((coord.frameY1() - coord.frameY0()) / coord.labelRows());
}

double labelHeight(const ChCoord &coord)
{
    return std::trunc(-rowHeight(coord) * coord.labelFill());
}

double belowFrame(const ChCoord &coord)
{
    return coord.frameY0() - std::trunc((1 - coord.labelFill()) * rowHeight(coord));
}

QString endValue(double value, int characters)
{
    return QString::number(value, 'g', 6).left(characters);
}

void fitted(QPainter &painter, const QRectF &box, int flags, const QString &text)
{
    DrawText::drawFittedText(&painter, box, painter.font(), flags, DrawText::Fit, text,
                             kLargestPoints);
}

} // namespace

void drawPlotFrame(QPainter &painter, const ChCoord &coord, bool clearMargins)
{
    const QRectF frame(QPointF(coord.frameX0(), coord.frameY1()),
                       QPointF(coord.frameX1(), coord.frameY0()));
    if (clearMargins) {
        const QRectF area(QPointF(coord.areaX0(), coord.areaY1()),
                          QPointF(coord.areaX1(), coord.areaY0()));
        const QRectF bands[] = {
            QRectF(area.topLeft(), QPointF(frame.left(), area.bottom())),
            QRectF(QPointF(frame.right(), area.top()), area.bottomRight()),
            QRectF(area.topLeft(), QPointF(area.right(), frame.top())),
            QRectF(QPointF(area.left(), frame.bottom()), area.bottomRight()),
        };
        for (const QRectF &band : bands) {
            painter.fillRect(band, Qt::white);
        }
    }
    painter.setPen(QColor(150, 150, 150));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(frame);

    painter.setPen(Qt::black);
    const double margin = std::trunc((coord.areaX1() - coord.areaX0()) * coord.leftMargin());
    const QSizeF atLeft(0.95 * margin, labelHeight(coord));
    fitted(painter, {{0.0, coord.frameY1()}, atLeft}, DrawText::kRight, endValue(coord.yMax(), 5));
    fitted(painter, {{0.0, coord.frameY0()}, atLeft}, DrawText::kRight, endValue(coord.yMin(), 5));
    const QSizeF below(2 * margin, labelHeight(coord));
    const double y = belowFrame(coord);
    fitted(painter, {{coord.frameX0(), y}, below}, DrawText::kLeft, endValue(coord.xMin(), 6));
    fitted(painter, {{coord.frameX1() - below.width(), y}, below}, DrawText::kRight,
           endValue(coord.xMax(), 6));
}

void drawAxisTitles(QPainter &painter, const ChCoord &coord, const QString &xTitle,
                    const QString &yTitle)
{
    painter.setPen(Qt::black);
    if (!xTitle.isEmpty()) {
        const QRectF box(QPointF(coord.frameX0(), belowFrame(coord)),
                         QSizeF(coord.frameX1() - coord.frameX0(), labelHeight(coord)));
        fitted(painter, box, DrawText::kCentre, xTitle);
    }
    if (!yTitle.isEmpty()) {
        // Turned left by a right angle, x runs up the screen and y to the right.
        const double height = std::fabs(coord.areaY0() - coord.areaY1());
        const double row = coord.labelFill() * std::fabs(rowHeight(coord));
        painter.rotate(270);
        fitted(painter, QRectF(-height, row, height, row), DrawText::kCentre, yTitle);
        painter.rotate(-270);
    }
}

} // namespace orvel
