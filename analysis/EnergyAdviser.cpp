#include "analysis/EnergyAdviser.h"

#include "analysis/DesignSearch.h"
#include "analysis/NonEquivPrecision.h"
#include "analysis/PixelNoise.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace orvel {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinite = std::numeric_limits<double>::infinity();
constexpr double kFarFromBest = 10.0;
constexpr int kFewestPoints = 3;

bool isPositive(double number)
{
    return std::isfinite(number) && number > 0.0;
}

bool isInRange(int number, int least, int most)
{
    return number >= least && number <= most;
}

bool areGood(const AdviserSettings &s)
{
    const bool ends = (!s.lowEv || isPositive(*s.lowEv)) && (!s.highEv || isPositive(*s.highEv));
    return ends && isInRange(s.points, kFewestPoints, kPointRows) &&
           isInRange(s.candidates, 2, 2000) && isInRange(s.starts, 1, 1000) &&
           std::isfinite(s.minimumSpacingEv) && s.minimumSpacingEv >= 0.0 && s.alikeWithin >= 0.0 &&
           isPositive(s.amount) && isPositive(s.sigma);
}

/// The method that runs with so many energies.
Method methodFor(const MethodChoice &choice, size_t points)
{
    if (choice.nonEquiv) {
        return choice.linearBackground ? Method::NonEquivLinear : Method::NonEquivVictoreen;
    }
    if (points == 3) {
        return Method::ThreePoints;
    }
    if (points == 4 && choice.exact) {
        return Method::ExactFourPoints;
    }
    return points >= 4 && !choice.exact ? Method::LeastSquares : Method::None;
}

/// The assumed sample and the references, at any energies.
class Sample {
public:
    Sample(const AnalysisInput &input, const AdviserSettings &settings) : m_settings(settings)
    {
        m_input.references = input.references;
        m_input.method = input.method;
        m_references = validReferences(m_input.references);
        m_fault = findFault();
    }

    DesignFault fault() const { return m_fault; }
    const std::vector<const ReferenceInput *> &references() const { return m_references; }
    bool isNonEquiv() const { return m_input.method.nonEquiv; }
    Method method(size_t points) const { return methodFor(m_input.method, points); }

    /// The references that the methods take.
    size_t count() const { return isNonEquiv() ? m_references.size() : 2; }
    const std::vector<double> &fractions() const { return m_fractions; }

    RefValues at(const std::vector<double> &energiesEv, Method method) const
    {
        AnalysisInput input = m_input;
        Plan plan;
        plan.method = method;
        for (const double energyEv : energiesEv) {
            EnergyPointInput point;
            point.energyEv = energyEv;
            plan.used.push_back(input.points.size());
            input.points.push_back(point);
        }
        return gatherRefValues(input, plan);
    }

    /// The linear combinations of weighted coefficients whose variances, over S^2, are those of
    /// the valence or of the fractions.
    Rows directions() const
    {
        Rows rows;
        if (m_settings.criterion == DesignCriterion::Valence) {
            rows.push_back(valences());
            const double mean = valence();
            for (double &element : rows.back()) {
                element -= mean;
            }
            return rows;
        }
        for (size_t i = 0; i < count(); ++i) {
            rows.emplace_back(count(), -m_fractions[i]);
            rows.back()[i] += 1.0;
        }
        return rows;
    }

    /// points  in row order, or with V first; v: which of them is V
    ExpectedPrecision expect(const std::vector<double> &points, int v) const;

private:
    DesignFault findFault()
    {
        const auto isMissing = [](const ReferenceInput &r) { return r.use && !r.isValid(); };
        const auto hasJump = [](const ReferenceInput *r) {
            return std::isnormal(r->spectrum.edgeJump());
        };
        if (!areGood(m_settings)) {
            return DesignFault::BadSettings;
        }
        if (m_references.size() < 2) {
            return DesignFault::FewReferences;
        }
        if (std::any_of(m_input.references.begin(), m_input.references.end(), isMissing) ||
            !std::all_of(m_references.begin(), m_references.end(), hasJump)) {
            return DesignFault::InvalidReference;
        }
        if (!setFractions()) {
            return DesignFault::BadComposition;
        }
        const std::vector<double> all = valences();
        const bool equal = std::equal(all.begin() + 1, all.end(), all.begin());
        return equal && m_settings.criterion == DesignCriterion::Valence
                   ? DesignFault::EqualValences
                   : DesignFault::None;
    }

    bool setFractions()
    {
        const auto &given = m_settings.fractions;
        const bool equal =
            std::all_of(given.begin(), given.end(), [](double f) { return f == 0.0; });
        double sum = 0.0;
        bool areFractions = true;
        for (size_t i = 0; i < count(); ++i) {
            m_fractions.push_back(equal ? 1.0 : given[static_cast<size_t>(m_references[i]->row)]);
            areFractions = areFractions && m_fractions.back() >= 0.0;
            sum += m_fractions.back();
        }
        for (double &fraction : m_fractions) {
            fraction /= sum;
        }
        return areFractions && isPositive(sum);
    }

    std::vector<double> valences() const
    {
        std::vector<double> all;
        for (size_t i = 0; i < count(); ++i) {
            all.push_back(m_references[i]->valence);
        }
        return all;
    }
    double valence() const
    {
        const std::vector<double> all = valences();
        return std::inner_product(all.begin(), all.end(), m_fractions.begin(), 0.0);
    }

    void expectNonEquiv(const RefValues &values, ExpectedPrecision &expected) const;
    void expectFourPoints(const RefValues &values, int v, ExpectedPrecision &expected) const;

    AnalysisInput m_input; ///< references and method alone
    AdviserSettings m_settings;
    std::vector<const ReferenceInput *> m_references;
    std::vector<double> m_fractions;
    DesignFault m_fault;
};

void Sample::expectNonEquiv(const RefValues &values, ExpectedPrecision &expected) const
{
    expected.freedom = static_cast<int>(values.energiesEv.size()) - values.unknowns();
    if (expected.freedom < 0) {
        expected.fault = DesignFault::FewPoints;
        return;
    }
    const NonEquivPrecision precision(values);
    if (!precision.isRegular()) {
        expected.fault = DesignFault::NotDetermined;
        return;
    }
    const ShareCovariance &d = precision.covariance();
    const double jump = std::fabs(values.jump);
    const double relative = m_settings.sigma * jump / m_settings.amount; // s / S
    const auto deviation = [=](double variance) {
        return relative * std::sqrt(std::max(0.0, variance)); // rounding
    };
    for (size_t i = 0; i < m_fractions.size(); ++i) {
        const double r = m_fractions[i];
        expected.fractions[static_cast<size_t>(m_references[i]->row)] =
            deviation(d.diagonal[i] + r * (r * d.total - 2.0 * d.rowSum[i]));
    }
    const double v = valence();
    expected.valence = deviation(d.valenceSquare + v * (v * d.total - 2.0 * d.valenceSum));
    expected.amount = m_settings.sigma * jump * std::sqrt(d.total);
    expected.condition = precision.condition();
}

void Sample::expectFourPoints(const RefValues &values, int v, ExpectedPrecision &expected) const
{
    const FourPointsDesign evaluate(expected.method, values, m_fractions[0], m_settings.amount);
    Design design;
    design.at[0] = v;
    design.count = 1;
    for (int i = 0; i < static_cast<int>(values.energiesEv.size()); ++i) {
        if (i != v) {
            design.at[static_cast<size_t>(design.count++)] = i;
        }
    }
    const FourPointsDesign::Variances found = evaluate.variances(design);
    if (!std::isfinite(found.a)) {
        expected.fault = DesignFault::NotDetermined;
        return;
    }
    const double sigma = m_settings.sigma * std::sqrt(found.a);
    for (size_t i = 0; i < 2; ++i) {
        expected.fractions[static_cast<size_t>(m_references[i]->row)] = sigma;
    }
    expected.valence = sigma * std::fabs(m_references[0]->valence - m_references[1]->valence);
    expected.amount = m_settings.sigma * std::sqrt(found.amount);
    expected.freedom = expected.method == Method::LeastSquares ? design.count - 4 : 0;
    if (!evaluate.isAlike(design, m_settings.alikeWithin)) {
        expected.warnings.push_back(DesignWarning::UnlikeReferences);
    }
}

ExpectedPrecision Sample::expect(const std::vector<double> &points, int v) const
{
    ExpectedPrecision expected;
    expected.method = method(points.size());
    expected.energiesEv = points;
    std::sort(expected.energiesEv.begin(), expected.energiesEv.end());
    if (m_fault != DesignFault::None) {
        expected.fault = m_fault;
        return expected;
    }
    if (expected.method == Method::None) {
        expected.fault = DesignFault::CountForMethod;
        return expected;
    }
    if (isNonEquiv()) {
        expectNonEquiv(at(points, expected.method), expected);
    } else if (v < 0) {
        expected.fault = DesignFault::NoVPoint;
    } else {
        const auto place = std::lower_bound(expected.energiesEv.begin(), expected.energiesEv.end(),
                                            points[static_cast<size_t>(v)]);
        expected.vPoint = static_cast<int>(place - expected.energiesEv.begin());
        expectFourPoints(at(points, expected.method), v, expected);
    }
    if (expected.fault == DesignFault::None) {
        if (expected.freedom == 0) {
            expected.warnings.push_back(DesignWarning::NoFreedom);
        }
        if (m_settings.amount < kLeastAmountInSigmas * expected.amount) {
            expected.warnings.push_back(DesignWarning::AmountInNoise);
        }
    }
    return expected;
}

/// A monochromator is set, and a form filled in, in hundredths of an eV: rounded no sooner than
/// there, energies could break a condition that they just keep.
double settable(double energyEv)
{
    constexpr double kPerEv = 100.0;
    return std::round(energyEv * kPerEv) / kPerEv;
}

/// Where to look; empty when the references have no range in common with what is asked.
std::vector<double> candidateEnergies(const Sample &sample, const AdviserSettings &settings)
{
    const double edgeEv = sample.references().front()->spectrum.edgeE();
    double low = settings.lowEv.value_or(edgeEv - 60.0);
    double high = settings.highEv.value_or(edgeEv + 200.0);
    for (const ReferenceInput *reference : sample.references()) {
        const AMutE &spectrum = reference->spectrum;
        low = std::max(low, spectrum.minE() - spectrum.dE());
        high = std::min(high, spectrum.maxE() - spectrum.dE());
    }
    std::vector<double> energies;
    if (low > 0.0 && low < high && std::isfinite(high)) {
        const int last = settings.candidates - 1;
        for (int i = 0; i <= last; ++i) {
            const double energyEv = settable(i == last ? high : low + (high - low) / last * i);
            const bool isNew = energies.empty() || energies.back() < energyEv;
            if (isNew && energyEv >= low && energyEv <= high) {
                energies.push_back(energyEv);
            }
        }
    }
    return energies;
}

/// Drops what no fit could take: energies at which a reference has no finite value.
std::vector<double> withValues(const std::vector<double> &energiesEv, const RefValues &values)
{
    std::vector<double> kept;
    for (size_t i = 0; i < energiesEv.size(); ++i) {
        if (std::all_of(values.values.begin(), values.values.end(),
                        [i](const auto &all) { return std::isfinite(all[i]); })) {
            kept.push_back(energiesEv[i]);
        }
    }
    return kept;
}

/// Candidates with the values that a method has there, and what a design of them is worth.
class Problem {
public:
    Problem(const Sample &sample, const AdviserSettings &settings, std::vector<double> energiesEv)
        : m_within(settings.alikeWithin)
    {
        const Method method = sample.method(static_cast<size_t>(settings.points));
        const size_t n = energiesEv.size();
        m_ground = {std::move(energiesEv), std::vector<char>(n, 1), !sample.isNonEquiv(),
                    settings.minimumSpacingEv};
        if (n < static_cast<size_t>(settings.points)) {
            m_fault = DesignFault::FewCandidates;
            return;
        }
        const RefValues values = sample.at(m_ground.energiesEv, method);
        if (sample.isNonEquiv()) {
            m_vPlaces = {-1};
            if (settings.points < values.unknowns()) {
                m_fault = DesignFault::FewPoints;
                return;
            }
            m_nonEquiv.emplace(values, sample.directions());
            m_fault = m_nonEquiv->isRegular() ? DesignFault::None : DesignFault::NotDetermined;
            return;
        }
        m_fourPoints.emplace(method, values, sample.fractions()[0], settings.amount);
        m_vPlaces.resize(n);
        std::iota(m_vPlaces.begin(), m_vPlaces.end(), 0);
        std::stable_sort(m_vPlaces.begin(), m_vPlaces.end(), [this](int i, int j) {
            return m_fourPoints->difference(i) > m_fourPoints->difference(j);
        });
        for (const int place : m_vPlaces) {
            m_ground.mayBeOther[static_cast<size_t>(place)] =
                m_fourPoints->difference(place) <= m_within ? 1 : 0;
        }
    }

    DesignFault fault() const { return m_fault; }
    const DesignGround &ground() const { return m_ground; }
    /// Candidates for V, the best first; one that is -1 where there is none.
    const std::vector<int> &vPlaces() const { return m_vPlaces; }

    double variance(const Design &design) const
    {
        if (m_nonEquiv) {
            return m_nonEquiv->variance(design);
        }
        return m_fourPoints->isAlike(design, m_within) ? m_fourPoints->variances(design).a
                                                       : kInfinite;
    }

private:
    double m_within;
    DesignFault m_fault = DesignFault::None;
    DesignGround m_ground;
    std::vector<int> m_vPlaces;
    std::optional<NonEquivDesign> m_nonEquiv;
    std::optional<FourPointsDesign> m_fourPoints;
};

/// Searches from all starts; what is wrong when nothing is found.
DesignFault search(const Problem &problem, const AdviserSettings &settings, Design &found)
{
    const DesignGround &ground = problem.ground();
    const FoundDesign best =
        searchDesign(ground, [&problem](const Design &d) { return problem.variance(d); },
                     {settings.points, problem.vPlaces(), settings.starts, settings.seed});
    if (!best.fits) {
        DesignGround anywhere = ground;
        anywhere.mayBeOther.assign(anywhere.mayBeOther.size(), 1);
        return packedPlaces(anywhere, -1).size() >= static_cast<size_t>(settings.points)
                   ? DesignFault::FewAlikeCandidates
                   : DesignFault::FewCandidates;
    }
    found = best.design;
    return std::isfinite(best.cost) ? DesignFault::None : DesignFault::NotDetermined;
}

std::vector<double> energiesOf(const DesignGround &ground, const Design &design)
{
    std::vector<double> energies;
    energies.reserve(kPointRows);
    for (int i = 0; i < design.count; ++i) {
        energies.push_back(
            ground.energiesEv[static_cast<size_t>(design.at[static_cast<size_t>(i)])]);
    }
    return energies;
}

/// The best energies moved between the candidates: exchanged for any of these and for energies
/// around themselves, an eighth of a step apart.
std::vector<double> refined(const Sample &sample, const AdviserSettings &settings,
                            const std::vector<double> &candidatesEv,
                            const std::vector<double> &bestEv)
{
    constexpr int kParts = 8;
    const double low = candidatesEv.front();
    const double high = candidatesEv.back();
    const double part = (high - low) / (settings.candidates - 1) / kParts;
    std::vector<double> finer = candidatesEv;
    for (const double energyEv : bestEv) {
        for (int k = 1 - kParts; k < kParts; ++k) {
            const double moved = settable(energyEv + k * part);
            if (k != 0 && low < moved && moved < high) {
                finer.push_back(moved);
            }
        }
    }
    std::sort(finer.begin(), finer.end());
    finer.erase(std::unique(finer.begin(), finer.end()), finer.end());
    const Method method = sample.method(static_cast<size_t>(settings.points));
    finer = withValues(finer, sample.at(finer, method));
    const Problem problem(sample, settings, finer);
    Design design;
    for (const double energyEv : bestEv) {
        const auto place = std::lower_bound(finer.begin(), finer.end(), energyEv);
        design.at[static_cast<size_t>(design.count++)] = static_cast<int>(place - finer.begin());
    }
    const FoundDesign best = improvedDesign(
        problem.ground(), [&problem](const Design &d) { return problem.variance(d); }, design);
    return std::isfinite(best.cost) ? energiesOf(problem.ground(), best.design) : bestEv;
}

ExpectedPrecision bestEnergies(const Sample &sample, const AdviserSettings &settings,
                               std::vector<double> &candidatesEv)
{
    ExpectedPrecision failed;
    failed.method = sample.method(static_cast<size_t>(settings.points));
    failed.fault = DesignFault::CountForMethod;
    if (failed.method == Method::None) {
        return failed;
    }
    candidatesEv = candidateEnergies(sample, settings);
    candidatesEv = withValues(candidatesEv, sample.at(candidatesEv, failed.method));
    const Problem problem(sample, settings, candidatesEv);
    Design found;
    failed.fault =
        problem.fault() == DesignFault::None ? search(problem, settings, found) : problem.fault();
    if (failed.fault != DesignFault::None) {
        return failed;
    }
    std::vector<double> energies = energiesOf(problem.ground(), found);
    if (settings.refine) {
        energies = refined(sample, settings, candidatesEv, energies);
    }
    return sample.expect(energies, sample.isNonEquiv() ? -1 : 0);
}

ExpectedPrecision presentPrecision(const AnalysisInput &input, const Sample &sample)
{
    std::vector<double> energies;
    int v = -1;
    for (const EnergyPointInput &point : input.points) {
        if (point.use) {
            v = point.vPoint ? static_cast<int>(energies.size()) : v;
            energies.push_back(point.energyEv);
        }
    }
    if (sample.fault() == DesignFault::None &&
        !std::all_of(energies.begin(), energies.end(), isPositive)) {
        ExpectedPrecision expected;
        expected.fault = DesignFault::NoEnergy;
        return expected;
    }
    return sample.expect(energies, v);
}

bool isFarFrom(const ExpectedPrecision &best, const ExpectedPrecision &present)
{
    const auto isFar = [](double sigma, double least) {
        return least > 0.0 && sigma >= kFarFromBest * least;
    };
    bool far = isFar(present.valence, best.valence) || isFar(present.amount, best.amount);
    for (size_t i = 0; i < best.fractions.size(); ++i) {
        far = far || isFar(present.fractions[i], best.fractions[i]);
    }
    return far;
}

} // namespace

ExpectedPrecision::ExpectedPrecision() : valence(kNan), amount(kNan), condition(kNan)
{
    fractions.fill(kNan);
}

EnergyAdvice adviseEnergies(const AnalysisInput &input, const AdviserSettings &settings)
{
    const Sample sample(input, settings);
    EnergyAdvice advice;
    advice.present = presentPrecision(input, sample);
    advice.best.fault = sample.fault();
    if (sample.fault() != DesignFault::None) {
        return advice;
    }
    advice.best = bestEnergies(sample, settings, advice.candidatesEv);
    const bool both =
        advice.present.fault == DesignFault::None && advice.best.fault == DesignFault::None;
    if (both && isFarFrom(advice.best, advice.present)) {
        advice.present.warnings.push_back(DesignWarning::FarFromBest);
    }
    return advice;
}

} // namespace orvel
