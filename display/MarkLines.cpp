#include "display/MarkLines.h"

#include "display/ChCoord.h"
#include "display/MouseC.h"

#include <cmath>

void MarkLines::clear()
{
    m_lines.clear();
    m_isMoving = false;
    m_selected = -1;
}

/// Value of the line that this one is relative to; 0 when it stands on its own.
double MarkLines::offsetOf(int index) const
{
    const MarkLine &line = *m_lines[index];
    const int base = line.relativeTo();
    return line.isRelative() && base >= 0 && base < m_lines.size() ? m_lines[base]->value() : 0.0;
}

double MarkLines::position(int index) const
{
    return m_lines[index]->value() + offsetOf(index);
}

void MarkLines::pick(const ChCoord &coord, const MouseC &mouse)
{
    constexpr double kReach = 20.0;
    int nearest = -1;
    double least = kReach;
    for (int i = 0; i < m_lines.size(); ++i) {
        const double distance = m_lines[i]->isHorizontal()
                                    ? std::fabs(coord.sy(position(i)) - mouse.y())
                                    : std::fabs(coord.sx(position(i)) - mouse.x());
        if (distance < least) { // the first on a tie; never a not-a-number
            least = distance;
            nearest = i;
        }
    }
    if (nearest < 0) {
        return;
    }
    if (m_isMoving) {
        emit newPos();
    }
    m_isMoving = true;
    m_selected = nearest;
}

void MarkLines::moveSelected(const ChCoord &coord, const MouseC &mouse)
{
    if (!m_isMoving || m_selected < 0 || m_selected >= m_lines.size()) {
        return;
    }
    MarkLine &line = *m_lines[m_selected];
    const double pointer = line.isHorizontal() ? coord.ry(mouse.y()) : coord.rx(mouse.x());
    line.setValue(pointer - offsetOf(m_selected));
    emit moving();
}

void MarkLines::release(const ChCoord &coord, const MouseC &mouse)
{
    moveSelected(coord, mouse);
    const bool wasMoving = m_isMoving;
    if (wasMoving) {
        emit newPos();
    }
    m_isMoving = false;
    m_selected = -1;
}
