#pragma once

#include "analysis/EnergyAdviser.h"

#include <QString>
#include <QStringList>

#include <vector>

namespace orvel {

/// What the user asked for.
struct CommandLine {
    enum class Task { Run, Table, Advise, ShowHelp, ShowVersion, Refuse };

    Task task = Task::Run;
    QString fault; ///< with Refuse: what is wrong
    bool japanese = false;
    bool quiet = false;
    bool images = false;
    int threads = 0;          ///< 0: all cores
    QString resultPath;       ///< as given; empty: the session's own
    QString tablePath;        ///< with Table: as given
    QStringList sessionPaths; ///< one, or with Table any number

    // With Advise:
    bool json = false;
    AdviserSettings advice;        ///< but for the fractions
    std::vector<double> fractions; ///< of the used references in row order; empty: equal
};

/// arguments  without the program's name
CommandLine parseCommandLine(const QStringList &arguments);

QString helpText();

} // namespace orvel
