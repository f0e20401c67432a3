#include "panel/plots/PixelPlot.h"

#include "panel/plots/Span.h"

#include "display/ChCoord.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPolygonF>

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel {
namespace {

using Colours = PixelPlotColours;

constexpr double kDotRadius = 4.0;
constexpr double kCap = 3.5; ///< half the width of an error bar's ends
constexpr double kGap = 6.0; ///< between texts and what they belong to
constexpr double kTick = 4.0;
const QColor kFrameColour(150, 150, 150);
const QColor kGridColour(236, 236, 236);

/// The same with a margin; something around a single value, 0 to 1 around nothing.
Span withMargin(const Span &span, double part)
{
    if (span.isEmpty()) {
        return {0.0, 1.0};
    }
    const double beside =
        span.high > span.low ? part * (span.high - span.low) : 0.05 * std::fabs(span.low) + 0.5;
    return {span.low - beside, span.high + beside};
}

QRectF frameOf(const ChCoord &coord)
{
    return QRectF(QPointF(coord.frameX0(), coord.frameY1()),
                  QPointF(coord.frameX1(), coord.frameY0()));
}

/// The least of 1, 2, 5 times a power of ten that is at least `least`.
double roundStep(double least)
{
    const double decade = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (factor * decade >= least) {
            return factor * decade;
        }
    }
    return 10.0 * decade;
}

/// Multiples of a step, none where the range is no range.
struct Ticks {
    Ticks(double low, double high, double pixels, double pixelsEach)
    {
        const double range = high - low;
        if (!(range > 0.0) || !std::isfinite(range) || !(pixels > 0.0)) {
            return;
        }
        step = roundStep(range * pixelsEach / pixels);
        constexpr int kMost = 100;
        const double first = std::ceil(low / step);
        for (int i = 0; i < kMost && (first + i) * step <= high; ++i) {
            values.push_back((first + i) * step + 0.0); // never minus zero
        }
    }

    QString text(double value) const
    {
        constexpr double kSmall = 1e-4;
        constexpr double kLarge = 1e6;
        if (step < kSmall || step >= kLarge) {
            return value == 0.0 ? QStringLiteral("0") : QString::number(value, 'g', 3);
        }
        // Half a step lower a logarithm that should be whole might round the other way.
        const int decimals = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
        return QString::number(value, 'f', decimals);
    }

    double step = 1.0;
    std::vector<double> values;
};

Ticks xTicks(const ChCoord &coord, const QFontMetricsF &metrics)
{
    const double width = metrics.horizontalAdvance(QStringLiteral("00000")) * 1.7;
    return Ticks(coord.xMin(), coord.xMax(), coord.frameX1() - coord.frameX0(), width);
}

Ticks yTicks(const ChCoord &coord, const QFontMetricsF &metrics)
{
    return Ticks(coord.yMin(), coord.yMax(), coord.frameY0() - coord.frameY1(),
                 metrics.height() * 1.5);
}

double widestLabel(const ChCoord &coord, const QFontMetricsF &metrics)
{
    const Ticks ticks = yTicks(coord, metrics);
    double widest = 0.0;
    for (const double value : ticks.values) {
        widest = std::max(widest, metrics.horizontalAdvance(ticks.text(value)));
    }
    return widest;
}

/// Of curves and points; no dot is cut by the frame.
Span energiesOf(const PixelReport &report)
{
    Span points;
    for (const PixelReport::Point &point : report.points) {
        points.add(point.energyEv);
    }
    constexpr double kBeside = 0.03;
    Span span = withMargin(points, kBeside);
    for (const double energy : report.energiesEv) {
        span.add(energy);
    }
    return span;
}

Span absorptionsOf(const PixelReport &report)
{
    Span span;
    for (size_t i = 0; i < report.energiesEv.size(); ++i) {
        span.add(report.fit[i]);
        span.add(report.background[i]);
    }
    for (const PixelReport::Point &point : report.points) {
        span.add(point.measured);
        span.add(point.fitted);
    }
    const Span bare = span;
    const double most = bare.isEmpty() ? 0.0 : bare.high - bare.low;
    for (const PixelReport::Point &point : report.points) {
        span.add(point.measured - std::min(point.sigma, most));
        span.add(point.measured + std::min(point.sigma, most));
    }
    return span;
}

/// Symmetric, and no magnifying glass for what rounding leaves.
double residualHeight(const PixelReport &report, double absorptions)
{
    constexpr double kLeast = 1e-6; // of the absorptions shown
    double most = kLeast * absorptions;
    for (const PixelReport::Point &point : report.points) {
        for (const double value : {std::fabs(point.residual), point.sigma}) {
            most = std::isfinite(value) ? std::max(most, value) : most;
        }
    }
    return 1.3 * most;
}

void drawFrame(QPainter &painter, const ChCoord &coord, bool hasEnergies)
{
    const QRectF frame = frameOf(coord);
    const QFontMetricsF metrics(painter.font());
    const Ticks x = xTicks(coord, metrics);
    const Ticks y = yTicks(coord, metrics);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(kFrameColour);
    painter.drawRect(frame);
    for (const double value : x.values) {
        const double at = std::round(coord.sx(value));
        painter.setPen(kFrameColour);
        painter.drawLine(QPointF(at, frame.bottom()), QPointF(at, frame.bottom() - kTick));
        if (hasEnergies) {
            const double width = metrics.horizontalAdvance(x.text(value)) + 2.0;
            painter.setPen(Qt::black);
            painter.drawText(
                QRectF(at - width / 2, frame.bottom() + kGap / 2, width, metrics.height()),
                Qt::AlignCenter, x.text(value));
        }
    }
    for (const double value : y.values) {
        const double at = std::round(coord.sy(value));
        painter.setPen(kFrameColour);
        painter.drawLine(QPointF(frame.left(), at), QPointF(frame.left() + kTick, at));
        painter.setPen(Qt::black);
        const double width = metrics.horizontalAdvance(y.text(value)) + 2.0;
        painter.drawText(
            QRectF(frame.left() - kGap - width, at - metrics.height() / 2, width, metrics.height()),
            Qt::AlignRight | Qt::AlignVCenter, y.text(value));
    }
}

void drawGrid(QPainter &painter, const ChCoord &coord)
{
    const QFontMetricsF metrics(painter.font());
    const QRectF frame = frameOf(coord);
    painter.setPen(kGridColour);
    for (const double value : xTicks(coord, metrics).values) {
        const double at = std::round(coord.sx(value));
        painter.drawLine(QPointF(at, frame.top()), QPointF(at, frame.bottom()));
    }
    for (const double value : yTicks(coord, metrics).values) {
        const double at = std::round(coord.sy(value));
        painter.drawLine(QPointF(frame.left(), at), QPointF(frame.right(), at));
    }
}

/// Along the left edge of the area, read upwards.
void drawYTitle(QPainter &painter, const ChCoord &coord, const QString &title)
{
    const QRectF frame = frameOf(coord);
    const QFontMetricsF metrics(painter.font());
    const double length = std::max(frame.height(), metrics.horizontalAdvance(title) + 2.0);
    painter.save();
    painter.translate(coord.areaX0(), frame.center().y());
    painter.rotate(-90);
    painter.setPen(Qt::black);
    painter.drawText(QRectF(-length / 2, 0.0, length, metrics.height()), Qt::AlignCenter, title);
    painter.restore();
}

void drawLine(QPainter &painter, const ChCoord &coord, const PixelReport &report,
              const std::vector<double> &values, const QPen &pen)
{
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    QPolygonF strip;
    const auto flush = [&] {
        painter.drawPolyline(strip);
        strip.clear();
    };
    for (size_t i = 0; i < values.size(); ++i) {
        const QPointF at(coord.sx(report.energiesEv[i]), coord.sy(values[i]));
        if (std::isfinite(at.x()) && std::isfinite(at.y())) {
            strip.append(at);
        } else {
            flush();
        }
    }
    flush();
}

void drawDot(QPainter &painter, const QPointF &at, bool isV)
{
    painter.setPen(QPen(Qt::black, 1.0));
    painter.setBrush(QColor(isV ? Colours::kVDot : Colours::kDot));
    if (isV) {
        painter.drawRect(
            QRectF(at.x() - kDotRadius, at.y() - kDotRadius, 2 * kDotRadius, 2 * kDotRadius));
    } else {
        painter.drawEllipse(at, kDotRadius, kDotRadius);
    }
}

QPen fitPen()
{
    return QPen(QColor(Colours::kFit), 1.6);
}

QPen backgroundPen()
{
    QPen pen(QColor(Colours::kBackground), 1.3);
    pen.setDashPattern({5.0, 4.0});
    return pen;
}

void drawErrorBar(QPainter &painter, const ChCoord &coord, const PixelReport::Point &point)
{
    const QRectF frame = frameOf(coord);
    const double x = coord.sx(point.energyEv);
    const double ends[] = {coord.sy(point.measured + point.sigma),
                           coord.sy(point.measured - point.sigma)};
    if (!std::isfinite(ends[0]) || !std::isfinite(ends[1])) {
        return;
    }
    painter.setPen(QPen(Qt::black, 1.2));
    const auto inFrame = [&](double y) {
        return std::clamp(y, frame.top() - 2 * kCap, frame.bottom() + 2 * kCap);
    };
    painter.drawLine(QPointF(x, inFrame(ends[0])), QPointF(x, inFrame(ends[1])));
    for (const double end : ends) {
        const double y = std::floor(inFrame(end)) + 0.5; // smoothing leaves a row of pixels sharp
        painter.drawLine(QPointF(x - kCap, y), QPointF(x + kCap, y));
    }
}

/// What was fitted, where the curve passes it by.
void drawDash(QPainter &painter, const PixelReport &report, const ChCoord &coord,
              const PixelReport::Point &point)
{
    constexpr double kVisible = 2.0;
    constexpr double kDash = 9.0;
    const auto &energies = report.energiesEv;
    const auto found = std::lower_bound(energies.begin(), energies.end(), point.energyEv);
    if (found == energies.end() || *found != point.energyEv) {
        return;
    }
    const double curve = report.fit[static_cast<size_t>(found - energies.begin())];
    const QPointF at(coord.sx(point.energyEv), coord.sy(point.fitted));
    if (std::isfinite(at.y()) && std::fabs(at.y() - coord.sy(curve)) > kVisible) {
        painter.setPen(fitPen());
        painter.drawLine(at - QPointF(kDash, 0.0), at + QPointF(kDash, 0.0));
    }
}

void drawMain(QPainter &painter, const PixelReport &report, const PixelPlotTexts &texts,
              const ChCoord &coord)
{
    painter.setClipRect(frameOf(coord));
    drawGrid(painter, coord);
    painter.setRenderHint(QPainter::Antialiasing);
    drawLine(painter, coord, report, report.background, backgroundPen());
    drawLine(painter, coord, report, report.fit, fitPen());
    for (const PixelReport::Point &point : report.points) {
        drawDash(painter, report, coord, point);
    }
    for (const PixelReport::Point &point : report.points) {
        const QPointF at(coord.sx(point.energyEv), coord.sy(point.measured));
        if (std::isfinite(at.x()) && std::isfinite(at.y())) {
            drawErrorBar(painter, coord, point);
            drawDot(painter, at, point.isV);
        }
    }
    const bool hasFit = std::any_of(report.fit.begin(), report.fit.end(),
                                    [](double value) { return std::isfinite(value); });
    if (!hasFit) {
        painter.setPen(QColor(Colours::kZero));
        painter.drawText(frameOf(coord).adjusted(kGap, kGap, -kGap, -kGap),
                         Qt::AlignHCenter | Qt::AlignTop | Qt::TextWordWrap, texts.noFit);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setClipping(false);
}

/// One standard deviation both ways: a polygon through the points, level beyond them.
void drawBand(QPainter &painter, const PixelReport &report, const ChCoord &coord)
{
    std::vector<QPointF> sigmas;
    for (const PixelReport::Point &point : report.points) {
        if (std::isfinite(point.sigma) && std::isfinite(point.energyEv)) {
            sigmas.emplace_back(point.energyEv, point.sigma);
        }
    }
    if (sigmas.empty()) {
        return;
    }
    std::sort(sigmas.begin(), sigmas.end(),
              [](const QPointF &a, const QPointF &b) { return a.x() < b.x(); });
    sigmas.insert(sigmas.begin(), QPointF(coord.xMin(), sigmas.front().y()));
    sigmas.emplace_back(coord.xMax(), sigmas.back().y());
    QPolygonF band;
    for (const QPointF &sigma : sigmas) {
        band.append(QPointF(coord.sx(sigma.x()), coord.sy(sigma.y())));
    }
    for (auto sigma = sigmas.rbegin(); sigma != sigmas.rend(); ++sigma) {
        band.append(QPointF(coord.sx(sigma->x()), coord.sy(-sigma->y())));
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(Colours::kBand));
    painter.drawPolygon(band);
}

void drawResiduals(QPainter &painter, const PixelReport &report, const PixelPlotTexts &texts,
                   const ChCoord &coord)
{
    const QRectF frame = frameOf(coord);
    painter.setClipRect(frame);
    drawBand(painter, report, coord);
    painter.setPen(QColor(Colours::kZero));
    const double zero = std::round(coord.sy(0.0));
    painter.drawLine(QPointF(frame.left(), zero), QPointF(frame.right(), zero));
    painter.setRenderHint(QPainter::Antialiasing);
    for (const PixelReport::Point &point : report.points) {
        const QPointF at(coord.sx(point.energyEv), coord.sy(point.residual));
        if (std::isfinite(at.x()) && std::isfinite(at.y())) {
            painter.setPen(QPen(Qt::black, 1.0));
            painter.drawLine(QPointF(at.x(), coord.sy(0.0)), at);
            drawDot(painter, at, point.isV);
        }
    }
    if (report.freedom <= 0) {
        painter.setPen(QColor(Colours::kZero));
        painter.drawText(frame.adjusted(kGap, 2.0, -kGap, -2.0), Qt::AlignRight | Qt::AlignTop,
                         texts.exact);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setClipping(false);
}

/// What the legend explains, in rows as wide as the frame.
struct Legend {
    enum Kind { Dot, VDot, FitLine, BackgroundLine, Band };
    struct Item {
        Kind kind;
        QString text;
        double x;
        int row;
    };
    static constexpr double kSample = 22.0;

    Legend(const PixelReport &report, const PixelPlotTexts &texts, const QFontMetricsF &metrics,
           double width)
    {
        const auto isV = [](const PixelReport::Point &point) { return point.isV; };
        const auto hasSigma = [](const PixelReport::Point &point) {
            return std::isfinite(point.sigma);
        };
        items.push_back({Dot, texts.measured, 0.0, 0});
        if (std::any_of(report.points.begin(), report.points.end(), isV)) {
            items.push_back({VDot, texts.vPoint, 0.0, 0});
        }
        items.push_back({FitLine, texts.fit, 0.0, 0});
        items.push_back({BackgroundLine, texts.background, 0.0, 0});
        if (std::any_of(report.points.begin(), report.points.end(), hasSigma)) {
            items.push_back({Band, texts.sigma, 0.0, 0});
        }
        double x = 0.0;
        for (Item &item : items) {
            const double wanted =
                sampleOf(item.kind) + kGap + metrics.horizontalAdvance(item.text) + 2.0;
            if (x > 0.0 && x + wanted > width) {
                x = 0.0;
                ++rows;
            }
            item.x = x;
            item.row = rows - 1;
            x += wanted + 2 * kGap;
        }
    }

    static double sampleOf(Kind kind)
    {
        return kind == Dot || kind == VDot ? 2 * kDotRadius + 2.0 : kSample;
    }

    std::vector<Item> items;
    int rows = 1;
};

void drawLegend(QPainter &painter, const PixelReport &report, const PixelPlotTexts &texts,
                const ChCoord &coord)
{
    const QFontMetricsF metrics(painter.font());
    const Legend legend(report, texts, metrics, coord.frameX1() - coord.frameX0());
    painter.setRenderHint(QPainter::Antialiasing);
    for (const Legend::Item &item : legend.items) {
        const QRectF box(coord.frameX0() + item.x, coord.areaY1() + item.row * metrics.height(),
                         Legend::sampleOf(item.kind), metrics.height());
        const double y = box.center().y();
        switch (item.kind) {
        case Legend::Dot:
        case Legend::VDot:
            drawDot(painter, box.center(), item.kind == Legend::VDot);
            break;
        case Legend::FitLine:
        case Legend::BackgroundLine:
            painter.setPen(item.kind == Legend::FitLine ? fitPen() : backgroundPen());
            painter.drawLine(QPointF(box.left(), y), QPointF(box.right(), y));
            break;
        case Legend::Band:
            painter.fillRect(box.adjusted(0.0, box.height() / 4, 0.0, -box.height() / 4),
                             QColor(Colours::kBand));
            break;
        }
        painter.setPen(Qt::black);
        painter.drawText(QRectF(box.right() + kGap, box.top(),
                                metrics.horizontalAdvance(item.text) + 2.0, box.height()),
                         Qt::AlignLeft | Qt::AlignVCenter, item.text);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

} // namespace

void layOutPixelPlot(const QFontMetricsF &metrics, const QRectF &box, const PixelReport &report,
                     const PixelPlotTexts &texts, ChCoord &main, ChCoord &residuals)
{
    const double row = std::ceil(metrics.height());
    const Span energies = energiesOf(report);
    const Span values = withMargin(absorptionsOf(report), 0.07);
    const double height = residualHeight(report, values.high - values.low);

    double top = box.top() + row + kGap;
    const double bottom = box.bottom() - 2 * row - kGap;
    constexpr double kStrip = 0.24; // of the height
    const double split = std::round(bottom - kStrip * (bottom - top));
    const double right =
        box.right() - std::ceil(metrics.horizontalAdvance(QStringLiteral("00000")) / 2);
    for (ChCoord *coord : {&main, &residuals}) {
        coord->setArea(box.left(), box.bottom(), box.right(), box.top());
    }
    main.setRange(energies.low, values.low, energies.high, values.high);
    residuals.setRange(energies.low, -height, energies.high, height);
    // Labels depend on heights alone; their widths then give the left edge of both.
    main.setFrame(box.left(), split - row, right, top);
    residuals.setFrame(box.left(), bottom, right, split);
    const double labels = std::max(widestLabel(main, metrics), widestLabel(residuals, metrics));
    const double left = std::ceil(box.left() + row + labels + 2 * kGap);
    top = box.top() + Legend(report, texts, metrics, right - left).rows * row + kGap;
    main.setFrame(left, std::round(split - row), std::floor(right), std::ceil(top));
    residuals.setFrame(left, std::floor(bottom), std::floor(right), split);
}

void drawPixelPlot(QPainter &painter, const PixelReport &report, const PixelPlotTexts &texts,
                   const ChCoord &main, const ChCoord &residuals)
{
    painter.save();
    painter.fillRect(
        QRectF(QPointF(main.areaX0(), main.areaY1()), QPointF(main.areaX1(), main.areaY0())),
        Qt::white);
    drawMain(painter, report, texts, main);
    drawResiduals(painter, report, texts, residuals);
    drawFrame(painter, main, false);
    drawFrame(painter, residuals, true);
    drawLegend(painter, report, texts, main);
    drawYTitle(painter, main, texts.absorption);
    drawYTitle(painter, residuals, texts.residual);
    const QFontMetricsF metrics(painter.font());
    const QRectF frame = frameOf(residuals);
    painter.setPen(Qt::black);
    painter.drawText(QRectF(frame.left(), frame.bottom() + kGap / 2 + metrics.height(),
                            frame.width(), metrics.height()),
                     Qt::AlignCenter, texts.energy);
    painter.restore();
}

} // namespace orvel
