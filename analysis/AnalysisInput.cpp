#include "analysis/AnalysisInput.h"

namespace orvel {

std::vector<const ReferenceInput *> validReferences(const std::vector<ReferenceInput> &references)
{
    std::vector<const ReferenceInput *> valid;
    for (const ReferenceInput &reference : references) {
        if (reference.isValid()) {
            valid.push_back(&reference);
        }
    }
    return valid;
}

} // namespace orvel
