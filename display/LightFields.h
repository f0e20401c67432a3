#pragma once

class QWidget;

namespace orvel {

/// Gives dark letters (text, placeholder, selection) to the fields inside, and to the widget
/// itself, whose style sheet lays a light ground, whatever the colours of the desktop. Their tool
/// tips and context menus, which would take that ground with the letters of the desktop, keep to
/// the desktop. May be called again for the same fields.
void inkLightFields(QWidget &form);

} // namespace orvel
