#pragma once

class QWidget;

namespace orvel {

/// Names every field, button and surface of a panel or dialog for screen readers, in the language
/// of the window: "Reference 2, valence". What is not told here has a text or a label of its own.
/// Widgets made later are not named; a second call names again.
void setAccessibleNames(QWidget &window);

} // namespace orvel
