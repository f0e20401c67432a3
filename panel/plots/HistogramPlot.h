#pragma once

#include "analysis/BinCounts.h"

#include <QColor>

#include <vector>

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

    /// Parts of the map, drawn as lines over it.
    struct Part {
        const BinCounts &counts;
        QColor colour;
    };
    std::vector<Part> parts = {};
    bool partsAlone = false; ///< without the bars of the whole map
};

void drawHistogramPlot(QStylePainter *p, DispABase &dab, const QString &xTitle,
                       const QString &yTitle, const HistogramPlot &plot);

} // namespace orvel
