#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Calculations.h"

#include <QStringList>

#include <cmath>
#include <numeric>

// Inputs whose answers can be worked out by hand.

namespace inputs {

/// Energies below 100 eV are before the edge, above 200 eV behind it.
inline AMutE withLines(AMutE spectrum)
{
    spectrum.setEdge(100, 150, 200);
    spectrum.fitVictoreens();
    return spectrum;
}

/// A spectrum that is 0 before the edge (its pre-edge line is exactly 0) and flat at `jump` behind
/// it (its edge jump is that to 1e-8, as normal equations go), with free points in between.
inline AMutE flatSpectrum(double jump, const QVector<QPair<double, double>> &between = {})
{
    QVector<MutPoint> points = {{0, 40, 0}, {0, 60, 0}, {0, 80, 0}};
    for (const auto &p : between) {
        points.append({0, p.first, p.second});
    }
    for (const double energyEv : {210.0, 300.0, 420.0, 600.0}) {
        points.append({0, energyEv, jump});
    }
    AMutE spectrum;
    spectrum.setPoints(points);
    return withLines(spectrum);
}

inline orvel::ReferenceInput reference(int row, double valence, const AMutE &spectrum)
{
    orvel::ReferenceInput input;
    input.row = row;
    input.use = true;
    input.spectrum = spectrum;
    input.valence = valence;
    return input;
}

inline orvel::EnergyPointInput point(int row, double energyEv)
{
    orvel::EnergyPointInput input;
    input.row = row;
    input.use = true;
    input.energyEv = energyEv;
    return input;
}

/// References that are 0 before the edge and have values[reference][energy] between 100 and 200 eV,
/// in rows from `firstRow` on, and points that know these values.
inline orvel::AnalysisInput withReferences(const std::vector<double> &energiesEv,
                                           const std::vector<std::vector<double>> &values,
                                           const std::vector<double> &jumps,
                                           const std::vector<double> &valences, int firstRow = 0)
{
    orvel::AnalysisInput input;
    for (const double energyEv : energiesEv) {
        input.points.push_back(point(static_cast<int>(input.points.size()), energyEv));
    }
    for (size_t r = 0; r < jumps.size(); ++r) {
        const int row = firstRow + static_cast<int>(r);
        QVector<QPair<double, double>> between;
        for (size_t e = 0; e < energiesEv.size(); ++e) {
            between.append({energiesEv[e], values[r][e]});
            input.points[e].referenceMu[static_cast<size_t>(row) % orvel::kReferenceRows] =
                values[r][e];
        }
        input.references.push_back(reference(row, valences[r], flatSpectrum(jumps[r], between)));
    }
    return input;
}

inline std::shared_ptr<const orvel::ImageData> image(int width, int height,
                                                     const std::vector<double> &absorption)
{
    return orvel::ImageData::fromAbsorption(width, height,
                                            orvel::Column(absorption.begin(), absorption.end()));
}

/// Relative or absolute closeness, whichever is wider; equal infinities are close.
inline bool close(double found, double expected, double tolerance)
{
    return found == expected ||
           std::fabs(found - expected) <= tolerance * (1 + std::fabs(expected));
}

/// All of so many points; v: the V point.
inline orvel::Plan planOf(orvel::Method method, size_t points, int v = -1)
{
    orvel::Plan plan;
    plan.method = method;
    plan.vPoint = v;
    plan.used.resize(points);
    std::iota(plan.used.begin(), plan.used.end(), size_t(0));
    return plan;
}

/// English texts of lines as the box would show them.
inline QStringList texts(const std::vector<orvel::Line> &lines)
{
    QStringList all;
    for (const orvel::Line &line : lines) {
        QString text;
        for (const orvel::Message &part : line.parts) {
            QString piece =
                part.source != nullptr ? QString::fromLatin1(part.source) : QStringLiteral("%1");
            for (const QString &argument : part.arguments) {
                piece = piece.arg(argument);
            }
            text += piece;
        }
        all << text;
    }
    return all;
}

} // namespace inputs
