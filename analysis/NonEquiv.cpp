#include "analysis/NonEquiv.h"

#include "analysis/NonEquivPixels.h"
#include "analysis/NonEquivPrecision.h"
#include "analysis/PixelRuns.h"
#include "base/Parallel.h"

#include <optional>

namespace orvel {
namespace {

AMutE::Mode lineMode(bool subtractPost)
{
    return subtractPost ? AMutE::SubPost : AMutE::SubPre;
}

std::vector<double> basisAt(const RefValues &references, size_t point)
{
    std::vector<double> basis;
    for (const auto &values : references.values) {
        basis.push_back(values[point]);
    }
    basis.push_back(1.0);
    const double energyEv = references.energiesEv[point];
    if (references.victoreen) {
        const double lambda = AMutE::kHcEvAngstrom / energyEv;
        const double lambda3 = lambda * lambda * lambda;
        basis.push_back(lambda3);
        basis.push_back(lambda3 * lambda);
    } else {
        basis.push_back(energyEv);
    }
    return basis;
}

/// Whether a quantity can differ from 0: amounts of references that are not there do not, nor
/// does the third background term of a straight line. (Unused ratios can: 0 / 0.)
bool isFilled(const RefValues &references, Quantity quantity)
{
    const int amount = indexOf(quantity) - indexOf(Quantity::DMut1);
    if (amount >= 0 && amount < kReferenceRows) {
        return amount < static_cast<int>(references.references());
    }
    return quantity != Quantity::C2 || references.victoreen;
}

} // namespace

RefValues gatherRefValues(const AnalysisInput &input, const Plan &plan)
{
    RefValues gathered;
    gathered.victoreen = plan.method == Method::NonEquivVictoreen;
    for (const size_t i : plan.used) {
        gathered.energiesEv.push_back(input.points[i].energyEv);
    }
    const int mode = lineMode(input.method.subPostForRef);
    for (const ReferenceInput *reference : validReferences(input.references)) {
        std::vector<double> values;
        for (const double energyEv : gathered.energiesEv) {
            values.push_back(reference->spectrum.valueAtE(mode, energyEv));
        }
        gathered.values.push_back(std::move(values));
        gathered.jumpShares.push_back(reference->spectrum.edgeJump());
        gathered.jump += gathered.jumpShares.back();
        gathered.valences.push_back(reference->valence);
        gathered.rows.push_back(reference->row);
    }
    for (double &share : gathered.jumpShares) {
        share /= gathered.jump;
    }
    return gathered;
}

NonEquivFit::NonEquivFit(RefValues references)
    : m_references(std::move(references)), m_system(m_references.unknowns())
{
    for (size_t i = 0; i < m_references.energiesEv.size(); ++i) {
        m_basis.push_back(basisAt(m_references, i));
    }
}

ResultVector NonEquivFit::fit(const std::vector<double> &y)
{
    m_system.clear();
    for (size_t i = 0; i < m_basis.size(); ++i) {
        m_system.addSample(m_basis[i].data(), y[i]);
    }
    m_system.solve();

    ResultVector result = {};
    const size_t m = m_references.references();
    double sum = 0.0;
    for (size_t i = 0; i < m; ++i) {
        result[i] = m_references.jumpShares[i] * m_system.unknown(static_cast<int>(i));
        sum += result[i];
    }
    const double total = sum * m_references.jump;
    double valence = 0.0;
    for (size_t i = 0; i < kReferenceRows; ++i) {
        result[i] /= sum; // also the unused ones: all fractions of a failed fit are not-a-number
    }
    for (size_t i = 0; i < m; ++i) {
        result[kReferenceRows + i] = result[i] * total;
        valence += result[i] * m_references.valences[i];
    }
    const auto put = [&result](Quantity quantity, double value) {
        result[static_cast<size_t>(indexOf(quantity))] = value;
    };
    const int background = static_cast<int>(m);
    put(Quantity::Mut0, m_system.unknown(background));
    put(Quantity::C1, m_system.unknown(background + 1));
    if (m_references.victoreen) {
        put(Quantity::C2, m_system.unknown(background + 2));
    }
    put(Quantity::Valence, valence);
    put(Quantity::Amount, total);
    return result;
}

std::vector<double> targetValues(const AnalysisInput &input, const Plan &plan)
{
    const int mode = lineMode(input.method.subPostForTarget);
    std::vector<double> values;
    for (const size_t i : plan.used) {
        values.push_back(input.target.valueAtE(mode, input.points[i].energyEv));
    }
    return values;
}

ResultMaps nonEquivMap(const AnalysisInput &input, const Plan &plan, const MapResources &resources)
{
    ResultMaps maps(plan.method, input.points[plan.used.front()].map, resources.pool);
    const RefValues references = gatherRefValues(input, plan);
    const bool wantsPrecision = input.precision.maps;
    std::array<double *, kMapQuantities> planes = {};
    for (int q = 0; q < kQuantities; ++q) {
        if (isFilled(references, quantityAt(q))) {
            planes[static_cast<size_t>(q)] = maps.addPlane(quantityAt(q));
        }
    }
    if (wantsPrecision) {
        planes[static_cast<size_t>(indexOf(Quantity::Residual))] =
            maps.addPlane(Quantity::Residual);
    }
    std::vector<std::shared_ptr<const ImageData>> shared;
    std::vector<const ImageData *> images;
    for (const size_t i : plan.used) {
        shared.push_back(input.points[i].map);
        images.push_back(shared.back().get());
    }
    const NonEquivPixels pixels(references);
    const std::optional<NonNegativeFit> bounds =
        input.method.nonEquivBounds == NonEquivBounds::NonNegative
            ? std::make_optional<NonNegativeFit>(references)
            : std::nullopt;
    const bool isBounded = bounds && bounds->isRegular(); // else there is nothing to hold
    std::uint8_t *const held = isBounded ? maps.makeHeldReferences().data() : nullptr;
    const PixelRuns runs(std::move(images), maps.width(), maps.height());
    inParallel(runs.size(), resources.pixelsPerThread, threadsFor(resources.threads),
               [&](size_t begin, size_t end) {
                   runs.forEach(
                       begin, end, [&](const double *const *values, size_t first, size_t n) {
                           std::array<double *, kMapQuantities> at = planes;
                           for (double *&plane : at) {
                               plane = plane != nullptr ? plane + first : nullptr;
                           }
                           if (isBounded) {
                               pixels.fitBounded(values, n, *bounds, at.data(), held + first);
                           } else {
                               pixels.fit(values, n, at.data());
                           }
                       });
               });
    if (wantsPrecision) {
        addNonEquivSigmas(maps, references, shared, input.precision, resources);
    }
    return maps;
}

} // namespace orvel
