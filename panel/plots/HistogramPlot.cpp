#include "panel/plots/HistogramPlot.h"

#include "display/HistogramPainter.h"
#include "panel/plots/PlotSteps.h"

namespace orvel {

void drawHistogramPlot(QStylePainter *p, DispABase &dab, const QString &xTitle,
                       const QString &yTitle, const HistogramPlot &plot)
{
    beginPlot(p, dab, xTitle, yTitle);
    ChCoord &coord = *dab.coord();
    coord.setHasContent(plot.hasResults);
    std::vector<std::int32_t> largest;
    if (!plot.partsAlone) {
        largest.push_back(plot.counts.largest());
    }
    for (const HistogramPlot::Part &part : plot.parts) {
        largest.push_back(part.counts.largest());
    }
    const auto range = histogramRange(plot.low, plot.high, largest);
    if (!plot.hasResults || !range) {
        return;
    }
    dab.setInitialRange(range->xMin, range->yMin, range->xMax, range->yMax);
    drawHistogramGrid(*p, coord, plot.low, plot.high);
    const auto barsOf = [](const BinCounts &counts) {
        return HistogramBars{counts.from(), counts.step(), counts.counts()};
    };
    if (!plot.partsAlone) {
        drawHistogramBars(*p, coord, barsOf(plot.counts), plot.colour);
    }
    for (const HistogramPlot::Part &part : plot.parts) {
        drawHistogramSteps(*p, coord, barsOf(part.counts), part.colour);
    }
    dab.drawFrame(p, true);
}

} // namespace orvel
