#include "Samples.h"

#include <cmath>

namespace orvel::phantom {

namespace {

using Composition = std::array<double, kCompounds>;

/// 1 well below zero, 0 well above, error-function flank of the given width.
double falling(double x, double width)
{
    return 0.5 * std::erfc(x / width);
}

double bell(double x, double width)
{
    return std::exp(-std::pow(x / width, 2));
}

Composition blend(const Composition &a, const Composition &b, double shareOfB)
{
    Composition mixed{};
    for (std::size_t i = 0; i < kCompounds; ++i) {
        mixed[i] = (1.0 - shareOfB) * a[i] + shareOfB * b[i];
    }
    return mixed;
}

constexpr Composition kCore{0.92, 0.06, 0.02};
constexpr Composition kRim{0.04, 0.88, 0.08};
constexpr Composition kMatrix{0.02, 0.13, 0.85};

struct Particle { // lengths in pixels, angle in radians
    double column, row, halfLong, halfShort, angle;
    double coreSize;     // share of the radius that is still metal
    double height;       // amount at the middle
    double lobes, phase; // outline: lobes per turn
};

constexpr std::array<Particle, 7> kParticles{{
    {40.0, 44.0, 27.0, 22.0, 0.5, 0.62, 1.15, 5.0, 0.3},
    {91.0, 33.0, 19.0, 15.0, -0.4, 0.45, 0.90, 4.0, 1.2},
    {84.0, 86.0, 25.0, 20.0, 1.1, 0.30, 1.00, 6.0, 2.1},
    {31.0, 97.0, 16.0, 13.0, 0.2, 0.70, 0.80, 3.0, 0.8},
    {116.0, 66.0, 9.0, 8.0, 0.0, 0.05, 0.55, 3.0, 0.0},
    {58.0, 115.0, 8.0, 7.0, 0.7, 0.15, 0.50, 4.0, 2.6},
    {12.0, 69.0, 7.0, 6.0, 0.0, 0.55, 0.60, 3.0, 1.9},
}};

/// Distance from the middle, 1 on the outline.
double radiusIn(const Particle &p, double column, double row)
{
    const double u = column - p.column;
    const double v = row - p.row;
    const double along = (u * std::cos(p.angle) + v * std::sin(p.angle)) / p.halfLong;
    const double across = (v * std::cos(p.angle) - u * std::sin(p.angle)) / p.halfShort;
    const double turn = std::atan2(across, along);
    const double radius = std::hypot(along, across);
    return radius * (1.0 + 0.07 * falling(0.4 - radius, 0.2) * std::sin(p.lobes * turn + p.phase));
}

Mixture particlesAt(double column, double row)
{
    // A crack through the largest particle lets the oxidation in.
    const double crack =
        bell(row - 44.0 - 0.35 * (column - 40.0) - 2.0 * std::sin(0.35 * column), 1.6) *
        falling(std::abs(column - 46.0) - 20.0, 5.0);

    const double matrix = 0.13 + 0.04 * std::sin(0.07 * column + 0.4) * std::cos(0.05 * row);
    Mixture mixture{};
    Composition amounts{};
    const auto add = [&](const Composition &composition, double amount) {
        mixture.amount += amount;
        for (std::size_t i = 0; i < kCompounds; ++i) {
            amounts[i] += amount * composition[i];
        }
    };
    add(kMatrix, matrix);
    for (const Particle &p : kParticles) {
        const double radius = radiusIn(p, column, row);
        const double amount = p.height * falling(radius - 1.0, 0.09) *
                              (0.45 + 0.55 * bell(radius, 0.9)) * (1.0 - 0.6 * crack);
        const Composition shell = blend(kMatrix, kRim, falling(radius - 0.92, 0.10));
        const Composition whole = blend(shell, kCore, falling(radius - p.coreSize, 0.12));
        add(blend(whole, kMatrix, 0.8 * crack), amount);
    }
    for (std::size_t i = 0; i < kCompounds; ++i) {
        mixture.ratio[i] = amounts[i] / mixture.amount;
    }
    const double support = 1.0 + 0.25 * std::sin(0.045 * row + 0.3) + 0.15 * mixture.amount;
    mixture.background = {BackgroundKind::Victoreen, 0.05 * support, 0.16 * support,
                          -0.025 * support};
    return mixture;
}

Mixture filmAt(double column, double row)
{
    const double path = 66.0 + 15.0 * std::sin(column / 21.0) + 4.0 * std::sin(column / 6.5 + 1.0);
    const double slope =
        15.0 / 21.0 * std::cos(column / 21.0) + 4.0 / 6.5 * std::cos(column / 6.5 + 1.0);
    const double fromCrack = (row - path) / std::hypot(1.0, slope);

    const double grain = std::sin(column / 9.0 + 1.5 * std::sin(row / 13.0)) *
                         std::sin(row / 8.0 + 1.2 * std::cos(column / 11.0));
    const double reduced = (column - 58.0) / 34.0 + 0.35 * grain -
                           1.7 * bell(fromCrack, 8.0); // more monoxide when high
    const double monoxide = 0.5 + 0.45 * std::tanh(reduced);

    Mixture mixture{};
    mixture.ratio = {0.0, monoxide, 1.0 - monoxide};
    mixture.amount =
        (0.85 + 0.15 * grain + 0.2 * std::sin(row / 40.0)) * (1.0 - 0.82 * bell(fromCrack, 2.2));
    const double perEv = -2.0e-4 * (1.0 + 0.3 * std::cos(row / 30.0) + 0.2 * mixture.amount);
    const double atEdge = 0.35 + 0.05 * std::sin(column / 25.0);
    mixture.background = {BackgroundKind::Linear, atEdge - perEv * kEdgeEv, perEv, 0.0};
    return mixture;
}

} // namespace

double Background::at(double energyEv) const
{
    if (kind == BackgroundKind::Linear) {
        return constant + first * energyEv;
    }
    return Victoreen{constant, first, second}.at(energyEv);
}

double Mixture::absorption(double energyEv) const
{
    double sum = 0.0;
    for (std::size_t i = 0; i < kCompounds; ++i) {
        sum += ratio[i] * normalised(i, energyEv);
    }
    return amount * sum + background.at(energyEv);
}

double Mixture::valence() const
{
    double sum = 0.0;
    for (std::size_t i = 0; i < kCompounds; ++i) {
        sum += ratio[i] * compounds()[i].valence;
    }
    return sum;
}

Mixture pixelTruth(Sample sample, int column, int row)
{
    return sample == Sample::Particles ? particlesAt(column, row) : filmAt(column, row);
}

Mixture targetTruth(Sample sample)
{
    if (sample == Sample::Particles) {
        return {{0.2, 0.3, 0.5}, 0.85, {BackgroundKind::Victoreen, 0.05, 0.21, -0.03}};
    }
    return {{0.0, 0.35, 0.65}, 0.90, {BackgroundKind::Victoreen, 0.03, 0.17, -0.02}};
}

Mixture oxidised(Mixture mixture, double share)
{
    for (double &ratio : mixture.ratio) {
        ratio *= 1.0 - share;
    }
    mixture.ratio[Oxyhydroxide] += share;
    return mixture;
}

StagePosition stagePosition(Sample sample, int column, int row)
{
    return sample == Sample::Particles ? StagePosition{-80.0 + 1.25 * column, 20.0 + 1.25 * row}
                                       : StagePosition{1200.0 + 0.5 * column, -32.0 + 0.5 * row};
}

const std::vector<MapFile> &stackOf(Sample sample)
{
    static const std::vector<MapFile> particles{
        {"p8000.txt", 8000.0, MapLayout::Axis},         {"p8320.txt", 8320.0, MapLayout::Axis},
        {"p8340.txt", 8340.0, MapLayout::Columns},      {"p8346.txt", 8346.0, MapLayout::Columns},
        {"p8350.tdd", 8350.0, MapLayout::Processed},    {"p8356.txt", 8356.0, MapLayout::Counts},
        {"p8446.txt", 8446.0, MapLayout::Transmission}, {"p8900.txt", 8900.0, MapLayout::Axis},
    };
    static const std::vector<MapFile> film{
        {"f8260.txt", 8260.0, MapLayout::Columns},      {"f8320.txt", 8320.0, MapLayout::Counts},
        {"f8340.txt", 8340.0, MapLayout::Transmission}, {"f8347.txt", 8347.0, MapLayout::Axis},
        {"f8446.txt", 8446.0, MapLayout::Columns},      {"f8520.txt", 8520.0, MapLayout::Counts},
        {"f8640.txt", 8640.0, MapLayout::Transmission},
    };
    return sample == Sample::Particles ? particles : film;
}

const char *folderOf(Sample sample)
{
    return sample == Sample::Particles ? "particles" : "film";
}

} // namespace orvel::phantom
