#include "batch/SessionRun.h"

#include "analysis/ResultFile.h"
#include "batch/Images.h"
#include "session/RegionTexts.h"
#include "session/ResultPaths.h"
#include "session/SessionFile.h"
#include "text/OutputFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cstdio>
#ifdef Q_OS_WIN
#include <io.h>
#else
#include <unistd.h>
#endif

namespace orvel {
namespace {

constexpr const char *kCannotOpen = QT_TRANSLATE_NOOP("FourPs", "Can't open the file [%1]");

bool stderrIsTerminal()
{
#ifdef Q_OS_WIN
    return _isatty(_fileno(stderr)) != 0;
#else
    return isatty(fileno(stderr)) != 0;
#endif
}

/// One line on a terminal, written over and over: percent and stage.
class Progress {
public:
    explicit Progress(bool shown) : m_shown(shown) {}
    ~Progress() { clear(); }
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    void stage(int percent, const QString &what)
    {
        if (m_shown) {
            std::fprintf(stderr, "\r\033[K%3d %% %s", percent, what.toUtf8().constData());
            std::fflush(stderr);
        }
    }
    void clear()
    {
        if (m_shown) {
            std::fputs("\r\033[K", stderr);
            std::fflush(stderr);
        }
    }

private:
    bool m_shown;
};

/// Writes result and histogram files and the pictures; the lines name what could not be written.
std::vector<Line> writeResults(const QString &path, const MapOutcome &outcome,
                               const SessionTexts &texts, const AnalysisInput &input, bool images)
{
    ResultFileOptions options;
    options.record = texts.record;
    const auto references = validReferences(input.references);
    for (const ReferenceInput *reference : references) {
        options.valences.push_back(reference->valence);
    }
    const auto cannotOpen = [](const QString &file) { return lineOf(kCannotOpen, {file}); };
    if (!writeResultFile(path, outcome.maps.get(), options)) {
        return {cannotOpen(path)};
    }
    std::vector<Line> faults;
    if (QFileInfo(path).isFile()) { // a pipe or a device has no place beside it
        if (!outcome.valenceCounts.write(path, kRatioTag)) {
            faults.push_back(cannotOpen(BinCounts::pathBeside(path, kRatioTag)));
        }
        if (!outcome.amountCounts.write(path, kThicknessTag)) {
            faults.push_back(cannotOpen(BinCounts::pathBeside(path, kThicknessTag)));
        }
        if (texts.advanced.sigmaFile && !writeSigmaFile(sigmaPathBeside(path), *outcome.maps)) {
            faults.push_back(cannotOpen(sigmaPathBeside(path)));
        }
        if (!texts.regions.empty() &&
            !writeRegionFile(path, *outcome.maps, static_cast<int>(references.size()),
                             texts.regions)) {
            faults.push_back(cannotOpen(regionPathBeside(path)));
        }
        if (images) {
            for (const QString &lost : writeImages(path, outcome, input)) {
                faults.push_back(cannotOpen(lost));
            }
        }
    }
    return faults;
}

/// Whether the session's outputs may be written where they go; complains when not.
bool mayWrite(const OpenedSession &session, bool images)
{
    if (session.resultPath.isEmpty()) {
        if (images) {
            complain(QStringLiteral("--images needs a result file: neither the session nor "
                                    "--result names one"));
        }
        return !images;
    }
    const QString input = overwrittenInput(session.outputs, session.inputs);
    if (!input.isEmpty()) {
        complain(QStringLiteral("the result file %1 would overwrite the input %2")
                     .arg(session.resultPath, input));
        return false;
    }
    if (isRedirectedStream(session.resultPath)) {
        complain(
            QStringLiteral("the result file %1 is where the messages go").arg(session.resultPath));
        return false;
    }
    // The histograms of a result named .png, or one output that is a link to another.
    QStringList outputs = session.outputs;
    std::transform(outputs.begin(), outputs.end(), outputs.begin(), realPath);
    if (outputs.removeDuplicates() > 0) {
        complain(QStringLiteral("the result file %1 and those written beside it must be different "
                                "files (with --images it must not end in .png)")
                     .arg(session.resultPath));
        return false;
    }
    return true;
}

} // namespace

bool isRedirectedStream(const QString &path)
{
    const bool named =
        path.startsWith(QLatin1String("/dev/")) || path.startsWith(QLatin1String("/proc/"));
    return named && QFileInfo(path).isFile();
}

OpenedSession openSession(const CommandLine &commandLine, const QString &path)
{
    OpenedSession session;
    session.path = path;
    const SessionReading reading = readSession(path);
    for (const QString &note : reading.notes) {
        complain(QStringLiteral("%1: %2").arg(path, note));
    }
    if (!reading.error.isEmpty()) {
        complain(QStringLiteral("cannot take the session %1: %2").arg(path, reading.error));
        return session;
    }
    session.texts = reading.state.texts;
    session.inputs = inputPaths(session.texts) + QStringList(path);
    session.resultPath = commandLine.resultPath.isEmpty()
                             ? session.texts.resultFile
                             : QDir::current().absoluteFilePath(commandLine.resultPath);
    if (!session.resultPath.isEmpty()) {
        session.outputs =
            resultPaths(session.resultPath, session.texts.advanced, !session.texts.regions.empty());
        if (commandLine.images) {
            session.outputs += imagePaths(session.resultPath);
        }
    }
    session.isGood = mayWrite(session, commandLine.images);
    return session;
}

SessionOutcome calculateSession(const OpenedSession &session, const CommandLine &commandLine)
{
    SessionOutcome outcome;
    Progress progress(!commandLine.quiet && stderrIsTerminal());
    const LoadedInput loaded =
        loadInput(session.texts, [&progress](int file, int files, const QString &path) {
            progress.stage(60 * file / files, QStringLiteral("reading ") + path);
        });
    if (!loaded.unreadable.empty()) {
        progress.clear();
        for (const UnreadableFile &file : loaded.unreadable) {
            complain(QStringLiteral("cannot read %1: %2").arg(file.path, describe(file.reason)));
        }
        outcome.status = InputUnreadable;
        return outcome;
    }

    progress.stage(60, QStringLiteral("calculating maps"));
    outcome.references = static_cast<int>(validReferences(loaded.input.references).size());
    outcome.maps = calculateMap(loaded.input, {commandLine.threads, nullptr});
    progress.stage(80, QStringLiteral("calculating the target"));
    outcome.target = calculateTarget(loaded.input);
    outcome.lcf = calculateLcf(loaded.input);
    if (!session.resultPath.isEmpty() && outcome.maps.maps) {
        progress.stage(85, QStringLiteral("writing ") + session.resultPath);
        outcome.faults = writeResults(session.resultPath, outcome.maps, session.texts, loaded.input,
                                      commandLine.images);
    }
    const bool warned =
        !outcome.maps.messages.empty() || outcome.target.warned || !outcome.lcf.result;
    outcome.status = !outcome.faults.empty() ? OutputFailed : warned ? CheckFailed : EveryStepRan;
    return outcome;
}

} // namespace orvel
