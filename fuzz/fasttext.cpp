// The fast way of text files (numbers taken from the bytes of a line) against the way by texts, for
// spectra of both layouts and maps of all kinds.
//
// The same characters written as UTF-16 with a mark are never read by bytes. Which characters the
// bytes stand for is what the toolkit's text stream makes of them as UTF-8.

#include "fuzz/Fuzz.h"
#include "images/TextMap.h"
#include "spectra/AMutE.h"

#include <QFile>
#include <QTextCodec>
#include <QTextStream>

#include <memory>

using namespace orvel::fuzz;
using orvel::ReadFailure;
using orvel::TextMap;

namespace {

/// All characters of a file, as a text stream gives them; without carriage returns.
QString streamed(const QString &path)
{
    QFile file(path);
    require(file.open(QIODevice::ReadOnly | QIODevice::Text), "the input can be opened again");
    QTextStream stream(&file);
    stream.setCodec("UTF-8"); // which takes a mark from the start
    return stream.readAll();
}

/// High bytes first: with low ones first, a zero character behind the mark would make it that of
/// UTF-32.
QString scratchWide(const QString &name, const QString &text)
{
    const std::unique_ptr<QTextEncoder> encoder(
        QTextCodec::codecForName("UTF-16BE")->makeEncoder(QTextCodec::IgnoreHeader));
    return scratchFile(name, "\xFE\xFF" + encoder->fromUnicode(text));
}

void requireSameMap(const QString &bytesPath, const QString &widePath)
{
    QStringList fastEnergies;
    QStringList textEnergies;
    TextMap fast;
    TextMap text;
    const ReadFailure fastOutcome = orvel::readTextMap(
        bytesPath, [&](const QString &energy) { fastEnergies.append(energy); }, fast);
    const ReadFailure textOutcome = orvel::readTextMap(
        widePath, [&](const QString &energy) { textEnergies.append(energy); }, text);
    require(fastOutcome == textOutcome, "a map is read or refused for one reason both ways");
    require(fast.header == text.header, "a map has one header both ways");
    require(fastEnergies == textEnergies, "a map tells one energy both ways");
    require(fast.xNum == text.xNum && fast.yNum == text.yNum, "a map has one grid both ways");
    require(sameBits(fast.columns.x, text.columns.x) && sameBits(fast.columns.y, text.columns.y) &&
                sameBits(fast.columns.signal, text.columns.signal) &&
                sameBits(fast.columns.reference, text.columns.reference),
            "a map has the same records both ways");
}

void requireSameSpectrum(bool (AMutE::*reader)(const QString &), const QString &bytesPath,
                         const QString &widePath)
{
    AMutE fast;
    AMutE text;
    require((fast.*reader)(bytesPath) == (text.*reader)(widePath) &&
                fast.readFailure() == text.readFailure(),
            "a spectrum is read or refused for one reason both ways");
    require(sameBits(fast.points(), text.points()), "a spectrum has the same points both ways");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    QByteArray bytes = bytesOf(data, size);
    for (const char *mark : {"\xff\xfe", "\xfe\xff"}) {
        if (bytes.startsWith(mark) || bytes.startsWith(QByteArray(2, '\0') + mark)) {
            return 0; // read by texts in any case
        }
    }
    // A stream forgets the beginning of a character that the end of its file cuts short; readers
    // take it for an undecodable one.
    bytes.append('\n');
    const QString bytesPath = scratchFile(QStringLiteral("bytes.txt"), bytes);
    const QString widePath = scratchWide(QStringLiteral("wide.txt"), streamed(bytesPath));
    requireSameMap(bytesPath, widePath);
    // Each layout, whatever the first line says; and the choice between them.
    for (const auto reader : {&AMutE::readColumns, &AMutE::read9809, &AMutE::readFile}) {
        requireSameSpectrum(reader, bytesPath, widePath);
    }
    return 0;
}
