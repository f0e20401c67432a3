#include "batch/Advice.h"
#include "batch/BatchRun.h"
#include "batch/CommandLine.h"
#include "batch/TableRun.h"
#include "session/Catalogue.h"

#include <QGuiApplication>
#include <QLoggingCategory>
#include <QTextCodec>

#include <csignal>
#include <cstdio>
#include <memory>
#include <new>

namespace {

QStringList argumentsOf(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    return QCoreApplication::arguments().mid(1);
}

/// The application that the run needs: fonts for pictures, never a display. It sees no arguments,
/// or it would take those that windows know out of them.
std::unique_ptr<QCoreApplication> application(char **argv, bool withFonts)
{
    static int count = 1;
    if (!withFonts) {
        return std::make_unique<QCoreApplication>(count, argv);
    }
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qunsetenv("QT_QPA_PLATFORMTHEME"); // a desktop's theme may insist on its display
    // A job has no folder for the sockets of a desktop session, which is no news to its user.
    static QtMessageHandler usual = nullptr;
    usual = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &context, const QString &text) {
            if (type == QtFatalMsg) {
                usual(type, context, text);
            }
        });
    auto app = std::make_unique<QGuiApplication>(count, argv);
    qInstallMessageHandler(usual);
    return app;
}

int run(int argc, char **argv)
{
    using orvel::CommandLine;

    // File names and arguments are UTF-8 also where a job scheduler sets the "C" locale.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    const CommandLine commandLine = orvel::parseCommandLine(argumentsOf(argc, argv));
    const auto app = application(argv, commandLine.images);
    // Readers log every oddity; QT_LOGGING_RULES="*.debug=true" shows it.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    switch (commandLine.task) {
    case CommandLine::Task::ShowHelp:
        orvel::print(orvel::helpText());
        return orvel::EveryStepRan;
    case CommandLine::Task::ShowVersion:
        orvel::print(QStringLiteral("orvel-batch " ORVEL_VERSION "\n"));
        return orvel::EveryStepRan;
    case CommandLine::Task::Refuse:
        orvel::complain(commandLine.fault + QStringLiteral(" (--help shows the usage)"));
        return orvel::WrongUsage;
    case CommandLine::Task::Advise:
        return orvel::adviseSession(commandLine);
    case CommandLine::Task::Run:
    case CommandLine::Task::Table:
        break;
    }
    orvel::Translators translators;
    if (commandLine.japanese) {
        orvel::installJapanese(translators);
    }
    return commandLine.task == CommandLine::Task::Table ? orvel::runTable(commandLine)
                                                        : orvel::runSession(commandLine);
}

} // namespace

int main(int argc, char **argv)
{
#ifdef Q_OS_UNIX
    std::signal(SIGPIPE, SIG_IGN); // a reader that went is a failed write, with its status
#endif
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc &) {
        std::fputs("orvel-batch: there is not enough memory for these inputs\n", stderr);
        return orvel::InputUnreadable;
    }
}
