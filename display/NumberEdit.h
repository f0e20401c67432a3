#pragma once

#include <QLineEdit>

namespace orvel {

/// Shows a number with six significant digits, from its beginning.
inline void showNumber(QLineEdit *edit, double value)
{
    edit->setText(QString::number(value, 'g', 6));
    edit->setCursorPosition(0);
}

/// The width at which a field shows this text whole.
inline int widthForText(const QLineEdit &edit, const QString &text)
{
    constexpr int kLettersOfHint = 17; // the toolkit's hint is so many x, and what is around them
    constexpr int kCursor = 2;
    const QFontMetrics metrics = edit.fontMetrics();
    return edit.sizeHint().width() - kLettersOfHint * metrics.horizontalAdvance(QLatin1Char('x')) +
           metrics.horizontalAdvance(text) + kCursor;
}

} // namespace orvel
