#pragma once

#include "session/RegionTexts.h"

#include <QDialog>
#include <QStringList>

#include <memory>

class QFileDialog;
class QTableWidget;

/// Statistics of every region and quantity in a window of its own.
class RegionTable : public QDialog {
    Q_OBJECT

public:
    explicit RegionTable(QWidget *parent = nullptr);

    /// titles  of the quantities, by Quantity
    void fill(const std::shared_ptr<const orvel::ResultMaps> &maps, int references,
              const std::vector<orvel::Region> &regions, const QStringList &titles);
    /// Selects the first line of a region; none for -1.
    void choose(int region);

    /// What "Copy" puts on the clipboard: lines of fields between tabs, as spreadsheets take them.
    QString text() const;

public slots:
    void copy();
    void save(const QString &path);

signals:
    /// A line was chosen, by its region.
    void chosen(int region);
    void couldNotWrite(const QString &path);

private:
    void askForFile();

    QTableWidget *m_view;
    QFileDialog *m_saveDialog = nullptr;
    std::vector<orvel::RegionRow> m_rows;
    std::vector<orvel::Region> m_regions;
    std::weak_ptr<const orvel::ResultMaps> m_filledFrom;
    int m_references = 0;
};
