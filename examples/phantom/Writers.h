#pragma once

#include <filesystem>

namespace orvel::phantom {

/// How far a value read back from the written files can lie from the closed form.

/// Signals of text maps have 10 significant digits and their references are exact, so an absorption
/// ln(reference / signal) is off by at most half a unit of 1e-9 relative to 1 [1].
inline constexpr double kMapError = 5.0e-10;
/// Spectra: absorption to 1e-12; an angle to 12 decimals of a degree moves a point by 3e-10 eV, on
/// flanks of at most 0.3 per eV [1].
inline constexpr double kSpectrumError = 1.0e-10;

/// Writes the whole data set (about 7 MB) below `folder`, which is created, and creates the folder
/// `results` beside it, where the sessions write to. Files of the same names are replaced.
///
///   refs/metal.dat          "9809" layout, transmission, lattice spacing in the header, CR LF
///   refs/monoxide.dat       two columns
///   refs/oxyhydroxide.dat   "9809" layout, transmission, detector columns the other way round
///   particles/target.dat    two columns
///   film/target.dat         "9809" layout, fluorescence, two detectors
///   particles/p*.*, film/f*.*   the stacks, see stackOf()
///
/// Throws std::runtime_error naming the file that cannot be written.
void writeExample(const std::filesystem::path &folder);

/// Writes the samples of a beamtime: refs/ as above and, for each of kBeamtimeCells, a folder
/// samples/NAME with target.dat and the stack of the particles, all of them of the oxidised
/// mixtures. Throws as above.
void writeBeamtime(const std::filesystem::path &folder);

} // namespace orvel::phantom
