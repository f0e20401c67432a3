#pragma once

#include "display/DispArea.h"
#include "display/PictureExport.h"

#include <QFrame>

#include <memory>

class cBar;
class PopBase;
class QLineEdit;
namespace Ui {
class DispMBase;
}

/// One map: a drawing surface beside its colour bar with the limits of the scale, and what lies
/// under the pointer. Its owner paints the map on draw() and fills in the value on nowPos().
class DispMBase : public QFrame {
    Q_OBJECT

public:
    explicit DispMBase(QWidget *parent = nullptr);
    ~DispMBase() override;

    DispArea *area() const;
    ChCoord *coord() const { return area()->coord(); }
    cBar *bar() const;
    PopBase *popBase() const { return m_popBase.get(); }
    bool isDocked() const { return m_isDocked; }

    void setTitle(const QString &title);
    QString title() const;
    void setInitialRange(double xMin, double yMin, double xMax, double yMax);
    /// Gives the limits of the colour scale to the bar and shows them with six digits.
    void setLimits(double low, double high);
    /// The value under the pointer; empty outside the map.
    void showValue(const QString &text);
    /// Puts a widget of the owner beside the button that pops the map out.
    void addToHeader(QWidget *widget);
    /// The map beside its colour bar with limits, for a file.
    /// unit  above the bar, of the values; empty: none
    orvel::PaintedPicture picture(const QString &unit);
    /// Repaints surface and bar, wherever they are.
    void updateSurface();

public slots:
    void receiveNowPos(double rx, double ry);
    void receiveDraw(QStylePainter *p);
    void popDock();
    void clearScale();
    void newZmax();
    void newZmin();

signals:
    void draw(QStylePainter *p);
    void nowPos(double x, double y);
    void mPressed(MouseC *m);
    void mDragging(MouseC *m);
    void mReleased(MouseC *m);
    void mDClicked(MouseC *m);

protected:
    void paintEvent(QPaintEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    void showLimits();
    QPointF nextPixel(const QPointF &from, const QPoint &direction) const;

    std::unique_ptr<Ui::DispMBase> m_ui;
    bool m_isDocked = true;
    std::unique_ptr<PopBase> m_popBase;
};
