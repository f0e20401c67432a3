#include "analysis/LinearCombination.h"

#include "analysis/LinearSystem.h"

namespace orvel {

LcfResult fitLinearCombination(const AnalysisInput &input, const LcfPlan &plan)
{
    const AMutE &target = input.target;
    const auto references = validReferences(input.references);
    const size_t m = references.size();

    std::vector<std::vector<double>> kept; // the basis at each kept point: R_1 ... R_m, 1
    QVector<MutPoint> curve;               // with the fitted value to be filled in
    LinearSystem system(static_cast<int>(m) + 1);
    system.clear();
    for (int i = 0; i < target.points().size(); ++i) {
        const double energyEv = target.effectiveEnergy(i);
        if (!(plan.lowEv <= energyEv && energyEv <= plan.highEv)) {
            continue;
        }
        std::vector<double> basis;
        basis.reserve(m + 1);
        for (const ReferenceInput *reference : references) {
            basis.push_back(reference->spectrum.valueAtE(AMutE::By2Victoreens, energyEv));
        }
        basis.push_back(1.0);
        system.addSample(basis.data(), target.valueAt(AMutE::By2Victoreens, i));
        kept.push_back(std::move(basis));
        curve.append({target.points()[i].angleDeg, energyEv, 0.0});
    }
    system.solve();

    LcfResult result;
    result.base = system.unknown(static_cast<int>(m));
    double sum = 0.0;
    for (size_t k = 0; k < m; ++k) {
        const double x = system.unknown(static_cast<int>(k));
        result.ratios.push_back(x);
        result.rows.push_back(references[k]->row);
        sum += x;
        result.valence += x * references[k]->valence;
    }
    for (size_t i = 0; i < kept.size(); ++i) {
        double value = result.base;
        for (size_t k = 0; k < m; ++k) {
            value += result.ratios[k] * kept[i][k]; // still the coefficients
        }
        curve[static_cast<int>(i)].mut = value;
    }
    for (double &ratio : result.ratios) {
        ratio /= sum;
    }
    result.curve.setPoints(curve);
    return result;
}

} // namespace orvel
