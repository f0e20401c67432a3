#include "display/Histgram.h"

#include "display/NumberEdit.h"

#include <QAbstractButton>
#include <QLineEdit>

Histgram::Histgram(QLineEdit *from, QLineEdit *to, QLineEdit *boxes, QAbstractButton *automatic,
                   QObject *parent)
    : QObject(parent), m_fromEdit(from), m_toEdit(to), m_boxesEdit(boxes), m_autoButton(automatic)
{
}

orvel::HistogramSettings Histgram::settings() const
{
    return {m_fromEdit->text().toDouble(), m_toEdit->text().toDouble(),
            orvel::BinCounts::boxesOf(m_boxesEdit->text().toDouble()), m_autoButton->isChecked()};
}

void Histgram::setUp()
{
    m_counts.setUp(settings());
}

void Histgram::showLimits(double from, double to)
{
    orvel::showNumber(m_fromEdit, from);
    orvel::showNumber(m_toEdit, to);
}

bool Histgram::write(const QString &resultPath, const QString &name) const
{
    return m_counts.write(resultPath, name);
}
