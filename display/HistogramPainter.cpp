#include "display/HistogramPainter.h"

#include "display/ChCoord.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orvel {

std::optional<PlotRange> histogramRange(double low, double high,
                                        const std::vector<std::int32_t> &largest)
{
    constexpr double kEmpty = 1e300;
    PlotRange range = {low, kEmpty, high, -kEmpty};
    for (const std::int32_t count : largest) {
        range.yMin = std::min(range.yMin, -0.1 * count);
        range.yMax = std::max(range.yMax, 1.1 * count);
    }
    if (range.yMin > kEmpty / 2 || range.yMax < -kEmpty / 2) {
        return std::nullopt;
    }
    return range;
}

void drawHistogramGrid(QPainter &painter, const ChCoord &coord, double low, double high)
{
    constexpr double kBaseStep = 0.1;
    constexpr int kFewestPixels = 20;
    const double step = coord.xTickStep(kBaseStep, kFewestPixels);
    const double first = std::ceil(low);
    const double beyond = std::floor(high);
    // Only the lines inside the frame, or a deep zoom would leave none.
    const double left = std::min(coord.xMin(), coord.xMax());
    const double right = std::max(coord.xMin(), coord.xMax());
    const double from = std::max(0.0, std::ceil((left - first) / step));
    const double to =
        std::min(std::ceil((beyond - first) / step), std::floor((right - first) / step) + 1.0);
    if (!(to - from < std::fabs(coord.frameX1() - coord.frameX0()))) {
        return;
    }
    painter.setPen(QColor(200, 200, 255));
    const int count = static_cast<int>(std::max(0.0, to - from));
    for (int i = 0; i < count; ++i) {
        const double x = coord.sx(first + (from + i) * step);
        painter.drawLine(QPointF(x, coord.frameY0()), QPointF(x, coord.frameY1()));
    }
}

namespace {

/// Boxes as they are drawn: those that share a pixel column are one, with the highest count.
struct DrawnBox {
    double x0;
    double x1;
    std::int32_t count;
};

std::vector<DrawnBox> drawnBoxes(const ChCoord &coord, const HistogramBars &bars)
{
    std::vector<DrawnBox> boxes;
    const double left = std::min(coord.frameX0(), coord.frameX1());
    const double right = std::max(coord.frameX0(), coord.frameX1());
    const auto edge = [&](std::size_t i) {
        return coord.sx(bars.from + static_cast<double>(i) * bars.step);
    };
    if (!std::isfinite(coord.sy(0.0)) || !std::isfinite(edge(0)) ||
        !std::isfinite(edge(bars.counts.size()))) {
        return boxes;
    }
    for (std::size_t i = 0; i < bars.counts.size();) {
        const double from = edge(i);
        double to = edge(i + 1);
        std::int32_t count = bars.counts[i];
        ++i;
        while (i < bars.counts.size() && std::fabs(to - from) < 1.0) {
            count = std::max(count, bars.counts[i]);
            ++i;
            to = edge(i);
        }
        const double x0 = std::max(left, std::floor(std::min(from, to)));
        const double x1 = std::min(right, std::floor(std::max(from, to)));
        if (x1 >= x0) {
            boxes.push_back({x0, x1, count});
        }
    }
    return boxes;
}

/// Screen line of a count, within the frame.
double heightOf(const ChCoord &coord, double count)
{
    const double top = std::min(coord.frameY0(), coord.frameY1());
    const double bottom = std::max(coord.frameY0(), coord.frameY1());
    return std::clamp(std::floor(coord.sy(count)), top, bottom);
}

} // namespace

void drawHistogramBars(QPainter &painter, const ChCoord &coord, const HistogramBars &bars,
                       const QColor &colour)
{
    const QColor fill = colour.lighter(160);
    // All with an outline or none: rounded to pixels, equal bars differ in width.
    const bool isOutlined = std::fabs(coord.sdx(bars.step)) >= 4.0;
    for (const DrawnBox &box : drawnBoxes(coord, bars)) {
        if (box.count <= 0) {
            continue;
        }
        const double y0 = heightOf(coord, box.count);
        const double y1 = heightOf(coord, 0.0);
        const QRectF bar(QPointF(box.x0, std::min(y0, y1)),
                         QPointF(std::max(box.x1, box.x0 + 1.0), std::max(y0, y1)));
        painter.fillRect(bar, fill);
        if (isOutlined) {
            painter.setPen(colour);
            painter.setBrush(Qt::NoBrush);
            painter.drawRect(bar);
        }
    }
}

void drawHistogramSteps(QPainter &painter, const ChCoord &coord, const HistogramBars &bars,
                        const QColor &colour)
{
    constexpr double kWidth = 2.0;
    painter.setPen(QPen(colour, kWidth));
    painter.setBrush(Qt::NoBrush);
    const double zero = heightOf(coord, 0.0);
    QPolygonF line;
    const auto drawRun = [&] {
        if (!line.isEmpty()) {
            line.prepend(QPointF(line.first().x(), zero));
            line.append(QPointF(line.last().x(), zero));
            painter.drawPolyline(line);
            line.clear();
        }
    };
    for (const DrawnBox &box : drawnBoxes(coord, bars)) {
        if (box.count <= 0) {
            drawRun();
            continue;
        }
        const double y = heightOf(coord, box.count);
        line << QPointF(box.x0, y) << QPointF(box.x1, y);
    }
    drawRun();
}

} // namespace orvel
