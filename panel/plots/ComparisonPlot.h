#pragma once

#include <vector>

class CColors;
class DispABase;
class QString;
class QStylePainter;

namespace orvel {

/// One run: what the maps' method and what the linear combination fit made of the target.
struct ComparisonPoint {
    double ratio;
    double valence;
    double lcfRatio;
    double lcfValence;
    int colour; ///< index in the plot's colours
};

/// Valences by both methods against each other, with the line where they are equal.
/// low, high  the range of both axes
void drawComparisonPlot(QStylePainter *p, DispABase &dab, const QString &xTitle,
                        const QString &yTitle, const std::vector<ComparisonPoint> &points,
                        double low, double high, const CColors &colours);

} // namespace orvel
