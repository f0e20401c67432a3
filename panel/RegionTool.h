#pragma once

#include "analysis/Regions.h"

#include <QObject>
#include <QPointF>
#include <QSize>

#include <vector>

class CColors;
class DispArea;
class QKeyEvent;
class QMouseEvent;
class QPainter;

namespace orvel {

/// Draws regions on a map by mouse. While it is active it takes plain presses, drags and double
/// clicks away from the surface (it filters its events), wherever the surface is; the wheel,
/// shift-drag and the read-out of the pointer go on.
///
/// Rectangle: press, drag, release; a click selects the region under it. Polygon: a click adds a
/// corner, Enter or a click on the first one ends it, Backspace takes the last one back. Escape
/// gives up what is being drawn, control-click selects, Delete removes the selected region.
class RegionTool : public QObject {
    Q_OBJECT

public:
    /// There are as many as may be; no pixel has its centre inside.
    enum class Refusal { TooMany, NoPixel };
    Q_ENUM(Refusal)

    /// surface  not owned; must outlive the tool
    RegionTool(DispArea *surface, QObject *parent);

    bool isActive() const { return m_isActive; }
    void setActive(bool on);
    void setShape(Region::Shape shape);
    /// Pixels of the map; empty: there is none to draw on.
    void setMapSize(const QSize &size);

    const std::vector<Region> &regions() const { return m_regions; }
    void setRegions(const std::vector<Region> &regions);
    int selected() const { return m_selected; } ///< -1: none
    void select(int index);
    void removeSelected();

    void paint(QPainter &painter, const CColors &colours) const;

signals:
    void changed();                               ///< the regions
    void selectionChanged();                      ///< which of them
    void refused(orvel::RegionTool::Refusal why); ///< what was drawn is no region

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    bool pressed(const QMouseEvent &event);
    void released(const QPointF &at);
    bool keyPressed(const QKeyEvent &event);
    void addCorner(const QPointF &at);
    void closePolygon();
    void finish(const Region &region);
    void giveUp();
    void selectAt(const QPointF &at);
    RegionPoint placeOf(const QPointF &at) const;
    QPointF screenOf(const RegionPoint &place) const;
    Region draggedRectangle(const QPointF &to) const;
    int freeColour() const;

    DispArea *m_surface;
    bool m_isActive = false;
    Region::Shape m_shape = Region::Shape::Rectangle;
    QSize m_mapSize;
    std::vector<Region> m_regions;
    int m_selected = -1;
    std::vector<RegionPoint> m_corners; ///< of the polygon being drawn
    bool m_isHeld = false;              ///< a press was taken
    bool m_isDragging = false;          ///< of a rectangle
    bool m_hasJustEnded = false;        ///< a polygon, by the last press
    QPointF m_pressedAt;
    QPointF m_pointer; ///< on the screen
};

} // namespace orvel
