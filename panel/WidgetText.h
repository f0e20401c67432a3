#pragma once

#include <QWidget>

namespace orvel {

/// A text for the widgets of one object name inside something: rows and displays use the same
/// names.
struct WidgetText {
    const char *owner; ///< class or object name of a widget around it
    const char *name;
    const char *text;
};

inline bool isInside(const QWidget &widget, const char *owner)
{
    const QWidget *around = widget.parentWidget();
    while (around != nullptr && !around->inherits(owner) &&
           around->objectName() != QLatin1String(owner)) {
        around = around->parentWidget();
    }
    return around != nullptr;
}

} // namespace orvel
