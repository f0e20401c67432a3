#pragma once

#include "analysis/Calculations.h"
#include "batch/BatchRun.h"
#include "session/InputLoader.h"
#include "session/SessionTexts.h"

namespace orvel {

// One session without its standard output: what the runs of one and of many share.

struct OpenedSession {
    QString path;
    bool isGood = false; ///< otherwise wrong usage, of which standard error was told
    SessionTexts texts;
    QString resultPath; ///< absolute; empty: nothing is written
    QStringList outputs;
    QStringList inputs;
};

/// Reads a session file and sees whether its outputs may be written: they must not be inputs.
OpenedSession openSession(const CommandLine &commandLine, const QString &path);

/// What came out of a session; nothing is calculated with status InputUnreadable.
struct SessionOutcome {
    ExitStatus status = WrongUsage;
    int references = 0; ///< valid ones that take part
    MapOutcome maps;
    TargetOutcome target;
    LcfOutcome lcf;
    std::vector<Line> faults; ///< outputs that could not be written
};

/// Reads the inputs, calculates and writes the files; shows progress and unreadable inputs on
/// standard error.
SessionOutcome calculateSession(const OpenedSession &session, const CommandLine &commandLine);

/// Whether a path names a standard stream that leads to a file: result and messages would
/// overwrite each other there. (Into a pipe or a terminal they go one after the other.)
bool isRedirectedStream(const QString &path);

} // namespace orvel
