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
    if (!m_file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        m_failure = ReadFailure::CannotOpen;
        return false;
    }
    m_stream.setDevice(&m_file);
    m_stream.setCodec("UTF-8"); // whatever the locale; a byte-order mark still takes precedence
    m_failure = ReadFailure::None;
    return true;
}

bool TextFile::readLine(QString &line)
{
    if (m_failure != ReadFailure::None || m_stream.atEnd()) {
        return false;
    }
    if (!m_stream.readLineInto(&line, kLongestLine)) {
        return false;
    }
    if (line.size() >= kLongestLine) {
        m_failure = ReadFailure::LineTooLong;
        return false;
    }
    return true;
}

QStringList itemsOf(const QString &line)
{
    // After simplified() single blanks are the only white space left.
    const QString simple = line.simplified();
    return simple.isEmpty() ? QStringList() : simple.split(QLatin1Char(' '));
}

} // namespace orvel
