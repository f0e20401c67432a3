#include "text/OutputFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#endif

namespace orvel {
namespace {

constexpr int kMostLinks = 40; // more are a circle

bool mustBeWrittenInPlace(const QString &path)
{
    const QFileInfo target(path);
    if (!target.exists()) {
        return false;
    }
    if (!target.isFile()) {
        return true;
    }
    const QFileInfo folder(QFileInfo(realPath(path)).absolutePath());
    return target.isWritable() && !folder.isWritable();
}

#ifdef Q_OS_UNIX
bool isPipe(const QString &path)
{
    struct stat info = {};
    return stat(QFile::encodeName(path).constData(), &info) == 0 && S_ISFIFO(info.st_mode);
}

/// A pipe opens when it has a reader, who may come a little late; but none may ever come.
bool openPipe(QFile &file)
{
    constexpr std::chrono::seconds kPatience(2);
    const auto end = std::chrono::steady_clock::now() + kPatience;
    const QByteArray name = QFile::encodeName(file.fileName());
    int descriptor = -1;
    for (;;) {
        descriptor = ::open(name.constData(), O_WRONLY | O_NONBLOCK | O_CLOEXEC);
        if (descriptor >= 0 || errno != ENXIO || std::chrono::steady_clock::now() > end) {
            break;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
    if (descriptor < 0) {
        return false;
    }
    const int flags = fcntl(descriptor, F_GETFL);
    const bool waits = flags != -1 && fcntl(descriptor, F_SETFL, flags & ~O_NONBLOCK) != -1;
    if (!waits || !file.open(descriptor, QIODevice::WriteOnly, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return false;
    }
    return true;
}
#endif

} // namespace

QString realPath(const QString &path)
{
    QFileInfo info(path);
    for (int links = 0; info.isSymLink() && links < kMostLinks; ++links) {
        info = QFileInfo(info.symLinkTarget());
    }
    const QString folder = QFileInfo(info.absolutePath()).canonicalFilePath();
    return (folder.isEmpty() ? info.absolutePath() : folder) + QLatin1Char('/') + info.fileName();
}

QStringList fileKeys(const QString &path)
{
    QStringList keys = {realPath(path)};
#ifdef Q_OS_UNIX
    struct stat found = {};
    if (stat(QFile::encodeName(path).constData(), &found) == 0) { // no path begins with a digit
        keys.append(QStringLiteral("%1:%2").arg(found.st_dev).arg(found.st_ino));
    }
#endif
    return keys;
}

OutputFile::OutputFile(const QString &path) : m_path(path) {}

OutputFile::~OutputFile() = default; // an uncommitted QSaveFile removes its temporary file

bool OutputFile::open()
{
    m_block.reserve(kBlock);
    if (!mustBeWrittenInPlace(m_path)) {
        m_device = std::make_unique<QSaveFile>(m_path);
        m_failed = !m_device->open(QIODevice::WriteOnly);
        return !m_failed;
    }
    auto file = std::make_unique<QFile>(m_path);
#ifdef Q_OS_UNIX
    m_failed = isPipe(m_path) ? !openPipe(*file) : !file->open(QIODevice::WriteOnly);
#else
    m_failed = !file->open(QIODevice::WriteOnly);
#endif
    m_device = std::move(file);
    return !m_failed;
}

void OutputFile::write(const char *bytes, qint64 size)
{
    while (size > 0) {
        const qint64 part = qMin<qint64>(size, kBlock - m_block.size());
        m_block.append(bytes, static_cast<int>(part));
        bytes += part;
        size -= part;
        if (m_block.size() == kBlock) {
            flushBlock();
        }
    }
}

void OutputFile::flushBlock()
{
    if (!m_failed && m_device->write(m_block) != m_block.size()) {
        m_failed = true;
    }
    m_block.resize(0); // keeps the reserved room
}

bool OutputFile::commit()
{
    flushBlock();
    // A QSaveFile forgets that its last block did not fit on the disk, so it is asked before.
    if (m_failed || !m_device->flush()) {
        return false;
    }
    if (auto *save = qobject_cast<QSaveFile *>(m_device.get())) {
        return save->commit();
    }
    m_device->close();
    return m_device->error() == QFileDevice::NoError;
}

} // namespace orvel
