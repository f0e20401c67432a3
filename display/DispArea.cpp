#include "display/DispArea.h"

#include "display/Letters.h"
#include "display/MarkLines.h"
#include "ui_DispArea.h"

#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QMouseEvent>
#include <QWheelEvent>

#include <new>

namespace {

constexpr int kNoModifier = 0;

/// The modifiers that mean something here; a keypad or a caps lock does not.
int modifiersOf(int modifiers)
{
    return modifiers & static_cast<int>(Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
}

} // namespace

DispArea::DispArea(QWidget *parent)
    : QFrame(parent), m_ui(std::make_unique<Ui::DispArea>()),
      m_keys(new orvel::KeyPointer(this, [this] {
          clearRange();
          update();
      }))
{
    m_ui->setupUi(this);
    setMouseTracking(true);
}

DispArea::~DispArea() = default;

void DispArea::setInitialRange(double xMin, double yMin, double xMax, double yMax)
{
    if (!m_isRangeSet) {
        m_coord.setRange(xMin, yMin, xMax, yMax);
        m_isRangeSet = true;
        m_isZoomed = false;
    }
}

void DispArea::paintEvent(QPaintEvent * /*event*/)
{
    QStylePainter painter(this);
    paintOn(painter);
    m_keys->paint(painter);
}

void DispArea::paintOn(QStylePainter &painter)
{
    m_wasPainted = true;
    m_coord.setArea(0, height(), width(), 0);
    keepLabelsReadable();
    if (!m_isRangeSet) {
        m_coord.setRange(0, 0, 1, 1);
    }
    try {
        emit draw(&painter);
    } catch (const std::bad_alloc &) { // may not pass through the event loop
        qWarning("there is not enough memory to paint a plot");
    }
}

/// On a small surface a twentieth of the frame and a tenth of the width hold no readable number:
/// fewer, higher rows and wider margins then.
void DispArea::keepLabelsReadable()
{
    constexpr int kMostRows = 20;
    const double scale = orvel::letterPixelScale();
    const double left = 36.0 * scale;
    const auto fraction = [](double least, double pixels, int extent) {
        return qBound(least, pixels / qMax(1, extent), 0.3);
    };
    const double below = fraction(0.1, 17.0 * scale, height());
    constexpr double kRight = 0.05;
    constexpr double kTop = 0.05;
    m_coord.setMargins(fraction(0.1, left, width()), kRight, kTop, below);
    const double frame = height() * (1.0 - below - kTop);
    // Pixels; on a narrow surface small enough for both numbers and a title side by side.
    const double row = qBound(10.0, qMin(frame / 6.0, 0.07 * width()), 16.0 * scale);
    m_coord.setLabelRows(qBound(1, static_cast<int>(frame / row), kMostRows));
}

void DispArea::mousePressEvent(QMouseEvent *event)
{
    m_mouse.pressed(*event);
    if (m_mouse.pressButton() == Qt::LeftButton &&
        modifiersOf(m_mouse.pressModifiers()) == kNoModifier) {
        if (m_markLines) {
            m_markLines->pick(m_coord, m_mouse);
        }
        emit mPressed(&m_mouse);
    }
}

void DispArea::mouseMoveEvent(QMouseEvent *event)
{
    m_mouse.moved(*event);
    emit nowPos(m_coord.rx(m_mouse.x()), m_coord.ry(m_mouse.y()));
    if (!m_mouse.isHeld() || m_mouse.pressButton() != Qt::LeftButton) {
        return;
    }
    const int modifiers = modifiersOf(m_mouse.moveModifiers());
    if (modifiers == kNoModifier) {
        if (m_markLines) {
            m_markLines->moveSelected(m_coord, m_mouse);
        }
        emit mDragging(&m_mouse);
    } else if (modifiers == Qt::ShiftModifier) {
        pan();
    }
}

void DispArea::pan()
{
    const double dx = m_coord.rx(m_mouse.previous().x()) - m_coord.rx(m_mouse.x());
    const double dy = m_coord.ry(m_mouse.previous().y()) - m_coord.ry(m_mouse.y());
    m_coord.setRange(m_coord.xMin() + dx, m_coord.yMin() + dy, m_coord.xMax() + dx,
                     m_coord.yMax() + dy);
    m_isZoomed = true;
    update();
}

void DispArea::mouseReleaseEvent(QMouseEvent *event)
{
    m_mouse.released(*event);
    if (m_menu && event->button() == Qt::RightButton) {
        return; // no end of a press that meant anything but the menu
    }
    if (m_markLines) {
        m_markLines->release(m_coord, m_mouse);
    }
    emit mReleased(&m_mouse);
}

void DispArea::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_mouse.doubleClicked(*event);
    if (m_menu && event->button() == Qt::RightButton) {
        return;
    }
    m_isRangeSet = false;
    emit mDClicked(&m_mouse);
    update();
}

void DispArea::wheelEvent(QWheelEvent *event)
{
    m_mouse.wheeled(*event);
    const double factor = event->angleDelta().y() < 0 ? 1.1 : 1 / 1.1;
    const int sx = m_mouse.x();
    const int sy = m_mouse.y();
    const bool nearX = m_coord.nearFrameXEdge(sx);
    const bool nearY = m_coord.nearFrameYEdge(sy);
    const auto scaled = [factor](double limit, double about) {
        return (limit - about) * factor + about;
    };
    const double px = m_coord.rx(sx);
    const double py = m_coord.ry(sy);
    if (nearX == nearY || nearY) {
        m_coord.setXRange(scaled(m_coord.xMin(), px), scaled(m_coord.xMax(), px));
    }
    if (nearX == nearY || nearX) {
        m_coord.setYRange(scaled(m_coord.yMin(), py), scaled(m_coord.yMax(), py));
    }
    m_isZoomed = true;
    event->accept(); // or a scroll area around would scroll as well
    update();
}

void DispArea::contextMenuEvent(QContextMenuEvent *event)
{
    if (!m_menu || (QGuiApplication::mouseButtons() & Qt::LeftButton)) {
        return; // in the middle of a drag a menu would swallow its end
    }
    m_mouse.cancelPress(); // the release goes to the menu
    m_menu(event->globalPos());
    event->accept();
}
