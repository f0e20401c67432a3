#pragma once

#include "display/DispABase.h"

#include <QFrame>
#include <QVector>

#include <memory>

namespace Ui {
class Displays;
}

/// The graph panels of the analysis in one grid. Their requests come out as signals of the set,
/// with the identity of the panel.
class Displays : public QFrame {
    Q_OBJECT

public:
    enum DispId {
        DRef1,
        DRef2,
        DRef3,
        DRef4,
        DTarget,
        DMuts,
        DLCFvsMPS,
        DHistA,
        DHistDMut,
        DDMutVorA,
        DM2M3,
    };
    Q_ENUM(DispId)
    static constexpr int kPanels = DM2M3 + 1;

    explicit Displays(QWidget *parent = nullptr);
    ~Displays() override;

    /// Registers a panel; one without column and row is kept out of the grid. The same panel may
    /// be registered under several identities and then draws once for each.
    void append(DispABase *panel, const QString &title, DispId id, int column, int row,
                int columnSpan, int rowSpan);
    /// The panel first registered under an identity; null when there is none.
    DispABase *panel(DispId id) const;

public slots:
    void receiveDraw(QStylePainter *p);
    void receiveMPressed(MouseC *m);
    void receiveMDragging(MouseC *m);
    void receiveMReleased(MouseC *m);

signals:
    void draw(Displays::DispId id, DispABase *dab, QStylePainter *p);
    void mPressed(MouseC *m);
    void mDragging(MouseC *m);
    void mReleased(MouseC *m);

private:
    std::unique_ptr<Ui::Displays> m_ui;
    QVector<DispABase *> m_panels;
    QVector<DispId> m_ids;
};
