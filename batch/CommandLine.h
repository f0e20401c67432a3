#pragma once

#include <QString>
#include <QStringList>

namespace orvel {

/// What the user asked for.
struct CommandLine {
    enum class Task { Run, ShowHelp, ShowVersion, Refuse };

    Task task = Task::Run;
    QString fault; ///< with Refuse: what is wrong
    bool japanese = false;
    bool quiet = false;
    bool images = false;
    int threads = 0;    ///< 0: all cores
    QString resultPath; ///< as given; empty: the session's own
    QString sessionPath;
};

/// arguments  without the program's name
CommandLine parseCommandLine(const QStringList &arguments);

QString helpText();

} // namespace orvel
