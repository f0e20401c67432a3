#include "display/DispABase.h"

#include "display/Letters.h"
#include "display/LightFields.h"
#include "display/NumberEdit.h"
#include "display/PlotFrame.h"
#include "display/PopBase.h"
#include "ui_DispABase.h"

#include <cmath>

namespace {

constexpr int kLow = 120; ///< below, the plot needs the room of the read-outs

void showTitle(QLabel *label, const QString &text)
{
    if (label->text() != text || label->isHidden() != text.isEmpty()) {
        label->setText(text);
        label->setHidden(text.isEmpty()); // an empty label would still take a line
    }
}

} // namespace

DispABase::DispABase(QWidget *parent)
    : QFrame(parent), m_ui(std::make_unique<Ui::DispABase>()),
      m_popBase(std::make_unique<PopBase>())
{
    m_ui->setupUi(this);
    orvel::inkLightFields(*this);
    m_whenLaidOut.setSingleShot(true);
    connect(&m_whenLaidOut, &QTimer::timeout, this,
            [this] { showReadOuts(height() >= kLow * orvel::letterPixelScale()); });
    const DispArea *surface = m_ui->DispA;
    connect(surface, &DispArea::nowPos, this, &DispABase::receiveNowPos);
    connect(surface, &DispArea::draw, this, &DispABase::receiveDraw);
    connect(this, &DispABase::draw, m_popBase.get(), &PopBase::update);
    connect(surface, &DispArea::mPressed, this, &DispABase::mPressed);
    connect(surface, &DispArea::mDragging, this, &DispABase::mDragging);
    connect(surface, &DispArea::mReleased, this, &DispABase::mReleased);
    connect(surface, &DispArea::mDClicked, this, &DispABase::mDClicked);
    connect(m_ui->PopDockB, &QPushButton::clicked, this, &DispABase::popDock);
    connect(m_popBase.get(), &PopBase::closed, this, &DispABase::popDock);
}

DispABase::~DispABase()
{
    m_popBase->disconnect(this); // the window may still be open
}

DispArea *DispABase::area() const
{
    return m_ui->DispA;
}

void DispABase::setTitle(const QString &title)
{
    m_ui->Title->setText(title);
}

QString DispABase::title() const
{
    return m_ui->Title->text();
}

void DispABase::setTitlesPainted(bool x, bool y)
{
    m_paintsXTitle = x;
    m_paintsYTitle = y;
    setTitles(m_xTitle, m_yTitle);
}

void DispABase::setTitles(const QString &xTitle, const QString &yTitle)
{
    m_xTitle = xTitle;
    m_yTitle = yTitle;
    showTitle(m_ui->XTitle, m_paintsXTitle ? QString() : m_xTitle);
    showTitle(m_ui->YTitle, m_paintsYTitle ? QString() : m_yTitle);
}

void DispABase::setInitialRange(double xMin, double yMin, double xMax, double yMax)
{
    area()->setInitialRange(xMin, yMin, xMax, yMax);
}

void DispABase::drawFrame(QStylePainter *p, bool clearMargins)
{
    orvel::drawPlotFrame(*p, *coord(), clearMargins);
}

void DispABase::receiveNowPos(double rx, double ry)
{
    orvel::showNumber(m_ui->XPos, rx);
    orvel::showNumber(m_ui->YPos, ry);
    if (area()->hasFocus()) { // for who cannot see the fields
        area()->setAccessibleDescription(
            QStringLiteral("x %1, y %2").arg(m_ui->XPos->text(), m_ui->YPos->text()));
    }
}

void DispABase::receiveDraw(QStylePainter *p)
{
    emit draw(p);
    if (area()->wasPainted()) {
        drawXYTitle(p);
    }
}

void DispABase::drawXYTitle(QStylePainter *p)
{
    orvel::drawAxisTitles(*p, *coord(), m_paintsXTitle ? m_xTitle : QString(),
                          m_paintsYTitle ? m_yTitle : QString());
}

orvel::PaintedPicture DispABase::picture()
{
    orvel::PaintedPicture picture;
    picture.widget = area();
    picture.size = area()->size();
    picture.title = title();
    picture.paint = [this](QStylePainter &p) {
        area()->paintOn(p);
        // A title that stands in a label beside the surface would be missing.
        orvel::drawAxisTitles(p, *coord(), m_paintsXTitle ? QString() : m_xTitle,
                              m_paintsYTitle ? QString() : m_yTitle);
    };
    return picture;
}

void DispABase::popDock()
{
    if (m_isPoppedOut) {
        m_popBase->dock(m_ui->DispABFrame, m_ui->gridLayout);
        setTabOrder(m_ui->PopDockB, area()); // or it would come after everything
    } else {
        m_popBase->popOut(m_ui->DispABFrame, m_ui->gridLayout, title());
    }
    m_isPoppedOut = !m_isPoppedOut;
}

void DispABase::clearScale()
{
    area()->clearRange();
}

/// In a narrow panel smaller letters keep the title whole.
void DispABase::fitTitle()
{
    const double largest = 8.0 * orvel::letterScale();
    const double smallest = 6.0 * orvel::letterScale();
    constexpr double kStep = 0.5;
    constexpr int kMargins = 12; // of the panel, its head and the gap before the button
    const int room =
        width() - m_ui->PopDockB->width() - qRound(kMargins * orvel::letterPixelScale());
    QFont font = m_ui->Title->font();
    font.setPointSizeF(largest);
    const int wanted = QFontMetrics(font).horizontalAdvance(title());
    if (wanted > room) {
        const double fitting = std::floor(largest * room / wanted / kStep) * kStep;
        font.setPointSizeF(qBound(smallest, fitting, largest));
    }
    if (font != m_ui->Title->font()) {
        m_ui->Title->setFont(font);
    }
}

void DispABase::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    fitTitle();
    // Once the window is laid out: each of its steps on the way would do it all over again.
    m_whenLaidOut.start(0);
}

void DispABase::showReadOuts(bool on)
{
    if (m_hasReadOuts == on) {
        return;
    }
    m_hasReadOuts = on;
    for (QWidget *widget :
         {static_cast<QWidget *>(m_ui->label), static_cast<QWidget *>(m_ui->XPos),
          static_cast<QWidget *>(m_ui->label_2), static_cast<QWidget *>(m_ui->YPos)}) {
        widget->setVisible(on);
    }
}

void DispABase::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);
    if (m_isPoppedOut) {
        updateSurface(); // it is no longer painted along with the panel
    }
}
