#include "panel/RegionTable.h"

#include "display/CColors.h"
#include "display/LargeForm.h"
#include "panel/AccessibleNames.h"
#include "panel/ToolTips.h"
#include "text/OutputFile.h"

#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QPushButton>
#include <QSignalBlocker>
#include <QTableWidget>
#include <QVBoxLayout>

#include <cmath>

namespace {

/// Six digits, as everywhere in the window.
QString numberText(double value)
{
    return std::isnan(value) ? QString() : QString::number(value, 'g', 6);
}

} // namespace

RegionTable::RegionTable(QWidget *parent) : QDialog(parent), m_view(new QTableWidget(this))
{
    setObjectName(QStringLiteral("RegionTable"));
    setWindowTitle(tr("Statistics of the regions"));
    m_view->setObjectName(QStringLiteral("RegionView"));
    const QStringList heads = {tr("Region"), tr("Map"),           tr("Mean"),  tr("Std. dev."),
                               tr("Median"), tr("Finite pixels"), tr("Pixels")};
    m_view->setColumnCount(heads.size());
    m_view->setHorizontalHeaderLabels(heads);
    m_view->verticalHeader()->hide();
    m_view->setTabKeyNavigation(false); // Tab goes on, arrows stay inside
    m_view->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_view->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_view->setSelectionMode(QAbstractItemView::SingleSelection);
    m_view->horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    m_view->horizontalHeader()->setSectionResizeMode(1, QHeaderView::Stretch);
    auto *buttons = new QHBoxLayout;
    const auto addButton = [&](const QString &text, const char *name) {
        auto *button = new QPushButton(text, this);
        button->setObjectName(QLatin1String(name));
        button->setAutoDefault(false);
        buttons->addWidget(button);
        return button;
    };
    const QPushButton *copyButton = addButton(tr("Copy"), "RegionCopyB");
    const QPushButton *saveButton = addButton(tr("CSV..."), "RegionCsvB");
    buttons->addStretch();
    const QPushButton *closeButton = addButton(tr("Close"), "RegionCloseB");
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(m_view);
    layout->addLayout(buttons);
    resize(orvel::largeWindow({680, 420}));
    connect(copyButton, &QPushButton::clicked, this, &RegionTable::copy);
    connect(saveButton, &QPushButton::clicked, this, &RegionTable::askForFile);
    connect(closeButton, &QPushButton::clicked, this, &QWidget::close);
    connect(m_view, &QTableWidget::itemSelectionChanged, this, [this] {
        const int row = m_view->currentRow();
        if (row >= 0 && row < static_cast<int>(m_rows.size())) {
            emit chosen(m_rows[static_cast<size_t>(row)].region);
        }
    });
    orvel::setToolTips(*this);
    orvel::setAccessibleNames(*this);
}

void RegionTable::fill(const std::shared_ptr<const orvel::ResultMaps> &maps, int references,
                       const std::vector<orvel::Region> &regions, const QStringList &titles)
{
    if (maps && m_filledFrom.lock() == maps && references == m_references && regions == m_regions) {
        return; // another one is selected
    }
    const QSignalBlocker silent(m_view);
    QApplication::setOverrideCursor(Qt::WaitCursor);
    m_regions = regions;
    m_references = references;
    m_filledFrom = maps;
    m_rows.clear();
    if (maps) {
        m_rows = orvel::regionRows(*maps, references, regions);
    }
    const CColors colours;
    m_view->clearSelection();
    m_view->setRowCount(static_cast<int>(m_rows.size()));
    for (int i = 0; i < m_view->rowCount(); ++i) {
        const orvel::RegionRow &row = m_rows[static_cast<size_t>(i)];
        const orvel::RegionStatistics &found = row.found;
        const QString cells[] = {
            QString::number(row.region + 1), titles.value(orvel::indexOf(row.quantity)),
            numberText(found.mean),          numberText(found.deviation),
            numberText(found.median),        QString::number(found.finite),
            QString::number(found.pixels)};
        int column = 0;
        for (const QString &cell : cells) {
            auto *item = new QTableWidgetItem(cell);
            if (column == 0) {
                QPixmap colour(12, 12);
                colour.fill(colours.colour(m_regions[static_cast<size_t>(row.region)].colour));
                item->setIcon(QIcon(colour));
            } else if (column > 1) {
                item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            }
            m_view->setItem(i, column++, item);
        }
    }
    QApplication::restoreOverrideCursor();
}

void RegionTable::choose(int region)
{
    const int current = m_view->currentRow();
    const QList<QTableWidgetItem *> selected = m_view->selectedItems();
    if (!selected.isEmpty() && current >= 0 &&
        m_rows[static_cast<size_t>(current)].region == region) {
        return; // by a line of it
    }
    const QSignalBlocker silent(m_view);
    m_view->clearSelection();
    for (size_t i = 0; i < m_rows.size(); ++i) {
        if (m_rows[i].region == region) {
            m_view->selectRow(static_cast<int>(i));
            m_view->scrollToItem(m_view->item(static_cast<int>(i), 0));
            return;
        }
    }
}

QString RegionTable::text() const
{
    QStringList lines;
    for (int row = -1; row < m_view->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < m_view->columnCount(); ++column) {
            cells << (row < 0 ? m_view->horizontalHeaderItem(column)->text()
                              : m_view->item(row, column)->text());
        }
        lines << cells.join(QLatin1Char('\t'));
    }
    return lines.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

void RegionTable::copy()
{
    QApplication::clipboard()->setText(text());
}

void RegionTable::save(const QString &path)
{
    orvel::OutputFile file(path);
    bool isWritten = file.open();
    if (isWritten) {
        file.write(orvel::regionCsv(m_rows, m_regions));
        isWritten = file.commit();
    }
    if (!isWritten) {
        emit couldNotWrite(path);
    }
}

void RegionTable::askForFile()
{
    if (!m_saveDialog) {
        m_saveDialog = new QFileDialog(this);
        m_saveDialog->setNameFilters(
            {QStringLiteral("CSV (*.csv)"), QStringLiteral("All (* *.*)")});
        m_saveDialog->setAcceptMode(QFileDialog::AcceptSave);
        m_saveDialog->setDefaultSuffix(QStringLiteral("csv"));
        connect(m_saveDialog, &QFileDialog::fileSelected, this, &RegionTable::save);
    }
    m_saveDialog->open();
}
