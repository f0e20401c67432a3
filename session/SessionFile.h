#pragma once

#include "session/SessionTexts.h"

#include <QString>
#include <QStringList>

namespace orvel {

/// Outcome of reading a session file.
struct SessionReading {
    QString error;     ///< empty: the state was read; else why the file cannot be taken
    QStringList notes; ///< what was ignored: unknown keys, unknown choices (then the default holds)
    QStringList viewNotes; ///< unknown choices of the [View] group, which only a window heeds
    PanelState state;
};

/// Whether a path names a readable regular file that begins with a group and has one [Session].
bool isSession(const QString &path);

/// Reads a session file: INI, UTF-8; docs/formats.md lists the keys. A file without a [Session]
/// line, of another version or with lines that are no INI is refused, and so is one with
/// serialised objects ("@Variant(...)"), which no session needs. A missing key leaves the
/// form's default, a box that is neither "true" nor "1" is off. Relative paths are taken from the
/// folder of the session file.
SessionReading readSession(const QString &path);

/// Writes every key. Paths below the session's folder are written relative to it, so that a
/// folder of data can be moved with its session.
/// False when the file could not be written; an older one then stays whole.
bool writeSession(const QString &path, const PanelState &state);

} // namespace orvel
