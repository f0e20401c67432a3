#include "images/TDData0.h"

#include "base/Column.h"
#include "images/ImageData.h"
#include "images/LineItems.h"
#include "images/TextMap.h"
#include "text/OutputFile.h"
#include "text/RegularFile.h"

#include <QDebug>
#include <QFile>

#include <algorithm>

using orvel::OutputFile;
using orvel::ReadFailure;
using orvel::takeItem;

namespace {

constexpr int kFirstLine = 64;          // the first line fills this many characters
constexpr int kHeaderUnit = 256;        // the header size is a multiple of this
constexpr qint64 kMostHeader = 1 << 16; // ours have less than a hundredth of this

const char *const kMagic = "2dData";
const char *const kVersion = "-V0.0";
const char *const kStructure =
    "Header of Size ( HeaderSize: ), Row Double Data Block of pixels ( WIDTH: * HEIGHT ), "
    "Row Bool Valid Flag Block of pixels ( WIDTH: * HEIGHT ) ";

/// The first bytes of a file as text up to a zero byte; empty when it cannot be opened.
QString firstLineOf(const QString &path, bool *opened = nullptr)
{
    QFile file(path);
    const bool ok = orvel::openRegular(file) == ReadFailure::None;
    if (opened != nullptr) {
        *opened = ok;
    }
    const QByteArray bytes = ok ? file.read(kFirstLine) : QByteArray();
    return QString::fromLatin1(
        bytes.constData(),
        static_cast<int>(qstrnlen(bytes.constData(), static_cast<uint>(bytes.size()))));
}

} // namespace

TDData0::TDData0(QObject *parent) : QObject(parent) {}

bool TDData0::isProcessedMap(const QString &path)
{
    return firstLineOf(path).startsWith(QLatin1String(kMagic));
}

bool TDData0::readHeader(const QString &path, Header &header) const
{
    bool opened = false;
    QString rest = firstLineOf(path, &opened);
    if (!opened) {
        qDebug().noquote() << "can't open" << path;
        return false;
    }
    if (!rest.startsWith(QLatin1String(kMagic))) {
        return false;
    }
    QString item; // version word, "HeaderSize:", size
    for (int i = 0; i < 3; ++i) {
        rest = takeItem(rest, item);
    }
    header.size = item.toInt();
    if (header.size < kFirstLine || header.size > kMostHeader) {
        return false;
    }

    QFile file(path);
    if (orvel::openRegular(file) != ReadFailure::None) {
        qDebug().noquote() << "can't open" << path;
        return false;
    }
    while (!file.atEnd() && file.pos() < header.size) {
        QByteArray line = file.readLine(header.size - file.pos() + 1);
        if (line.endsWith('\n')) {
            line.chop(1);
        }
        QString key;
        const QString value = takeItem(QString::fromLatin1(line), key).mid(1);
        if (key == QLatin1String("WIDTH:")) {
            header.width = value.toInt();
        } else if (key == QLatin1String("HEIGHT:")) {
            header.height = value.toInt();
        } else if (key == QLatin1String("DATA_ID:")) {
            header.dataId = value;
        } else if (key == QLatin1String("MIN_VAL:")) {
            header.minVal = value.toDouble();
        } else if (key == QLatin1String("MAX_VAL:")) {
            header.maxVal = value.toDouble();
        } else if (key == QLatin1String("END_OF_HEADER:")) {
            break;
        } // DATA_STRUCTURE:, SIZE_OF_DOUBLE: and SIZE_OF_BOOL: describe what is fixed
    }
    return true;
}

bool TDData0::read(const QString &path)
{
    Header header;
    if (!readHeader(path, header)) {
        qDebug().noquote() << path << "is not a TDData0 file.";
        m_readFailure = ReadFailure::NotProcessed;
        return false;
    }
    const qint64 pixels = qint64(header.width) * header.height;
    if (header.width < 1 || header.height < 1 || pixels > orvel::ImageData::kMostPixels) {
        qDebug().noquote() << path << "has an impossible size" << header.width << header.height;
        m_readFailure =
            header.width < 1 || header.height < 1 ? ReadFailure::NoGrid : ReadFailure::GridTooLarge;
        return false;
    }
    QFile file(path);
    m_readFailure = orvel::openRegular(file, QIODevice::ReadOnly | QIODevice::Unbuffered);
    if (m_readFailure != ReadFailure::None) {
        qDebug().noquote() << "can't open" << path;
        return false;
    }
    constexpr qint64 kDouble = sizeof(double);
    const qint64 there = qMax<qint64>(0, file.size() - header.size) / kDouble;
    if (pixels - there > orvel::kMostMissing) {
        qDebug().noquote() << path << "is far too short for its size" << header.width
                           << header.height;
        m_readFailure = ReadFailure::GridTooLarge;
        return false;
    }

    const int n = static_cast<int>(pixels);
    // Zeros, which stay where the file ends early, are laid piece by piece just before the bytes
    // arrive: the memory is passed over once.
    constexpr int kPiece = 1 << 15;
    QVector<double> values;
    values.reserve(n);
    orvel::wishHugePages(values.data(), static_cast<size_t>(n) * sizeof(double));
    file.seek(header.size);
    bool whole = true;
    while (values.size() < n) {
        const int from = values.size();
        values.resize(qMin(n, from + kPiece));
        const qint64 wanted = qint64(values.size() - from) * kDouble;
        const qint64 got =
            whole
                ? qMax<qint64>(0, file.read(reinterpret_cast<char *>(values.data() + from), wanted))
                : 0;
        whole = got == wanted;
        if (got % kDouble > 0) {
            values[from + static_cast<int>(got / kDouble)] = 0.0; // half a number is none
        }
    }
    static_assert(sizeof(bool) == 1, "validity flags are bytes of the file");
    QVector<bool> flags(n, false);
    auto *const flagBytes = reinterpret_cast<char *>(flags.data());
    file.read(flagBytes, pixels);
    std::transform(flagBytes, flagBytes + n, flagBytes,
                   [](char flag) { return static_cast<char>(flag != 0); });

    width = header.width;
    height = header.height;
    dataId = header.dataId;
    minVal = header.minVal;
    maxVal = header.maxVal;
    data = values;
    valid = flags;
    m_readFailure = ReadFailure::None;
    return true;
}

QByteArray TDData0::headerText() const
{
    QString id = dataId; // one line, whatever it holds
    id.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QChar(), QLatin1Char(' '));
    const QString rest =
        QStringLiteral("WIDTH: %1\n").arg(width) + QStringLiteral("HEIGHT: %1\n").arg(height) +
        QStringLiteral("DATA_ID: ") + id + QStringLiteral("\nDATA_STRUCTURE: ") +
        QLatin1String(kStructure) + QStringLiteral("\nSIZE_OF_DOUBLE: %1\n").arg(sizeof(double)) +
        QStringLiteral("SIZE_OF_BOOL: %1\n").arg(sizeof(bool)) +
        QStringLiteral("MIN_VAL: %1\n").arg(minVal) + QStringLiteral("MAX_VAL: %1\n").arg(maxVal) +
        QStringLiteral("END_OF_HEADER:\n");
    const int length = kFirstLine + 1 + rest.size();
    const int headerSize = (length / kHeaderUnit + 1) * kHeaderUnit;
    const QString first = QStringLiteral("%1%2 %3 %4")
                              .arg(QLatin1String(kMagic), QLatin1String(kVersion),
                                   QStringLiteral("HeaderSize:"), QString::number(headerSize));
    QByteArray text = (first.leftJustified(kFirstLine) + QLatin1Char('\n') + rest).toLatin1();
    return text.append(QByteArray(headerSize - text.size(), '\0'));
}

bool TDData0::write(const QString &path)
{
    qDebug().noquote() << "2dData save:" << path;
    const qint64 pixels = qint64(width) * height;
    if (width < 0 || height < 0 || data.size() != pixels || valid.size() != pixels) {
        qDebug().noquote() << "the data do not fill" << width << "x" << height << "pixels";
        return false;
    }
    const QByteArray header = headerText();
    if (header.size() > kMostHeader) {
        qDebug().noquote() << "the data identifier is too long for a header";
        return false;
    }
    OutputFile file(path);
    if (!file.open()) {
        qDebug().noquote() << "can't open" << path << "to save 2dData";
        return false;
    }
    file.write(header);
    file.write(reinterpret_cast<const char *>(data.constData()), pixels * qint64(sizeof(double)));
    file.write(reinterpret_cast<const char *>(valid.constData()), pixels);
    return file.commit();
}

void TDData0::setRegion(const QRectF &rR)
{
    const bool clearing = !m_region.isNull() && rR.isNull();
    m_region = rR;
    if (clearing) {
        emit regionCleared();
    }
}
