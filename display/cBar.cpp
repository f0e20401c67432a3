#include "display/cBar.h"

#include "display/KeyPointer.h"
#include "ui_cBar.h"

#include <QActionGroup>
#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QIcon>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleOption>

#include <cmath>

namespace {

/// A palette as it runs from small values (left) to large ones.
QIcon stripOf(int type, bool inverted, const QSize &size, double devicePixelRatio)
{
    orvel::ColourScale scale(type);
    scale.setInverted(inverted);
    QImage line(scale.size(), 1, QImage::Format_RGB32);
    for (int i = 0; i < scale.size(); ++i) {
        line.setPixel(i, 0, scale.shownEntry(i));
    }
    QPixmap strip = QPixmap::fromImage(line.scaled(size * devicePixelRatio));
    strip.setDevicePixelRatio(devicePixelRatio);
    return QIcon(strip);
}

/// Gives the icons of a menu the width of a strip, and boxes without one their ordinary size.
class StripStyle : public QProxyStyle {
public:
    explicit StripStyle(int width) : m_width(width) {}
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override
    {
        return metric == PM_SmallIconSize ? m_width
                                          : QProxyStyle::pixelMetric(metric, option, widget);
    }
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &size,
                           const QWidget *widget) const override
    {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (type != CT_MenuItem || !item) {
            return QProxyStyle::sizeFromContents(type, option, size, widget);
        }
        constexpr int kBeside = 16;
        const QStyleOptionMenuItem plain = withoutStrip(*item); // counts the strip several times
        const int strip = item->icon.isNull() ? 0 : m_width + kBeside;
        return QProxyStyle::sizeFromContents(type, &plain, size, widget) + QSize(strip, 0);
    }
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override
    {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (element == CE_MenuItem && item && item->icon.isNull()) {
            const QStyleOptionMenuItem plain = withoutStrip(*item); // or its box is that wide
            QProxyStyle::drawControl(element, &plain, painter, widget);
        } else {
            QProxyStyle::drawControl(element, option, painter, widget);
        }
    }

private:
    static QStyleOptionMenuItem withoutStrip(QStyleOptionMenuItem item)
    {
        item.maxIconWidth = 0;
        return item;
    }

    int m_width;
};

} // namespace

cBar::cBar(QWidget *parent) : QFrame(parent), m_ui(std::make_unique<Ui::cBar>())
{
    m_ui->setupUi(this);
    setFocusPolicy(Qt::StrongFocus); // the menu key needs a focus
}

cBar::~cBar() = default;

void cBar::setType(int type)
{
    m_scale.setType(type);
    update();
}

void cBar::setLimits(double zMin, double zMax)
{
    m_scale.setLimits(zMin, zMax);
}

void cBar::checkLimits()
{
    if (m_scale.zMin() > m_scale.zMax()) {
        m_scale.setLimits(m_scale.zMax(), m_scale.zMin());
    }
    emit newScale();
}

void cBar::setAutoScale(bool f)
{
    m_isAutoScale = f;
}

void cBar::newZmax(double max)
{
    m_scale.setLimits(m_scale.zMin(), max);
    checkLimits();
}

void cBar::newZmin(double min)
{
    m_scale.setLimits(min, m_scale.zMax());
    checkLimits();
}

int cBar::maxCBarTypes()
{
    return orvel::ColourScale::kTypes;
}

void cBar::setInvertCBar(bool f)
{
    m_scale.setInverted(f);
}

void cBar::paintEvent(QPaintEvent * /*event*/)
{
    QPainter painter(this);
    m_coord.setArea(0, height(), width(), 0);
    m_lines = orvel::drawColourBar(painter, m_coord, m_scale);
    if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
        orvel::paintFocusFrame(painter, *this);
    }
}

void cBar::mousePressEvent(QMouseEvent *event)
{
    constexpr int kReach = 10;
    m_mouse.pressed(*event);
    if (std::abs(m_mouse.y() - m_lines.upper) < kReach) {
        m_dragged = UpperLine;
    }
    if (std::abs(m_mouse.y() - m_lines.lower) < kReach) {
        m_dragged = LowerLine;
    }
    update();
}

void cBar::mouseMoveEvent(QMouseEvent *event)
{
    m_mouse.moved(*event);
    if (m_mouse.isHeld()) {
        dragTo(m_mouse.y());
    }
}

/// The line that was taken last to a row of the screen, which may lie outside.
void cBar::dragTo(double y)
{
    const double upperIndex = m_scale.upperIndex();
    const double lowerIndex = orvel::ColourScale::lowerIndex();
    const double upper = m_dragged == UpperLine ? y : m_coord.sy(upperIndex);
    const double lower = m_dragged == LowerLine ? y : m_coord.sy(lowerIndex);
    if (upper != lower) {
        const double perPixel = (upperIndex - lowerIndex) / (upper - lower);
        m_scale.setStretch((height() - lower) * perPixel + lowerIndex,
                           -lower * perPixel + lowerIndex);
        emit newScale();
    }
    update();
}

void cBar::mouseReleaseEvent(QMouseEvent *event)
{
    m_mouse.released(*event);
    update();
}

void cBar::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_mouse.doubleClicked(*event);
    m_scale.setStretch(orvel::ColourScale::lowerIndex(), m_scale.upperIndex());
    update();
}

void cBar::keyPressEvent(QKeyEvent *event)
{
    constexpr int kFast = 10;
    const bool isShift = (event->modifiers() & Qt::ShiftModifier) != 0;
    const int step = (event->modifiers() & Qt::ControlModifier) != 0 ? kFast : 1;
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
        m_dragged = isShift ? LowerLine : UpperLine;
        dragTo(m_coord.sy(isShift ? orvel::ColourScale::lowerIndex() : m_scale.upperIndex()) +
               (event->key() == Qt::Key_Up ? -step : step));
        return;
    case Qt::Key_0:
    case Qt::Key_Home:
    case Qt::Key_Return:
    case Qt::Key_Enter: { // as the mouse does it, for who watches its events
        QMouseEvent twice(QEvent::MouseButtonDblClick, rect().center(), Qt::LeftButton,
                          Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(this, &twice);
        return;
    }
    case Qt::Key_F10:
        if (isShift) {
            QContextMenuEvent menu(QContextMenuEvent::Keyboard, rect().center());
            contextMenuEvent(&menu);
            return;
        }
        break;
    default:
        break;
    }
    QFrame::keyPressEvent(event);
}

QSize cBar::stripSize() const
{
    const int height = fontMetrics().height();
    return QSize(6 * height, height);
}

void cBar::fillMenu(QMenu &menu)
{
    auto *palettes = new QActionGroup(&menu);
    for (int type = 0; type < maxCBarTypes(); ++type) {
        const QIcon strip = stripOf(type, isInverted(), stripSize(), devicePixelRatioF());
        QAction *action = menu.addAction(strip, QString::number(type + 1));
        action->setCheckable(true);
        const bool isCurrent = type == m_scale.type();
        action->setChecked(isCurrent);
        QFont font = menu.font();
        font.setBold(isCurrent); // the frame of a checked icon is faint
        action->setFont(font);
        palettes->addAction(action);
        connect(action, &QAction::triggered, this, [this, type] {
            setType(type);
            emit newScale();
        });
    }
    menu.addSeparator();
    QAction *invert = menu.addAction(tr("Invert"));
    invert->setCheckable(true);
    invert->setChecked(isInverted());
    connect(invert, &QAction::triggered, this, [this](bool f) {
        setInvertCBar(f);
        update();
        emit newScale();
    });
    QAction *automatic = menu.addAction(tr("Auto scale"));
    automatic->setCheckable(true);
    automatic->setChecked(m_isAutoScale);
    connect(automatic, &QAction::triggered, this, [this](bool f) {
        setAutoScale(f);
        emit autoScaleChosen(f);
    });
}

void cBar::contextMenuEvent(QContextMenuEvent *event)
{
    m_mouse.cancelPress(); // the release goes to the menu
    auto *menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto *style = new StripStyle(stripSize().width());
    style->setParent(menu);
    menu->setStyle(style);
    fillMenu(*menu);
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    menu->popup(byKey ? mapToGlobal(rect().center()) : event->globalPos());
}
