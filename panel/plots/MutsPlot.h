#pragma once

#include <QColor>
#include <QPointF>

#include <vector>

class AMutE;
class DispABase;
class QString;
class QStylePainter;

namespace orvel {

/// All spectra in one graph, with the energies of the images.
struct MutsPlot {
    struct Curve {
        const AMutE *spectrum;
        QColor colour;
    };
    std::vector<Curve> spectra;
    const AMutE *fitted = nullptr; ///< of the linear combination fit: normalised by both lines
    int mode = 0;                  ///< normalisation, AMutE::Mode
    std::vector<double> energies;  ///< [eV] of the used images
    std::vector<QPointF>
        dots; ///< energy and absorption of one pixel of the maps; shown among spectra as measured
    bool fullRange = true; ///< otherwise about the energies of the images
};

void drawMutsPlot(QStylePainter *p, DispABase &dab, const QString &xTitle, const QString &yTitle,
                  const MutsPlot &plot);

} // namespace orvel
