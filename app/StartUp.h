#pragma once

#include <QIcon>
#include <QString>
#include <QStringList>

namespace orvel {

/// Whether the window speaks Japanese: the last of "-j" and "-e" decides, Japanese without either.
/// arguments  without the program's name; everything else is ignored
bool wantsJapanese(const QStringList &arguments);

/// The program's icon; compiled in, made from packaging/orvel.svg.
QIcon windowIcon();

/// The first argument that names a session file; empty when none does.
QString sessionArgument(const QStringList &arguments);

} // namespace orvel
