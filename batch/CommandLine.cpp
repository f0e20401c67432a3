#include "batch/CommandLine.h"

#include <cmath>

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

/// Positive numbers between commas; empty when one of them is none. Zero passes where it may.
std::vector<double> numbersFrom(const QString &text, bool zeroToo)
{
    std::vector<double> numbers;
    for (const QString &item : text.split(QLatin1Char(','))) {
        bool isNumber = false;
        const double number = item.toDouble(&isNumber);
        if (!isNumber || !std::isfinite(number) || number < 0.0 || (number == 0.0 && !zeroToo)) {
            return {};
        }
        numbers.push_back(number);
    }
    return numbers;
}

bool takesAdvice(const QString &option)
{
    static const QStringList all = {QStringLiteral("--advise"),    QStringLiteral("--criterion"),
                                    QStringLiteral("--fractions"), QStringLiteral("--amount"),
                                    QStringLiteral("--sigma"),     QStringLiteral("--range"),
                                    QStringLiteral("--spacing"),   QStringLiteral("--alike")};
    return all.contains(option);
}

/// Takes the value of an option of the adviser; what is wrong with it, or empty.
QString takeAdvice(CommandLine &line, const QString &option, const QString &value)
{
    AdviserSettings &advice = line.advice;
    if (option == QLatin1String("--advise")) {
        bool isNumber = false;
        advice.points = value.toInt(&isNumber);
        const bool isGood = isNumber && advice.points >= 3 && advice.points <= kPointRows;
        line.task = CommandLine::Task::Advise;
        return isGood ? QString()
                      : QStringLiteral("--advise takes a number from 3 to %1").arg(kPointRows);
    }
    if (option == QLatin1String("--criterion")) {
        const bool fractions = value == QLatin1String("fractions");
        advice.criterion = fractions ? DesignCriterion::Fractions : DesignCriterion::Valence;
        return fractions || value == QLatin1String("valence")
                   ? QString()
                   : QStringLiteral("--criterion takes valence or fractions");
    }
    if (option == QLatin1String("--fractions")) {
        line.fractions = numbersFrom(value, true);
        return line.fractions.empty()
                   ? QStringLiteral("--fractions takes numbers that are not negative: 0.2,0.3,0.5")
                   : QString();
    }
    if (option == QLatin1String("--range")) {
        const std::vector<double> ends = numbersFrom(value, false);
        if (ends.size() != 2 || !(ends[0] < ends[1])) {
            return QStringLiteral("--range takes two energies in eV: 8300,8450");
        }
        advice.lowEv = ends[0];
        advice.highEv = ends[1];
        return {};
    }
    const bool isSpacing = option == QLatin1String("--spacing");
    const std::vector<double> number = numbersFrom(value, isSpacing);
    if (number.size() != 1) {
        return QStringLiteral("%1 takes a %2 number")
            .arg(option, isSpacing ? QStringLiteral("non-negative") : QStringLiteral("positive"));
    }
    double &taken = isSpacing                            ? advice.minimumSpacingEv
                    : option == QLatin1String("--sigma") ? advice.sigma
                    : option == QLatin1String("--alike") ? advice.alikeWithin
                                                         : advice.amount;
    taken = number[0];
    return {};
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    CommandLine line;
    QStringList sessions;
    QString adviceOption; // the last one that only --advise understands
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
        } else if (argument == QLatin1String("--table")) {
            line.tablePath = hasValue ? arguments[++i] : QString();
            if (line.tablePath.isEmpty()) {
                return refuse(QStringLiteral("--table takes a path"));
            }
        } else if (argument == QLatin1String("--json")) {
            line.json = true;
            adviceOption = argument;
        } else if (takesAdvice(argument)) {
            adviceOption = argument;
            const QString fault = takeAdvice(line, argument, hasValue ? arguments[++i] : QString());
            if (!fault.isEmpty()) {
                return refuse(fault);
            }
        } else {
            return refuse(QStringLiteral("unknown option %1").arg(argument));
        }
    }
    const bool tabulates = !line.tablePath.isEmpty();
    if (sessions.isEmpty() || (sessions.size() > 1 && !tabulates)) {
        return refuse(sessions.isEmpty() ? QStringLiteral("no session file is given")
                                         : QStringLiteral("more than one session file is given"));
    }
    const bool advises = line.task == CommandLine::Task::Advise;
    if (!advises && !adviceOption.isEmpty()) {
        return refuse(QStringLiteral("%1 goes with --advise").arg(adviceOption));
    }
    if (advises && (line.images || !line.resultPath.isEmpty())) {
        return refuse(QStringLiteral("--advise writes no files"));
    }
    if (tabulates && (advises || !line.resultPath.isEmpty())) {
        return refuse(QStringLiteral("--table does not go with --advise or --result"));
    }
    if (tabulates) {
        line.task = CommandLine::Task::Table;
    }
    line.sessionPaths = sessions;
    return line;
}

QString helpText()
{
    return QStringLiteral(
        "Usage: orvel-batch [-e|-j] [--threads N] [--quiet] [--images] [--result PATH] SESSION\n"
        "       orvel-batch --table OUT.csv [-e|-j] [--threads N] [--quiet] [--images] SESSION...\n"
        "       orvel-batch --advise N [--json] [--criterion valence|fractions] [--sigma S]\n"
        "                   [--amount T] [--fractions F,F...] [--range LOW,HIGH]\n"
        "                   [--spacing EV] [--alike D] SESSION\n"
        "\n"
        "Runs the analysis that a session file describes: maps, target, linear combination\n"
        "fit. Prints every message line, then the result fields; writes the result file and\n"
        "its two histogram files when a result path is given, and a table of the session's\n"
        "regions when it has any.\n"
        "\n"
        "  -e, -j         messages in English (default) or Japanese; the last one wins\n"
        "  --threads N    number of threads; 0 (default): all cores\n"
        "  --quiet        no progress; faults are still named\n"
        "  --images       also a PNG of every map and histogram beside the result file\n"
        "  --result PATH  result file, instead of the session's own\n"
        "\n"
        "  --table OUT.csv\n"
        "                 runs every session and writes one line for each: status, result\n"
        "                 fields, mean and number of the finite pixels of every map; prints\n"
        "                 nothing, names faults on standard error\n"
        "\n"
        "  --advise N     instead: the N energies (3 to 8) from which the session's method would\n"
        "                 get the least standard deviation, from its references alone, beside\n"
        "                 what its present energies will give; computes no maps\n"
        "  --json         the same as JSON\n"
        "  --criterion C  what is to have it: valence (default), or all fractions together\n"
        "  --sigma S      noise assumed, standard deviation of an absorption; 0.005\n"
        "  --amount T     amount assumed, edge jump of the sample or t/ts; 1\n"
        "  --fractions F,F...\n"
        "                 composition assumed, one number for each reference that takes part;\n"
        "                 equal\n"
        "  --range LOW,HIGH\n"
        "                 where to look [eV]; from 60 below to 200 above the edge\n"
        "  --spacing EV   least distance of two energies [eV]; 2\n"
        "  --alike D      four points: how far references may differ, in edge jumps, where the\n"
        "                 method takes them as equal; 0.02\n"
        "\n"
        "  --help, -h     this text\n"
        "  --version      name and version\n"
        "\n"
        "Exit status: 0 every step ran; 1 a check wrote a message; 2 wrong usage, a bad\n"
        "session file, or an output that is also an input; 3 an input file could not be read\n"
        "(nothing is computed); 4 an output could not be written. With --table the first that\n"
        "applies to any session of 2, 3, 4, 1; also 2, and nothing is computed, when a file\n"
        "would overwrite one of another session. With --advise: 1 there is no such choice of\n"
        "energies, 3 a reference could not be read.\n");
}

} // namespace orvel
