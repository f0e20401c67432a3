// What disks, folders, links and other processes can do to the batch program: it ends by itself,
// with a status and a reason, and what was there before is whole. Disks are mounted where only this
// process and its children see them.

#include "tests/TestFiles.h"
#include "tests/TestTable.h"
#include "tests/batch/Program.h"

#include <QDir>
#include <QRandomGenerator>
#include <QtTest>

#include <thread>

#include <fcntl.h>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace {

constexpr uid_t kNobody = 65534;
constexpr int kSkipped = 77; // status: nothing failed, but something was not tried

bool writeText(const char *path, const QByteArray &text)
{
    const int file = open(path, O_WRONLY | O_CLOEXEC);
    const bool isWritten = file >= 0 && write(file, text.constData(), size_t(text.size())) > 0;
    return file >= 0 && close(file) == 0 && isWritten;
}

/// Makes mounts of this process its own, as root or as an ordinary user. Why not; empty: done.
/// Only while there is one thread.
QString g_noMounts;
QString ownMounts()
{
    const QByteArray user = QByteArray::number(getuid());
    const QByteArray group = QByteArray::number(getgid());
    if (unshare(CLONE_NEWNS) != 0) {
        if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
            return QStringLiteral("this system lets this user mount nothing: %1")
                .arg(QLatin1String(strerror(errno)));
        }
        if (!writeText("/proc/self/setgroups", "deny") ||
            !writeText("/proc/self/uid_map", user + ' ' + user + " 1") ||
            !writeText("/proc/self/gid_map", group + ' ' + group + " 1")) {
            return QStringLiteral("a user of its own cannot be set up");
        }
    }
    if (mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        return QStringLiteral("mounts cannot be kept from others");
    }
    return QString();
}

QByteArray encoded(const QString &path)
{
    return QFile::encodeName(path);
}

const QStringList kResults = {"r.dat", "r_HGAlpha.dat", "r_HGThick.dat"};
const QStringList kOldResults = {"r.dat old", "r_HGAlpha.dat old", "r_HGThick.dat old"};

} // namespace

class FaultsTest : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void fullDisk_data();
    void fullDisk();
    void fullDiskForMessages();
    void resultOnReadOnlyDisk();
    void foldersOfOthers_data();
    void foldersOfOthers();
    void whatIsNoFile_data();
    void whatIsNoFile();
    void killedWhileWriting();
    void pipes();

private:
    QString path(const QString &name) const { return m_files->path(name); }
    QString session(const QByteArray &more = QByteArray()) const
    {
        return m_files->write("s.ini", sessionOf("disk/r.dat", more));
    }
    void makeDisk(const char *options);
    void makeReadOnly() const;
    QStringList resultsIn(const QString &folder) const;

    std::unique_ptr<TestFiles> m_files;
    QString m_disk; ///< a mount, empty: none
};

void FaultsTest::init()
{
    const bool needsMounts = QByteArray(QTest::currentTestFunction()).contains("Disk");
    if (needsMounts && !g_noMounts.isEmpty()) {
        QSKIP(qPrintable(g_noMounts));
    }
    m_files = std::make_unique<TestFiles>();
    m_files->write("spectrum", kSpectrum);
    m_files->write("target", kSpectrum);
    m_files->write("map", mapOf(1));
}

void FaultsTest::cleanup()
{
    if (!m_disk.isEmpty()) {
        QCOMPARE(umount(encoded(m_disk).constData()), 0);
        m_disk.clear();
    }
    m_files.reset();
}

/// The folder "disk" with three old results, as a file system of its own.
void FaultsTest::makeDisk(const char *options)
{
    const QString disk = path("disk");
    QVERIFY(QDir().mkpath(disk));
    if (options != nullptr) {
        QCOMPARE(mount("tmpfs", encoded(disk).constData(), "tmpfs", 0, options), 0);
        m_disk = disk;
    }
    for (const QString &name : kResults) {
        m_files->write("disk/" + name, "old");
    }
}

void FaultsTest::makeReadOnly() const
{
    QCOMPARE(mount("none", encoded(m_disk).constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr),
             0);
}

/// Names and contents of all files of a folder, hidden ones too.
QStringList FaultsTest::resultsIn(const QString &folder) const
{
    QStringList list;
    for (const QString &name : QDir(path(folder)).entryList(QDir::Files | QDir::Hidden)) {
        list += name + ' ' + QString::fromLatin1(m_files->read(folder + '/' + name));
    }
    return list;
}

void FaultsTest::fullDisk_data()
{
    // kept: old results that stay; those before it fit
    const TestTable<int, QByteArray, int> row("side", "more", "kept");
    row("result", 200, QByteArray(), 0);
    row("histogram", 1, QByteArray("[Histogram]\nHgABoxes=100000\nHgTBoxes=3\n"), 1);
    row("second histogram", 1, QByteArray("[Histogram]\nHgABoxes=3\nHgTBoxes=100000\n"), 2);
}

void FaultsTest::fullDisk()
{
    QFETCH(int, side);
    QFETCH(QByteArray, more);
    QFETCH(int, kept);
    makeDisk("size=256k");
    m_files->write("map", mapOf(side));
    const Run run = runBatch({session(more)});
    QCOMPARE(run.status, 4);
    QVERIFY(run.out.contains("Can't open the file [" + path("disk/" + kResults[kept]) + "]\n"));
    const QStringList left = resultsIn("disk");
    QCOMPARE(left.size(), kResults.size()); // and no piece of a new one
    for (int i = 0; i < left.size(); ++i) {
        // The other histogram is written where the first does not fit.
        const bool isOld = i == kept || kept == 0;
        QVERIFY2((left[i] == kOldResults[i]) == isOld, qPrintable(left[i].left(200)));
    }
}

void FaultsTest::fullDiskForMessages()
{
    const QString result = path("elsewhere.dat");
    Program program;
    program.setStandardOutputFile("/dev/full");
    const Run run = program.run({"--result", result, session()});
    QCOMPARE(run.status, 4);
    QVERIFY(run.err.contains("standard output"));
    QVERIFY(QFileInfo(result).size() > 50);
}

void FaultsTest::resultOnReadOnlyDisk()
{
    makeDisk("size=1m");
    makeReadOnly();
    const Run run = runBatch({"--images", session()});
    QCOMPARE(run.status, 4);
    QVERIFY(run.out.contains("Can't open the file [" + path("disk/r.dat") + "]\n"));
    QCOMPARE(resultsIn("disk"), kOldResults);
}

void FaultsTest::foldersOfOthers_data()
{
    const TestTable<int, int, int> row("folderMode", "fileMode", "status");
    row("neither", 0755, 0644, 4);
    row("the files alone: in place", 0755, 0666, 0);
    row("the folder alone: files that may not be written are not replaced", 0777, 0644, 4);
    row("both: replaced", 0777, 0666, 0);
}

/// An ordinary user among files of another one.
void FaultsTest::foldersOfOthers()
{
    if (geteuid() != 0) {
        QSKIP("only root can become another user");
    }
    QFETCH(int, folderMode);
    QFETCH(int, fileMode);
    QFETCH(int, status);
    makeDisk(nullptr);
    const QByteArray file = encoded(session());
    QCOMPARE(chmod(encoded(path("")).constData(), 0755), 0);
    for (const QString &name : kResults) {
        QCOMPARE(chmod(encoded(path("disk/" + name)).constData(), mode_t(fileMode)), 0);
    }
    QCOMPARE(chmod(encoded(path("disk")).constData(), mode_t(folderMode)), 0);
    Program program;
    program.atStart = [] {
        if (setgroups(0, nullptr) != 0 || setgid(kNobody) != 0 || setuid(kNobody) != 0) {
            _exit(99);
        }
    };
    const Run run = program.run({QFile::decodeName(file)});
    QCOMPARE(run.status, status);
    const QStringList now = resultsIn("disk");
    QCOMPARE(now.size(), kResults.size());
    QCOMPARE(now == kOldResults, status == 4);
}

void FaultsTest::whatIsNoFile_data()
{
    const TestTable<QString> row("file");
    for (const char *file : {"missing", "folder", "pipe", "socket", "/dev/zero", "/dev/tty",
                             "dangling", "circle", "toPipe", "spectrum/x"}) {
        row(file, QString(file));
    }
}

/// In the place of any input: refused at once.
void FaultsTest::whatIsNoFile()
{
    QFETCH(QString, file);
    QVERIFY(QDir(path("")).mkdir("folder"));
    QCOMPARE(mkfifo(encoded(path("pipe")).constData(), 0644), 0);
    QVERIFY(QFile::link("nowhere", path("dangling")) && QFile::link("circle", path("circle")) &&
            QFile::link("pipe", path("toPipe")));
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    qstrncpy(address.sun_path, encoded(path("socket")).constData(), sizeof address.sun_path);
    const int listener = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    QCOMPARE(bind(listener, reinterpret_cast<const sockaddr *>(&address), sizeof address), 0);
    const QString whole = QDir(path("")).absoluteFilePath(file);
    for (const char *key : {"[Ref1]\nXafsFS=", "[Ref4]\nXafsFS=", "[Target]\nTargetFile=",
                            "[Point1]\nFileSelect=", "[Point8]\nFileSelect="}) {
        const Run run = runBatch({session(key + file.toLatin1())});
        QVERIFY2(run.status == 3, key);
        QCOMPARE(run.out, QString());
        QVERIFY(run.err.endsWith(whole + ": there is no such readable file\n"));
    }
    const Run run = runBatch({whole});
    QCOMPARE(run.status, 2);
    QVERIFY(run.err.contains("there is no such readable file"));
    close(listener);
}

/// The old result or the whole new one, whenever the kill comes.
void FaultsTest::killedWhileWriting()
{
    m_files->write("map", mapOf(700));
    const QString name = session();
    makeDisk(nullptr);
    QCOMPARE(runBatch({name}).status, 0);
    const QByteArray fresh = m_files->read("disk/r.dat");
    QVERIFY(fresh.size() > (1 << 22));
    QRandomGenerator random(1);
    int during = 0;
    int attempts = 0;
    for (; during < 8 && attempts < 60; ++attempts) {
        QVERIFY(QDir(path("disk")).removeRecursively());
        makeDisk(nullptr);
        Program program;
        program.begin({name});
        QVERIFY(program.waitForStarted());
        // Until the new file is open, named or not yet, and then a little more.
        const QDir opened(QStringLiteral("/proc/%1/fd").arg(program.processId()));
        const auto isWriting = [&] {
            const QStringList numbers = opened.entryList(QDir::System | QDir::Files);
            return std::any_of(numbers.begin(), numbers.end(), [&](const QString &n) {
                return QFile::symLinkTarget(opened.filePath(n)).startsWith(path("disk/"));
            });
        };
        QElapsedTimer timer;
        timer.start();
        while (!isWriting() && timer.elapsed() < 20000) {
            QThread::usleep(100);
        }
        QThread::usleep(random.bounded(20000));
        program.kill();
        program.waitForFinished();
        const QByteArray left = m_files->read("disk/r.dat");
        const bool isOld = left == "old";
        QVERIFY2(isOld || left == fresh, "a part of the new file");
        during += isOld ? 1 : 0;
    }
    qInfo("%d of %d kills came while the file was being written", during, attempts);
    QVERIFY(during > 0); // else nothing was tried
}

void FaultsTest::pipes()
{
    m_files->write("map", mapOf(300)); // more than a pipe holds
    const QString file = session("[Output]\nSaveFSelect=pipe\n");
    const QByteArray pipe = encoded(path("pipe"));
    QCOMPARE(mkfifo(pipe.constData(), 0644), 0);
    {
        const Run run = runBatch({file});
        QCOMPARE(run.status, 4);
        QVERIFY(run.out.contains("Can't open the file [" + path("pipe") + "]\n"));
    }
    ssize_t taken = 0; // by a reader that leaves
    std::thread reader([&] {
        const int end = open(pipe.constData(), O_RDONLY | O_CLOEXEC);
        char block[4096];
        taken = read(end, block, sizeof block);
        close(end);
    });
    const Run run = runBatch({file});
    reader.join();
    QVERIFY(taken > 0);
    QCOMPARE(run.status, 4);
}

int main(int argc, char **argv)
{
    g_noMounts = ownMounts();
    const QCoreApplication app(argc, argv);
    FaultsTest test;
    const int failures = QTest::qExec(&test, argc, argv);
    const bool hasSkipped = !g_noMounts.isEmpty() || geteuid() != 0;
    return failures == 0 && hasSkipped ? kSkipped : failures;
}
#include "tst_faults.moc"
