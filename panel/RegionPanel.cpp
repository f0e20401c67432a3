#include "panel/RegionPanel.h"

#include "analysis/ResultMaps.h"
#include "display/DispArea.h"
#include "panel/RegionTable.h"

#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolButton>
#include <QToolTip>

using orvel::Region;
using orvel::RegionTool;

RegionPanel::RegionPanel(DispArea *surface, QWidget *parent)
    : QFrame(parent), m_tool(new RegionTool(surface, this)), m_button(new QToolButton(parent)),
      m_shape(new QComboBox(this)), m_remove(new QPushButton(tr("Delete"), this)),
      m_openTable(new QPushButton(tr("Table..."), this)),
      m_alone(new QCheckBox(tr("Plots: regions alone"), this)), m_hint(new QLabel(this))
{
    setObjectName(QStringLiteral("RegionPanel"));
    m_button->setObjectName(QStringLiteral("RegionsB"));
    m_button->setText(tr("Regions"));
    m_button->setCheckable(true);
    m_shape->setObjectName(QStringLiteral("RegionShape"));
    m_shape->addItems({tr("Rectangle"), tr("Polygon")});
    m_remove->setObjectName(QStringLiteral("RegionRemoveB"));
    m_openTable->setObjectName(QStringLiteral("RegionTableB"));
    m_alone->setObjectName(QStringLiteral("RegionsAlone"));
    m_hint->setObjectName(QStringLiteral("RegionHint"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    for (QWidget *widget : {static_cast<QWidget *>(m_shape), static_cast<QWidget *>(m_remove),
                            static_cast<QWidget *>(m_openTable), static_cast<QWidget *>(m_alone)}) {
        layout->addWidget(widget);
    }
    layout->addWidget(m_hint, 1);
    m_hint->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // cut where narrow

    connect(m_button, &QToolButton::toggled, this, &QWidget::setVisible);
    connect(m_button, &QToolButton::toggled, m_tool, &RegionTool::setActive);
    connect(m_shape, QOverload<int>::of(&QComboBox::currentIndexChanged), this, [this](int index) {
        m_tool->setShape(static_cast<Region::Shape>(index));
        refresh();
    });
    connect(m_remove, &QPushButton::clicked, m_tool, &RegionTool::removeSelected);
    connect(m_openTable, &QPushButton::clicked, this, &RegionPanel::showTable);
    connect(m_alone, &QCheckBox::toggled, this, &RegionPanel::changed);
    connect(m_tool, &RegionTool::changed, this, [this] {
        refresh();
        emit changed();
    });
    connect(m_tool, &RegionTool::selectionChanged, this, &RegionPanel::refresh);
    connect(m_tool, &RegionTool::refused, this, [this, surface](RegionTool::Refusal why) {
        QToolTip::showText(
            surface->mapToGlobal(QPoint(0, 0)),
            why == RegionTool::Refusal::NoPixel
                ? tr("No pixel has its centre inside.")
                : tr("There are %1 regions; more cannot be.").arg(orvel::kMostRegions),
            surface);
    });
    hide();
    refresh();
}

RegionPanel::~RegionPanel() = default;

bool RegionPanel::alone() const
{
    return m_alone->isChecked();
}

bool RegionPanel::areAlone() const
{
    return alone() && !regions().empty();
}

void RegionPanel::setAlone(bool on)
{
    m_alone->setChecked(on);
}

void RegionPanel::setResults(const std::shared_ptr<const orvel::ResultMaps> &maps, int references)
{
    m_maps = maps;
    m_references = references;
    m_tool->setMapSize(maps ? QSize(maps->width(), maps->height()) : QSize());
    refresh();
}

void RegionPanel::showTable()
{
    if (!m_table) {
        m_table = new RegionTable(this);
        connect(m_table, &RegionTable::couldNotWrite, this, &RegionPanel::couldNotWrite);
        connect(m_table, &RegionTable::chosen, m_tool, &RegionTool::select);
    }
    m_table->show();
    m_table->raise();
    refresh();
}

void RegionPanel::refresh()
{
    m_remove->setEnabled(m_tool->selected() >= 0);
    m_hint->setText(m_shape->currentIndex() == static_cast<int>(Region::Shape::Rectangle)
                        ? tr("Drag on the map; click: select")
                        : tr("Click the corners; Enter: end"));
    if (m_table && m_table->isVisible()) {
        m_table->fill(m_maps, m_references, regions(), m_titles);
        m_table->choose(m_tool->selected());
    }
}
