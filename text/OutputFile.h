#pragma once

#include <QFileDevice>
#include <QString>
#include <QStringList>

#include <memory>

namespace orvel {

/// The file that a path leads to once every symbolic link is followed, also when that file does
/// not exist yet; two paths of one file give the same text.
QString realPath(const QString &path);

/// What a file is known by: where the path leads to and, once there is a file, its number on the
/// disk. Writing to one path changes the file of another one, through links of any kind, when they
/// share one of these.
QStringList fileKeys(const QString &path);

/// A file that is either written whole or not at all: until commit() succeeds, an older file of
/// that name stays as it was. Two kinds of target cannot be replaced by renaming and are opened
/// and written directly: what exists and is no regular file (a pipe, /dev/stdout), and a writable
/// file in a folder that is not. A pipe that nobody reads within two seconds cannot be opened.
///
/// Writes are collected in blocks; nothing is reported before commit().
class OutputFile {
public:
    explicit OutputFile(const QString &path);
    ~OutputFile();
    OutputFile(const OutputFile &) = delete;
    OutputFile &operator=(const OutputFile &) = delete;

    [[nodiscard]] bool open();
    void write(const char *bytes, qint64 size);
    void write(const QByteArray &bytes) { write(bytes.constData(), bytes.size()); }

    /// Puts the file in place; false when anything could not be written (a full disk, ...).
    [[nodiscard]] bool commit();

private:
    static constexpr int kBlock = 256 * 1024;

    void flushBlock();

    QString m_path;
    std::unique_ptr<QFileDevice> m_device; ///< a QSaveFile or a plain QFile
    QByteArray m_block;
    bool m_failed = false;
};

} // namespace orvel
