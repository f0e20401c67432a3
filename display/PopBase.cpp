#include "display/PopBase.h"

#include "ui_PopBase.h"

#include <QCloseEvent>
#include <QKeyEvent>

#include <algorithm>

PopBase::PopBase(QWidget *parent) : QFrame(parent), m_ui(std::make_unique<Ui::PopBase>())
{
    m_ui->setupUi(this);
    setAttribute(Qt::WA_QuitOnClose, false); // the program ends with its main window
}

PopBase::~PopBase() = default;

void PopBase::popOut(QWidget *frame, QGridLayout *home, const QString &title)
{
    setFont(frame->font()); // a window would not take it from the panel
    home->removeWidget(frame);
    m_ui->PopBaseLayout->addWidget(frame, 0, 0);
    setWindowTitle(title);
    show();
    raise();
}

void PopBase::dock(QWidget *frame, QGridLayout *home)
{
    m_ui->PopBaseLayout->removeWidget(frame);
    home->addWidget(frame, 1, 0);
    frame->show();
    hide();
}

void PopBase::update()
{
    const QList<QWidget *> inside = findChildren<QWidget *>();
    const bool isPainting = std::any_of(inside.begin(), inside.end(), [](const QWidget *widget) {
        return widget->testAttribute(Qt::WA_WState_InPaintEvent);
    });
    if (!isPainting) {
        QFrame::update();
    }
}

void PopBase::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Escape) {
        close();
    } else {
        QFrame::keyPressEvent(event);
    }
}

void PopBase::closeEvent(QCloseEvent *event)
{
    event->accept();
    if (isVisible()) { // a second request may arrive when the window is hidden already
        emit closed();
    }
}
