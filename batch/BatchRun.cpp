#include "batch/BatchRun.h"

#include "analysis/Calculations.h"
#include "analysis/ResultFile.h"
#include "batch/Images.h"
#include "session/InputLoader.h"
#include "session/MessageText.h"
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

/// Whether a path names a standard stream that leads to a file: result and messages would
/// overwrite each other there. (Into a pipe or a terminal they go one after the other.)
bool isRedirectedStream(const QString &path)
{
    const bool named =
        path.startsWith(QLatin1String("/dev/")) || path.startsWith(QLatin1String("/proc/"));
    return named && QFileInfo(path).isFile();
}

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

/// Writes result and histogram files and the pictures; the lines name what could not be written.
std::vector<Line> writeResults(const QString &path, const MapOutcome &outcome,
                               const SessionTexts &texts, const AnalysisInput &input, bool images)
{
    ResultFileOptions options;
    options.record = texts.record;
    for (const ReferenceInput *reference : validReferences(input.references)) {
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
        if (images) {
            for (const QString &lost : writeImages(path, outcome, input)) {
                faults.push_back(cannotOpen(lost));
            }
        }
    }
    return faults;
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
    const SessionReading session = readSession(commandLine.sessionPath);
    for (const QString &note : session.notes) {
        complain(QStringLiteral("%1: %2").arg(commandLine.sessionPath, note));
    }
    if (!session.error.isEmpty()) {
        complain(QStringLiteral("cannot take the session %1: %2")
                     .arg(commandLine.sessionPath, session.error));
        return WrongUsage;
    }
    const SessionTexts &texts = session.state.texts;
    const QString resultPath = commandLine.resultPath.isEmpty()
                                   ? texts.resultFile
                                   : QDir::current().absoluteFilePath(commandLine.resultPath);
    if (resultPath.isEmpty() && commandLine.images) {
        complain(QStringLiteral("--images needs a result file: neither the session nor --result "
                                "names one"));
        return WrongUsage;
    }
    if (!resultPath.isEmpty()) {
        QStringList outputs = resultPaths(resultPath, texts.advanced);
        if (commandLine.images) {
            outputs += imagePaths(resultPath);
        }
        const QStringList inputs = inputPaths(texts) + QStringList(commandLine.sessionPath);
        const QString input = overwrittenInput(outputs, inputs);
        if (!input.isEmpty()) {
            complain(QStringLiteral("the result file %1 would overwrite the input %2")
                         .arg(resultPath, input));
            return WrongUsage;
        }
        if (isRedirectedStream(resultPath)) {
            complain(QStringLiteral("the result file %1 is where the messages go").arg(resultPath));
            return WrongUsage;
        }
        // The histograms of a result named .png, or one output that is a link to another.
        std::transform(outputs.begin(), outputs.end(), outputs.begin(), realPath);
        if (outputs.removeDuplicates() > 0) {
            complain(QStringLiteral("the result file %1 and those written beside it must be "
                                    "different files (with --images it must not end in .png)")
                         .arg(resultPath));
            return WrongUsage;
        }
    }

    Progress progress(!commandLine.quiet && stderrIsTerminal());
    const LoadedInput loaded =
        loadInput(texts, [&progress](int file, int files, const QString &path) {
            progress.stage(60 * file / files, QStringLiteral("reading ") + path);
        });
    if (!loaded.unreadable.empty()) {
        progress.clear();
        for (const UnreadableFile &file : loaded.unreadable) {
            complain(QStringLiteral("cannot read %1: %2").arg(file.path, describe(file.reason)));
        }
        return InputUnreadable;
    }

    progress.stage(60, QStringLiteral("calculating maps"));
    const MapOutcome maps = calculateMap(loaded.input, {commandLine.threads, nullptr});
    progress.stage(80, QStringLiteral("calculating the target"));
    const TargetOutcome target = calculateTarget(loaded.input);
    const LcfOutcome lcf = calculateLcf(loaded.input);
    std::vector<Line> faults;
    if (!resultPath.isEmpty() && maps.maps) {
        progress.stage(85, QStringLiteral("writing ") + resultPath);
        faults = writeResults(resultPath, maps, texts, loaded.input, commandLine.images);
    }
    progress.clear();

    printLines(maps.messages);
    printLines(target.messages);
    printLines(lcf.messages);
    printLines(faults);
    printField("CalcRes", textOf(target.resultField));
    printField("TargetDMut", target.dMutField.value_or(QString()));
    printField("LCFRes", textOf(lcf.resultField));

    if (std::fflush(stdout) != 0 || std::ferror(stdout) != 0) {
        complain(QStringLiteral("the messages could not be written to standard output"));
        return OutputFailed;
    }
    if (!faults.empty()) {
        return OutputFailed;
    }
    const bool warned = !maps.messages.empty() || target.warned || !lcf.result;
    return warned ? CheckFailed : EveryStepRan;
}

} // namespace orvel
