#pragma once

#include "display/DispArea.h"
#include "display/PictureExport.h"

#include <QFrame>
#include <QTimer>

#include <memory>

class PopBase;
namespace Ui {
class DispABase;
}

/// One x-y plot: a drawing surface with axis titles, the pointer's position and a button that
/// moves the surface into a window of its own. The surface asks for its contents by draw().
class DispABase : public QFrame {
    Q_OBJECT

public:
    explicit DispABase(QWidget *parent = nullptr);
    ~DispABase() override;

    DispArea *area() const;
    ChCoord *coord() const { return area()->coord(); }
    PopBase *popBase() const { return m_popBase.get(); }
    bool isPoppedOut() const { return m_isPoppedOut; }

    /// The panel's own title, above the plot.
    void setTitle(const QString &title);
    QString title() const;
    /// Whether each axis title is painted on the plot instead of shown in its label.
    void setTitlesPainted(bool x, bool y);
    void setTitles(const QString &xTitle, const QString &yTitle);
    QString xTitle() const { return m_xTitle; }
    QString yTitle() const { return m_yTitle; }
    void setInitialRange(double xMin, double yMin, double xMax, double yMax);
    void drawFrame(QStylePainter *p, bool clearMargins);
    /// The fields with the pointer's position. Until events are done after the next resize: a low
    /// panel has none then, a higher one has them.
    void showReadOuts(bool on);
    /// What it shows, below its title, for a file.
    orvel::PaintedPicture picture();
    /// Repaints the surface, wherever it is.
    void updateSurface() { area()->update(); }

public slots:
    void receiveNowPos(double rx, double ry);
    void receiveDraw(QStylePainter *p);
    void popDock();
    void drawXYTitle(QStylePainter *p);
    void clearScale();

signals:
    void draw(QStylePainter *p);
    void mPressed(MouseC *m);
    void mDragging(MouseC *m);
    void mReleased(MouseC *m);
    void mDClicked(MouseC *m);

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void fitTitle();

    std::unique_ptr<Ui::DispABase> m_ui;
    QString m_xTitle;
    QString m_yTitle;
    bool m_paintsXTitle = false;
    bool m_paintsYTitle = false;
    bool m_isPoppedOut = false;
    bool m_hasReadOuts = true;
    QTimer m_whenLaidOut;
    std::unique_ptr<PopBase> m_popBase; ///< without a parent, or it could not be a window
};
