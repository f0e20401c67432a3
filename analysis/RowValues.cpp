#include "analysis/RowValues.h"

namespace orvel {

QString rowValueText(const AMutE &spectrum, double energyEv, bool subtractPost)
{
    double value = 0.0;
    return spectrum.valueMinusLine(energyEv, subtractPost, value) ? QString::number(value, 'g', 6)
                                                                  : QString();
}

void fillRowValues(AnalysisInput &input)
{
    const MethodChoice &method = input.method;
    for (EnergyPointInput &point : input.points) {
        if (!(point.energyEv > 0.0)) {
            continue;
        }
        for (const ReferenceInput &reference : input.references) {
            if (reference.spectrum.isValid()) {
                point.referenceMu[static_cast<size_t>(reference.row)] =
                    rowValueText(reference.spectrum, point.energyEv, method.subPostForRef)
                        .toDouble();
            }
        }
        point.targetMu =
            rowValueText(input.target, point.energyEv, method.subPostForTarget).toDouble();
    }
}

} // namespace orvel
