#include "display/PlotFrame.h"

#include "display/ChCoord.h"
#include "display/DrawText.h"
#include "display/Letters.h"

#include <QFontMetricsF>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

constexpr double kLargestPoints = 12.0;
constexpr double kSmallestPoints = 5.5; ///< less is a smear: such a title is left out

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

/// Boxes of the texts around a frame; that of the y title as it stands on the screen.
struct TextPlaces {
    QRectF yMax;
    QRectF yMin;
    QRectF xMin;
    QRectF xMax;
    QRectF xTitle;
    QRectF yTitle;
    double largestPoints;
};

TextPlaces usualPlaces(const ChCoord &coord)
{
    const double margin = std::trunc((coord.areaX1() - coord.areaX0()) * coord.leftMargin());
    const QSizeF atLeft(0.95 * margin, labelHeight(coord));
    const QSizeF below(2 * margin, labelHeight(coord));
    const double y = belowFrame(coord);
    const double row = coord.labelFill() * std::fabs(rowHeight(coord));
    return {{{0.0, coord.frameY1()}, atLeft},
            {{0.0, coord.frameY0()}, atLeft},
            {{coord.frameX0(), y}, below},
            {{coord.frameX1() - below.width(), y}, below},
            {QPointF(coord.frameX0(), y),
             QSizeF(coord.frameX1() - coord.frameX0(), labelHeight(coord))},
            {row, 0.0, row, std::fabs(coord.areaY0() - coord.areaY1())},
            kLargestPoints * letterScale()};
}

/// On a small surface rows of the usual kind are a few pixels high and the titles run into the
/// numbers. One size for all texts there, the numbers no wider than they are, the lower one of the
/// y axis beside the frame instead of below it, and the titles between the numbers.
TextPlaces smallPlaces(const ChCoord &coord, const QFont &base)
{
    const double points = 7.5 * letterScale();
    constexpr double kBeside = 3.0; // pixels
    QFont font = base;
    font.setPointSizeF(points);
    const QFontMetricsF metrics(font);
    const double height = std::ceil(metrics.height());
    const auto widthOf = [&](double value) {
        return std::ceil(metrics.horizontalAdvance(endValue(value, 6))) + 1.0;
    };
    const double left = 0.95 * (coord.frameX0() - coord.areaX0());
    const double y = coord.frameY0() + 1.0;
    const double below = coord.areaY0() - y;
    const double from = widthOf(coord.xMin());
    const double to = widthOf(coord.xMax());
    TextPlaces places;
    places.largestPoints = points;
    places.yMax = {0.0, std::max(0.0, coord.frameY1() - kBeside), left, height};
    places.yMin = {0.0, coord.frameY0() + 1.0 - height, left, height};
    // The lower number keeps to the left of the frame, or a title of some letters had no room.
    places.xMin = {std::max(0.0, coord.frameX0() - from - kBeside), y, from, below};
    places.xMax = {std::min(coord.areaX1(), coord.frameX1() + to / 2) - to, y, to, below};
    const double titleLeft = places.xMin.right() + kBeside;
    places.xTitle = {titleLeft, y, places.xMax.left() - kBeside - titleLeft, below};
    const double titleTop = places.yMax.bottom() + 1.0;
    places.yTitle = {1.0, titleTop, 1.3 * height, places.yMin.top() - 1.0 - titleTop};
    return places;
}

TextPlaces placesOf(const ChCoord &coord, const QFont &font)
{
    return isSmallPlot(coord) ? smallPlaces(coord, font) : usualPlaces(coord);
}

} // namespace

bool isSmallPlot(const ChCoord &coord)
{
    constexpr double kWidth = 300.0;
    constexpr double kHeight = 170.0;
    const double scale = letterPixelScale();
    return std::fabs(coord.areaX1() - coord.areaX0()) < kWidth * scale ||
           std::fabs(coord.areaY1() - coord.areaY0()) < kHeight * scale;
}

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
    const TextPlaces places = placesOf(coord, painter.font());
    const auto number = [&](const QRectF &box, int flags, double value, int characters) {
        DrawText::drawFittedText(&painter, box, painter.font(), flags, DrawText::Fit,
                                 endValue(value, characters), places.largestPoints);
    };
    number(places.yMax, DrawText::kRight, coord.yMax(), 5);
    number(places.yMin, DrawText::kRight, coord.yMin(), 5);
    number(places.xMin, DrawText::kLeft, coord.xMin(), 6);
    number(places.xMax, DrawText::kRight, coord.xMax(), 6);
}

void drawAxisTitles(QPainter &painter, const ChCoord &coord, const QString &xTitle,
                    const QString &yTitle)
{
    painter.setPen(Qt::black);
    const TextPlaces places = placesOf(coord, painter.font());
    QFont smallest = painter.font();
    smallest.setPointSizeF(kSmallestPoints);
    const bool isSmall = isSmallPlot(coord);
    const auto hasRoom = [&](const QRectF &box, const QString &text) {
        return !isSmall || (box.height() > 0.0 &&
                            QFontMetricsF(smallest).horizontalAdvance(text) <= box.width());
    };
    const auto title = [&](const QRectF &box, const QString &text) {
        if (!text.isEmpty() && hasRoom(box, text)) {
            DrawText::drawFittedText(&painter, box, painter.font(), DrawText::kCentre,
                                     DrawText::Fit, text, places.largestPoints);
        }
    };
    title(places.xTitle, xTitle);
    // Turned left by a right angle, x runs up the screen and y to the right.
    const QRectF &box = places.yTitle;
    painter.rotate(270);
    title(QRectF(-box.bottom(), box.left(), box.height(), box.width()), yTitle);
    painter.rotate(-270);
}

} // namespace orvel
