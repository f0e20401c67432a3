#include "display/Displays.h"

#include "ui_Displays.h"

#include <QMetaEnum>

Displays::Displays(QWidget *parent) : QFrame(parent), m_ui(std::make_unique<Ui::Displays>())
{
    m_ui->setupUi(this);
    constexpr int kNowhere = -1;
    const struct {
        QString title;
        DispId id;
        int column;
        int row;
        int columnSpan;
    } places[] = {
        {tr("Ref1"), DRef1, 0, 0, 1},
        {tr("Ref2"), DRef2, 1, 0, 1},
        {tr("Ref3"), DRef3, 2, 0, 1},
        {tr("Ref4"), DRef4, 3, 0, 1},
        {tr("Target"), DTarget, 0, 1, 1},
        {tr("Muts"), DMuts, 1, 1, 2},
        {tr("LCF vs MPS"), DLCFvsMPS, 3, 1, 1},
        {tr("Histgram of a"), DHistA, 0, 2, 1},
        {tr("Histgram of dMut"), DHistDMut, 1, 2, 1},
        {tr("dMut/v or a"), DDMutVorA, 2, 2, 1},
        {tr("M2/M3"), DM2M3, kNowhere, kNowhere, 1},
    };
    for (const auto &place : places) {
        auto *panel = new DispABase(this);
        panel->setObjectName(
            QString::fromLatin1(QMetaEnum::fromType<DispId>().valueToKey(place.id)));
        append(panel, place.title, place.id, place.column, place.row, place.columnSpan, 1);
    }
    panel(DM2M3)->hide();
}

Displays::~Displays() = default;

void Displays::append(DispABase *panel, const QString &title, DispId id, int column, int row,
                      int columnSpan, int rowSpan)
{
    panel->setTitlesPainted(true, true);
    panel->showReadOuts(
        false); // in a window of usual size the panels are low: no need to lay out twice
    panel->setTitle(title);
    if (column >= 0 && row >= 0) {
        m_ui->DispL->addWidget(panel, row, column, rowSpan, columnSpan);
    }
    m_panels.append(panel);
    m_ids.append(id);
    connect(panel, &DispABase::draw, this, &Displays::receiveDraw, Qt::UniqueConnection);
    connect(panel, &DispABase::mPressed, this, &Displays::receiveMPressed, Qt::UniqueConnection);
    connect(panel, &DispABase::mDragging, this, &Displays::receiveMDragging, Qt::UniqueConnection);
    connect(panel, &DispABase::mReleased, this, &Displays::receiveMReleased, Qt::UniqueConnection);
}

DispABase *Displays::panel(DispId id) const
{
    const int i = m_ids.indexOf(id);
    return i < 0 ? nullptr : m_panels[i];
}

void Displays::receiveDraw(QStylePainter *p)
{
    const QObject *from = sender();
    for (int i = 0; i < m_panels.size(); ++i) {
        if (m_panels[i] == from) {
            emit draw(m_ids[i], m_panels[i], p);
        }
    }
}

void Displays::receiveMPressed(MouseC *m)
{
    emit mPressed(m);
}

void Displays::receiveMDragging(MouseC *m)
{
    emit mDragging(m);
}

void Displays::receiveMReleased(MouseC *m)
{
    emit mReleased(m);
}
