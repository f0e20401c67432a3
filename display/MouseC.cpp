#include "display/MouseC.h"

#include "analysis/ToInt32.h"

#include <QMouseEvent>
#include <QWheelEvent>

#include <cmath>

void MouseC::moveTo(const QPointF &position)
{
    m_previous = m_position;
    m_position = QPoint(orvel::toInt32(std::floor(position.x() + 0.5)),
                        orvel::toInt32(std::floor(position.y() + 0.5)));
}

void MouseC::pressed(const QMouseEvent &event)
{
    moveTo(event.localPos());
    m_pressPosition = m_position;
    m_isHeld = true;
    m_pressButton = static_cast<int>(event.button());
    m_pressModifiers = static_cast<int>(event.modifiers());
}

void MouseC::moved(const QMouseEvent &event)
{
    moveTo(event.localPos());
    m_moveButton = static_cast<int>(event.button());
    m_moveModifiers = static_cast<int>(event.modifiers());
}

void MouseC::released(const QMouseEvent &event)
{
    moved(event);
    m_releasePosition = m_position;
    m_isHeld = false;
}

void MouseC::doubleClicked(const QMouseEvent &event)
{
    moveTo(event.localPos());
    m_doubleClickPosition = m_position;
    m_pressButton = static_cast<int>(event.button());
    m_pressModifiers = static_cast<int>(event.modifiers());
}

void MouseC::wheeled(const QWheelEvent &event)
{
    moveTo(event.position());
    m_moveButton = Qt::NoButton;
    m_moveModifiers = static_cast<int>(event.modifiers());
}
