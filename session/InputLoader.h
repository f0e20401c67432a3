#pragma once

#include "analysis/AnalysisInput.h"
#include "session/SessionTexts.h"
#include "text/ReadFailure.h"

#include <functional>

namespace orvel {

/// A file named by a session that could not be read.
struct UnreadableFile {
    QString path;
    ReadFailure reason;
};

struct LoadedInput {
    AnalysisInput input;
    std::vector<UnreadableFile> unreadable; ///< in the order of the session; rows not used too
};

/// Told before each file is read: its number from 0, how many there are, its path.
using LoadListener = std::function<void(int file, int files, const QString &path)>;

/// Reads references, target and maps; sets the edge of every spectrum and fits its lines; takes
/// energies that are not given from the maps; fills the rows' absorptions.
LoadedInput loadInput(const SessionTexts &texts, const LoadListener &listener = {});

} // namespace orvel
