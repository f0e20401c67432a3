#pragma once

#include <QProcess>

#include <csignal>
#include <functional>

#include <sys/resource.h>

/// What came of a process.
struct Run {
    int status = -1; ///< -1: it did not start, did not end in time or was ended by a signal
    QString out;
    QString err;
};

/// The batch program as a process of its own, in the "C" locale, with what it may take.
class Program : public QProcess {
public:
    rlim_t mostBytes = RLIM_INFINITY;     ///< in any file it writes: a full disk
    rlim_t mostAddresses = RLIM_INFINITY; ///< bytes of address space
    std::function<void()> atStart;        ///< in the new process; system calls only

    void begin(const QStringList &arguments)
    {
        if (workingDirectory().isEmpty()) {
            setWorkingDirectory(QStringLiteral("/")); // not where the session is
        }
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C"));
        setProcessEnvironment(environment);
        start(QStringLiteral(ORVEL_BATCH), arguments);
    }

    Run end(int mostMs = 60000)
    {
        Run result;
        if (waitForFinished(mostMs) && exitStatus() == QProcess::NormalExit) {
            result.status = exitCode();
        }
        kill();
        waitForFinished();
        result.out = QString::fromUtf8(readAllStandardOutput());
        result.err = QString::fromUtf8(readAllStandardError());
        return result;
    }

    Run run(const QStringList &arguments)
    {
        begin(arguments);
        return end();
    }

protected:
    void setupChildProcess() override
    {
        const auto limit = [](auto resource, rlim_t most) {
            const rlimit value = {most, RLIM_INFINITY};
            if (most != RLIM_INFINITY) {
                setrlimit(resource, &value);
            }
        };
        if (mostBytes != RLIM_INFINITY) {
            signal(SIGXFSZ, SIG_IGN);
        }
        limit(RLIMIT_FSIZE, mostBytes);
        limit(RLIMIT_AS, mostAddresses);
        if (atStart) {
            atStart();
        }
    }
};
