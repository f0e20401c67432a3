#pragma once

#include "analysis/BinCounts.h"

#include <QObject>

class QAbstractButton;
class QLineEdit;

/// The histogram of one quantity of a map: its entry fields in the panel, and the counts.
class Histgram : public QObject {
    Q_OBJECT

public:
    /// The fields belong to the panel and must outlive this.
    Histgram(QLineEdit *from, QLineEdit *to, QLineEdit *boxes, QAbstractButton *automatic,
             QObject *parent = nullptr);

    /// What the fields say: texts that are no number read 0; the number of boxes is kept within
    /// BinCounts' bounds.
    orvel::HistogramSettings settings() const;
    /// Empties the counts and takes limits and boxes from the fields.
    void setUp();
    /// Takes the counts of a map calculation.
    void setCounts(orvel::BinCounts counts) { m_counts = std::move(counts); }
    /// Shows limits that were computed, with six significant digits.
    void showLimits(double from, double to);

    const orvel::BinCounts &counts() const { return m_counts; }
    double from() const { return m_counts.from(); }
    double to() const { return m_counts.to(); }
    double step() const { return m_counts.step(); }
    int boxes() const { return m_counts.boxes(); }
    bool isChecked() const { return m_counts.autoRange(); } ///< at set-up
    int largest() const { return m_counts.largest(); }

    /// See BinCounts::write().
    bool write(const QString &resultPath, const QString &name) const;

private:
    QLineEdit *m_fromEdit;
    QLineEdit *m_toEdit;
    QLineEdit *m_boxesEdit;
    QAbstractButton *m_autoButton;
    orvel::BinCounts m_counts;
};
