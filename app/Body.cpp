#include "app/Body.h"

#include "panel/FourPs.h"
#include "ui_Body.h"

Body::Body(QWidget *parent) : QMainWindow(parent), m_ui(std::make_unique<Ui::Body>())
{
    m_ui->setupUi(this);
    setWindowTitle(QStringLiteral("orvel"));
    m_panel = new FourPs;
    m_ui->bodyLayout->addWidget(m_panel);
    m_ui->statusbar->hide(); // nothing is ever written to it
}

Body::~Body() = default;
