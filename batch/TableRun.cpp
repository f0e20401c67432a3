#include "batch/TableRun.h"

#include "analysis/RegionStatistics.h"
#include "batch/SessionRun.h"
#include "session/MessageText.h"
#include "session/ResultPaths.h"
#include "text/Csv.h"
#include "text/OutputFile.h"

#include <QDir>
#include <QMultiHash>

#include <algorithm>
#include <array>
#include <new>

namespace orvel {
namespace {

QByteArray headLine()
{
    QStringList names = {QStringLiteral("session"), QStringLiteral("status"),
                         QStringLiteral("CalcRes"), QStringLiteral("TargetDMut"),
                         QStringLiteral("LCFRes"),  QStringLiteral("width"),
                         QStringLiteral("height"),  QStringLiteral("pixels")};
    for (const QString &quantity : mapQuantityNames()) {
        names << quantity + QStringLiteral("_mean") << quantity + QStringLiteral("_finite");
    }
    return csvLine(names);
}

QByteArray lineOfSession(const QString &path, const SessionOutcome &outcome)
{
    QStringList cells = {path, QString::number(outcome.status), textOf(outcome.target.resultField),
                         outcome.target.dMutField.value_or(QString()),
                         textOf(outcome.lcf.resultField)};
    const ResultMaps *maps = outcome.maps.maps.get();
    if (maps != nullptr) {
        cells << QString::number(maps->width()) << QString::number(maps->height())
              << QString::number(maps->size());
    } else {
        cells << QString() << QString() << QString();
    }
    std::vector<PixelSpan> all;
    for (int row = 0; maps != nullptr && row < maps->height(); ++row) {
        all.push_back({row, 0, maps->width()});
    }
    RegionStatistician statistician;
    for (int q = 0; q < kMapQuantities; ++q) {
        if (maps != nullptr && isDetermined(*maps, outcome.references, quantityAt(q))) {
            const RegionStatistics found = statistician.of(*maps, quantityAt(q), all);
            cells << csvNumber(found.mean) << QString::number(found.finite);
        } else {
            cells << QString() << QString();
        }
    }
    return csvLine(cells);
}

/// What the message box would get, but for the results, which stand in the table.
void complainAbout(const QString &path, const SessionOutcome &outcome)
{
    const QString results[] = {boxTextOf(outcome.target.resultField),
                               boxTextOf(outcome.lcf.resultField)};
    for (const auto *lines : {&outcome.maps.messages, &outcome.target.messages,
                              &outcome.lcf.messages, &outcome.faults}) {
        for (const Line &line : *lines) {
            const QString text = boxTextOf(line);
            if (std::find(std::begin(results), std::end(results), text) == std::end(results)) {
                complain(QStringLiteral("%1: %2").arg(path, text));
            }
        }
    }
}

SessionOutcome outcomeOf(const OpenedSession &session, const CommandLine &commandLine)
{
    try {
        return session.isGood ? calculateSession(session, commandLine) : SessionOutcome();
    } catch (const std::bad_alloc &) {
        complain(QStringLiteral("%1: there is not enough memory for its inputs").arg(session.path));
        SessionOutcome outcome;
        outcome.status = InputUnreadable;
        return outcome;
    }
}

/// Whether no file that is written is one of another session, or the table; complains when not.
bool keepApart(const std::vector<OpenedSession> &sessions, const QString &tablePath)
{
    struct Owned {
        const OpenedSession *session;
        QString path;
    };
    QMultiHash<QString, Owned> files; // by what they are known by
    for (const OpenedSession &session : sessions) {
        // A session that cannot be read is still a file not to be lost.
        for (const QString &path : session.inputs + session.outputs + QStringList(session.path)) {
            for (const QString &key : fileKeys(path)) {
                files.insert(key, {&session, path});
            }
        }
    }
    bool areApart = true;
    const auto refuse = [&areApart](const QString &whose, const QString &path) {
        complain(QStringLiteral("%1 would overwrite %2").arg(whose, path));
        areApart = false;
    };
    /// A file of a session other than the one that would write it.
    const auto ownedBy = [&files](const QString &output, const OpenedSession *writer) {
        for (const QString &key : fileKeys(output)) {
            for (auto found = files.constFind(key); found != files.constEnd() && found.key() == key;
                 ++found) {
                if (found->session != writer) {
                    return *found;
                }
            }
        }
        return Owned{nullptr, QString()};
    };
    if (const Owned lost = ownedBy(tablePath, nullptr); lost.session != nullptr) {
        refuse(QStringLiteral("the table %1").arg(tablePath), lost.path);
    }
    for (const OpenedSession &session : sessions) {
        for (const QString &output : session.outputs) {
            const Owned taken = ownedBy(output, &session);
            if (taken.session != nullptr) {
                refuse(QStringLiteral("session %1").arg(session.path),
                       QStringLiteral("%1 of session %2").arg(taken.path, taken.session->path));
                break;
            }
        }
    }
    return areApart;
}

/// The first that applies to any of them.
ExitStatus worst(ExitStatus a, ExitStatus b)
{
    constexpr std::array<ExitStatus, 5> kOrder = {WrongUsage, InputUnreadable, OutputFailed,
                                                  CheckFailed, EveryStepRan};
    return *std::find_if(kOrder.begin(), kOrder.end(),
                         [a, b](ExitStatus status) { return status == a || status == b; });
}

} // namespace

ExitStatus runTable(const CommandLine &commandLine)
{
    const QString tablePath = QDir::current().absoluteFilePath(commandLine.tablePath);
    if (isRedirectedStream(tablePath)) {
        complain(QStringLiteral("the table needs a file of its own, not %1").arg(tablePath));
        return WrongUsage;
    }
    std::vector<OpenedSession> sessions;
    ExitStatus status = EveryStepRan;
    for (const QString &path : commandLine.sessionPaths) {
        sessions.push_back(openSession(commandLine, path));
        status = sessions.back().isGood ? status : WrongUsage;
    }
    if (!keepApart(sessions, tablePath)) {
        return WrongUsage;
    }
    OutputFile table(tablePath);
    if (!table.open()) { // better known now than after a night of calculations
        complain(QStringLiteral("cannot write the table %1").arg(tablePath));
        return worst(status, OutputFailed);
    }
    table.write(headLine());
    for (const OpenedSession &session : sessions) {
        const SessionOutcome outcome = outcomeOf(session, commandLine);
        complainAbout(session.path, outcome);
        table.write(lineOfSession(session.path, outcome));
        status = worst(status, outcome.status);
    }
    if (!table.commit()) {
        complain(QStringLiteral("cannot write the table %1").arg(tablePath));
        return worst(status, OutputFailed);
    }
    return status;
}

} // namespace orvel
