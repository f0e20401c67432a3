#pragma once

#include "display/DispABase.h"

namespace orvel {

/// What every plot begins with: its frame, its titles, a white surface.
inline void beginPlot(QStylePainter *p, DispABase &dab, const QString &xTitle,
                      const QString &yTitle)
{
    dab.coord()->setFrameByMargins();
    dab.setTitles(xTitle, yTitle);
    p->fillRect(dab.area()->rect(), Qt::white);
}

} // namespace orvel
