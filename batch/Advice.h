#pragma once

#include "batch/BatchRun.h"

namespace orvel {

/// Prints what energies are worth for the references of a session (analysis/EnergyAdviser.h): a
/// table, or JSON. Reads references, and of maps only those that alone know a used point's energy.
ExitStatus adviseSession(const CommandLine &commandLine);

} // namespace orvel
