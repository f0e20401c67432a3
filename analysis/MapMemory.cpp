#include "analysis/MapMemory.h"

#include "analysis/NonEquiv.h"

#include <algorithm>
#include <bit>

namespace orvel {

bool MapMemory::Key::operator==(const Key &other) const
{
    const auto sameObject = [](const auto &a, const auto &b) {
        return !a.owner_before(b) && !b.owner_before(a); // tells also images that are gone
    };
    return method == other.method && vPoint == other.vPoint && used == other.used &&
           numbers == other.numbers &&
           std::equal(images.begin(), images.end(), other.images.begin(), other.images.end(),
                      sameObject);
}

MapMemory::Key MapMemory::keyOf(const AnalysisInput &input, const Plan &plan)
{
    Key key;
    key.method = plan.method;
    key.vPoint = plan.vPoint;
    key.used = plan.used;
    const auto add = [&key](double number) {
        key.numbers.push_back(std::bit_cast<quint64>(number));
    };
    for (const size_t i : plan.used) {
        const EnergyPointInput &point = input.points[i];
        key.images.push_back(point.map);
        add(point.energyEv);
        for (const double mu : point.referenceMu) {
            add(mu);
        }
    }
    for (const ReferenceInput *reference : validReferences(input.references)) {
        add(reference->row);
        add(reference->valence);
        add(reference->spectrum.edgeJump());
    }
    if (isNonEquiv(plan.method)) {
        add(static_cast<double>(input.method.nonEquivBounds));
    }
    if (input.precision.maps) {
        add(static_cast<double>(input.precision.noise));
        add(input.precision.noise == NoiseSource::Given ? input.precision.givenSigma : 0.0);
    }
    if (isNonEquiv(plan.method)) {
        for (const std::vector<double> &values : gatherRefValues(input, plan).values) {
            for (const double value : values) {
                add(value);
            }
        }
    }
    return key;
}

std::shared_ptr<const ResultMaps> MapMemory::find(const AnalysisInput &input,
                                                  const Plan &plan) const
{
    return m_maps && keyOf(input, plan) == m_key ? m_maps : nullptr;
}

void MapMemory::keep(const AnalysisInput &input, const Plan &plan,
                     std::shared_ptr<const ResultMaps> maps)
{
    m_key = keyOf(input, plan);
    m_maps = std::move(maps);
}

void MapMemory::forget()
{
    m_key = Key();
    m_maps.reset();
}

} // namespace orvel
