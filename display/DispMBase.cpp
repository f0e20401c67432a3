#include "display/DispMBase.h"

#include "display/NumberEdit.h"
#include "display/PopBase.h"
#include "display/cBar.h"
#include "ui_DispMBase.h"

DispMBase::DispMBase(QWidget *parent)
    : QFrame(parent), m_ui(std::make_unique<Ui::DispMBase>()),
      m_popBase(std::make_unique<PopBase>())
{
    m_ui->setupUi(this);
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
    orvel::showNumber(m_ui->MinV, low);
    orvel::showNumber(m_ui->MaxV, high);
    bar()->setLimits(low, high);
}

void DispMBase::showValue(const QString &text)
{
    m_ui->Val->setText(text);
    m_ui->Val->setCursorPosition(0);
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

void DispMBase::popDock()
{
    if (m_isDocked) {
        m_popBase->popOut(m_ui->DispABFrame, m_ui->gridLayout, title());
    } else {
        m_popBase->dock(m_ui->DispABFrame, m_ui->gridLayout);
    }
    m_isDocked = !m_isDocked;
}

void DispMBase::clearScale()
{
    area()->clearRange();
}

void DispMBase::newZmax()
{
    bar()->newZmax(m_ui->MaxV->text().toDouble());
}

void DispMBase::newZmin()
{
    bar()->newZmin(m_ui->MinV->text().toDouble());
}

void DispMBase::paintEvent(QPaintEvent *event)
{
    QFrame::paintEvent(event);
    if (!m_isDocked) {
        updateSurface(); // they are no longer painted along with the panel
    }
}
