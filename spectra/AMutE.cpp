#include "spectra/AMutE.h"

#include "analysis/LinearSystem.h"

#include <algorithm>
#include <cmath>

namespace {

using orvel::LinearSystem;

AMutE::Victoreen solutionOf(LinearSystem &system)
{
    system.solve();
    return {system.unknown(0), system.unknown(1), system.unknown(2)};
}

/// Normal equations of one Victoreen line: the basis is 1, lambda^3, lambda^4.
void addToLine(LinearSystem &system, double lambda, double mut)
{
    const double lambda3 = lambda * lambda * lambda;
    const double basis[] = {1.0, lambda3, lambda3 * lambda};
    system.addSample(basis, mut);
}

} // namespace

double AMutE::Victoreen::at(double energyEv) const
{
    const double lambda = kHcEvAngstrom / energyEv;
    return (lambda * c + b) * (lambda * lambda * lambda) + a;
}

void AMutE::setPoints(QVector<MutPoint> points) // a copy: they may be our own
{
    clearPoints();
    m_points.reserve(points.size());
    for (const MutPoint &p : qAsConst(points)) {
        append(p.angleDeg, p.energyEv, p.mut);
    }
    m_valid = !m_points.isEmpty();
    m_readFailure = orvel::ReadFailure::None;
    fitVictoreens();
}

void AMutE::clearPoints()
{
    m_points.clear();
    m_valid = false;
    m_ascending = true;
    m_minAngle = m_minE = m_minMu = 1e300;
    m_maxAngle = m_maxE = m_maxMu = -1e300;
}

void AMutE::append(double angleDeg, double energyEv, double mut)
{
    const auto widen = [](double value, double &min, double &max) {
        if (value < min) {
            min = value;
        }
        if (value > max) {
            max = value;
        }
    };
    widen(angleDeg, m_minAngle, m_maxAngle);
    widen(energyEv, m_minE, m_maxE);
    widen(mut, m_minMu, m_maxMu);
    // Not-a-number is not ascending either.
    m_ascending =
        m_ascending && energyEv >= (m_points.isEmpty() ? energyEv : m_points.last().energyEv);
    m_points.append({angleDeg, energyEv, mut});
}

void AMutE::setEdge(double preEdgeEnd, double edgeE, double postEdgeStart)
{
    m_preEdgeEnd = preEdgeEnd;
    m_edgeE = edgeE;
    m_postEdgeStart = postEdgeStart;
}

int AMutE::indexAt(double e) const
{
    const int n = m_points.size();
    if (n < 2 || e < effectiveEnergy(0)) {
        return 0;
    }
    if (e > effectiveEnergy(n - 1)) {
        return n - 2;
    }
    if (m_ascending && !std::isnan(e) && std::isfinite(m_dE)) {
        // The first point at or above e ends the first interval that holds it.
        const auto found =
            std::partition_point(m_points.begin(), m_points.end(),
                                 [this, e](const MutPoint &p) { return p.energyEv - m_dE < e; });
        return std::clamp(static_cast<int>(found - m_points.begin()) - 1, 0, n - 2);
    }
    for (int i = 0; i + 1 < n; ++i) {
        if (effectiveEnergy(i) <= e && e <= effectiveEnergy(i + 1)) {
            return i;
        }
    }
    return 0;
}

double AMutE::valueAt(int mode, int i) const
{
    const double e = effectiveEnergy(i);
    const double mut = m_points[i].mut;
    switch (mode) {
    case NoNormalization:
        return mut;
    case SubPre:
        return mut - pre(e);
    case SubPost:
        return mut - post(e);
    case ByEdgeJump:
        return (mut - pre(e)) / edgeJump();
    case By2Victoreens:
        return (mut - pre(e)) / (post(e) - pre(e));
    default:
        return 0.0;
    }
}

double AMutE::valueAtOrZero(int mode, int i) const
{
    return i < 0 || i >= m_points.size() ? 0.0 : valueAt(mode, i);
}

double AMutE::valueAtE(int mode, double e) const
{
    if (m_points.size() < 2) {
        return 0.0;
    }
    const int i = indexAt(e);
    const double e0 = effectiveEnergy(i);
    const double e1 = effectiveEnergy(i + 1);
    const double v0 = valueAt(mode, i);
    const double v1 = valueAt(mode, i + 1);
    return v0 + (v1 - v0) / (e1 - e0) * (e - e0);
}

void AMutE::rangeOf(int mode, double e1, double e2, double &min, double &max) const
{
    for (int i = 0; i < m_points.size(); ++i) {
        const double e = effectiveEnergy(i);
        if (e1 <= e && e <= e2) {
            const double value = valueAt(mode, i);
            min = std::min(min, value);
            max = std::max(max, value);
        }
    }
}

bool AMutE::valueMinusLine(double e, bool subtractPost, double &out) const
{
    double e0 = 0.0;
    double mut0 = 0.0;
    for (int i = 0; i < m_points.size(); ++i) {
        const double e1 = effectiveEnergy(i);
        const double mut1 = m_points[i].mut;
        if (e1 >= e) {
            const double mut = mut0 + (mut1 - mut0) / (e1 - e0) * (e - e0);
            out = mut - (subtractPost ? post(e) : pre(e));
            return true;
        }
        e0 = e1;
        mut0 = mut1;
    }
    return false;
}

double AMutE::findEdge() const
{
    if (m_points.isEmpty()) {
        return 0.0;
    }
    double steepest = -1.0;
    double edge = effectiveEnergy(0) / 2.0;
    for (int i = 0; i + 1 < m_points.size(); ++i) {
        const double step = m_points[i + 1].mut - m_points[i].mut;
        if (step > steepest) {
            steepest = step;
            edge = (effectiveEnergy(i) + effectiveEnergy(i + 1)) / 2.0;
        }
    }
    return edge;
}

void AMutE::fitVictoreens()
{
    if (m_points.isEmpty()) {
        return;
    }
    LinearSystem preSystem(3);
    LinearSystem postSystem(3);
    preSystem.clear();
    postSystem.clear();
    for (int i = 0; i < m_points.size(); ++i) {
        const double e = effectiveEnergy(i);
        const double lambda = kHcEvAngstrom / e;
        if (e < m_preEdgeEnd) {
            addToLine(preSystem, lambda, m_points[i].mut);
        }
        if (e > m_postEdgeStart) {
            addToLine(postSystem, lambda, m_points[i].mut);
        }
    }
    m_pre = solutionOf(preSystem);
    m_post = solutionOf(postSystem);
}
