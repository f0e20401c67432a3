#include "Compounds.h"

#include <cmath>

namespace orvel::phantom {

namespace {

struct Step { // error-function step: tails die faster than any exponential
    double height, centreEv, widthEv;
};
struct Peak { // Gaussian
    double height, centreEv, widthEv;
};
struct Shell { // one neighbour distance of the fine structure
    double amplitude, distanceA, phase;
};

struct EdgeShape {
    std::array<Step, 2> steps; // heights add up to 1
    std::array<Peak, 2> peaks; // before the edge, white line
    std::array<Shell, 2> shells;
};

constexpr std::array<EdgeShape, kCompounds> kShapes{{
    {{{{0.45, 8338.5, 1.8}, {0.55, 8345.5, 2.8}}},
     {{{0.00, 8333.0, 1.2}, {0.09, 8354.0, 3.5}}},
     {{{0.13, 2.20, 0.4}, {0.05, 3.95, 1.1}}}},
    {{{{0.85, 8344.5, 2.0}, {0.15, 8349.0, 2.5}}},
     {{{0.03, 8332.5, 1.2}, {0.45, 8349.5, 2.6}}},
     {{{0.11, 1.90, 2.0}, {0.07, 2.75, -0.6}}}},
    {{{{0.90, 8347.5, 2.2}, {0.10, 8342.0, 2.5}}},
     {{{0.05, 8334.0, 1.2}, {0.60, 8352.5, 3.0}}},
     {{{0.09, 1.70, 1.3}, {0.06, 2.60, 0.5}}}},
}};

// Fine structure lives on this open interval only, so both line fits see none of it.
constexpr double kFineCentreEv = 8396.0;
constexpr double kFineHalfWidthEv = 44.0;

double fineStructure(const EdgeShape &shape, double energyEv)
{
    const double u = (energyEv - kFineCentreEv) / kFineHalfWidthEv;
    if (u <= -1.0 || u >= 1.0) {
        return 0.0;
    }
    constexpr double kPeakOfEnvelope = 1024.0 / 729.0; // reached at u = -1/3
    const double envelope = std::pow(1.0 + u, 2) * std::pow(1.0 - u, 4) / kPeakOfEnvelope;
    // Photoelectron wave number [1/Angstrom] = sqrt(2 m (E - E0)) / hbar; 0.262468 per eV.
    const double k = std::sqrt(0.262468 * (energyEv - 8345.0));
    double sum = 0.0;
    for (const Shell &shell : shape.shells) {
        sum += shell.amplitude * std::sin(2.0 * k * shell.distanceA + shell.phase);
    }
    return envelope * sum;
}

} // namespace

double wavelengthA(double energyEv)
{
    return kHcEvAngstrom / energyEv;
}

double Victoreen::at(double energyEv) const
{
    const double lambda = wavelengthA(energyEv);
    return constant + (cube + fourth * lambda) * lambda * lambda * lambda;
}

const std::array<CompoundModel, kCompounds> &compounds()
{
    static constexpr std::array<CompoundModel, kCompounds> kModels{{
        {"metal", 0.0, 1.00, {0.040, 0.310, -0.060}},
        {"monoxide", 2.0, 0.92, {0.065, 0.270, -0.045}},
        {"oxyhydroxide", 3.0, 1.08, {0.020, 0.350, -0.070}},
    }};
    return kModels;
}

double edgeStep(std::size_t compound, double energyEv)
{
    const EdgeShape &shape = kShapes.at(compound);
    double sum = fineStructure(shape, energyEv);
    for (const Step &step : shape.steps) {
        sum += step.height * 0.5 *
               std::erfc((step.centreEv - energyEv) / (std::sqrt(2.0) * step.widthEv));
    }
    for (const Peak &peak : shape.peaks) {
        sum +=
            peak.height * std::exp(-0.5 * std::pow((energyEv - peak.centreEv) / peak.widthEv, 2));
    }
    return sum;
}

double normalised(std::size_t compound, double energyEv)
{
    return std::pow(kEdgeEv / energyEv, 3) * edgeStep(compound, energyEv);
}

double absorption(std::size_t compound, double energyEv)
{
    const CompoundModel &model = compounds().at(compound);
    return model.preEdge.at(energyEv) + model.edgeJump * normalised(compound, energyEv);
}

Victoreen postEdge(const Victoreen &preEdge, double edgeJump)
{
    Victoreen line = preEdge;
    line.cube += edgeJump / std::pow(wavelengthA(kEdgeEv), 3);
    return line;
}

std::vector<double> spectrumEnergiesEv()
{
    std::vector<double> energies;
    for (int e = 8000; e < 8300; e += 5) {
        energies.push_back(e);
    }
    for (int half = 2 * 8300; half < 2 * 8460; ++half) {
        energies.push_back(0.5 * half);
    }
    for (int e = 8460; e <= 9000; e += 5) {
        energies.push_back(e);
    }
    return energies;
}

} // namespace orvel::phantom
