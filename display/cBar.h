#pragma once

#include "display/ChCoord.h"
#include "display/ColourScale.h"
#include "display/MouseC.h"

#include <QFrame>

#include <memory>

class QMenu;
namespace Ui {
class cBar;
}

/// The colour bar beside a map. Its two limit lines can be dragged, which stretches the palette; a
/// double click undoes that. A menu (right button or menu key) chooses the palette. Keys: up and
/// down move the upper line, with shift the lower one, with control by ten pixels; 0, Home and
/// Enter undo that; Shift+F10 opens the menu.
class cBar : public QFrame {
    Q_OBJECT

public:
    explicit cBar(QWidget *parent = nullptr);
    ~cBar() override;

    const orvel::ColourScale &scale() const { return m_scale; }
    /// 0 to 11; any other number builds type 0. Undoes a stretch and repaints.
    void setType(int type);
    /// Both limits at once; no signal.
    void setLimits(double zMin, double zMax);
    /// Puts reversed limits in order; emits newScale().
    void checkLimits();
    bool isAutoScale() const { return m_isAutoScale; }
    bool isInverted() const { return m_scale.isInverted(); }
    QColor colourOf(double value) const { return QColor(m_scale.colourOf(value)); }

signals:
    void newScale();

public slots:
    void setAutoScale(bool f);
    void newZmax(double max);
    void newZmin(double min);
    int maxCBarTypes();
    void setInvertCBar(bool f);

signals:
    /// The menu's "Auto scale" was switched; the flag is set already.
    void autoScaleChosen(bool f);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    enum DraggedLine { UpperLine = 0, LowerLine = 1 };

    void dragTo(double y);
    void fillMenu(QMenu &menu);
    QSize stripSize() const;

    std::unique_ptr<Ui::cBar> m_ui;
    MouseC m_mouse;
    ChCoord m_coord;
    orvel::ColourScale m_scale;
    orvel::LimitLines m_lines = {0, 0}; ///< screen rows at the last paint
    bool m_isAutoScale = true;
    DraggedLine m_dragged = UpperLine;
};
