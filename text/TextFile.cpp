#include "text/TextFile.h"

#include <QFileInfo>
#include <QStringList>

namespace orvel {

TextFile::TextFile(const QString &path) : m_file(path) {}

bool TextFile::open()
{
    if (!QFileInfo(m_file.fileName()).isFile()) {
        m_failure = ReadFailure::NotARegularFile;
        return false;
    }
    if (!m_file.open(QIODevice::ReadOnly)) {
        m_failure = ReadFailure::CannotOpen;
        return false;
    }
    m_failure = ReadFailure::None;
    const QByteArray start = m_file.peek(4);
    m_wide = start.startsWith("\xFF\xFE") || start.startsWith("\xFE\xFF") ||
             start == QByteArray("\0\0\xFE\xFF", 4);
    if (m_wide) {
        m_file.setTextModeEnabled(true);
        m_stream.setDevice(&m_file); // which finds the encoding by the mark
    } else if (start.startsWith("\xEF\xBB\xBF")) {
        m_file.skip(3);
    }
    return true;
}

bool TextFile::readLine(QString &line)
{
    if (m_failure != ReadFailure::None || !(m_wide ? readWide(line) : readBytes(line))) {
        return false;
    }
    if (line.size() >= kLongestLine) {
        m_failure = ReadFailure::LineTooLong;
        return false;
    }
    return true;
}

bool TextFile::readWide(QString &line)
{
    return !m_stream.atEnd() && m_stream.readLineInto(&line, kLongestLine);
}

bool TextFile::readBytes(QString &line)
{
    QByteArray bytes = m_file.readLine(kLongestLine + 1);
    if (bytes.isEmpty()) {
        return false;
    }
    if (!bytes.endsWith('\n')) {
        if (bytes.size() >= kLongestLine) {
            m_failure = ReadFailure::LineTooLong;
            return false;
        }
        bytes.append('\n'); // so that a character that is cut short reads alike with and without
    }
    bytes.replace('\r', QByteArray());
    line = QString::fromUtf8(bytes);
    line.chop(1);
    return true;
}

QStringList itemsOf(const QString &line)
{
    // After simplified() single blanks are the only white space left.
    const QString simple = line.simplified();
    return simple.isEmpty() ? QStringList() : simple.split(QLatin1Char(' '));
}

} // namespace orvel
