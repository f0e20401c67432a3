#include "text/OutputFile.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace orvel {
namespace {

bool mustBeWrittenInPlace(const QString &path)
{
    const QFileInfo target(path);
    if (!target.exists()) {
        return false;
    }
    if (!target.isFile()) {
        return true;
    }
    const QFileInfo folder(QFileInfo(target.canonicalFilePath()).absolutePath());
    return target.isWritable() && !folder.isWritable();
}

} // namespace

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
    if (m_failed) {
        return false;
    }
    if (auto *save = qobject_cast<QSaveFile *>(m_device.get())) {
        return save->commit();
    }
    const bool written = m_device->flush();
    m_device->close();
    return written && m_device->error() == QFileDevice::NoError;
}

} // namespace orvel
