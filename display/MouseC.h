#pragma once

#include <QObject>
#include <QPoint>

class QMouseEvent;
class QPointF;
class QWheelEvent;

/// What the mouse does on one surface; goes with the surface's mouse signals. Positions are
/// logical pixels of the surface, rounded to the nearest integer, halves up.
class MouseC : public QObject {
    Q_OBJECT

public:
    explicit MouseC(QObject *parent = nullptr) : QObject(parent) {}

    void pressed(const QMouseEvent &event);
    void moved(const QMouseEvent &event);
    void released(const QMouseEvent &event);
    void doubleClicked(const QMouseEvent &event);
    void wheeled(const QWheelEvent &event);
    /// Forgets a press whose release goes elsewhere, for instance to a menu.
    void cancelPress() { m_isHeld = false; }

    QPoint previous() const { return m_previous; } ///< position before the last event
    QPoint position() const { return m_position; }
    QPoint pressPosition() const { return m_pressPosition; }
    QPoint releasePosition() const { return m_releasePosition; }
    QPoint doubleClickPosition() const { return m_doubleClickPosition; }
    int x() const { return m_position.x(); }
    int y() const { return m_position.y(); }

    bool isHeld() const { return m_isHeld; } ///< from press to release
    int pressButton() const { return m_pressButton; }
    int moveButton() const
    {
        return m_moveButton;
    } ///< of the last move, release or turn of the wheel
    int pressModifiers() const { return m_pressModifiers; }
    int moveModifiers() const { return m_moveModifiers; }

private:
    void moveTo(const QPointF &position);

    QPoint m_previous;
    QPoint m_position;
    QPoint m_pressPosition;
    QPoint m_releasePosition;
    QPoint m_doubleClickPosition;
    bool m_isHeld = false;
    int m_pressButton = 0;
    int m_moveButton = 0;
    int m_pressModifiers = 0;
    int m_moveModifiers = 0;
};
