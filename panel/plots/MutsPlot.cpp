#include "panel/plots/MutsPlot.h"

#include "display/CurvePainter.h"
#include "panel/plots/PlotSteps.h"
#include "panel/plots/SpectrumLine.h"

#include <algorithm>
#include <array>

namespace orvel {
namespace {

struct Line {
    SpectrumLine data;
    QColor colour;
};

} // namespace

void drawMutsPlot(QStylePainter *p, DispABase &dab, const QString &xTitle, const QString &yTitle,
                  const MutsPlot &plot)
{
    beginPlot(p, dab, xTitle, yTitle);
    std::vector<Line> lines;
    for (const MutsPlot::Curve &curve : plot.spectra) {
        lines.push_back({lineOf(*curve.spectrum, plot.mode), curve.colour});
    }
    if (plot.showsFit()) {
        lines.push_back({lineOf(*plot.fitted, AMutE::NoNormalization), QColor(255, 120, 0)});
    }
    ChCoord &coord = *dab.coord();
    Span energies;
    for (const Line &line : lines) {
        for (const double energy : line.data.energies) {
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
        addValues(line.data, shown, values);
    }
    const bool hasDots = plot.showsDots();
    for (const QPointF &dot : plot.dots) {
        if (hasDots && shown.contains(dot.x())) {
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
        drawCurve(*p, coord, line.data.energies.data(), line.data.values.data(),
                  line.data.energies.size(), line.colour);
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
