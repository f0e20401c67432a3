#pragma once

#include <QMainWindow>

#include <memory>

class FourPs;
namespace Ui {
class Body;
}

/// The main window; its only content is the analysis panel.
class Body : public QMainWindow {
    Q_OBJECT

public:
    explicit Body(QWidget *parent = nullptr);
    ~Body() override;

    FourPs *panel() const { return m_panel; }

private:
    std::unique_ptr<Ui::Body> m_ui;
    FourPs *m_panel = nullptr; ///< a child of the central widget
};
