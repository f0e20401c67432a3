#pragma once

#include "batch/BatchRun.h"

namespace orvel {

/// Runs every session, one after the other, and writes one line of a CSV file for each: session,
/// status, result fields, size of the map, mean and number of the finite pixels of every quantity.
/// Columns are always the same, so that tables can be joined; cells stay empty where nothing was
/// determined. Nothing goes to standard output; messages of checks go to standard error.
///
/// Nothing at all is done, and the status is WrongUsage, where the table or the files of one
/// session would overwrite files of another. Otherwise the status is the worst of all sessions: the
/// first that applies of WrongUsage, InputUnreadable, OutputFailed, CheckFailed.
ExitStatus runTable(const CommandLine &commandLine);

} // namespace orvel
