#include "batch/BatchRun.h"

#include "batch/SessionRun.h"
#include "session/MessageText.h"

#include <cstdio>

namespace orvel {
namespace {

void printLines(const std::vector<Line> &lines)
{
    for (const Line &line : lines) {
        print(boxTextOf(line) + QLatin1Char('\n'));
    }
}

void printField(const char *name, const QString &text)
{
    print(QStringLiteral("%1 = ").arg(QLatin1String(name)) + text + QLatin1Char('\n'));
}

} // namespace

void complain(const QString &text)
{
    std::fprintf(stderr, "orvel-batch: %s\n", text.toUtf8().constData());
}

void print(const QString &text)
{
    const QByteArray bytes = text.toUtf8();
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stdout);
}

ExitStatus runSession(const CommandLine &commandLine)
{
    const OpenedSession session = openSession(commandLine, commandLine.sessionPaths.first());
    if (!session.isGood) {
        return WrongUsage;
    }
    const SessionOutcome outcome = calculateSession(session, commandLine);
    if (outcome.status == InputUnreadable) {
        return InputUnreadable;
    }
    printLines(outcome.maps.messages);
    printLines(outcome.target.messages);
    printLines(outcome.lcf.messages);
    printLines(outcome.faults);
    printField("CalcRes", textOf(outcome.target.resultField));
    printField("TargetDMut", outcome.target.dMutField.value_or(QString()));
    printField("LCFRes", textOf(outcome.lcf.resultField));

    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        complain(QStringLiteral("the messages could not be written to standard output"));
        return OutputFailed;
    }
    return outcome.status;
}

} // namespace orvel
