#include "display/MarkLine.h"

#include "display/NumberEdit.h"

MarkLine::MarkLine(QLineEdit *edit, int orientation, QObject *parent)
    : QObject(parent), m_edit(edit), m_ownsEdit(edit == nullptr), m_orientation(orientation)
{
    if (m_ownsEdit) {
        m_edit = new QLineEdit;
    }
}

MarkLine::~MarkLine()
{
    if (m_ownsEdit) {
        delete m_edit;
    }
}

double MarkLine::value() const
{
    return m_edit->text().toDouble();
}

void MarkLine::setValue(double value)
{
    orvel::showNumber(m_edit, value);
}

void MarkLine::setRelativeTo(int index)
{
    m_isRelative = true;
    m_relativeTo = index;
}
