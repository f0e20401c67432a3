#pragma once

class QWidget;

namespace orvel {

/// Lets the Tab key follow the eye: the fields of a form in the order of its layouts, whatever
/// the order they were made in.
void orderTabsByLayout(QWidget *form);

} // namespace orvel
