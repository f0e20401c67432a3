#include "text/OutputFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

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

OutputFile::OutputFile(const QString &path) : m_path(path) {}

OutputFile::~OutputFile() = default; // an uncommitted QSaveFile removes its temporary file

bool OutputFile::open()
{
    if (mustBeWrittenInPlace(m_path)) {
        m_device = std::make_unique<QFile>(m_path);
    } else {
        m_device = std::make_unique<QSaveFile>(m_path);
    }
    m_block.reserve(kBlock);
    m_failed = !m_device->open(QIODevice::WriteOnly);
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
