#include "analysis/Calculations.h"

#include "analysis/FourPoints.h"
#include "analysis/FourPointsPrecision.h"
#include "analysis/NonEquivPixels.h"

#include "analysis/SmallQr.h"

#include <QCoreApplication>

#include <cmath>

namespace orvel {
namespace {

constexpr const char *kThreePoints = QT_TRANSLATE_NOOP("FourPs", "3ps: a = %1, Valence = %2");
constexpr const char *kExact = QT_TRANSLATE_NOOP("FourPs", "a = %1, Valence = %2, t/ts = %3");
constexpr const char *kLeastSquares =
    QT_TRANSLATE_NOOP("FourPs", "4ps2: a = %1, Valence = %2, t/ts = %3");
constexpr const char *kNonEquiv = QT_TRANSLATE_NOOP("FourPs", "Result of NEQ :: ");
constexpr const char *kNonEquivEnd = QT_TRANSLATE_NOOP("FourPs", ", Valence = %1, t = %2");
constexpr const char *kLcf = QT_TRANSLATE_NOOP("FourPs", "Result of LCF :: ");
constexpr const char *kLcfEnd = QT_TRANSLATE_NOOP("FourPs", ", Valence = %1, Base = %2");

QString general(double value)
{
    return QString::number(value, 'g', 6);
}

QString fixed(double value)
{
    return QString::asprintf("% 6.3f", value);
}

/// "HEAD r1 : r2 ... END", the ratios in between with three decimals.
Line ratioLine(const char *head, const double *ratios, size_t n, const char *end,
               const QStringList &endArguments)
{
    QStringList texts;
    for (size_t i = 0; i < n; ++i) {
        texts.append(fixed(ratios[i]));
    }
    Line line = lineOf(head);
    line.parts.push_back({nullptr, {texts.join(QStringLiteral(" : "))}});
    line.parts.push_back({end, endArguments});
    return line;
}

BinCounts countPlane(const ResultMaps &maps, Quantity quantity, HistogramSettings &settings)
{
    const double *values = maps.plane(quantity);
    const auto n = values != nullptr ? static_cast<size_t>(maps.size()) : 0;
    if (settings.autoRange) {
        if (const auto limits = autoLimits(values, n)) {
            settings.from = limits->low;
            settings.to = limits->high;
        }
    }
    BinCounts counts;
    counts.setUp(settings);
    counts.count(values, n);
    return counts;
}

/// s of the target's absorptions: as given, or from the residuals of its fit.
double sigmaOf(const PrecisionChoice &choice, double residualSum, int freedom)
{
    constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
    if (choice.noise == NoiseSource::Given) {
        return choice.givenSigma > 0.0 ? choice.givenSigma : kNan;
    }
    return freedom > 0 ? std::sqrt(residualSum / freedom) : kNan;
}

TargetPrecision precisionOf(const AnalysisInput &input, const Plan &plan, const FourPoints &method,
                            const PointValues &values)
{
    const FourPointsPixels::Setup setup = method.pixels().setup();
    const FourPointsPrecision precision(plan.method, setup);
    const size_t points = values.atPoints.size();
    std::array<const double *, kPointRows> at = {};
    for (size_t p = 0; p < points; ++p) {
        at[p] = &values.atPoints[p];
    }
    at[points] = &values.atV;

    TargetPrecision found;
    found.freedom = precision.freedom();
    double residual = 0.0;
    if (found.freedom > 0) {
        precision.residuals(at.data(), 1, &residual);
    }
    if (plan.method != Method::ThreePoints) {
        Rows basis;
        for (size_t p = 0; p < points; ++p) {
            basis.push_back({1.0, setup.energies[p], values.atPoints[p]});
        }
        const SmallQr qr(basis);
        found.condition = qr.isRegular() ? qr.normalCondition() : found.condition;
    }
    found.sigma =
        sigmaOf(input.precision, residual * residual * static_cast<double>(points), found.freedom);
    const double variance = found.sigma * found.sigma;
    std::array<const double *, kPointRows> variances;
    variances.fill(&variance);
    precision.sigmas(at.data(), variances.data(), 1,
                     {found.sigmas.ratios.data(), &found.sigmas.valence, &found.sigmas.amount});
    found.sigmas.ratios[1] = found.sigmas.ratios[0]; // of 1 - a
    return found;
}

void targetByFourPoints(const AnalysisInput &input, const Plan &plan, TargetOutcome &outcome)
{
    FourPoints method(input, plan);
    const PointValues values = method.targetValues(input);
    const FourPointsResult result = method.solve(values);
    outcome.precision = precisionOf(input, plan, method, values);
    outcome.a = result.a;
    outcome.valence = method.valenceOf(result.a);
    if (plan.method == Method::ThreePoints) {
        outcome.resultField = lineOf(kThreePoints, {general(outcome.a), general(outcome.valence)});
    } else {
        outcome.resultField =
            lineOf(plan.method == Method::ExactFourPoints ? kExact : kLeastSquares,
                   {general(outcome.a), general(outcome.valence), general(result.amount)});
    }
    if (plan.method != Method::ExactFourPoints) { // that one goes to the field alone
        outcome.messages.push_back(outcome.resultField);
    }
    outcome.rows[static_cast<size_t>(method.rowA())].ratio = general(result.a);
    outcome.rows[static_cast<size_t>(method.rowB())].ratio = general(1 - result.a);
}

void targetByNonEquiv(const AnalysisInput &input, const Plan &plan, TargetOutcome &outcome)
{
    NonEquivFit method(gatherRefValues(input, plan));
    const RefValues &references = method.references();
    const std::vector<double> values = targetValues(input, plan);
    ResultVector result = method.fit(values);
    TargetPrecision &found = outcome.precision;
    const NonEquivPrecision precision(references);
    double residualSum = precision.residualSum(values);
    if (input.method.nonEquivBounds == NonEquivBounds::NonNegative) {
        double residual = 0.0;
        result = fitNonNegative(references, values, found.held, residual);
        residualSum = residual * residual * static_cast<double>(values.size());
    }
    found.freedom = precision.freedom() + __builtin_popcount(found.held);
    found.condition = precision.condition();
    found.sigma = sigmaOf(input.precision, residualSum, found.freedom);
    found.sigmas = precision.sigmas(result, found.sigma, found.held);
    const double amount = result[static_cast<size_t>(indexOf(Quantity::Amount))];
    outcome.a = result[0];
    outcome.valence = result[static_cast<size_t>(indexOf(Quantity::Valence))];
    outcome.dMutField = general(amount);
    outcome.resultField = ratioLine(kNonEquiv, result.data(), references.references(), kNonEquivEnd,
                                    {fixed(outcome.valence), fixed(amount)});
    outcome.messages.push_back(outcome.resultField);
    for (size_t i = 0; i < references.references(); ++i) {
        outcome.rows[static_cast<size_t>(references.rows[i])] = {
            general(result[i]), general(result[kReferenceRows + i])};
    }
}

} // namespace

MapOutcome calculateMap(const AnalysisInput &input, const MapResources &resources,
                        MapMemory *memory)
{
    MapOutcome outcome;
    const Plan plan = checkMap(input);
    outcome.messages = plan.messages;
    outcome.valenceHistogram = input.valenceHistogram;
    outcome.amountHistogram = input.amountHistogram;
    if (plan.method == Method::None) {
        return outcome;
    }
    outcome.maps = memory != nullptr ? memory->find(input, plan) : nullptr;
    if (!outcome.maps) {
        if (memory != nullptr) {
            memory->forget(); // so that its planes go back to the pool before new ones are taken
        }
        outcome.maps = std::make_shared<const ResultMaps>(
            isNonEquiv(plan.method) ? nonEquivMap(input, plan, resources)
                                    : fourPointsMap(input, plan, resources));
        if (memory != nullptr) {
            memory->keep(input, plan, outcome.maps);
        }
    }
    outcome.valenceCounts = countPlane(*outcome.maps, Quantity::Valence, outcome.valenceHistogram);
    outcome.amountCounts = countPlane(*outcome.maps, Quantity::Amount, outcome.amountHistogram);
    return outcome;
}

TargetOutcome calculateTarget(const AnalysisInput &input)
{
    TargetOutcome outcome;
    const Plan plan = checkTarget(input);
    outcome.messages = plan.messages;
    outcome.warned = !plan.messages.empty();
    outcome.ran = plan.method != Method::None;
    if (outcome.ran) {
        if (isNonEquiv(plan.method)) {
            targetByNonEquiv(input, plan, outcome);
        } else {
            targetByFourPoints(input, plan, outcome);
        }
    }
    return outcome;
}

LcfOutcome calculateLcf(const AnalysisInput &input)
{
    LcfOutcome outcome;
    const LcfPlan plan = checkLcf(input);
    outcome.messages = plan.messages;
    if (plan.run) {
        outcome.result = fitLinearCombination(input, plan);
        const LcfResult &result = *outcome.result;
        outcome.resultField = ratioLine(kLcf, result.ratios.data(), result.ratios.size(), kLcfEnd,
                                        {fixed(result.valence), fixed(result.base)});
        outcome.messages.push_back(outcome.resultField);
    }
    return outcome;
}

} // namespace orvel
