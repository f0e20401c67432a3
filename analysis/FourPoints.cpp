#include "analysis/FourPoints.h"

#include "analysis/FourPointsPrecision.h"
#include "analysis/PixelRuns.h"
#include "base/Parallel.h"

#include <algorithm>

namespace orvel {

FourPoints::FourPoints(const AnalysisInput &input, const Plan &plan)
    : m_method(plan.method), m_vPoint(static_cast<size_t>(plan.vPoint))
{
    const auto references = validReferences(input.references);
    const ReferenceInput &a = *references[0];
    const ReferenceInput &b = *references[1];
    m_rowA = a.row;
    m_rowB = b.row;
    m_valenceA = a.valence;
    m_valenceB = b.valence;
    m_jumpRatio = a.spectrum.edgeJump() / b.spectrum.edgeJump();

    const auto columnA = static_cast<size_t>(m_rowA);
    const auto columnB = static_cast<size_t>(m_rowB);
    for (const size_t i : plan.used) {
        const EnergyPointInput &point = input.points[i];
        if (i == m_vPoint) {
            m_energyV = point.energyEv;
            m_a.atV = point.referenceMu[columnA];
            m_b.atV = point.referenceMu[columnB];
            continue;
        }
        m_points.push_back(i);
        m_energies.push_back(point.energyEv);
        m_a.atPoints.push_back(point.referenceMu[columnA]);
        m_b.atPoints.push_back(point.referenceMu[columnB]);
    }
}

PointValues FourPoints::targetValues(const AnalysisInput &input) const
{
    PointValues values;
    values.atV = input.points[m_vPoint].targetMu;
    for (const size_t i : m_points) {
        values.atPoints.push_back(input.points[i].targetMu);
    }
    return values;
}

FourPointsResult FourPoints::solve(const PointValues &values)
{
    switch (m_method) {
    case Method::ThreePoints:
        return threePoints(values);
    case Method::ExactFourPoints:
        return fromLine(exactLine(values), values.atV);
    default:
        return fromLine(leastSquaresLine(values), values.atV);
    }
}

FourPointsResult FourPoints::threePoints(const PointValues &values) const
{
    const double a1 = m_a.atPoints[0];
    const double a2 = m_a.atPoints[1];
    const double b1 = m_b.atPoints[0];
    const double b2 = m_b.atPoints[1];
    const double t1 = values.atPoints[0];
    const double alpha = (m_a.atV - a1) / (a2 - a1);
    const double beta = (m_b.atV - b1) / (b2 - b1);
    const double dMut = values.atPoints[1] - t1;
    const double tau = (values.atV - t1) / dMut;
    // A at P2 against B at P1: existing maps are scaled by this mixed mean, so it stays.
    return {(tau - beta) / (alpha - beta), dMut / (((a2 - b1) + (a2 - a1)) * 0.5)};
}

FourPoints::Line FourPoints::exactLine(const PointValues &values) const
{
    const double e1 = m_energies[0];
    const double e2 = m_energies[1];
    const double e3 = m_energies[2];
    const double s1 = m_a.atPoints[0] + m_b.atPoints[0];
    const double s2 = m_a.atPoints[1] + m_b.atPoints[1];
    const double s3 = m_a.atPoints[2] + m_b.atPoints[2];
    const double t1 = values.atPoints[0];
    const double t2 = values.atPoints[1];
    const double t3 = values.atPoints[2];
    // Curvatures: zero for any straight line in E.
    const double qS = (e2 - e1) * s3 + (e1 - e3) * s2 + (e3 - e2) * s1;
    const double qT = (e2 - e1) * t3 + (e1 - e3) * t2 + (e3 - e2) * t1;
    const double g = qS / qT;
    const double m =
        -((e1 * t2 - e2 * t1) * s3 + (e2 * s1 - e1 * s2) * t3 + e3 * t1 * s2 - e3 * s1 * t2) / qS;
    const double k = ((t2 - t1) * s3 + t3 * (s1 - s2) + t1 * s2 - t2 * s1) / qS;
    return {g, m, k};
}

FourPoints::Line FourPoints::leastSquaresLine(const PointValues &values)
{
    // S = c0 + c1 E + c2 T, hence T = S / c2 - c0 / c2 - (c1 / c2) E.
    m_system.clear();
    for (size_t i = 0; i < m_points.size(); ++i) {
        const double basis[] = {1.0, m_energies[i], values.atPoints[i]};
        m_system.addSample(basis, m_a.atPoints[i] + m_b.atPoints[i]);
    }
    m_system.solve();
    const double c2 = m_system.unknown(2);
    return {c2, -m_system.unknown(0) / c2, -m_system.unknown(1) / c2};
}

FourPointsResult FourPoints::fromLine(const Line &line, double atV) const
{
    const double u = line.g / (m_jumpRatio + 1);
    const double w = m_jumpRatio * line.g / (m_jumpRatio + 1);
    const double a =
        ((line.m + line.k * m_energyV - atV) * (w * u) + m_b.atV * w) / (m_b.atV * w - u * m_a.atV);
    return {a, 1 / (line.g * 0.5)};
}

FourPointsPixels FourPoints::pixels() const
{
    FourPointsPixels::Setup setup;
    setup.points = static_cast<int>(m_points.size());
    std::copy(m_energies.begin(), m_energies.end(), setup.energies);
    std::copy(m_a.atPoints.begin(), m_a.atPoints.end(), setup.refA);
    std::copy(m_b.atPoints.begin(), m_b.atPoints.end(), setup.refB);
    setup.energyV = m_energyV;
    setup.refAV = m_a.atV;
    setup.refBV = m_b.atV;
    setup.jumpRatio = m_jumpRatio;
    setup.valenceA = m_valenceA;
    setup.valenceB = m_valenceB;
    return FourPointsPixels(m_method, setup);
}

ResultMaps fourPointsMap(const AnalysisInput &input, const Plan &plan,
                         const MapResources &resources)
{
    ResultMaps maps(plan.method, input.points[plan.used.front()].map, resources.pool);
    const FourPointsPixels::Planes planes = {maps.addPlane(Quantity::Ratio1),
                                             maps.addPlane(Quantity::Valence),
                                             maps.addPlane(Quantity::Amount)};
    std::vector<std::shared_ptr<const ImageData>> shared;
    for (const size_t i : plan.used) {
        if (static_cast<int>(i) != plan.vPoint) {
            shared.push_back(input.points[i].map);
        }
    }
    shared.push_back(input.points[static_cast<size_t>(plan.vPoint)].map);
    std::vector<const ImageData *> images;
    images.reserve(shared.size());
    for (const auto &image : shared) {
        images.push_back(image.get());
    }

    const FourPointsPixels pixels = FourPoints(input, plan).pixels();
    const PixelRuns runs(std::move(images), maps.width(), maps.height());
    inParallel(
        runs.size(), resources.pixelsPerThread, threadsFor(resources.threads),
        [&](size_t begin, size_t end) {
            runs.forEach(begin, end, [&](const double *const *values, size_t first, size_t n) {
                pixels.solve(values, n,
                             {planes.a + first, planes.valence + first, planes.amount + first});
            });
        });
    if (input.precision.maps) {
        addFourPointsSigmas(maps, FourPointsPrecision(plan.method, pixels.setup()), shared,
                            input.precision, resources);
    }
    return maps;
}

} // namespace orvel
