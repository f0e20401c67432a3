#include "batch/BatchRun.h"
#include "batch/CommandLine.h"
#include "session/Catalogue.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QTextCodec>
#include <QTranslator>

#include <cstdio>
#include <new>

namespace {

int run(int argc, char **argv)
{
    using orvel::CommandLine;

    // File names and arguments are UTF-8 also where a job scheduler sets the "C" locale.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    const QCoreApplication app(argc, argv);
    // Readers log every oddity; QT_LOGGING_RULES="*.debug=true" shows it.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));

    const CommandLine commandLine = orvel::parseCommandLine(QCoreApplication::arguments().mid(1));
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
    case CommandLine::Task::Run:
        break;
    }
    QTranslator translator;
    if (commandLine.japanese) {
        orvel::installJapanese(translator);
    }
    return orvel::runSession(commandLine);
}

} // namespace

int main(int argc, char **argv)
{
    try {
        return run(argc, argv);
    } catch (const std::bad_alloc &) {
        std::fputs("orvel-batch: there is not enough memory for these inputs\n", stderr);
        return orvel::InputUnreadable;
    }
}
