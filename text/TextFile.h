#pragma once

#include "text/ReadFailure.h"

#include <QFile>
#include <QTextStream>

namespace orvel {

/// A text file of measured data, read line by line as the instruments write it: lines end in
/// "\n" or "\r\n" (every '\r' is dropped) and the last one may lack its end; text is UTF-8 whatever
/// the locale, unless a byte-order mark, which vanishes, says otherwise; bytes that are not UTF-8
/// (old headers in other encodings) become U+FFFD and never disturb the ASCII around them. So reads
/// QTextStream, but for a character cut short by the end of the file, which it drops.
class TextFile {
public:
    /// Lines of this many bytes and more are refused; bounds the memory that a file without
    /// line ends can claim.
    static constexpr int kLongestLine = 1 << 20;

    explicit TextFile(const QString &path);

    /// Opens the file; false, with failure(), when it is no readable regular file.
    /// Devices and pipes are refused: they may never end.
    bool open();

    /// The next line without its end; false at the end of the file or on a line that is too long.
    bool readLine(QString &line);

    /// Bytes of a line without its line feed, valid until the next line is read; a '\r' may still
    /// stand in it.
    struct Bytes {
        const char *begin = nullptr;
        const char *end = nullptr;
    };
    /// As readLine, without making a text of it. Only for files in bytes.
    bool readBytes(Bytes &line);
    /// Whether lines come as bytes of UTF-8; not so in files with a mark of UTF-16 or UTF-32.
    bool isBytes() const { return !m_wide; }
    /// The text of a line.
    static QString textOf(const Bytes &line);

    qint64 size() const { return m_file.size(); }
    ReadFailure failure() const { return m_failure; }

private:
    bool fillBuffer();
    bool readWide(QString &line);

    QFile m_file;
    QByteArray m_buffer; ///< what was read and not yet given out lies from m_at to m_end
    int m_at = 0;
    int m_end = 0;
    QTextStream m_stream; ///< of files with a mark of UTF-16 or UTF-32
    bool m_wide = false;
    ReadFailure m_failure = ReadFailure::None;
};

/// The items of a line: white space around and between them does not count; none for a blank line.
QStringList itemsOf(const QString &line);

} // namespace orvel
