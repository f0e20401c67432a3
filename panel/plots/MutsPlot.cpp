#include "panel/plots/MutsPlot.h"

#include "display/CurvePainter.h"
#include "panel/plots/PlotSteps.h"
#include "spectra/AMutE.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace orvel {
namespace {

struct Span {
    double low = std::numeric_limits<double>::max();
    double high = std::numeric_limits<double>::lowest();

    void add(double value)
    {
        if (std::isfinite(value)) {
            low = std::min(low, value);
            high = std::max(high, value);
        }
    }
    bool isEmpty() const { return low > high; }
    /// A part of its width wider both ways; half a unit when it has none.
    Span wider(double part) const
    {
        const double beside = high > low ? part * (high - low) : 0.5;
        return {low - beside, high + beside};
    }
};

/// A spectrum as it is drawn.
struct Line {
    std::vector<double> energies;
    std::vector<double> values;
    QColor colour;
};

Line lineOf(const AMutE &spectrum, int mode, const QColor &colour)
{
    Line line;
    line.colour = colour;
    const int n = spectrum.points().size();
    line.energies.reserve(static_cast<size_t>(n));
    line.values.reserve(static_cast<size_t>(n));
    for (int i = 0; i < n; ++i) {
        line.energies.push_back(spectrum.effectiveEnergy(i));
        line.values.push_back(spectrum.valueAt(mode, i));
    }
    return line;
}

} // namespace

void drawMutsPlot(QStylePainter *p, DispABase &dab, const QString &xTitle, const QString &yTitle,
                  const MutsPlot &plot)
{
    beginPlot(p, dab, xTitle, yTitle);
    std::vector<Line> lines;
    for (const MutsPlot::Curve &curve : plot.spectra) {
        lines.push_back(lineOf(*curve.spectrum, plot.mode, curve.colour));
    }
    if (plot.fitted && plot.mode == AMutE::By2Victoreens) { // it has no other normalisation
        lines.push_back(lineOf(*plot.fitted, AMutE::NoNormalization, QColor(255, 120, 0)));
    }
    ChCoord &coord = *dab.coord();
    Span energies;
    for (const Line &line : lines) {
        for (const double energy : line.energies) {
            energies.add(energy);
        }
    }
    coord.setHasContent(!energies.isEmpty());
    if (energies.isEmpty()) {
        return;
    }
    Span shown = energies.wider(0.02);
    Span used;
    for (const double energy : plot.energies) {
        used.add(energy);
    }
    if (!plot.fullRange && !used.isEmpty()) {
        shown = used.wider(0.25);
    }
    Span values;
    for (const Line &line : lines) {
        for (size_t i = 0; i < line.energies.size(); ++i) {
            if (line.energies[i] >= shown.low && line.energies[i] <= shown.high) {
                values.add(line.values[i]);
            }
        }
    }
    // Measured absorptions; among normalised spectra they would be read in the wrong units.
    const bool hasDots = plot.mode == AMutE::NoNormalization;
    for (const QPointF &dot : plot.dots) {
        if (hasDots && dot.x() >= shown.low && dot.x() <= shown.high) {
            values.add(dot.y());
        }
    }
    if (values.isEmpty()) {
        values = {0.0, 1.0};
    }
    values = values.wider(0.05);
    dab.setInitialRange(shown.low, values.low, shown.high, values.high);

    const std::array<double, 2> edges = {std::min(coord.yMin(), coord.yMax()),
                                         std::max(coord.yMin(), coord.yMax())};
    for (const double energy : plot.energies) {
        const std::array<double, 2> at = {energy, energy};
        drawCurve(*p, coord, at.data(), edges.data(), at.size(), QColor(150, 150, 220));
    }
    for (const Line &line : lines) {
        drawCurve(*p, coord, line.energies.data(), line.values.data(), line.energies.size(),
                  line.colour);
    }
    p->save();
    p->setRenderHint(QPainter::Antialiasing);
    p->setPen(Qt::black);
    p->setBrush(QColor(255, 230, 0));
    for (const QPointF &dot : plot.dots) {
        const QPointF at(coord.sx(dot.x()), coord.sy(dot.y()));
        if (hasDots && QRectF(dab.area()->rect()).contains(at)) {
            p->drawEllipse(at, 3.5, 3.5);
        }
    }
    p->restore();
    dab.drawFrame(p, true);
}

} // namespace orvel
