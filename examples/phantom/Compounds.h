#pragma once

#include <array>
#include <cstddef>
#include <vector>

namespace orvel::phantom {

/// Planck constant times speed of light [eV Angstrom]: wavelength = kHcEvAngstrom / energy.
inline constexpr double kHcEvAngstrom = 12398.424360387684;
/// Energy at which every edge jump is stated [eV].
inline constexpr double kEdgeEv = 8350.0;
/// The lines are fitted strictly below and strictly above these energies [eV].
inline constexpr double kPreEdgeEndEv = 8300.0;
inline constexpr double kPostEdgeStartEv = 8450.0;

inline constexpr std::size_t kCompounds = 3;
enum Compound : std::size_t { Metal, Monoxide, Oxyhydroxide };

double wavelengthA(double energyEv); ///< [Angstrom]

/// Smooth absorption outside an edge:  constant + cube lambda^3 + fourth lambda^4  [1],
/// lambda in Angstrom.
struct Victoreen {
    double constant = 0.0;
    double cube = 0.0;   ///< [1 / Angstrom^3]
    double fourth = 0.0; ///< [1 / Angstrom^4]

    double at(double energyEv) const;
};

/// What is fixed for a compound; its spectrum is mu = preEdge + edgeJump * normalised.
struct CompoundModel {
    const char *name;
    double valence;
    double edgeJump; ///< at kEdgeEv, thickness as measured [1]
    Victoreen preEdge;
};

const std::array<CompoundModel, kCompounds> &compounds();

/// Edge step with white line and fine structure [1]: 0 to better than 1e-12 below 8320 eV, exactly
/// 1 (to double precision) above 8442 eV. Between them the compounds differ.
double edgeStep(std::size_t compound, double energyEv);

/// (lambda / lambda(kEdgeEv))^3 * edgeStep [1]. The cube makes the line above the edge a Victoreen
/// line too, so a fit of (1, lambda^3, lambda^4) recovers both lines and the jump exactly.
double normalised(std::size_t compound, double energyEv);

double absorption(std::size_t compound, double energyEv);

/// The line above the edge: preEdge with edgeJump / lambda(kEdgeEv)^3 more of the cube.
Victoreen postEdge(const Victoreen &preEdge, double edgeJump);

/// Energies of every spectrum file [eV], ascending: 8000 to 9000, each 5 eV; each 0.5 eV from 8300
/// to 8460. All energies of the maps are members, so interpolation between points adds no error.
std::vector<double> spectrumEnergiesEv();

} // namespace orvel::phantom
