#pragma once

#include <QColor>
#include <QString>

#include <vector>

class AMutE;
class DispABase;
class QStylePainter;

namespace orvel {

inline constexpr QRgb kPresentColour = 0xff707070;
inline constexpr QRgb kProposedColour = 0xffc04000;

/// References over energy, each by its edge jump, with two choices of energies: the present ones as
/// dashed lines on rings, the proposed ones as lines that hang from triangles. "V" stands at the V
/// point of either. Energies beside what is shown are numbers at that side.
struct EnergiesPlot {
    struct Curve {
        const AMutE *spectrum;
        QColor colour;
        QString name;
    };
    struct Choice {
        std::vector<double> energiesEv; ///< what is not above 0 is left out
        int vPoint = -1;                ///< index into these; -1: none
        QString name;
    };
    std::vector<Curve> references;
    Choice present;
    Choice proposed;
    /// Energies [eV] to show: far ones, to fix a background, would squeeze all others into a line.
    /// Empty: those of both choices.
    std::vector<double> range;
};

void drawEnergiesPlot(QStylePainter *p, DispABase &dab, const QString &xTitle,
                      const QString &yTitle, const EnergiesPlot &plot);

} // namespace orvel
