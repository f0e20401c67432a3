#pragma once

#include "display/ChCoord.h"
#include "display/DrawText.h"
#include "display/KeyPointer.h"
#include "display/MouseC.h"

#include <QFrame>
#include <QStylePainter>

#include <functional>
#include <memory>

class MarkLines;
namespace Ui {
class DispArea;
}

/// The drawing surface of one plot. It owns the coordinates and what the mouse does with them:
/// the wheel zooms about the pointer, shift-drag pans, a double click asks for the plot's natural
/// range again, a plain drag moves marker lines. What is painted is up to whoever takes draw(). The
/// right button does nothing but open a menu: no signal tells of it. Tab brings the focus to it,
/// and keys then do what the mouse does (KeyPointer), but 0 and Home tell nobody that they show
/// all.
class DispArea : public QFrame {
    Q_OBJECT

public:
    explicit DispArea(QWidget *parent = nullptr);
    ~DispArea() override;

    ChCoord *coord() { return &m_coord; }
    DrawText *drawText() { return &m_drawText; }
    MouseC *mouse() { return &m_mouse; }
    orvel::KeyPointer *keys() { return m_keys; }

    /// Whether it was painted at least once.
    bool wasPainted() const { return m_wasPainted; }
    /// Whether an owner has set the range since the last double click; otherwise a paint starts
    /// with 0 to 1 on both axes.
    bool isRangeSet() const { return m_isRangeSet; }
    void clearRange() { m_isRangeSet = false; }
    /// Whether the user zoomed or moved what the owner had set.
    bool isZoomed() const { return m_isRangeSet && m_isZoomed; }
    /// Sets the range, unless it is set already: so a zoom outlives repaints.
    void setInitialRange(double xMin, double yMin, double xMax, double yMax);

    /// Lines that the mouse may drag; null: none. Not owned; must outlive the surface or be taken
    /// back.
    void setMarkLines(MarkLines *lines) { m_markLines = lines; }

    /// What opens the context menu at a place of the screen.
    void setMenu(std::function<void(const QPoint &globalPos)> menu) { m_menu = std::move(menu); }

    /// Paints the surface in its own size, on itself or for a file.
    void paintOn(QStylePainter &painter);

signals:
    void nowPos(double rx, double ry);
    void draw(QStylePainter *p);
    void mPressed(MouseC *m);
    void mDragging(MouseC *m);
    void mReleased(MouseC *m);
    void mDClicked(MouseC *m);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void keepLabelsReadable();
    void pan();

    std::unique_ptr<Ui::DispArea> m_ui;
    MouseC m_mouse;
    orvel::KeyPointer *m_keys; ///< a child
    ChCoord m_coord;
    bool m_wasPainted = false;
    bool m_isRangeSet = false;
    bool m_isZoomed = false;
    DrawText m_drawText;
    MarkLines *m_markLines = nullptr;
    std::function<void(const QPoint &)> m_menu;
};
