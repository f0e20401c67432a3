#pragma once

#include "text/ReadFailure.h"

#include <QFile>

namespace orvel {

/// Opens a file for reading if it is a regular one, and never waits: a pipe without a writer or a
/// device that never ends is refused, also one that takes a file's place just before the opening.
///
/// None, or NotARegularFile or CannotOpen with the file left closed.
[[nodiscard]] ReadFailure openRegular(QFile &file, QIODevice::OpenMode mode = QIODevice::ReadOnly);

} // namespace orvel
