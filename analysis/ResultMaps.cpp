#include "analysis/ResultMaps.h"

namespace orvel {

ResultMaps::ResultMaps(Method method, std::shared_ptr<const ImageData> origin)
    : m_method(method), m_origin(std::move(origin))
{
}

double *ResultMaps::addPlane(Quantity quantity)
{
    auto &values = m_planes[static_cast<size_t>(indexOf(quantity))];
    values.assign(static_cast<size_t>(size()), 0.0);
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
