#pragma once

#include <QStringList>

#include <vector>

namespace orvel {

/// A piece of text for the user, not yet translated. Methods word nothing themselves: the window
/// and the batch program look the source up in the catalogue and put the arguments in.
struct Message {
    const char *source =
        nullptr;           ///< QT_TRANSLATE_NOOP("FourPs", ...); null: arguments as they stand
    QStringList arguments; ///< for %1, %2, ... in this order
};

/// One line of the message box or of a result field: pieces without anything between them.
struct Line {
    std::vector<Message> parts;
};

inline Line lineOf(const char *source, QStringList arguments = {})
{
    return Line{{Message{source, std::move(arguments)}}};
}

} // namespace orvel
