#include "app/StartUp.h"

#include "session/SessionFile.h"

namespace orvel {

bool wantsJapanese(const QStringList &arguments)
{
    bool japanese = true;
    for (const QString &argument : arguments) {
        if (argument == QLatin1String("-j")) {
            japanese = true;
        } else if (argument == QLatin1String("-e")) {
            japanese = false;
        }
    }
    return japanese;
}

QString sessionArgument(const QStringList &arguments)
{
    for (const QString &argument : arguments) {
        if (isSession(argument)) {
            return argument;
        }
    }
    return QString();
}

} // namespace orvel
