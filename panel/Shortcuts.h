#pragma once

class QWidget;

namespace orvel {

/// The keys of the panel beside those of its fields: sessions, calculation, manual, F6 to the next
/// part of the panel, control and F6 to the next window. Buttons with a key tell it in their tool
/// tips, which must be set before.
void setShortcuts(QWidget &panel);

/// Lets Tab go to the borders between the parts of the panel, and arrows move them. Before the
/// order of Tab is set.
void setSplitterKeys(QWidget &panel);

} // namespace orvel
