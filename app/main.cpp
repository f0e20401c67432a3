#include "app/Body.h"
#include "app/ReadableStyle.h"
#include "app/StartUp.h"
#include "panel/FourPs.h"
#include "session/Catalogue.h"

#include <QApplication>
#include <QLoggingCategory>

#include <csignal>

int main(int argc, char **argv)
{
#ifdef Q_OS_UNIX
    std::signal(SIGPIPE, SIG_IGN); // a result written to a pipe whose reader went is a failed write
#endif
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    const QApplication app(argc, argv);
    // Readers log every oddity; QT_LOGGING_RULES="*.debug=true" shows it.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    QApplication::setWindowIcon(orvel::windowIcon());
    QApplication::setDesktopFileName(
        QStringLiteral("org.orvel.orvel")); // how Wayland finds the icon

    QApplication::setStyle(new orvel::ReadableStyle);

    const QStringList arguments = QApplication::arguments().mid(1);
    orvel::Translators translators;
    if (orvel::wantsJapanese(arguments)) {
        orvel::installJapanese(translators);
    }
    Body body;
    body.panel()->keepSessions();
    body.show();
    const QString session = orvel::sessionArgument(arguments);
    if (!session.isEmpty()) {
        body.panel()->openSession(session);
    }
    return QApplication::exec();
}
