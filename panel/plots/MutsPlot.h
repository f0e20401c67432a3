#pragma once

#include "spectra/AMutE.h"

#include <QColor>
#include <QPointF>
#include <QString>

#include <vector>

class DispABase;
class QStylePainter;

namespace orvel {

/// All spectra in one graph, with the energies of the images.
struct MutsPlot {
    struct Curve {
        const AMutE *spectrum;
        QColor colour;
        QString name = QString(); ///< in tables
    };
    std::vector<Curve> spectra;
    const AMutE *fitted = nullptr; ///< of the linear combination fit: normalised by both lines
    int mode = 0;                  ///< normalisation, AMutE::Mode
    std::vector<double> energies;  ///< [eV] of the used images
    std::vector<QPointF>
        dots; ///< energy and absorption of one pixel of the maps; shown among spectra as measured
    bool fullRange = true; ///< otherwise about the energies of the images

    /// The fit has no other normalisation.
    bool showsFit() const { return fitted != nullptr && mode == AMutE::By2Victoreens; }
    /// Measured absorptions; among normalised spectra they would be read in the wrong units.
    bool showsDots() const { return mode == AMutE::NoNormalization; }
};

void drawMutsPlot(QStylePainter *p, DispABase &dab, const QString &xTitle, const QString &yTitle,
                  const MutsPlot &plot);

} // namespace orvel
