#include "display/ChCoord.h"

#include <algorithm>
#include <cmath>

namespace {

bool nearEdge(double s, double a, double b, double band)
{
    const double d = std::fabs(b - a) * band;
    return s < std::min(a, b) + d || s > std::max(a, b) - d;
}

double clampedInto(double value, double a, double b)
{
    const double low = b > a ? a : b;
    const double high = b > a ? b : a;
    return value < low ? low : value > high ? high : value;
}

} // namespace

void ChCoord::setArea(double x0, double y0, double x1, double y1)
{
    m_areaX0 = x0;
    m_areaY0 = y0;
    m_areaX1 = x1;
    m_areaY1 = y1;
    setFrame(x0, y0, x1, y1);
}

void ChCoord::setFrame(double x0, double y0, double x1, double y1)
{
    m_frameX0 = x0;
    m_frameY0 = y0;
    m_frameX1 = x1;
    m_frameY1 = y1;
}

void ChCoord::setFrameByMargins()
{
    const double width = m_areaX1 - m_areaX0;
    const double height = m_areaY1 - m_areaY0; // negative on a surface
    setFrame(
        m_areaX0 + std::trunc(m_leftMargin * width), m_areaY0 + std::trunc(m_bottomMargin * height),
        m_areaX1 - std::trunc(m_rightMargin * width), m_areaY1 - std::trunc(m_topMargin * height));
}

void ChCoord::setMargins(double left, double right, double top, double bottom)
{
    m_leftMargin = left;
    m_rightMargin = right;
    m_topMargin = top;
    m_bottomMargin = bottom;
}

void ChCoord::setRange(double xMin, double yMin, double xMax, double yMax)
{
    setXRange(xMin, xMax);
    setYRange(yMin, yMax);
}

void ChCoord::setXRange(double min, double max)
{
    m_xMin = min;
    m_xMax = max;
}

void ChCoord::setYRange(double min, double max)
{
    m_yMin = min;
    m_yMax = max;
}

double ChCoord::rxInRange(double s) const
{
    return clampedInto(rx(s), m_xMin, m_xMax);
}

double ChCoord::ryInRange(double s) const
{
    return clampedInto(ry(s), m_yMin, m_yMax);
}

bool ChCoord::nearFrameXEdge(double s) const
{
    return nearEdge(s, m_frameX0, m_frameX1, m_frameEdge);
}

bool ChCoord::nearFrameYEdge(double s) const
{
    return nearEdge(s, m_frameY0, m_frameY1, m_frameEdge);
}

bool ChCoord::nearAreaXEdge(double s) const
{
    return nearEdge(s, m_areaX0, m_areaX1, m_areaEdge);
}

bool ChCoord::nearAreaYEdge(double s) const
{
    return nearEdge(s, m_areaY0, m_areaY1, m_areaEdge);
}

double ChCoord::xTickStep(double base, int minPixels) const
{
    constexpr int kDecades = 8;
    double decade = 1.0;
    for (int i = 0; i < kDecades; ++i) {
        const double step = base * decade;
        for (const double times : {1.0, 2.0, 5.0}) {
            if (times * step * xScale() > minPixels) {
                return times * step;
            }
        }
        decade *= 10.0;
    }
    return base * decade;
}
