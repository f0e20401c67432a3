#pragma once

#include <QMainWindow>

#include <memory>

namespace orvel::bench {

/// A window of the toolkit's widgets alone that holds what another one holds: the same kinds in
/// the same layouts and of the same texts. What a widget makes for itself (scroll bars, handles of
/// splitters) is left to the copy.
std::unique_ptr<QMainWindow> plainCopyOf(const QMainWindow &window);

/// Widgets of a window that such a copy has too.
int copiedWidgets(const QMainWindow &window);

} // namespace orvel::bench
