#pragma once

#include <QObject>

class QLineEdit;

/// A marker line of a plot whose real position is the number in a line edit.
class MarkLine : public QObject {
    Q_OBJECT

public:
    /// edit         where the value lives; null: the line makes one of its own
    /// orientation  0: a vertical line at a real x; else a horizontal one at a real y
    explicit MarkLine(QLineEdit *edit = nullptr, int orientation = 0, QObject *parent = nullptr);
    ~MarkLine() override;

    QLineEdit *edit() const { return m_edit; }
    bool isHorizontal() const { return m_orientation != 0; }
    /// Number in the edit; 0 for any other text.
    double value() const;
    /// Writes a number with six significant digits and shows its beginning.
    void setValue(double value);

    /// Makes the value an offset from the line of that index in the set.
    void setRelativeTo(int index);
    bool isRelative() const { return m_isRelative; }
    int relativeTo() const { return m_relativeTo; }

private:
    QLineEdit *m_edit;
    bool m_ownsEdit;
    int m_orientation;
    bool m_isRelative = false;
    int m_relativeTo = -1;
};
