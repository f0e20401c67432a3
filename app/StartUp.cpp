#include "app/StartUp.h"

#include "session/SessionFile.h"

/// A static library's resources must be asked for, or the linker drops them. In no namespace: the
/// macro declares a function where it stands.
static void keepIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace orvel {

QIcon windowIcon()
{
    keepIcons();
    QIcon icon;
    for (const char *size : {"16", "32", "64", "256"}) {
        icon.addFile(QStringLiteral(":/icons/%1.png").arg(QLatin1String(size)));
    }
    return icon;
}

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
