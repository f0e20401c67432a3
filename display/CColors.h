#pragma once

#include <QColor>
#include <QObject>
#include <QVector>

/// Colours that tell lines and groups of points apart.
class CColors : public QObject {
    Q_OBJECT

public:
    /// The base list of 15 colours three times, extended by derived ones to `count`.
    explicit CColors(int count = 40, QObject *parent = nullptr);
    /// The given list, extended to `count`; an empty one stays empty.
    CColors(const QVector<QColor> &colours, int count, QObject *parent = nullptr);

    int count() const { return m_colours.size(); }
    /// Colour of an index, which wraps around; invalid when there are none.
    QColor colour(int index) const;

private:
    void extendTo(int count);

    QVector<QColor> m_colours;
};
