#include "display/Letters.h"

#include <QFont>
#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace orvel {
namespace {

constexpr double kCompactPoints = 9.0;
constexpr double kLargestUsual = 12.0;
constexpr double kTakenAsItIs = 18.0;
constexpr double kUsualDotsPerInch = 96.0;
constexpr double kNoticed = 1.15; ///< screens give 95 to 105 dots per inch by way of rounding

} // namespace

double compactPoints()
{
    const double wanted = QGuiApplication::font().pointSizeF(); // -1: given in pixels
    if (wanted <= 0.0 || wanted >= kTakenAsItIs) {
        return wanted > 0.0 ? wanted : kCompactPoints;
    }
    constexpr double kSlope = (kTakenAsItIs - kCompactPoints) / (kTakenAsItIs - kLargestUsual);
    const double taken = kCompactPoints + kSlope * std::max(0.0, wanted - kLargestUsual);
    return std::min(wanted, taken);
}

double letterScale()
{
    return std::max(1.0, compactPoints() / kCompactPoints);
}

double letterPixelScale()
{
    const QScreen *screen = QGuiApplication::primaryScreen();
    const double dots = screen != nullptr ? screen->logicalDotsPerInchY() : kUsualDotsPerInch;
    const double scale = letterScale() * std::max(1.0, dots / kUsualDotsPerInch);
    return scale < kNoticed ? 1.0 : scale;
}

} // namespace orvel
