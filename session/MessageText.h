#pragma once

#include "analysis/Message.h"

#include <QString>

namespace orvel {

/// A line in the language of the installed catalogue, as result fields show it.
QString textOf(const Line &line);

/// The same as the message box shows it: runs of white space are one blank, the ends trimmed.
QString boxTextOf(const Line &line);

} // namespace orvel
