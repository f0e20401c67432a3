#pragma once

#include <QFrame>

#include <memory>

class QGridLayout;
namespace Ui {
class PopBase;
}

/// The window that a panel's drawing surface moves into and comes back from.
class PopBase : public QFrame {
    Q_OBJECT

public:
    explicit PopBase(QWidget *parent = nullptr);
    ~PopBase() override;

    /// Takes a surface's frame out of its panel's grid and shows the window.
    void popOut(QWidget *frame, QGridLayout *home, const QString &title);
    /// Puts it back at row 1, column 0 of that grid and hides the window.
    void dock(QWidget *frame, QGridLayout *home);

public slots:
    /// As QWidget::update(), but nothing while something inside is being painted: a surface that
    /// asks for its own window to be painted would ask for ever.
    void update();

signals:
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override; ///< Escape closes

private:
    std::unique_ptr<Ui::PopBase> m_ui;
};
