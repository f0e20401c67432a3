// Spectrum files of both layouts.

#include "fuzz/Fuzz.h"
#include "spectra/AMutE.h"

#include <algorithm>
#include <limits>

using namespace orvel::fuzz;

namespace {

bool sameLine(const AMutE::Victoreen &a, const AMutE::Victoreen &b)
{
    return sameBits(a.a, b.a) && sameBits(a.b, b.b) && sameBits(a.c, b.c);
}

bool sameContent(const AMutE &a, const AMutE &b)
{
    return a.isValid() == b.isValid() && a.readFailure() == b.readFailure() &&
           sameBits(a.points(), b.points()) && sameBits(a.minAngle(), b.minAngle()) &&
           sameBits(a.maxAngle(), b.maxAngle()) && sameBits(a.minE(), b.minE()) &&
           sameBits(a.maxE(), b.maxE()) && sameBits(a.minMu(), b.minMu()) &&
           sameBits(a.maxMu(), b.maxMu()) &&
           (!a.isValid() ||
            (sameLine(a.preLine(), b.preLine()) && sameLine(a.postLine(), b.postLine())));
}

/// A spectrum that holds something already, so that leftovers of an earlier file would show.
AMutE filledSpectrum()
{
    AMutE spectrum;
    spectrum.setPoints({{14.0, 8000.0, 0.5}, {13.0, 7900.0, -7.0}, {12.0, 9100.0, 1e6}});
    return spectrum;
}

void requireOutcome(bool read, const AMutE &spectrum)
{
    require(read == spectrum.isValid(), "a spectrum is valid when its file was read");
    require(read == !spectrum.points().isEmpty(), "a failed read leaves no point");
    require(read == (spectrum.readFailure() == orvel::ReadFailure::None),
            "a failed read has a reason");
    require(read || (sameBits(spectrum.minE(), 1e300) && sameBits(spectrum.maxE(), -1e300)),
            "a failed read leaves no range");
}

/// Interval of an energy by its definition, one point after the other.
int scannedIndex(const AMutE &spectrum, double e)
{
    const int n = spectrum.points().size();
    if (n < 2 || e < spectrum.effectiveEnergy(0)) {
        return 0;
    }
    if (e > spectrum.effectiveEnergy(n - 1)) {
        return n - 2;
    }
    for (int i = 0; i + 1 < n; ++i) {
        if (spectrum.effectiveEnergy(i) <= e && e <= spectrum.effectiveEnergy(i + 1)) {
            return i;
        }
    }
    return 0;
}

void requireLookUps(AMutE spectrum)
{
    spectrum.setDE(0.25);
    QVector<double> energies = {0.0, 8000.0, std::numeric_limits<double>::quiet_NaN(),
                                std::numeric_limits<double>::infinity()};
    const int n = spectrum.points().size();
    for (int i = 0; i < std::min(n, 16); ++i) {
        const double e = spectrum.effectiveEnergy(i);
        energies << e << e + 0.125 << -e;
    }
    for (const double e : energies) {
        require(spectrum.indexAt(e) == scannedIndex(spectrum, e),
                "a bisected interval is the scanned one");
        double value = 0.0;
        spectrum.valueMinusLine(e, true, value);
        spectrum.valueAtE(AMutE::By2Victoreens, e);
    }
    spectrum.findEdge();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes = bytesOf(data, size);
    const QString path = scratchFile(QStringLiteral("spectrum.dat"), bytes);

    AMutE first;
    const bool read = first.readFile(path);
    requireOutcome(read, first);
    require(first.filePath() == path, "a spectrum keeps the path of its file");

    AMutE second = filledSpectrum();
    require(second.readFile(path) == read && sameContent(first, second),
            "a second read gives the same, whatever the spectrum held before");

    // Whatever the layout, its own reader and the other one must cope with the file.
    AMutE scan = filledSpectrum();
    const bool readAsScan = scan.read9809(path);
    requireOutcome(readAsScan, scan);
    AMutE columns = filledSpectrum();
    const bool readAsColumns = columns.readColumns(path);
    requireOutcome(readAsColumns, columns);
    require(sameContent(first, first.is9809(path) ? scan : columns),
            "a file is read by the layout that its first line tells");

    for (const SameText &text : sameTexts(bytes)) {
        AMutE variant;
        require(variant.readFile(scratchFile(QStringLiteral("same.dat"), text.bytes)) == read &&
                    sameContent(first, variant),
                text.relation);
    }

    if (read) {
        AMutE copy;
        copy.setPoints(first.points());
        require(sameContent(first, copy), "points make the spectrum");
        requireLookUps(first);
    }
    return 0;
}
