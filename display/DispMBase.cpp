#include "display/DispMBase.h"

#include "display/LightFields.h"
#include "display/NumberEdit.h"
#include "display/Pictures.h"
#include "display/PopBase.h"
#include "display/cBar.h"
#include "ui_DispMBase.h"

#include <QEvent>

#include <cmath>

DispMBase::DispMBase(QWidget *parent)
    : QFrame(parent), m_ui(std::make_unique<Ui::DispMBase>()),
      m_popBase(std::make_unique<PopBase>())
{
    m_ui->setupUi(this);
    orvel::inkLightFields(*this);
    m_ui->DispA->keys()->setStep([this](const QPointF &from, const QPoint &direction) {
        return nextPixel(from, direction);
    });
    const DispArea *surface = m_ui->DispA;
    connect(surface, &DispArea::draw, this, &DispMBase::receiveDraw);
    connect(this, &DispMBase::draw, m_popBase.get(), &PopBase::update);
    connect(m_ui->PopDockB, &QPushButton::clicked, this, &DispMBase::popDock);
    connect(m_popBase.get(), &PopBase::closed, this, &DispMBase::popDock);
    connect(surface, &DispArea::nowPos, this, &DispMBase::receiveNowPos);
    connect(surface, &DispArea::nowPos, this, &DispMBase::nowPos);
    connect(surface, &DispArea::mPressed, this, &DispMBase::mPressed);
    connect(surface, &DispArea::mDragging, this, &DispMBase::mDragging);
    connect(surface, &DispArea::mReleased, this, &DispMBase::mReleased);
    connect(surface, &DispArea::mDClicked, this, &DispMBase::mDClicked);
    connect(m_ui->MaxV, &QLineEdit::editingFinished, this, &DispMBase::newZmax);
    connect(m_ui->MinV, &QLineEdit::editingFinished, this, &DispMBase::newZmin);
    connect(m_ui->CBar, &cBar::newScale, this, QOverload<>::of(&DispMBase::update));
    // The window may be visible while the panel is not.
    connect(m_ui->CBar, &cBar::newScale, this, &DispMBase::updateSurface);
    m_ui->CBar->installEventFilter(this);
}

DispMBase::~DispMBase()
{
    m_popBase->disconnect(this);
}

DispArea *DispMBase::area() const
{
    return m_ui->DispA;
}

cBar *DispMBase::bar() const
{
    return m_ui->CBar;
}

void DispMBase::setTitle(const QString &title)
{
    m_ui->Title->setText(title);
}

QString DispMBase::title() const
{
    return m_ui->Title->text();
}

void DispMBase::setInitialRange(double xMin, double yMin, double xMax, double yMax)
{
    area()->setInitialRange(xMin, yMin, xMax, yMax);
}

void DispMBase::setLimits(double low, double high)
{
    bar()->setLimits(low, high);
    showLimits();
}

void DispMBase::showValue(const QString &text)
{
    m_ui->Val->setText(text);
    m_ui->Val->setCursorPosition(0);
    if (area()->hasFocus()) { // for who cannot see the fields
        area()->setAccessibleDescription(
            QStringLiteral("x %1, y %2: %3").arg(m_ui->XPos->text(), m_ui->YPos->text(), text));
    }
}

/// The centre of the pixel beside the one at a place of the screen, or of the very pixel where it
/// is not in its centre across; at least a pixel of the screen away, where those of the map are
/// finer.
QPointF DispMBase::nextPixel(const QPointF &from, const QPoint &direction) const
{
    const ChCoord &coord = *this->coord();
    const double x = coord.sx(std::floor(coord.rx(from.x())) + 0.5 + direction.x());
    const double y = coord.sy(std::floor(coord.ry(from.y())) + 0.5 - direction.y());
    QPointF to = from + direction;
    if (direction.x() != 0 && std::fabs(x - from.x()) >= 1.0) {
        to.setX(x);
    }
    if (direction.y() != 0 && std::fabs(y - from.y()) >= 1.0) {
        to.setY(y);
    }
    return to;
}

void DispMBase::addToHeader(QWidget *widget)
{
    m_ui->HeaderL->insertWidget(m_ui->HeaderL->indexOf(m_ui->PopDockB), widget);
}

void DispMBase::updateSurface()
{
    area()->update();
    bar()->update();
}

void DispMBase::receiveNowPos(double rx, double ry)
{
    orvel::showNumber(m_ui->XPos, rx);
    orvel::showNumber(m_ui->YPos, ry);
}

void DispMBase::receiveDraw(QStylePainter *p)
{
    emit draw(p);
}

orvel::PaintedPicture DispMBase::picture(const QString &unit)
{
    constexpr int kGap = 12;
    constexpr int kBarWidth = 20;
    constexpr int kUnitRow = 18;
    constexpr int kHalfLabel = 10;
    constexpr int kUnitPixels = 12;
    const QSize map = area()->size();
    orvel::PaintedPicture picture;
    picture.widget = area();
    picture.size = map + QSize(orvel::kAxisLeft + kGap + kBarWidth + orvel::kBarLabels,
                               kHalfLabel + orvel::kAxisBottom);
    picture.title = title();
    picture.paint = [this, map, unit](QStylePainter &p) {
        p.translate(orvel::kAxisLeft, kHalfLabel);
        p.save();
        p.setClipRect(QRect(QPoint(), map));
        area()->paintOn(p);
        p.restore();
        orvel::drawMapAxes(p, *area()->coord());
        p.setPen(QColor(150, 150, 150)); // or pale pixels at the border had no end
        p.setBrush(Qt::NoBrush);
        p.drawRect(QRect(QPoint(), map));
        const int left = map.width() + kGap;
        QFont font = p.font();
        font.setPixelSize(kUnitPixels);
        p.setFont(font);
        p.setPen(Qt::black);
        p.drawText(QRect(left, 0, kBarWidth + orvel::kBarLabels, kUnitRow - 2),
                   Qt::AlignLeft | Qt::AlignTop, unit);
        const int top = unit.isEmpty() ? 0 : kUnitRow + kHalfLabel;
        orvel::drawLabelledBar(p, QRect(left, top, kBarWidth, qMax(1, map.height() - top)),
                               bar()->scale());
    };
    return picture;
}

void DispMBase::popDock()
{
    if (m_isDocked) {
        m_popBase->popOut(m_ui->DispABFrame, m_ui->gridLayout, title());
    } else {
        m_popBase->dock(m_ui->DispABFrame, m_ui->gridLayout);
        const QList<QWidget *> order = {m_ui->PopDockB, area(), m_ui->MaxV, bar(), m_ui->MinV};
        for (int i = 1; i < order.size(); ++i) { // or they would come after everything
            setTabOrder(order[i - 1], order[i]);
        }
    }
    m_isDocked = !m_isDocked;
}

void DispMBase::clearScale()
{
    area()->clearRange();
}

void DispMBase::newZmax()
{
    const double max = m_ui->MaxV->text().toDouble();
    const bool isReversed = bar()->scale().zMin() > max;
    bar()->newZmax(max);
    if (isReversed) {
        showLimits();
    }
}

void DispMBase::newZmin()
{
    const double min = m_ui->MinV->text().toDouble();
    const bool isReversed = min > bar()->scale().zMax();
    bar()->newZmin(min);
    if (isReversed) {
        showLimits();
    }
}

/// The bar put reversed limits in order. Fields that still show them the other way round would
/// give one of them to the wrong end as soon as the focus leaves.
void DispMBase::showLimits()
{
    orvel::showNumber(m_ui->MinV, bar()->scale().zMin());
    orvel::showNumber(m_ui->MaxV, bar()->scale().zMax());
}

void DispMBase::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);
    if (!m_isDocked) {
        updateSurface(); // they are no longer painted along with the panel
    }
}

/// A double click undoes the bar's stretch and no signal tells: the map would keep the colours of
/// another scale.
bool DispMBase::eventFilter(QObject *object, QEvent *event)
{
    if (object == m_ui->CBar && event->type() == QEvent::MouseButtonDblClick) {
        updateSurface();
    }
    return QFrame::eventFilter(object, event);
}
