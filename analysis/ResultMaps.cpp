#include "analysis/ResultMaps.h"

#include <algorithm>

namespace orvel {

ResultMaps::ResultMaps(Method method, std::shared_ptr<const ImageData> origin,
                       std::shared_ptr<ColumnPool> pool)
    : m_method(method), m_origin(std::move(origin)), m_pool(std::move(pool))
{
}

ResultMaps::~ResultMaps()
{
    if (m_pool) { // moved-from maps have none
        for (Column &plane : m_planes) {
            m_pool->give(std::move(plane));
        }
    }
}

double *ResultMaps::addPlane(Quantity quantity)
{
    auto &values = m_planes[static_cast<size_t>(indexOf(quantity))];
    const auto n = static_cast<size_t>(size());
    if (m_pool) {
        values = m_pool->take(n);
    } else {
        values.resize(n);
    }
    return values.data();
}

const double *ResultMaps::plane(Quantity quantity) const
{
    const auto &values = m_planes[static_cast<size_t>(indexOf(quantity))];
    return values.empty() ? nullptr : values.data();
}

double *ResultMaps::plane(Quantity quantity)
{
    Column &values = m_planes[static_cast<size_t>(indexOf(quantity))];
    return values.empty() ? nullptr : values.data();
}

std::vector<std::uint8_t> &ResultMaps::makeHeldReferences()
{
    m_held.assign(static_cast<size_t>(size()), 0);
    return m_held;
}

qint64 ResultMaps::pixelsOnBounds() const
{
    return std::count_if(m_held.begin(), m_held.end(), [](std::uint8_t held) { return held != 0; });
}

qint64 ResultMaps::pixelsHolding(int i) const
{
    return std::count_if(m_held.begin(), m_held.end(),
                         [i](std::uint8_t held) { return (held >> i & 1) != 0; });
}

bool ResultMaps::fills(Quantity quantity) const
{
    if (quantity == Quantity::Ratio2 && !isNonEquiv(m_method)) {
        return true;
    }
    if (quantity == Quantity::SigmaRatio2 && !isNonEquiv(m_method)) {
        return fills(Quantity::SigmaRatio1);
    }
    return plane(quantity) != nullptr;
}

double ResultMaps::at(Quantity quantity, qint64 i) const
{
    if (const double *values = plane(quantity)) {
        return values[i];
    }
    if (quantity == Quantity::Ratio2 && !isNonEquiv(m_method)) {
        return 1.0 - at(Quantity::Ratio1, i);
    }
    if (quantity == Quantity::SigmaRatio2 && !isNonEquiv(m_method)) {
        return at(Quantity::SigmaRatio1, i);
    }
    return 0.0;
}

} // namespace orvel
