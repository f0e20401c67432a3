#include "session/MessageText.h"

#include <QCoreApplication>

namespace orvel {

QString textOf(const Line &line)
{
    QString text;
    for (const Message &part : line.parts) {
        if (part.source == nullptr) {
            text += part.arguments.join(QString());
            continue;
        }
        QString piece = QCoreApplication::translate("FourPs", part.source);
        for (const QString &argument : part.arguments) {
            piece = piece.arg(argument); // one by one: a translation may number them otherwise
        }
        text += piece;
    }
    return text;
}

QString boxTextOf(const Line &line)
{
    return textOf(line).simplified();
}

} // namespace orvel
