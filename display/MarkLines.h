#pragma once

#include "display/MarkLine.h"

#include <QVector>

class ChCoord;
class MouseC;

/// The marker lines of one plot, which the mouse drags. Lines may lie beside the set: it does not
/// own them; one that is deleted must be removed by clear() first.
class MarkLines : public QObject {
    Q_OBJECT

public:
    explicit MarkLines(QObject *parent = nullptr) : QObject(parent) {}

    void append(MarkLine *line) { m_lines.append(line); }
    void clear();
    const QVector<MarkLine *> &lines() const { return m_lines; }
    bool isMoving() const { return m_isMoving; }
    int selected() const { return m_selected; }
    /// Real position of a line: its value, and for a relative one that of its base line added.
    double position(int index) const;

    /// Selects the line nearest to the pointer when it is less than 20 pixels away.
    void pick(const ChCoord &coord, const MouseC &mouse);
    /// Moves the selected line to the pointer, if one is being moved.
    void moveSelected(const ChCoord &coord, const MouseC &mouse);
    /// Moves it a last time and lets it go.
    void release(const ChCoord &coord, const MouseC &mouse);

signals:
    void moving();
    void newPos();

private:
    double offsetOf(int index) const;

    QVector<MarkLine *> m_lines;
    bool m_isMoving = false;
    int m_selected = -1;
};
