#include "bench/Sample.h"

#include "analysis/RowValues.h"
#include "bench/Random.h"

#include <cmath>
#include <numbers>

namespace orvel::bench {
namespace {

constexpr std::array<double, kPointRows> kEnergiesEv = {7040, 7100, 7115, 7120,
                                                        7125, 7132, 7150, 7200};
constexpr int kVPoint = 4;
constexpr std::array<double, kReferenceRows> kValences = {0.0, 2.0, 2.67, 3.0};
constexpr double kNoise = 1e-3;

/// An arctan edge with a white line behind it.
double edgeOf(int compound, double energyEv)
{
    const double beyond = energyEv - (7112.0 + 4.0 * compound);
    const double whiteLine = (beyond - 4.0) / (3.0 + compound);
    return 0.5 + std::atan(beyond / (1.5 + 0.3 * compound)) / std::numbers::pi +
           (0.3 + 0.15 * compound) * std::exp(-whiteLine * whiteLine);
}

/// A reference spectrum. Its background is of the shape that a pixel's background can take, so
/// a pixel's amounts are the factors of edgeOf(), whatever line is subtracted here.
AMutE spectrumOf(int compound)
{
    constexpr double kFirstEv = 6900.0;
    constexpr double kStepEv = 0.5; // every image's energy is a point
    constexpr int kPoints = 2001;
    const AMutE::Victoreen background = {0.1 + 0.02 * compound, 0.03, 0.008};
    QVector<MutPoint> points;
    for (int i = 0; i < kPoints; ++i) {
        const double e = kFirstEv + kStepEv * i;
        points.append({0.0, e, background.at(e) + edgeOf(compound, e)});
    }
    AMutE spectrum;
    spectrum.setEdge(7070.0, 7120.0, 7220.0);
    spectrum.setPoints(points);
    return spectrum;
}

AnalysisInput inputWithReferences()
{
    AnalysisInput input;
    for (int i = 0; i < kReferenceRows; ++i) {
        input.references.push_back({i, true, spectrumOf(i), kValences[static_cast<size_t>(i)]});
    }
    return input;
}

} // namespace

Sample::Sample(int side)
{
    const auto pixels = static_cast<std::size_t>(side) * static_cast<std::size_t>(side);
    Random random(20039012);
    makeIntensities(pixels, random);

    m_nonEquiv = inputWithReferences();
    m_nonEquiv.method.nonEquiv = true;
    for (std::size_t k = 0; k < kEnergiesEv.size(); ++k) {
        Column absorption(pixels);
        fillAbsorption(m_signals[k].data(), m_references[k].data(), pixels, absorption.data());
        EnergyPointInput point;
        point.row = static_cast<int>(k);
        point.use = true;
        point.vPoint = point.row == kVPoint;
        point.energyEv = kEnergiesEv[k];
        point.map = ImageData::fromAbsorption(side, side, std::move(absorption));
        m_nonEquiv.points.push_back(std::move(point));
    }
    fillRowValues(m_nonEquiv);

    m_fourPoints = m_nonEquiv;
    m_fourPoints.method.nonEquiv = false;
    m_fourPoints.method.exact = false;
    m_fourPoints.references[1].use = false;
    m_fourPoints.references[2].use = false;
}

void Sample::makeIntensities(std::size_t pixels, Random &random)
{
    std::array<std::array<double, kReferenceRows>, kPointRows> edges;
    for (std::size_t k = 0; k < kEnergiesEv.size(); ++k) {
        m_signals[k].resize(pixels);
        m_references[k].resize(pixels);
        for (std::size_t c = 0; c < edges[k].size(); ++c) {
            edges[k][c] = edgeOf(static_cast<int>(c), kEnergiesEv[k]);
        }
    }
    for (std::size_t i = 0; i < pixels; ++i) {
        std::array<double, kReferenceRows> amounts;
        double sum = 0.0;
        for (double &amount : amounts) {
            amount = random.exponential();
            sum += amount;
        }
        const double thickness = 0.3 + 1.2 * random.uniform();
        for (std::size_t c = 0; c < amounts.size(); ++c) {
            amounts[c] *= thickness / sum;
            m_meanAmounts[c] += amounts[c] / static_cast<double>(pixels);
        }
        const AMutE::Victoreen background = {0.05 + 0.05 * random.uniform(),
                                             0.02 + 0.02 * random.uniform(),
                                             0.005 + 0.005 * random.uniform()};
        for (std::size_t k = 0; k < kEnergiesEv.size(); ++k) {
            double mut = background.at(kEnergiesEv[k]);
            for (std::size_t c = 0; c < amounts.size(); ++c) {
                mut += amounts[c] * edges[k][c];
            }
            const double reference = 1000.0 + 200.0 * random.uniform();
            m_references[k][i] = reference;
            m_signals[k][i] = reference * std::exp(-mut) * (1.0 + kNoise * random.normal());
        }
    }
}

} // namespace orvel::bench
