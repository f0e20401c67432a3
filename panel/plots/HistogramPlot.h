#pragma once

#include "analysis/BinCounts.h"

#include <QColor>

class DispABase;
class QString;
class QStylePainter;

namespace orvel {

struct HistogramPlot {
    double low; ///< limits as entered
    double high;
    const BinCounts &counts;
    QColor colour;
    bool hasResults; ///< otherwise the surface stays white
};

void drawHistogramPlot(QStylePainter *p, DispABase &dab, const QString &xTitle,
                       const QString &yTitle, const HistogramPlot &plot);

} // namespace orvel
