#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <QTextCodec>
#include <QtTest>

#include <memory>

/// A temporary folder to write the files of a test into.
class TestFiles {
public:
    QString path(const QString &name) const { return m_folder.filePath(name); }

    /// Writes a file and returns its path.
    QString write(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("cannot write the test's own file");
        }
        return file.fileName();
    }

    /// Writes the same text as UTF-16 with its mark: readers take such files line by line as texts,
    /// never by the fast ways for bytes.
    QString writeWide(const QString &name, const QByteArray &bytes) const
    {
        const std::unique_ptr<QTextEncoder> encoder(
            QTextCodec::codecForName("UTF-16LE")->makeEncoder(QTextCodec::IgnoreHeader));
        return write(name, "\xFF\xFE" + encoder->fromUnicode(
                                            QString::fromUtf8(bytes.constData(), bytes.size())));
    }

    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

private:
    QTemporaryDir m_folder;
};
