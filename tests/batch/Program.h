#pragma once

#include <QProcess>

#include <csignal>
#include <functional>

#include <sys/resource.h>

const QByteArray kSpectrum = "8000 0\n8100 0\n8200 0\n8345 0\n8350 0.5\n8355 1\n8460 1\n8560 1\n";

/// A session of two references (both "spectrum"), a target "target", least squares of eight points
/// "map" and a result; `more` comes last and wins.
inline QByteArray sessionOf(const QByteArray &result, const QByteArray &more = QByteArray())
{
    QByteArray text = "[Session]\nVersion=1\n[Edge]\nEdgeE=8350\n[Target]\nTargetFile=target\n"
                      "[Method]\nTypeTMK=LS\n[Output]\nSaveFSelect=" +
                      result + '\n';
    for (const char *n : {"1", "2"}) {
        text += QByteArray("[Ref") + n + "]\nUseCB=true\nXafsFS=spectrum\nValence=" + n + "\n";
    }
    for (const char *n : {"1", "2", "3", "4", "5", "6", "7", "8"}) {
        text += QByteArray("[Point") + n + "]\nUseCB=true\nFileSelect=map\nEnergy=83" + n + "0\n";
    }
    return text + "[Point2]\nVPointCB=true\nLCFCB=true\n[Point8]\nLCFCB=true\n" + more;
}

/// A text map that promises a square of pixels and holds one: small to read, large to write.
inline QByteArray mapOf(int side)
{
    const QByteArray n = QByteArray::number(side);
    return "# X-NUM " + n + "\n# Y-NUM " + n + "\n0 0 0.5 0\n";
}

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

    Run end()
    {
        Run result;
        if (waitForFinished(60000) && exitStatus() == QProcess::NormalExit) {
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

inline Run runBatch(const QStringList &arguments)
{
    Program program;
    return program.run(arguments);
}
