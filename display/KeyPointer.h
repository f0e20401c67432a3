#pragma once

#include <QEvent>
#include <QObject>
#include <QPointF>

#include <functional>

class QKeyEvent;
class QPainter;
class QWidget;

namespace orvel {

/// The mouse of a surface by keys: turns keys into mouse events of the surface, which so does the
/// same for both. A pointer of its own is moved and drawn.
///
/// Arrows move the pointer by a step, with control by ten, with shift they drag the surface. The
/// space bar is the left button, held as long as the key. Enter is a double click, plus and minus
/// turn the wheel, 0 and Home show all again, Shift+F10 opens the menu.
class KeyPointer : public QObject {
    Q_OBJECT

public:
    /// Where a step leads; direction: -1, 0 or 1 each, down is positive.
    using Step = std::function<QPointF(const QPointF &from, const QPoint &direction)>;

    /// Filters the surface's events and lets Tab (but no click) bring the focus to it.
    /// showAll  instead of the double click
    explicit KeyPointer(QWidget *surface, std::function<void()> showAll = {});

    /// Instead of pixels of the screen. A step that leaves the surface ends at its border.
    void setStep(Step step) { m_step = std::move(step); }

    /// A frame and the pointer, unless the focus came by a click; at the end of a paint.
    void paint(QPainter &painter) const;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void place();
    void tookFocus(Qt::FocusReason reason);
    bool pressed(const QKeyEvent &event);
    bool arrow(const QKeyEvent &event);
    void drag(const QPoint &direction, int steps);
    void moveBy(const QPoint &direction, int steps);
    void send(QEvent::Type type, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void turnWheel(int units);
    void letGo();

    QWidget *m_surface;
    std::function<void()> m_showAll;
    Step m_step;
    QPointF m_at;
    bool m_wasPlaced = false;
    bool m_isHeld = false;
    bool m_isShown = false;
};

/// The frame of a surface that has the focus: black and white, to be seen on every ground.
void paintFocusFrame(QPainter &painter, const QWidget &surface);

} // namespace orvel
