#include "panel/plots/ComparisonPlot.h"

#include "display/CColors.h"
#include "panel/plots/PlotSteps.h"

#include <cmath>

namespace orvel {
namespace {

void drawGrid(QStylePainter *p, const ChCoord &coord, double low, double high)
{
    constexpr double kStep = 0.1;
    if (!((high - low) / kStep < std::fabs(coord.frameX1() - coord.frameX0()))) {
        return; // lines would fill the frame
    }
    p->setPen(QColor(200, 200, 255));
    for (int i = 0; low + i * kStep < high; ++i) {
        const double x = coord.sx(low + i * kStep);
        p->drawLine(QPointF(x, coord.frameY0()), QPointF(x, coord.frameY1()));
    }
    for (int i = 0; low + i * kStep < high; ++i) {
        const double y = coord.sy(low + i * kStep);
        p->drawLine(QPointF(coord.frameX0(), y), QPointF(coord.frameX1(), y));
    }
}

} // namespace

void drawComparisonPlot(QStylePainter *p, DispABase &dab, const QString &xTitle,
                        const QString &yTitle, const std::vector<ComparisonPoint> &points,
                        double low, double high, const CColors &colours)
{
    beginPlot(p, dab, xTitle, yTitle);
    ChCoord &coord = *dab.coord();
    coord.setHasContent(!points.empty());
    if (points.empty()) {
        return;
    }
    dab.setInitialRange(low, low, high, high);
    drawGrid(p, coord, low, high);
    p->save();
    p->setClipRect(dab.area()->rect());
    p->setPen(QColor(0, 200, 0));
    const QPointF from(coord.sx(low), coord.sy(low));
    const QPointF to(coord.sx(high), coord.sy(high));
    const auto isNear = [&dab](const QPointF &point) {
        const double far = 8.0 * (dab.area()->width() + dab.area()->height() + 1.0);
        return std::fabs(point.x()) < far && std::fabs(point.y()) < far;
    };
    if (isNear(from) && isNear(to)) {
        p->drawLine(from, to);
    }
    for (const ComparisonPoint &point : points) {
        const QPointF at(coord.sx(point.lcfValence), coord.sy(point.valence));
        if (!isNear(at)) {
            continue; // nor a not-a-number
        }
        const QPoint pixel(static_cast<int>(at.x()), static_cast<int>(at.y()));
        p->setPen(colours.colour(point.colour));
        p->drawEllipse(QRect(pixel - QPoint(1, 1), pixel));
        p->drawEllipse(QRect(pixel - QPoint(2, 2), pixel + QPoint(1, 1)));
    }
    p->restore();
    dab.drawFrame(p, true);
}

} // namespace orvel
