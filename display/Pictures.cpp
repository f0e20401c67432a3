#include "display/Pictures.h"

#include "display/ChCoord.h"
#include "display/PlotFrame.h"

#include <QGuiApplication>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <vector>

namespace orvel {
namespace {

constexpr int kMargin = 24;
constexpr int kTitleHeight = 34;
constexpr int kTitlePixels = 20;
constexpr int kNoteHeight = 30;
constexpr int kNotePixels = 13;
const QColor kNoteColour(90, 90, 90);
const QColor kFrameColour(150, 150, 150);
/// On none of the palettes' ways from black to white.
constexpr QRgb kNoValue = qRgb(170, 170, 170);

/// A white picture of 96 dots per inch, wherever it is made: the size of points depends on it.
QImage whitePicture(const QSize &size)
{
    QImage image(size, QImage::Format_RGB32);
    constexpr int kDotsPerMeter = 3780;
    image.setDotsPerMeterX(kDotsPerMeter);
    image.setDotsPerMeterY(kDotsPerMeter);
    image.fill(Qt::white);
    return image;
}

QFont fontOf(int pixels)
{
    QFont font = QGuiApplication::font();
    font.setPixelSize(pixels);
    return font;
}

void drawTitle(QPainter &painter, int left, int width, const QString &title)
{
    painter.setFont(fontOf(kTitlePixels));
    painter.setPen(Qt::black);
    painter.drawText(QRect(left, kMargin / 2, width, kTitleHeight),
                     Qt::AlignLeft | Qt::AlignVCenter, title);
}

void drawNote(QPainter &painter, int left, int top, int width, const QString &note)
{
    painter.setFont(fontOf(kNotePixels));
    painter.setPen(kNoteColour);
    painter.drawText(QRect(left, top, width, kNoteHeight), Qt::AlignLeft | Qt::AlignVCenter, note);
}

// --- maps --------------------------------------------------------------------------------------

constexpr int kLongestSide = 1000;
constexpr int kLargestPixel = 100; ///< a map of few pixels stays small
constexpr int kBarGap = 20;
constexpr int kBarWidth = 22;
constexpr int kLabelGap = 8;
constexpr int kLabelWidth = kBarLabels - kLabelGap;
constexpr int kShortestBar = 120;
constexpr int kShortestNote = 360; ///< room for the texts beside a narrow map

QSize shownSize(int width, int height)
{
    const int longer = std::max(width, height);
    double scale = static_cast<double>(kLongestSide) / longer;
    if (scale >= 1.0) {
        scale = std::min<double>(std::floor(scale), kLargestPixel);
    }
    const auto side = [scale](int pixels) {
        return std::max(1, static_cast<int>(std::lround(pixels * scale)));
    };
    return QSize(side(width), side(height));
}

/// Paints pixels without a finite value over; returns their number.
qint64 paintNoValues(QPainter &painter, const ChCoord &coord, const MapValues &map)
{
    qint64 found = 0;
    for (int j = 0; j < map.height; ++j) {
        const auto top = static_cast<int>(coord.sy(j + 1));
        const int height = static_cast<int>(coord.sy(j)) - top;
        for (int i = 0; i < map.width; ++i) {
            if (std::isfinite(map.at(static_cast<qint64>(j) * map.width + i))) {
                continue;
            }
            ++found;
            const auto left = static_cast<int>(coord.sx(i));
            const int width = static_cast<int>(coord.sx(i + 1)) - left;
            if (width > 0 && height > 0) {
                painter.fillRect(left, top, width, height, QColor(kNoValue));
            }
        }
    }
    return found;
}

/// The largest of 1, 2, 5 times a power of ten of which at least `fewest` fit into the range.
double roundStep(double range, int fewest)
{
    const double most = range / fewest;
    const double decade = std::pow(10.0, std::floor(std::log10(most)));
    return decade * (most >= 5.0 * decade ? 5.0 : most >= 2.0 * decade ? 2.0 : 1.0);
}

// --- histograms --------------------------------------------------------------------------------

constexpr QSize kHistogramSize(800, 560);
const QColor kBarColour(60, 100, 190);

} // namespace

void drawLabelledBar(QPainter &painter, const QRect &box, const ColourScale &scale)
{
    ChCoord coord;
    coord.setArea(0.0, box.height(), box.width(), 0.0);
    painter.save();
    painter.translate(box.topLeft());
    painter.setClipRect(0, 0, box.width(), box.height()); // entries have at least a row each
    drawColourBar(painter, coord, scale);
    painter.setClipping(false);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(kFrameColour);
    painter.drawRect(0, 0, box.width() - 1, box.height() - 1);

    painter.setFont(fontOf(kNotePixels));
    const double zMin = scale.zMin();
    const double range = scale.zMax() - zMin;
    const int row = painter.fontMetrics().height();
    constexpr int kTick = 4;
    const auto label = [&](double y, double value) {
        painter.setPen(kFrameColour);
        painter.drawLine(box.width(), static_cast<int>(y), box.width() + kTick - 1,
                         static_cast<int>(y));
        painter.setPen(Qt::black);
        painter.drawText(QRectF(box.width() + kLabelGap, y - row / 2.0, kLabelWidth, row),
                         Qt::AlignLeft | Qt::AlignVCenter, QString::number(value, 'g', 6));
    };
    const int bottom = box.height() - 1;
    label(0.0, scale.zMax());
    label(bottom, zMin);
    if (range > 0.0 && std::isfinite(range)) {
        constexpr int kFewestSteps = 4;
        const double step = roundStep(range, kFewestSteps);
        const double first = std::ceil(zMin / step);
        constexpr int kMostSteps = 12;
        for (int i = 0; i < kMostSteps && (first + i) * step < scale.zMax(); ++i) {
            const double value = (first + i) * step; // a multiple: no sum of roundings
            const double y = bottom - (value - zMin) / range * bottom;
            if (y > 1.5 * row && y < bottom - 1.5 * row) {
                label(y, value);
            }
        }
    }
    painter.restore();
}

void drawMapAxes(QPainter &painter, const ChCoord &coord)
{
    constexpr int kTick = 4;
    constexpr int kFewestSteps = 2;
    const auto width = static_cast<int>(coord.areaX1());
    const auto height = static_cast<int>(coord.areaY0());
    painter.save();
    painter.setFont(fontOf(kNotePixels));
    const int row = painter.fontMetrics().height();

    /// The multiples of a round step in a range, of whole pixels.
    const auto positions = [](double from, double to) {
        std::vector<double> found;
        const double range = to - from;
        if (range > 0.0 && std::isfinite(range)) {
            const double step = std::max(1.0, roundStep(range, kFewestSteps));
            const double first = std::ceil(from / step);
            constexpr int kMost = 12; // of values so large that they do not grow
            for (int i = 0; i < kMost && (first + i) * step <= to; ++i) {
                found.push_back((first + i) * step);
            }
        }
        return found;
    };
    const auto label = [&painter](int x0, int y0, int x1, int y1, const QRectF &box, int alignment,
                                  double value) {
        painter.setPen(kFrameColour);
        painter.drawLine(x0, y0, x1, y1);
        painter.setPen(Qt::black);
        painter.drawText(box, alignment, QString::number(value, 'g', 6));
    };
    constexpr int kHalfLabel = 30;
    for (const double value : positions(coord.xMin(), coord.xMax())) {
        const auto x = static_cast<int>(coord.sx(value));
        label(x, height, x, height + kTick,
              QRectF(x - kHalfLabel, height + kTick, 2 * kHalfLabel, row),
              Qt::AlignHCenter | Qt::AlignTop, value);
    }
    const int numbers = kAxisLeft - row - kLabelGap;
    for (const double value : positions(coord.yMin(), coord.yMax())) {
        const auto y = static_cast<int>(coord.sy(value));
        label(-kTick, y, 0, y, QRectF(-kLabelGap - numbers, y - row / 2.0, numbers, row),
              Qt::AlignRight | Qt::AlignVCenter, value);
    }
    painter.drawText(QRectF(0, height + kAxisBottom - row, width, row), Qt::AlignCenter,
                     QStringLiteral("x [pixel]"));
    painter.translate(-kAxisLeft, height);
    painter.rotate(-90.0);
    painter.drawText(QRectF(0, 0, height, row), Qt::AlignCenter, QStringLiteral("y [pixel]"));
    painter.restore();
}

QImage renderMap(const MapPicture &picture)
{
    const MapValues &map = picture.map;
    const QSize size = map.isEmpty() ? QSize(0, 0) : shownSize(map.width, map.height);
    const int bodyHeight = std::max(size.height(), kShortestBar);
    const QRect mapBox(QPoint(kMargin, kMargin + kTitleHeight + (bodyHeight - size.height()) / 2),
                       size);
    const QRect barBox(mapBox.right() + 1 + kBarGap, kMargin + kTitleHeight, kBarWidth, bodyHeight);
    const int right = std::max(barBox.right() + 1 + kLabelGap + kLabelWidth, kShortestNote);
    const int noteTop = barBox.bottom() + 1 + kMargin / 4;
    QImage image = whitePicture(QSize(right, noteTop + kNoteHeight + kMargin / 4));
    if (image.isNull()) {
        return image;
    }

    QPainter painter(&image);
    const int textWidth = right - 2 * kMargin;
    drawTitle(painter, kMargin, textWidth, picture.title);
    QString note = QStringLiteral("%1 \u00d7 %2 pixels").arg(map.width).arg(map.height);
    if (!map.isEmpty()) {
        ChCoord coord;
        coord.setArea(0.0, size.height(), size.width(), 0.0);
        coord.setRange(0.0, 0.0, map.width, map.height);
        painter.save();
        painter.translate(mapBox.topLeft());
        MapPainter().paint(painter, coord, map, picture.scale, false);
        const qint64 noValues = paintNoValues(painter, coord, map);
        painter.setPen(kFrameColour);
        painter.drawRect(-1, -1, size.width() + 1, size.height() + 1);
        painter.restore();
        if (noValues > 0) {
            note += QStringLiteral(", grey: %1 without a finite value").arg(noValues);
        }
    }
    drawLabelledBar(painter, barBox, picture.scale);
    drawNote(painter, kMargin, noteTop, textWidth, note);
    return image;
}

QImage renderHistogram(const HistogramPicture &picture)
{
    QImage image = whitePicture(kHistogramSize);
    if (image.isNull()) {
        return image;
    }
    QPainter painter(&image);
    const int width = kHistogramSize.width();
    const int plotTop = kMargin / 2 + kTitleHeight;
    const int noteTop = kHistogramSize.height() - kNoteHeight - kMargin / 4;

    ChCoord coord;
    coord.setArea(0.0, noteTop - plotTop, width, 0.0);
    coord.setFrameByMargins();
    painter.save();
    painter.translate(0, plotTop);
    painter.setFont(fontOf(kNotePixels));
    if (const auto range = histogramRange(picture.low, picture.high, {picture.largest})) {
        coord.setRange(range->xMin, range->yMin, range->xMax, range->yMax);
        drawHistogramGrid(painter, coord, picture.low, picture.high);
        drawHistogramBars(painter, coord, picture.bars, kBarColour);
        drawPlotFrame(painter, coord, false);
        drawAxisTitles(painter, coord, picture.xTitle, picture.yTitle);
    }
    painter.restore();

    const int left = static_cast<int>(coord.frameX0());
    drawTitle(painter, left, width - left - kMargin, picture.title);
    if (picture.underflow > 0 || picture.overflow > 0) {
        drawNote(painter, left, noteTop, width - left - kMargin,
                 QStringLiteral("below or without a finite value: %1, above: %2")
                     .arg(picture.underflow)
                     .arg(picture.overflow));
    }
    return image;
}

} // namespace orvel
