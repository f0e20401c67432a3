#include "Expectation.h"

#include "FittedLine.h"
#include "Writers.h"

#include <cmath>

namespace orvel::phantom {

namespace {

/// Digits of the row texts from which the four-points methods read.
constexpr int kRowDigits = 6;

/// The curve a method sees: a target has lost its background with its line before the edge.
Mixture seen(const Mixture &truth, Source source)
{
    Mixture mixture = truth;
    if (source == Source::Target) {
        mixture.background = {};
    }
    return mixture;
}

double sampleError(const Plan &plan, Source source, double energyEv)
{
    return source == Source::Pixel
               ? kMapError
               : kSpectrumError + linesOfTarget(plan.sample).pre.errorAt(energyEv);
}

/// A reference's value minus its line before the edge.
Expected referenceValue(std::size_t compound, double energyEv)
{
    return {compounds().at(compound).edgeJump * normalised(compound, energyEv),
            kSpectrumError + linesOfReference(compound).pre.errorAt(energyEv)};
}

/// The same as the row texts give it.
Expected rowReference(std::size_t compound, double energyEv)
{
    Expected value = referenceValue(compound, energyEv);
    value.bound += printError(value.value, kRowDigits);
    return value;
}

Expected rowSample(const Plan &plan, const Mixture &curve, Source source, double energyEv)
{
    const double value = curve.absorption(energyEv);
    return {value, sampleError(plan, source, energyEv) +
                       (source == Source::Target ? printError(value, kRowDigits) : 0.0)};
}

BackgroundKind kindOf(Sample sample)
{
    return sample == Sample::Film ? BackgroundKind::Linear : BackgroundKind::Victoreen;
}

std::vector<Numbers> nonEquivalentRows(const Plan &plan)
{
    std::vector<Numbers> rows;
    for (const double energy : plan.energiesEv) {
        Numbers row;
        for (const std::size_t compound : plan.references) {
            row.push_back(referenceValue(compound, energy).value);
        }
        row.push_back(1.0L);
        const long double lambda = static_cast<long double>(kHcEvAngstrom) / energy;
        if (kindOf(plan.sample) == BackgroundKind::Linear) {
            row.push_back(energy);
        } else {
            row.push_back(lambda * lambda * lambda);
            row.push_back(lambda * lambda * lambda * lambda);
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

double edgeJump(std::size_t compound)
{
    return compounds().at(compound).edgeJump;
}

double relativeJumpError(std::size_t compound)
{
    return linesOfReference(compound).jumpError() / edgeJump(compound);
}

TwoReferenceResult twoReferences(const Plan &plan, Expected fraction, Expected amount, double shift)
{
    const double va = compounds()[plan.references[0]].valence;
    const double vb = compounds()[plan.references[1]].valence;
    const double a = fraction.value;
    return {fraction, {a * va + (1.0 - a) * vb, std::abs(va - vb) * fraction.bound}, amount, shift};
}

} // namespace

double printError(double value, int digits)
{
    if (value == 0.0 || !std::isfinite(value)) {
        return 0.0;
    }
    return 0.5 * std::pow(10.0, std::floor(std::log10(std::abs(value))) + 1 - digits);
}

const std::vector<Plan> &plans()
{
    const std::vector<double> particles{8000, 8320, 8340, 8346, 8350, 8356, 8446, 8900};
    const std::vector<double> film{8260, 8320, 8340, 8347, 8446, 8520, 8640};
    const std::vector<std::size_t> all{Metal, Monoxide, Oxyhydroxide};
    const std::vector<std::size_t> two{Monoxide, Oxyhydroxide};
    using enum Method;
    static const std::vector<Plan> list{
        {"nonequiv-vic", Sample::Particles, NonEquivalent, particles, 8350, all, 8320, 8446},
        {"nonequiv-linear", Sample::Film, NonEquivalent, film, 8347, all, 8320, 8446},
        {"three-points", Sample::Film, ThreePoints, {8320, 8446}, 8347, two, 8320, 8446},
        {"exact-four-points", Sample::Film, FourPoints, {8260, 8320, 8520}, 8347, two, 8320, 8446},
        {"least-squares",
         Sample::Film,
         FourPoints,
         {8260, 8320, 8446, 8520, 8640},
         8347,
         two,
         8320,
         8446},
        {"lcf",
         Sample::Particles,
         NonEquivalent,
         {8000, 8340, 8346, 8350, 8446, 8900},
         8350,
         all,
         8330,
         8390},
    };
    return list;
}

const Plan *planNamed(std::string_view name)
{
    for (const Plan &plan : plans()) {
        if (plan.name == name) {
            return &plan;
        }
    }
    return nullptr;
}

NonEquivalentExpectation::NonEquivalentExpectation(const Plan &plan)
    : m_plan(plan), m_kind(kindOf(plan.sample)), m_model(nonEquivalentRows(plan))
{
}

std::vector<Expected> NonEquivalentExpectation::of(const Mixture &truth, Source source) const
{
    const std::vector<std::size_t> &refs = m_plan.references;
    const std::size_t m = refs.size();
    const Mixture curve = seen(truth, source);
    const double t = truth.amount;

    Numbers solution;
    for (const std::size_t compound : refs) {
        solution.push_back(t * truth.ratio[compound] / edgeJump(compound));
    }
    solution.insert(solution.end(), {curve.background.constant, curve.background.first});
    if (m_kind == BackgroundKind::Victoreen) {
        solution.push_back(curve.background.second);
    }

    // Error of each measured value, that of the references included (it enters as x_i times it). A
    // fitted line's error is itself a Victoreen curve: a Victoreen background swallows it whole.
    std::vector<double> errors;
    for (const double energy : m_plan.energiesEv) {
        double error = sampleError(m_plan, source, energy);
        for (std::size_t i = 0; i < m; ++i) {
            const double reference = m_kind == BackgroundKind::Linear
                                         ? referenceValue(refs[i], energy).bound
                                         : kSpectrumError;
            error += static_cast<double>(std::abs(solution[i])) * reference;
        }
        errors.push_back(error);
    }
    const auto fitError = [&](const Numbers &f) { return m_model.errorOf(f, solution, errors); };
    // A quantity that changes by q_i per change of the amount J_i x_i.
    const auto ofAmounts = [&](double value, const std::vector<double> &q) {
        Numbers f(solution.size(), 0.0L);
        double jumps = 0.0;
        for (std::size_t i = 0; i < m; ++i) {
            f[i] = q[i] * edgeJump(refs[i]);
            jumps += std::abs(q[i]) * t * truth.ratio[refs[i]] * relativeJumpError(refs[i]);
        }
        return Expected{value, fitError(f) + jumps};
    };

    constexpr std::size_t kReferenceRows = 4;
    std::vector<Expected> found(2 * kReferenceRows + 5, Expected{0.0, 0.0});
    std::vector<double> towardsValence;
    for (std::size_t i = 0; i < m; ++i) {
        const double ratio = truth.ratio[refs[i]];
        std::vector<double> own(m, 0.0);
        own[i] = 1.0;
        found[kReferenceRows + i] = ofAmounts(ratio * t, own);
        std::vector<double> share(m, -ratio / t);
        share[i] += 1.0 / t;
        found[i] = ofAmounts(ratio, share);
        towardsValence.push_back((compounds()[refs[i]].valence - truth.valence()) / t);
    }
    for (std::size_t k = 0; m + k < solution.size(); ++k) {
        Numbers f(solution.size(), 0.0L);
        f[m + k] = 1.0L;
        double error = fitError(f);
        if (m_kind == BackgroundKind::Victoreen) {
            for (std::size_t i = 0; i < m; ++i) {
                error += static_cast<double>(std::abs(solution[i])) *
                         linesOfReference(refs[i]).pre.coefficientError(k);
            }
        }
        found[2 * kReferenceRows + k] = {static_cast<double>(solution[m + k]), error};
    }
    found[2 * kReferenceRows + 3] = ofAmounts(truth.valence(), towardsValence);
    found[2 * kReferenceRows + 4] = ofAmounts(t, std::vector<double>(m, 1.0));
    return found;
}

TwoReferenceResult fourPointsExpectation(const Plan &plan, const Mixture &truth, Source source)
{
    const std::size_t refA = plan.references[0];
    const std::size_t refB = plan.references[1];
    const Mixture curve = seen(truth, source);
    const double tau = truth.amount;
    const double a = truth.ratio[refA];
    const double r = edgeJump(refA) / edgeJump(refB);
    const double g = (edgeJump(refA) + edgeJump(refB)) / tau;
    const double backgroundAtV = curve.background.at(plan.vPointEv);

    // A + B = c0 + c1 E + g T at the points where the references agree; both variants solve this,
    // the exact one with as many points as unknowns.
    std::vector<Numbers> rows;
    std::vector<double> errors;
    for (const double energy : plan.energiesEv) {
        const Expected sample = rowSample(plan, curve, source, energy);
        rows.push_back({1.0L, energy, sample.value});
        errors.push_back(rowReference(refA, energy).bound + rowReference(refB, energy).bound +
                         g * sample.bound);
    }
    const LinearModel model(std::move(rows));
    const Numbers solution{-g * curve.background.constant, -g * curve.background.first, g};
    const auto fitError = [&](const Numbers &f) { return model.errorOf(f, solution, errors); };

    // a = (b - N) / (b - s) with  b = tau n_B,  s = tau n_A,  N = T - background, all at V. b and s
    // are computed as B (r + 1) / g and A (r + 1) / (r g), so an error dg of g moves them by -b
    // dg/g and -s dg/g; the background at V is -(c0 + c1 E_V) / g.
    const Expected rowA = rowReference(refA, plan.vPointEv);
    const Expected rowB = rowReference(refB, plan.vPointEv);
    const double b = tau * normalised(refB, plan.vPointEv);
    const double s = tau * normalised(refA, plan.vPointEv);
    const long double mix = (1.0 - a) * b + a * s;
    const long double span = std::abs(b - s);
    const Numbers f{-1.0L / g / span, -plan.vPointEv / g / span, (-mix - backgroundAtV) / g / span};
    const double direct = (1.0 - a) * tau / edgeJump(refB) * rowB.bound +
                          a * tau / edgeJump(refA) * rowA.bound +
                          std::abs((1.0 - a) * b * r - a * s) / (r + 1.0) *
                              (relativeJumpError(refA) + relativeJumpError(refB)) +
                          rowSample(plan, curve, source, plan.vPointEv).bound;
    const Expected fraction{a, fitError(f) + direct / static_cast<double>(span)};
    const Expected thickness{2.0 / g, 2.0 / (g * g) * fitError({0.0L, 0.0L, 1.0L})};
    return twoReferences(plan, fraction, thickness, 0.0);
}

TwoReferenceResult threePointsExpectation(const Plan &plan, const Mixture &truth, Source source)
{
    const std::size_t refA = plan.references[0];
    const std::size_t refB = plan.references[1];
    const double e1 = plan.energiesEv[0];
    const double e2 = plan.energiesEv[1];
    const double ev = plan.vPointEv;
    const Mixture curve = seen(truth, source);
    const double a = truth.ratio[refA];

    // Value at V on the scale 0 at E_1, 1 at E_2, and its error from those of the three values.
    const auto scaled = [](const Expected &first, const Expected &second, const Expected &v) {
        const double span = second.value - first.value;
        const double s = (v.value - first.value) / span;
        return Expected{s,
                        (v.bound + std::abs(1.0 - s) * first.bound + std::abs(s) * second.bound) /
                            std::abs(span)};
    };
    const auto reference = [&](std::size_t compound) {
        return scaled(rowReference(compound, e1), rowReference(compound, e2),
                      rowReference(compound, ev));
    };
    const Expected sA = reference(refA);
    const Expected sB = reference(refB);
    const Expected t1 = rowSample(plan, curve, source, e1);
    const Expected t2 = rowSample(plan, curve, source, e2);
    const Expected sT = scaled(t1, t2, rowSample(plan, curve, source, ev));

    const double slope =
        curve.background.kind == BackgroundKind::Linear ? curve.background.first : 0.0;
    const double mixScaled = a * sA.value + (1.0 - a) * sB.value;
    const double shift =
        slope * ((ev - e1) - mixScaled * (e2 - e1)) / (t2.value - t1.value) / (sA.value - sB.value);
    const double found = a + shift;
    const Expected fraction{
        found, (sT.bound + std::abs(found) * sA.bound + std::abs(1.0 - found) * sB.bound) /
                   std::abs(sA.value - sB.value)};

    // The step of "the mean reference" is made of reference A alone but for B's value at E_1.
    const Expected a1 = rowReference(refA, e1);
    const Expected a2 = rowReference(refA, e2);
    const Expected b1 = rowReference(refB, e1);
    const double step = a2.value - 0.5 * (a1.value + b1.value);
    const double stepError = a2.bound + 0.5 * (a1.bound + b1.bound);
    const double amount = (t2.value - t1.value) / step;
    return twoReferences(plan, fraction,
                         {amount, (t1.bound + t2.bound + std::abs(amount) * stepError) / step},
                         shift);
}

std::vector<Expected> lcfExpectation(const Plan &plan)
{
    const std::vector<std::size_t> &refs = plan.references;
    const Mixture truth = targetTruth(plan.sample);

    // Error of a value normalised by both lines: those of value, of the line before the edge and of
    // the step between the lines.
    const auto error = [](const FittedLines &lines, double jump, double step, double energyEv) {
        const double pre = lines.pre.errorAt(energyEv);
        const double post = lines.post.errorAt(energyEv);
        return (kSpectrumError + pre + std::abs(step) * (pre + post)) /
               (jump * std::pow(kEdgeEv / energyEv, 3));
    };
    std::vector<Numbers> rows;
    std::vector<double> errors;
    for (const double energy : spectrumEnergiesEv()) {
        if (energy < plan.lcfFromEv || energy > plan.lcfToEv) {
            continue;
        }
        Numbers row;
        double mixStep = 0.0;
        double total = 0.0;
        for (const std::size_t compound : refs) {
            const double step = edgeStep(compound, energy);
            const double share = truth.ratio[compound];
            row.push_back(step);
            mixStep += share * step;
            total += share * error(linesOfReference(compound), edgeJump(compound), step, energy);
        }
        row.push_back(1.0L);
        rows.push_back(std::move(row));
        errors.push_back(total + error(linesOfTarget(plan.sample), truth.amount, mixStep, energy));
    }
    const LinearModel model(std::move(rows));
    Numbers solution;
    for (const std::size_t compound : refs) {
        solution.push_back(truth.ratio[compound]);
    }
    solution.push_back(0.0L);
    const auto expected = [&](double value, const Numbers &f) {
        return Expected{value, model.errorOf(f, solution, errors)};
    };

    std::vector<Expected> found;
    Numbers towardsValence;
    for (std::size_t i = 0; i < refs.size(); ++i) {
        Numbers share(solution.size(), -static_cast<long double>(truth.ratio[refs[i]]));
        share[i] += 1.0L;
        share.back() = 0.0L;
        found.push_back(expected(truth.ratio[refs[i]], share));
        towardsValence.push_back(compounds()[refs[i]].valence);
    }
    towardsValence.push_back(0.0L);
    found.push_back(expected(truth.valence(), towardsValence));
    Numbers base(solution.size(), 0.0L);
    base.back() = 1.0L;
    found.push_back(expected(0.0, base));
    return found;
}

} // namespace orvel::phantom
