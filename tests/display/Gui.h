#pragma once

#include "display/ChCoord.h"
#include "tests/display/Table.h"

#include <QtWidgets>

// What tests of windows share: tables of cases, events as the toolkit sends them, pixels.

namespace window {

inline void mouse(QWidget *widget, QEvent::Type type, const QPointF &at,
                  Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                  Qt::MouseButton button = Qt::LeftButton)
{
    const bool isMove = type == QEvent::MouseMove;
    QMouseEvent event(type, at, widget->mapToGlobal(at.toPoint()), isMove ? Qt::NoButton : button,
                      button, modifiers);
    QCoreApplication::sendEvent(widget, &event);
}
inline void drag(QWidget *widget, const QPointF &from, const QPointF &to,
                 Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                 Qt::MouseButton button = Qt::LeftButton)
{
    mouse(widget, QEvent::MouseButtonPress, from, modifiers, button);
    mouse(widget, QEvent::MouseMove, to, modifiers, button);
    mouse(widget, QEvent::MouseButtonRelease, to, modifiers, button);
}
inline void wheel(QWidget *widget, const QPointF &at, const QPoint &delta)
{
    QWheelEvent event(at, widget->mapToGlobal(at.toPoint()), QPoint(), delta, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(widget, &event);
}
/// Drags over a widget and drops, on it or on the one around it that takes such; whether one did.
inline bool drop(QWidget *widget, const QList<QUrl> &urls)
{
    QMimeData data;
    data.setUrls(urls);
    QDragEnterEvent enter({2, 2}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    enter.ignore();
    QCoreApplication::sendEvent(widget, &enter);
    QDropEvent event({2, 2}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    return enter.isAccepted() && QCoreApplication::sendEvent(widget, &event) && event.isAccepted();
}

/// The limits of both axes.
inline QString rangeOf(const ChCoord &c)
{
    return QString("%1 %2 %3 %4").arg(c.xMin()).arg(c.xMax()).arg(c.yMin()).arg(c.yMax());
}
inline int pixelsNear(const QImage &image, const QColor &colour, int distance)
{
    int n = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor found = image.pixelColor(x, y);
            n += std::abs(found.red() - colour.red()) + std::abs(found.green() - colour.green()) +
                     std::abs(found.blue() - colour.blue()) <=
                 distance;
        }
    }
    return n;
}
inline int pixelsOf(const QImage &image, const QColor &colour)
{
    return pixelsNear(image, colour, 0);
}

/// Counts what is painted anywhere while it lives.
class PaintCounter : public QObject {
public:
    PaintCounter() { qApp->installEventFilter(this); }
    int count = 0;

private:
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        count += event->type() == QEvent::Paint || event->type() == QEvent::UpdateRequest;
        return false;
    }
};
/// Whether painting ends: what is due may come late on a busy machine, but comes to an end.
inline bool rests()
{
    for (int attempt = 0; attempt < 10; ++attempt) {
        const PaintCounter paints;
        QTest::qWait(300);
        if (paints.count == 0) {
            return true;
        }
    }
    return false;
}

} // namespace window
