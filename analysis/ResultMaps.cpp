#include "analysis/ResultMaps.h"

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

bool ResultMaps::fills(Quantity quantity) const
{
    return plane(quantity) != nullptr || (quantity == Quantity::Ratio2 && !isNonEquiv(m_method));
}

double ResultMaps::at(Quantity quantity, qint64 i) const
{
    if (const double *values = plane(quantity)) {
        return values[i];
    }
    if (quantity == Quantity::Ratio2 && !isNonEquiv(m_method)) {
        return 1.0 - at(Quantity::Ratio1, i);
    }
    return 0.0;
}

} // namespace orvel
