#pragma once

#include <QSize>

class QWidget;

namespace orvel {

/// The size that a window of a usual size gets with large letters: as much larger, as far as the
/// screen goes.
QSize largeWindow(const QSize &usual);

/// Forms give their fields least and greatest sizes, and some of their letters sizes in points,
/// that suit usual letters. Enlarges them by letterPixelScale() and letterScale() in everything
/// inside. Once for each form, before its fields are fitted to texts.
void enlargeForm(QWidget &form);

} // namespace orvel
