#pragma once

#include "Compounds.h"

#include <array>
#include <string>
#include <vector>

namespace orvel::phantom {

/// Both samples are kPixels columns by kPixels rows, column index running fastest in every file.
inline constexpr int kPixels = 128;

enum class Sample {
    Particles, ///< metal cores, oxide rims, a thin matrix; three compounds, Victoreen background
    Film, ///< cracked film with a composition gradient; two compounds, background linear in energy
};

enum class BackgroundKind { Victoreen, Linear };

/// Victoreen: constant + first lambda^3 + second lambda^4 [lambda: Angstrom];
/// Linear: constant + first E [eV]. All [1].
struct Background {
    BackgroundKind kind = BackgroundKind::Victoreen;
    double constant = 0.0;
    double first = 0.0;
    double second = 0.0;

    double at(double energyEv) const;
};

/// What one pixel, or a whole target, is made of:
///   mu(E) = amount * sum_i ratio_i * normalised_i(E) + background(E).
struct Mixture {
    std::array<double, kCompounds> ratio; ///< each in [0, 1], sum 1
    double amount;                        ///< edge jump of the whole at kEdgeEv [1], 0.08 to 1.5
    Background background;

    double absorption(double energyEv) const;
    double valence() const; ///< sum_i ratio_i * valence_i
};

/// Truth at one pixel, 0 <= column, row < kPixels. Closed form: no table, no random numbers.
Mixture pixelTruth(Sample sample, int column, int row);

/// The sample's bulk spectrum: a fixed mix over a Victoreen background, whatever the maps have.
Mixture targetTruth(Sample sample);

/// A share of all material turned into oxyhydroxide: ratio_i (1 - share), plus the share itself.
Mixture oxidised(Mixture mixture, double share);

/// Samples of one beamtime: the particles, oxidised further from cell to cell.
struct BeamtimeCell {
    const char *name; ///< of its folder
    double share;     ///< see oxidised()
};
inline constexpr std::array<BeamtimeCell, 3> kBeamtimeCells{
    {{"cell-1", 0.0}, {"cell-2", 0.3}, {"cell-3", 0.6}}};

struct StagePosition {
    double xUm, yUm; ///< exact in six significant digits, as result files print them
};
StagePosition stagePosition(Sample sample, int column, int row);

enum class MapLayout {
    Axis,         ///< first line "# 1306", grid in AXIS lines; x y signal reference
    Columns,      ///< first line "# 2003901", numbered columns, grid implied by the positions
    Counts,       ///< another first line, grid in X-NUM and Y-NUM; x y signal reference
    Transmission, ///< as Counts with three columns: x y signal, reference 1 implied
    Processed,    ///< binary, absorption itself, no energy and no positions
};

struct MapFile {
    std::string name; ///< inside the sample's folder
    double energyEv;
    MapLayout layout;
};

/// The stack of a sample, ascending in energy; entry k belongs to the session row Point(k+1).
const std::vector<MapFile> &stackOf(Sample sample);

const char *folderOf(Sample sample);

} // namespace orvel::phantom
