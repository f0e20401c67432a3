#pragma once

#include "panel/RegionTool.h"

#include <QFrame>
#include <QStringList>

#include <memory>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QToolButton;
class RegionTable;
namespace orvel {
class ResultMaps;
}

/// Regions of the result map: the button that lets the mouse draw them, the choices beside it, the
/// table of their statistics. Shows and collects; the plots ask it for its regions.
class RegionPanel : public QFrame {
    Q_OBJECT

public:
    /// surface  of the result map; must outlive this
    explicit RegionPanel(DispArea *surface, QWidget *parent = nullptr);
    ~RegionPanel() override;

    /// Stands above the map; shows and hides this bar.
    QToolButton *button() const { return m_button; }
    orvel::RegionTool *tool() const { return m_tool; }

    const std::vector<orvel::Region> &regions() const { return m_tool->regions(); }
    void setRegions(const std::vector<orvel::Region> &regions) { m_tool->setRegions(regions); }
    /// Whether the plots show regions without the whole map; never without regions.
    bool areAlone() const;
    bool alone() const; ///< the choice itself
    void setAlone(bool on);

    /// Texts of the quantities, by Quantity.
    void setTitles(const QStringList &titles) { m_titles = titles; }
    /// Maps that the statistics are taken from, and how many references take part in them.
    void setResults(const std::shared_ptr<const orvel::ResultMaps> &maps, int references);
    int references() const { return m_references; } ///< of those maps

signals:
    /// Regions, or the choice how plots show them.
    void changed();
    void couldNotWrite(const QString &path);

private:
    void showTable();
    void refresh();

    orvel::RegionTool *m_tool;
    QToolButton *m_button;
    QComboBox *m_shape;
    QPushButton *m_remove;
    QPushButton *m_openTable;
    QCheckBox *m_alone;
    QLabel *m_hint;
    RegionTable *m_table = nullptr; ///< made at first use
    QStringList m_titles;
    std::shared_ptr<const orvel::ResultMaps> m_maps;
    int m_references = 0;
};
