#pragma once

#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

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

    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("(no file)");
    }

private:
    QTemporaryDir m_folder;
};
