#include "text/TextFile.h"

#include "text/RegularFile.h"

#include <QStringList>

#include <cstring>

namespace orvel {
namespace {

constexpr int kBlock = 128 * 1024; ///< read at a time: small enough to stay in the cache

} // namespace

TextFile::TextFile(const QString &path) : m_file(path) {}

bool TextFile::open()
{
    m_failure = openRegular(m_file);
    if (m_failure != ReadFailure::None) {
        return false;
    }
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
    if (m_wide) {
        return readWide(line);
    }
    Bytes bytes;
    if (!readBytes(bytes)) {
        return false;
    }
    line = textOf(bytes);
    return true;
}

bool TextFile::readWide(QString &line)
{
    if (m_failure != ReadFailure::None || m_stream.atEnd() ||
        !m_stream.readLineInto(&line, kLongestLine)) {
        return false;
    }
    if (line.size() >= kLongestLine) {
        m_failure = ReadFailure::LineTooLong;
        return false;
    }
    return true;
}

bool TextFile::readBytes(Bytes &line)
{
    if (m_failure != ReadFailure::None) {
        return false;
    }
    int searched = 0; // bytes from m_at on that hold no line feed
    for (;;) {
        const char *start = m_buffer.constData() + m_at;
        const auto *feed = static_cast<const char *>(
            std::memchr(start + searched, '\n', static_cast<size_t>(m_end - m_at - searched)));
        searched = m_end - m_at;
        const bool atEnd = feed == nullptr && searched < kLongestLine && !fillBuffer();
        if (feed == nullptr && searched < kLongestLine && !atEnd) {
            continue;
        }
        start = m_buffer.constData() + m_at;
        line = {start, feed != nullptr ? feed : start + searched};
        if (line.end - line.begin >= kLongestLine) {
            m_failure = ReadFailure::LineTooLong;
            return false;
        }
        m_at += static_cast<int>(line.end - line.begin) + (feed != nullptr ? 1 : 0);
        return feed != nullptr || searched > 0;
    }
}

/// Moves what is left to the front and reads on; false at the end of the file.
bool TextFile::fillBuffer()
{
    if (m_end - m_at == m_buffer.size()) { // at the start, or one line fills it all
        m_buffer.resize(qMax(kBlock, 2 * m_buffer.size()));
    }
    std::memmove(m_buffer.data(), m_buffer.constData() + m_at, static_cast<size_t>(m_end - m_at));
    m_end -= m_at;
    m_at = 0;
    const qint64 got = m_file.read(m_buffer.data() + m_end, m_buffer.size() - m_end);
    m_end += static_cast<int>(qMax<qint64>(0, got));
    return got > 0;
}

QString TextFile::textOf(const Bytes &line)
{
    // With a line feed behind it, a character that is cut short reads alike with and without one.
    QByteArray bytes(line.begin, static_cast<int>(line.end - line.begin));
    bytes.append('\n');
    // By pointer and size: a NUL is a character, not the end. The decoder swallows a mark at the
    // start of what it gets; inside a file that is an ordinary character.
    QString text = QString::fromUtf8(bytes.constData(), bytes.size());
    text.chop(1);
    // Only now: between the bytes of one character a return splits it into undecodable ones.
    text.remove(QLatin1Char('\r'));
    return bytes.startsWith("\xEF\xBB\xBF") ? QChar(0xFEFF) + text : text;
}

QStringList itemsOf(const QString &line)
{
    // After simplified() single blanks are the only white space left.
    const QString simple = line.simplified();
    return simple.isEmpty() ? QStringList() : simple.split(QLatin1Char(' '));
}

} // namespace orvel
