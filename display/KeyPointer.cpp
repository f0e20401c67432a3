#include "display/KeyPointer.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>
#include <QWidget>

namespace orvel {
namespace {

constexpr int kFast = 10;
constexpr int kNotch = 120;

QPoint directionOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace

KeyPointer::KeyPointer(QWidget *surface, std::function<void()> showAll)
    : QObject(surface), m_surface(surface), m_showAll(std::move(showAll)),
      m_step([](const QPointF &from, const QPoint &direction) { return from + direction; })
{
    if (!m_showAll) {
        m_showAll = [this] { send(QEvent::MouseButtonDblClick); };
    }
    surface->setFocusPolicy(Qt::TabFocus);
    surface->installEventFilter(this);
}

void KeyPointer::paint(QPainter &painter) const
{
    if (!m_surface->hasFocus() || !m_isShown) {
        return;
    }
    paintFocusFrame(painter, *m_surface);
    constexpr double kArm = 7.0;
    constexpr double kGap = 2.0; // what is pointed at stays visible
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const auto &[colour, width] :
         {std::make_pair(Qt::white, 3), std::make_pair(Qt::black, 1)}) {
        painter.setPen(QPen(colour, width));
        for (const QPointF &arm : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
            painter.drawLine(m_at + kGap * arm, m_at + kArm * arm);
        }
    }
    painter.restore();
}

bool KeyPointer::eventFilter(QObject *object, QEvent *event)
{
    switch (event->type()) {
    case QEvent::MouseMove:
        m_at = static_cast<QMouseEvent *>(event)->localPos(); // keys go on from there
        m_wasPlaced = true;
        break;
    case QEvent::KeyPress:
        return pressed(*static_cast<QKeyEvent *>(event));
    case QEvent::KeyRelease: {
        const auto *key = static_cast<QKeyEvent *>(event);
        if (key->key() == Qt::Key_Space && !key->isAutoRepeat()) {
            letGo();
            return true;
        }
        break;
    }
    case QEvent::FocusOut:
        letGo();
        m_surface->update();
        break;
    case QEvent::FocusIn:
        tookFocus(static_cast<QFocusEvent *>(event)->reason());
        break;
    case QEvent::ContextMenu: {
        const auto *menu = static_cast<QContextMenuEvent *>(event);
        if (menu->reason() != QContextMenuEvent::Keyboard || !m_wasPlaced ||
            menu->pos() == m_at.toPoint()) {
            break;
        }
        const QPoint at = m_at.toPoint();
        QContextMenuEvent atPointer(QContextMenuEvent::Keyboard, at, m_surface->mapToGlobal(at));
        QCoreApplication::sendEvent(m_surface, &atPointer);
        return true;
    }
    default:
        break;
    }
    return QObject::eventFilter(object, event);
}

void KeyPointer::place()
{
    if (!m_wasPlaced) {
        m_at = m_surface->rect().center();
        m_wasPlaced = true;
    }
}

void KeyPointer::tookFocus(Qt::FocusReason reason)
{
    place();
    const bool isBack = reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason;
    m_isShown = isBack ? m_isShown : reason != Qt::MouseFocusReason;
    m_surface->update();
}

bool KeyPointer::pressed(const QKeyEvent &event)
{
    place();
    m_isShown = true;
    if ((event.modifiers() & (Qt::AltModifier | Qt::MetaModifier)) != 0) {
        return false;
    }
    const bool isControl = (event.modifiers() & Qt::ControlModifier) != 0;
    const bool isShift = (event.modifiers() & Qt::ShiftModifier) != 0;
    switch (event.key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return arrow(event);
    case Qt::Key_Space:
        if (!event.isAutoRepeat() && !m_isHeld) {
            m_isHeld = true;
            send(QEvent::MouseButtonPress);
        }
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        send(QEvent::MouseButtonDblClick);
        return true;
    case Qt::Key_Plus:
    case Qt::Key_Equal: // plus without shift on many keyboards
        if (!isControl) {
            turnWheel(kNotch);
        }
        return !isControl;
    case Qt::Key_Minus:
        if (!isControl) {
            turnWheel(-kNotch);
        }
        return !isControl;
    case Qt::Key_0:
    case Qt::Key_Home:
        if (!isControl) {
            m_showAll();
        }
        return !isControl;
    case Qt::Key_F10:
        if (isShift) {
            const QPoint at = m_at.toPoint();
            QContextMenuEvent menu(QContextMenuEvent::Keyboard, at, m_surface->mapToGlobal(at));
            QCoreApplication::sendEvent(m_surface, &menu);
        }
        return isShift;
    default:
        return false;
    }
}

bool KeyPointer::arrow(const QKeyEvent &event)
{
    const QPoint direction = directionOf(event.key());
    const int steps = (event.modifiers() & Qt::ControlModifier) != 0 ? kFast : 1;
    if ((event.modifiers() & Qt::ShiftModifier) != 0) {
        drag(direction, steps);
    } else {
        moveBy(direction, steps);
    }
    return true;
}

void KeyPointer::moveBy(const QPoint &direction, int steps)
{
    const QPointF from = m_at;
    const QRectF inside(0, 0, m_surface->width() - 1, m_surface->height() - 1);
    for (int i = 0; i < steps; ++i) {
        const QPointF to = m_step(m_at, direction);
        m_at = QPointF(qBound(inside.left(), to.x(), inside.right()),
                       qBound(inside.top(), to.y(), inside.bottom()));
    }
    if (m_at != from) {
        send(QEvent::MouseMove);
        m_surface->update();
    }
}

/// As scroll bars do: shows what lies in that direction. The pointer stays where it is on the
/// screen.
void KeyPointer::drag(const QPoint &direction, int steps)
{
    if (m_isHeld) {
        return;
    }
    const QPointF stays = m_at;
    send(QEvent::MouseButtonPress, Qt::ShiftModifier);
    m_at -= kFast * steps * direction;
    m_isHeld = true;
    send(QEvent::MouseMove, Qt::ShiftModifier);
    m_isHeld = false;
    send(QEvent::MouseButtonRelease, Qt::ShiftModifier);
    m_at = stays;
}

void KeyPointer::send(QEvent::Type type, Qt::KeyboardModifiers modifiers)
{
    const bool isMove = type == QEvent::MouseMove;
    const bool isDown = isMove ? m_isHeld : type != QEvent::MouseButtonRelease;
    const QPointF at = m_at;
    QMouseEvent event(type, at, m_surface->mapToGlobal(at.toPoint()),
                      isMove ? Qt::NoButton : Qt::LeftButton,
                      isDown ? Qt::LeftButton : Qt::NoButton, modifiers);
    QCoreApplication::sendEvent(m_surface, &event);
}

void KeyPointer::turnWheel(int units)
{
    QWheelEvent event(m_at, m_surface->mapToGlobal(m_at.toPoint()), QPoint(), QPoint(0, units),
                      Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(m_surface, &event);
}

void KeyPointer::letGo()
{
    if (m_isHeld) {
        m_isHeld = false;
        send(QEvent::MouseButtonRelease);
    }
}

void paintFocusFrame(QPainter &painter, const QWidget &surface)
{
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(Qt::black);
    painter.drawRect(surface.rect().adjusted(0, 0, -1, -1));
    painter.setPen(Qt::white);
    painter.drawRect(surface.rect().adjusted(1, 1, -2, -2));
    painter.setPen(Qt::black);
    painter.drawRect(surface.rect().adjusted(2, 2, -3, -3));
    painter.restore();
}

} // namespace orvel
