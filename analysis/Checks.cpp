#include "analysis/Checks.h"

#include <QCoreApplication>

#include <algorithm>

namespace orvel {
namespace {

constexpr const char *kNoVPointForTarget = QT_TRANSLATE_NOOP("FourPs", "V Point is not selected.");
constexpr const char *kNoVPointForMap = QT_TRANSLATE_NOOP("FourPs", "V Point is not selected");
constexpr const char *kFewReferences =
    QT_TRANSLATE_NOOP("FourPs", "Number of valied Ref Files is %1, which is less than 2.");
constexpr const char *kFewReferencesForLcf =
    QT_TRANSLATE_NOOP("FourPs", "Number of Valid Reference files is %1, which is less than 2");
constexpr const char *kFirstReference =
    QT_TRANSLATE_NOOP("FourPs", "The 1st Ref File is not valid.");
constexpr const char *kSecondReference =
    QT_TRANSLATE_NOOP("FourPs", "The 2nd Ref File is not valid.");
constexpr const char *kReference = QT_TRANSLATE_NOOP("FourPs", "Ref File %1 is not valid.");
constexpr const char *kTarget = QT_TRANSLATE_NOOP("FourPs", "Target File1 is not valid.");
constexpr const char *kPointsNot =
    QT_TRANSLATE_NOOP("FourPs", "Number of selected data sets %1 is not %2.");
constexpr const char *kPointsFew =
    QT_TRANSLATE_NOOP("FourPs", "Number of selected data sets %1 is less than %2.");
constexpr const char *kNoRange = QT_TRANSLATE_NOOP(
    "FourPs", "Energy Range is not selected, which should by selected by CB of TR.");

Line counted(const char *source, int count)
{
    return lineOf(source, {QString::number(count)});
}

Line counted(const char *source, int count, int wanted)
{
    return lineOf(source, {QString::number(count), QString::number(wanted)});
}

void takePoints(const AnalysisInput &input, bool onMaps, Plan &plan)
{
    for (size_t i = 0; i < input.points.size(); ++i) {
        const EnergyPointInput &point = input.points[i];
        if (onMaps ? !point.isUsedOnMaps() : !point.use) {
            continue;
        }
        plan.used.push_back(i);
        if (point.vPoint) {
            plan.vPoint = static_cast<int>(i);
        }
    }
}

std::vector<const ReferenceInput *> usedReferences(const AnalysisInput &input)
{
    std::vector<const ReferenceInput *> used;
    for (const ReferenceInput &reference : input.references) {
        if (reference.use) {
            used.push_back(&reference);
        }
    }
    return used;
}

/// Writes the count message; it never ends a step by itself.
int countValid(const AnalysisInput &input, Plan &plan)
{
    const int valid = static_cast<int>(validReferences(input.references).size());
    if (valid < 2) {
        plan.messages.push_back(counted(kFewReferences, valid));
    }
    return valid;
}

/// Three points, four solved exactly, or any number of four and more by least squares.
void chooseFourPoints(const AnalysisInput &input, Plan &plan)
{
    const int n = static_cast<int>(plan.used.size());
    if (n == 3) {
        plan.method = Method::ThreePoints;
    } else if (n == 4 && input.method.exact) {
        plan.method = Method::ExactFourPoints;
    } else if (n >= 4 && !input.method.exact) {
        plan.method = Method::LeastSquares;
    } else {
        plan.messages.push_back(counted(kPointsNot, n, 4));
    }
}

Method nonEquivMethod(const AnalysisInput &input)
{
    return input.method.linearBackground ? Method::NonEquivLinear : Method::NonEquivVictoreen;
}

/// Null when all references that the target needs are there; else the message.
const char *missingReference(const AnalysisInput &input,
                             const std::vector<const ReferenceInput *> &used)
{
    if (!used[0]->spectrum.isValid()) {
        return kFirstReference;
    }
    if (used.size() > 1 && !used[1]->spectrum.isValid()) {
        return kSecondReference;
    }
    if (!input.target.isValid() && used.size() > 1) {
        return kTarget;
    }
    const bool othersMissing = input.method.nonEquiv &&
                               !std::all_of(used.begin(), used.end(), [](const ReferenceInput *r) {
                                   return r->spectrum.isValid();
                               });
    return othersMissing ? kSecondReference : nullptr; // the same text for every further one
}

} // namespace

Plan checkTarget(const AnalysisInput &input)
{
    Plan plan;
    takePoints(input, false, plan);
    if (plan.vPoint < 0) {
        plan.messages.push_back(lineOf(kNoVPointForTarget));
        return plan;
    }
    countValid(input, plan);
    const auto used = usedReferences(input);
    if (used.empty()) {
        return plan;
    }
    if (const char *missing = missingReference(input, used)) {
        plan.messages.push_back(lineOf(missing));
        return plan;
    }
    if (used.size() < 2) {
        return plan; // there is no second reference to look at
    }
    if (!input.method.nonEquiv) {
        chooseFourPoints(input, plan);
        return plan;
    }
    // Fixed numbers here, while maps ask for as many as their unknowns: on purpose.
    const int n = static_cast<int>(plan.used.size());
    const int wanted = input.method.linearBackground ? 4 : 5;
    if (n < wanted) {
        plan.messages.push_back(counted(kPointsNot, n, wanted));
    } else {
        plan.method = nonEquivMethod(input);
    }
    return plan;
}

Plan checkMap(const AnalysisInput &input)
{
    Plan plan;
    takePoints(input, true, plan);
    if (!input.method.nonEquiv && plan.vPoint < 0) {
        plan.messages.push_back(lineOf(kNoVPointForMap));
        return plan;
    }
    const int valid = countValid(input, plan);
    for (const ReferenceInput *reference : usedReferences(input)) {
        if (!reference->spectrum.isValid()) {
            plan.messages.push_back(counted(kReference, reference->row + 1));
            return plan;
        }
    }
    if (!input.method.nonEquiv) {
        if (valid >= 2) {
            chooseFourPoints(input, plan);
        }
        return plan;
    }
    const int n = static_cast<int>(plan.used.size());
    const int wanted = valid + (input.method.linearBackground ? 2 : 3); // one an unknown
    if (n < wanted) {
        plan.messages.push_back(counted(kPointsFew, n, wanted));
    } else {
        plan.method = nonEquivMethod(input);
    }
    return plan;
}

LcfPlan checkLcf(const AnalysisInput &input)
{
    LcfPlan plan;
    plan.lowEv = 1e300;
    plan.highEv = -1e300;
    int rows = 0;
    for (const EnergyPointInput &point : input.points) {
        if (point.lcf) {
            ++rows;
            plan.lowEv = std::min(plan.lowEv, point.energyEv);
            plan.highEv = std::max(plan.highEv, point.energyEv);
        }
    }
    if (rows < 2 || plan.highEv < plan.lowEv) {
        plan.messages.push_back(lineOf(kNoRange));
        return plan;
    }
    const int valid = static_cast<int>(validReferences(input.references).size());
    if (valid < 2) {
        plan.messages.push_back(counted(kFewReferencesForLcf, valid));
        return plan;
    }
    plan.run = true;
    return plan;
}

} // namespace orvel
