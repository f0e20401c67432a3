#pragma once

#include "batch/CommandLine.h"

namespace orvel {

enum ExitStatus {
    EveryStepRan = 0,
    CheckFailed = 1,
    WrongUsage = 2,
    InputUnreadable = 3,
    OutputFailed = 4,
};

/// Runs one session: reads, computes, writes files, prints to standard output and standard error.
ExitStatus runSession(const CommandLine &commandLine);

/// One line to standard error, headed by the program's name.
void complain(const QString &text);

/// Text to standard output as UTF-8, whatever the locale.
void print(const QString &text);

} // namespace orvel
