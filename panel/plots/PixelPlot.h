#pragma once

#include "analysis/PixelReport.h"

#include <QString>

class ChCoord;
class QFontMetricsF;
class QPainter;
class QRectF;

namespace orvel {

/// Words of the drawing, in the language of the window.
struct PixelPlotTexts {
    QString energy;     ///< title of the x axis, with its unit
    QString absorption; ///< of the upper y axis
    QString residual;   ///< of the lower y axis
    QString measured;   ///< legend
    QString vPoint;
    QString fit;
    QString background;
    QString sigma; ///< of the band around the residuals
    QString exact; ///< in place of residuals where no degree of freedom is left
    QString noFit; ///< where there is no curve
};

/// Colours, for those who look for them.
struct PixelPlotColours {
    static constexpr unsigned kDot = 0xffffe600U;
    static constexpr unsigned kVDot = 0xffe0483cU;
    static constexpr unsigned kFit = 0xff285abeU;
    static constexpr unsigned kBackground = 0xff787878U;
    static constexpr unsigned kBand = 0xffdfe8faU;
    static constexpr unsigned kZero = 0xff5a5a5aU;
};

/// Places the two frames of the drawing, one above the other with the same energies, in a box, and
/// gives them ranges that show all that is finite; error bars widen the upper one by its height at
/// most.
/// metrics  of the painter's font
void layOutPixelPlot(const QFontMetricsF &metrics, const QRectF &box, const PixelReport &report,
                     const PixelPlotTexts &texts, ChCoord &main, ChCoord &residuals);

/// Measured absorptions as dots with bars of one standard deviation both ways (the V point a
/// square), the fit as a line, its background as a broken line, and a dash for what was fitted at
/// an energy where the line is visibly elsewhere; below them the residuals over a band of one
/// standard deviation. Painted on white.
void drawPixelPlot(QPainter &painter, const PixelReport &report, const PixelPlotTexts &texts,
                   const ChCoord &main, const ChCoord &residuals);

} // namespace orvel
