#include "batch/CommandLine.h"

namespace orvel {
namespace {

CommandLine refuse(const QString &fault)
{
    CommandLine line;
    line.task = CommandLine::Task::Refuse;
    line.fault = fault;
    return line;
}

constexpr int kMostThreads = 1024;

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    CommandLine line;
    QStringList sessions;
    bool optionsEnded = false;
    for (int i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments[i];
        const bool hasValue = i + 1 < arguments.size();
        if (optionsEnded || !argument.startsWith(QLatin1Char('-'))) {
            sessions.append(argument);
        } else if (argument == QLatin1String("--")) {
            optionsEnded = true;
        } else if (argument == QLatin1String("--help") || argument == QLatin1String("-h")) {
            line.task = CommandLine::Task::ShowHelp;
            return line;
        } else if (argument == QLatin1String("--version")) {
            line.task = CommandLine::Task::ShowVersion;
            return line;
        } else if (argument == QLatin1String("-e")) {
            line.japanese = false;
        } else if (argument == QLatin1String("-j")) {
            line.japanese = true;
        } else if (argument == QLatin1String("--quiet")) {
            line.quiet = true;
        } else if (argument == QLatin1String("--images")) {
            line.images = true;
        } else if (argument == QLatin1String("--threads")) {
            bool isNumber = false;
            line.threads = hasValue ? arguments[++i].toInt(&isNumber) : 0;
            if (!isNumber || line.threads < 0 || line.threads > kMostThreads) {
                return refuse(
                    QStringLiteral("--threads takes a number from 0 to %1").arg(kMostThreads));
            }
        } else if (argument == QLatin1String("--result")) {
            line.resultPath = hasValue ? arguments[++i] : QString();
            if (line.resultPath.isEmpty()) {
                return refuse(QStringLiteral("--result takes a path"));
            }
        } else {
            return refuse(QStringLiteral("unknown option %1").arg(argument));
        }
    }
    if (sessions.size() != 1) {
        return refuse(sessions.isEmpty() ? QStringLiteral("no session file is given")
                                         : QStringLiteral("more than one session file is given"));
    }
    line.sessionPath = sessions.first();
    return line;
}

QString helpText()
{
    return QStringLiteral(
        "Usage: orvel-batch [-e|-j] [--threads N] [--quiet] [--images] [--result PATH] SESSION\n"
        "\n"
        "Runs the analysis that a session file describes: maps, target, linear combination\n"
        "fit. Prints every message line, then the result fields; writes the result file and\n"
        "its two histogram files when a result path is given.\n"
        "\n"
        "  -e, -j         messages in English (default) or Japanese; the last one wins\n"
        "  --threads N    number of threads; 0 (default): all cores\n"
        "  --quiet        no progress; faults are still named\n"
        "  --images       also a PNG of every map and histogram beside the result file\n"
        "  --result PATH  result file, instead of the session's own\n"
        "  --help, -h     this text\n"
        "  --version      name and version\n"
        "\n"
        "Exit status: 0 every step ran; 1 a check wrote a message; 2 wrong usage, a bad\n"
        "session file, or an output that is also an input; 3 an input file could not be read\n"
        "(nothing is computed); 4 an output could not be written.\n");
}

} // namespace orvel
