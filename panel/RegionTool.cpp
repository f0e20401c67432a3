#include "panel/RegionTool.h"

#include "display/CColors.h"
#include "display/DispArea.h"
#include "display/RegionPainter.h"

#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <cmath>

namespace orvel {
namespace {

constexpr int kClick = 4;       // pixels: less is no drag
constexpr int kFirstCorner = 8; // pixels: so near is on it
constexpr int kSameCorner = 3;  // pixels: the second press of a double click

bool isNear(const QPointF &a, const QPointF &b, int pixels)
{
    return std::hypot(a.x() - b.x(), a.y() - b.y()) < pixels;
}

/// Corners on hundredths of a pixel: a session file stays readable.
double rounded(double x)
{
    constexpr double kGrain = 100.0;
    return std::round(x * kGrain) / kGrain;
}

bool isOurs(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        return true;
    default:
        return false;
    }
}

} // namespace

RegionTool::RegionTool(DispArea *surface, QObject *parent) : QObject(parent), m_surface(surface)
{
    m_surface->installEventFilter(this);
}

void RegionTool::setActive(bool on)
{
    giveUp();
    m_isActive = on;
    m_isHeld = false;
    m_hasJustEnded = false;
    m_surface->setFocusPolicy(on ? Qt::StrongFocus : Qt::TabFocus);
    if (on) {
        m_surface->setCursor(Qt::CrossCursor);
    } else {
        m_surface->unsetCursor();
        select(-1);
    }
}

void RegionTool::setShape(Region::Shape shape)
{
    giveUp();
    m_shape = shape;
}

void RegionTool::setMapSize(const QSize &size)
{
    if (size != m_mapSize) {
        giveUp();
        m_mapSize = size;
    }
}

void RegionTool::setRegions(const std::vector<Region> &regions)
{
    giveUp();
    m_regions = regions;
    m_selected = -1;
    emit selectionChanged();
    emit changed();
}

void RegionTool::select(int index)
{
    if (index != m_selected) {
        m_selected = index;
        emit selectionChanged();
        m_surface->update();
    }
}

void RegionTool::removeSelected()
{
    if (m_selected >= 0) {
        m_regions.erase(m_regions.begin() + m_selected);
        m_selected = -1;
        emit selectionChanged();
        emit changed();
    }
}

void RegionTool::paint(QPainter &painter, const CColors &colours) const
{
    const ChCoord &coord = *m_surface->coord();
    const auto draw = [&](const Region &region, OutlinedShape shape) {
        const std::vector<RegionPoint> &corners = region.corners;
        if (region.shape == Region::Shape::Rectangle) {
            const RegionPoint &a = corners[0];
            const RegionPoint &b = corners[1];
            shape.corners << QPointF(a.x, a.y) << QPointF(b.x, a.y) << QPointF(b.x, b.y)
                          << QPointF(a.x, b.y);
        } else {
            for (const RegionPoint &corner : corners) {
                shape.corners << QPointF(corner.x, corner.y);
            }
        }
        drawOutline(painter, coord, shape);
    };
    for (size_t i = 0; i < m_regions.size(); ++i) {
        OutlinedShape shape;
        shape.colour = colours.colour(m_regions[i].colour);
        shape.label = QString::number(i + 1);
        shape.isSelected = static_cast<int>(i) == m_selected;
        draw(m_regions[i], shape);
    }
    OutlinedShape drawing;
    drawing.colour = colours.colour(freeColour());
    if (m_isDragging && !isNear(m_pointer, m_pressedAt, kClick)) {
        const Region rectangle = draggedRectangle(m_pointer);
        if (rectangle.isValid()) {
            draw(rectangle, drawing);
        }
    }
    if (!m_corners.empty()) {
        Region polygon;
        polygon.shape = Region::Shape::Polygon;
        polygon.corners = m_corners;
        polygon.corners.push_back(placeOf(m_pointer));
        drawing.isOpen = true;
        draw(polygon, drawing);
    }
}

bool RegionTool::eventFilter(QObject *object, QEvent *event)
{
    if (object != m_surface || !m_isActive) {
        return QObject::eventFilter(object, event);
    }
    switch (event->type()) {
    case QEvent::MouseButtonDblClick:
        if (m_hasJustEnded) { // the second half of the click that ended a polygon begins none
            m_hasJustEnded = false;
            m_isHeld = true;
            return true;
        }
        return pressed(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseButtonPress:
        m_hasJustEnded = false;
        return pressed(*static_cast<QMouseEvent *>(event));
    case QEvent::MouseMove: // goes on: the panel shows where the pointer is
        m_pointer = static_cast<QMouseEvent *>(event)->localPos();
        if (m_isDragging || !m_corners.empty()) {
            m_surface->update();
        }
        return false;
    case QEvent::MouseButtonRelease: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (!m_isHeld || mouse->button() != Qt::LeftButton) {
            return false;
        }
        m_isHeld = false;
        released(mouse->localPos());
        return true;
    }
    case QEvent::ShortcutOverride:
        if (isOurs(*static_cast<QKeyEvent *>(event))) {
            event->accept();
            return true;
        }
        return false;
    case QEvent::KeyPress:
        return keyPressed(*static_cast<QKeyEvent *>(event));
    default:
        return false;
    }
}

/// Takes plain presses of the left button, and those with control, which mean nothing to a map.
bool RegionTool::pressed(const QMouseEvent &event)
{
    const auto modifiers =
        event.modifiers() & (Qt::ShiftModifier | Qt::ControlModifier | Qt::AltModifier);
    if (event.button() != Qt::LeftButton ||
        (modifiers != Qt::NoModifier && modifiers != Qt::ControlModifier)) {
        return false;
    }
    m_isHeld = true;
    m_pressedAt = event.localPos();
    m_pointer = m_pressedAt;
    if (modifiers == Qt::ControlModifier) {
        selectAt(m_pressedAt);
    } else if (m_mapSize.isEmpty()) {
        return true;
    } else if (m_shape == Region::Shape::Polygon) {
        addCorner(m_pressedAt);
    } else {
        m_isDragging = true;
    }
    return true;
}

void RegionTool::released(const QPointF &at)
{
    if (!m_isDragging) {
        return;
    }
    m_isDragging = false;
    if (isNear(at, m_pressedAt, kClick)) {
        selectAt(at);
    } else {
        finish(draggedRectangle(at));
    }
    m_surface->update();
}

bool RegionTool::keyPressed(const QKeyEvent &event)
{
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        closePolygon();
        return true;
    case Qt::Key_Escape:
        giveUp();
        return true;
    case Qt::Key_Backspace:
        if (!m_corners.empty()) {
            m_corners.pop_back();
            m_surface->update();
        }
        return true;
    case Qt::Key_Delete:
        removeSelected();
        return true;
    default:
        return false;
    }
}

void RegionTool::addCorner(const QPointF &at)
{
    if (m_corners.empty() && m_regions.size() >= kMostRegions) {
        emit refused(Refusal::TooMany);
        return;
    }
    if (m_corners.size() >= 3 && isNear(at, screenOf(m_corners.front()), kFirstCorner)) {
        closePolygon();
        m_hasJustEnded = true;
        return;
    }
    const bool isRepeated =
        !m_corners.empty() && isNear(at, screenOf(m_corners.back()), kSameCorner);
    if (!isRepeated && m_corners.size() < kMostCorners) {
        m_corners.push_back(placeOf(at));
        m_surface->update();
    }
}

void RegionTool::closePolygon()
{
    if (m_corners.size() < 3) {
        return; // Escape gives it up, a further click goes on
    }
    Region region;
    region.shape = Region::Shape::Polygon;
    region.corners.swap(m_corners);
    finish(region);
    m_surface->update();
}

/// Takes a region that was drawn, unless it holds no pixel.
void RegionTool::finish(const Region &drawn)
{
    if (m_regions.size() >= kMostRegions) {
        emit refused(Refusal::TooMany);
        return;
    }
    Region region = drawn;
    region.colour = freeColour();
    if (pixelsOf(region, m_mapSize.width(), m_mapSize.height()).empty()) {
        emit refused(Refusal::NoPixel);
        return;
    }
    m_regions.push_back(region);
    m_selected = static_cast<int>(m_regions.size()) - 1;
    emit selectionChanged();
    emit changed();
}

void RegionTool::giveUp()
{
    m_isDragging = false;
    m_corners.clear();
    m_surface->update();
}

/// The uppermost one.
void RegionTool::selectAt(const QPointF &at)
{
    const RegionPoint place = {m_surface->coord()->rx(at.x()), m_surface->coord()->ry(at.y())};
    int found = static_cast<int>(m_regions.size()) - 1;
    while (found >= 0 && !contains(m_regions[static_cast<size_t>(found)], place)) {
        --found;
    }
    select(found);
}

/// Within the map.
RegionPoint RegionTool::placeOf(const QPointF &at) const
{
    const ChCoord &coord = *m_surface->coord();
    return {std::clamp(rounded(coord.rx(at.x())), 0.0, static_cast<double>(m_mapSize.width())),
            std::clamp(rounded(coord.ry(at.y())), 0.0, static_cast<double>(m_mapSize.height()))};
}

QPointF RegionTool::screenOf(const RegionPoint &place) const
{
    return {m_surface->coord()->sx(place.x), m_surface->coord()->sy(place.y)};
}

/// All pixels that the drag from the press touches.
Region RegionTool::draggedRectangle(const QPointF &to) const
{
    const RegionPoint a = placeOf(m_pressedAt);
    const RegionPoint b = placeOf(to);
    Region region;
    region.corners = {{std::floor(std::min(a.x, b.x)), std::floor(std::min(a.y, b.y))},
                      {std::ceil(std::max(a.x, b.x)), std::ceil(std::max(a.y, b.y))}};
    return region;
}

/// The first in the plot list that no region has.
int RegionTool::freeColour() const
{
    int colour = 1;
    const auto isTaken = [&colour](const Region &region) { return region.colour == colour; };
    while (colour < kMostRegions && std::any_of(m_regions.begin(), m_regions.end(), isTaken)) {
        ++colour;
    }
    return colour;
}

} // namespace orvel
