#pragma once

#include "spectra/AFileSelect.h"
#include "spectra/AMutE.h"

class DispABase;
class MouseC;
class QStylePainter;

/// Chooses one XAFS spectrum, reads it at once and draws it with its background lines on the graph
/// panel it is bound to. Only a bound selector has an energy shift.
class AXafsFileSelect : public AFileSelect, public AMutE {
    Q_OBJECT

public:
    explicit AXafsFileSelect(QWidget *parent = nullptr);

    /// Binds the selector to a graph panel, which must outlive it.
    void setDisplay(DispABase *panel);
    /// Which line valueMinusLine() subtracts: the post-edge line, or else the pre-edge line.
    void setSubtractPost(bool f) { m_subtractPost = f; }
    bool subtractsPost() const { return m_subtractPost; }
    bool valueMinusLine(double e, double &out) const
    {
        return AMutE::valueMinusLine(e, m_subtractPost, out);
    }
    /// Repaints the panel it is bound to.
    void updateDisplay();

signals:
    void foundNewEdge(double e);
    void updated();

public slots:
    void clearFileName() override; ///< also empties the spectrum
    void newFile(const QString &path) override;
    void setNewDE();
    void draw(QStylePainter *p);
    void mPressed(MouseC *m);
    void mDragging(MouseC *m);
    void mReleased(MouseC *m);

private:
    DispABase *m_panel = nullptr;
    bool m_subtractPost = false;
};
