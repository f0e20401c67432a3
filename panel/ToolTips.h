#pragma once

class QLineEdit;
class QWidget;

namespace orvel {

/// Tells what every field and button of a panel is for, with its unit, as tool tips and as
/// accessible descriptions. Rows, selectors and displays inside the panel are told too; widgets
/// made later are not. Name fields of files are left to their selectors: what they show without a
/// tool tip of their own is that of the selector around them.
void setToolTips(QWidget &panel);

/// Puts what a field shows above its tool tip, from its next change on: a field that is too narrow
/// cuts a number's last digits, and its exponent, off.
void showTextInToolTip(QLineEdit *field);

} // namespace orvel
