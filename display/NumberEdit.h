#pragma once

#include <QLineEdit>

namespace orvel {

/// Shows a number with six significant digits, from its beginning.
inline void showNumber(QLineEdit *edit, double value)
{
    edit->setText(QString::number(value, 'g', 6));
    edit->setCursorPosition(0);
}

} // namespace orvel
