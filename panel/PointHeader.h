#pragma once

#include <QWidget>

#include <array>

class AEPoint;
class QLabel;

/// The captions over the energy-point rows. They keep to the columns of the first row, whatever
/// its layout makes of them.
class PointHeader : public QWidget {
    Q_OBJECT

public:
    explicit PointHeader(const AEPoint *row, QWidget *parent = nullptr);

    /// Captions in two lines, in the order of the row: number, use, non-equivalent, LCF, energy,
    /// four references, target, file, show, pick. One caption stands over all absorptions.
    void setCaptions(const QStringList &captions, const QString &absorption);
    QSize sizeHint() const override;

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void place();
    QRect columnOf(const QWidget *widget) const;

    const AEPoint *m_row;
    QList<const QWidget *> m_columns;
    QList<QLabel *> m_labels;
    QLabel *m_absorption;
};
