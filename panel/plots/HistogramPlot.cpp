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
    const auto range = histogramRange(plot.low, plot.high, {plot.counts.largest()});
    if (!plot.hasResults || !range) {
        return;
    }
    dab.setInitialRange(range->xMin, range->yMin, range->xMax, range->yMax);
    drawHistogramGrid(*p, coord, plot.low, plot.high);
    drawHistogramBars(*p, coord, {plot.counts.from(), plot.counts.step(), plot.counts.counts()},
                      plot.colour);
    dab.drawFrame(p, true);
}

} // namespace orvel
