#include "analysis/ResultFile.h"

#include "analysis/BinCounts.h"
#include "text/NumberText.h"
#include "text/OutputFile.h"

#include <cmath>
#include <cstring>
#include <utility>

namespace orvel {
namespace {

constexpr int kFieldWidth = 10;

/// Builds one line of numbers at a time in a buffer that is long enough for the longest.
class LineWriter {
public:
    explicit LineWriter(OutputFile &file) : m_file(file) {}

    void put(const char *text)
    {
        const size_t n = std::strlen(text);
        std::memcpy(m_text + m_length, text, n);
        m_length += n;
    }

    void putNumber(double value)
    {
        char digits[kGeneralTextSize];
        const int n = writeGeneral(value, digits);
        for (int i = n; i < kFieldWidth; ++i) {
            m_text[m_length++] = ' ';
        }
        std::memcpy(m_text + m_length, digits, static_cast<size_t>(n));
        m_length += static_cast<size_t>(n);
    }

    void end()
    {
        m_text[m_length++] = '\n';
        m_file.write(m_text, static_cast<qint64>(m_length));
        m_length = 0;
    }

private:
    OutputFile &m_file;
    char m_text[(kQuantities + 2) * (kGeneralTextSize + 4)];
    size_t m_length = 0;
};

void writeFourPoints(LineWriter &line, const ResultMaps &maps, const std::vector<double> &valences)
{
    for (qint64 i = 0; i < maps.size(); ++i) {
        const double ratio = maps.at(Quantity::Ratio1, i);
        const double valence =
            valences.size() < 2 ? 0.0 : ratio * valences[0] + (1 - ratio) * valences[1];
        line.put(" ");
        line.putNumber(maps.origin().positionX(i));
        line.put(" ");
        line.putNumber(maps.origin().positionY(i));
        line.put("    ");
        line.putNumber(ratio);
        line.put(" ");
        line.putNumber(valence);
        line.put(" ");
        line.putNumber(maps.at(Quantity::Amount, i));
        line.end();
    }
}

/// "# y x NAMES", then one line a pixel.
void writeColumns(OutputFile &file, LineWriter &line, const ResultMaps &maps,
                  const std::vector<std::pair<QByteArray, Quantity>> &columns)
{
    file.write("# y x");
    for (const auto &[name, quantity] : columns) {
        file.write(' ' + name);
    }
    file.write("\n");
    for (qint64 i = 0; i < maps.size(); ++i) {
        line.put(" ");
        line.putNumber(maps.origin().positionX(i));
        line.put(" ");
        line.putNumber(maps.origin().positionY(i));
        for (const auto &column : columns) {
            line.put(" ");
            line.putNumber(maps.at(column.second, i));
        }
        line.end();
    }
}

void writeNonEquiv(OutputFile &file, LineWriter &line, const ResultMaps &maps,
                   const std::array<bool, kQuantities> &record)
{
    std::vector<std::pair<QByteArray, Quantity>> columns;
    for (int q = 0; q < kQuantities; ++q) {
        if (record[static_cast<size_t>(q)]) {
            columns.emplace_back(columnName(q), quantityAt(q));
        }
    }
    writeColumns(file, line, maps, columns);
}

/// First line, the image's own lines, what is particular about the fit, an empty line.
void writeHeader(OutputFile &file, const ResultMaps *maps)
{
    file.write("# klyv result map V1.0\n");
    if (maps != nullptr) {
        for (const QString &headerLine : maps->origin().header()) {
            file.write(headerLine.toUtf8() + '\n');
        }
        if (maps->isBounded()) {
            QByteArray line = "# fit: no negative references; " +
                              QByteArray::number(maps->pixelsOnBounds()) +
                              " pixels on a bound, by reference";
            for (int i = 0;
                 i < kReferenceRows && maps->fills(quantityAt(indexOf(Quantity::DMut1) + i)); ++i) {
                line += ' ' + QByteArray::number(maps->pixelsHolding(i));
            }
            file.write(line + '\n');
        }
    }
}

QByteArray noiseText(const MapPrecision &precision)
{
    const QByteArray sigma = std::isnan(precision.sigma)
                                 ? QByteArrayLiteral("not determined")
                                 : QByteArray::number(precision.sigma, 'g', 6);
    switch (precision.noise) {
    case NoiseSource::Pooled:
        return "pooled residuals, s = " + sigma;
    case NoiseSource::Pixel:
        return "residuals of each pixel";
    case NoiseSource::Given:
        return "given, s = " + sigma;
    case NoiseSource::Counts:
        return "counts, variance 1/I + 1/I0";
    }
    return {};
}

} // namespace

const char *columnName(int index)
{
    static constexpr const char *kNames[kQuantities] = {
        "alpha1", "alpha2", "alpha3", "alpha4", "dMut1",   "dMut2",      "dMut3",
        "dMut4",  "Mut0",   "C1",     "C2",     "Valence", "Total-dMut",
    };
    return index >= 0 && index < kQuantities ? kNames[index] : "UnKnown";
}

bool writeResultFile(const QString &path, const ResultMaps *maps, const ResultFileOptions &options)
{
    OutputFile file(path);
    if (!file.open()) {
        return false;
    }
    writeHeader(file, maps);
    file.write("\n");
    if (maps != nullptr) {
        LineWriter line(file);
        if (isNonEquiv(maps->method())) {
            writeNonEquiv(file, line, *maps, options.record);
        } else {
            writeFourPoints(line, *maps, options.valences);
        }
    }
    return file.commit();
}

QString sigmaPathBeside(const QString &resultPath)
{
    return BinCounts::pathBeside(resultPath, QStringLiteral("Sigma"));
}

bool writeSigmaFile(const QString &path, const ResultMaps &maps)
{
    OutputFile file(path);
    if (!file.open()) {
        return false;
    }
    std::vector<std::pair<QByteArray, Quantity>> columns;
    for (int q = kQuantities; q < kMapQuantities; ++q) {
        if (maps.fills(quantityAt(q))) {
            static constexpr const char *kNames[] = {
                "Residual",     "sigma_alpha1",  "sigma_alpha2",    "sigma_alpha3",
                "sigma_alpha4", "sigma_Valence", "sigma_Total-dMut"};
            columns.emplace_back(kNames[q - kQuantities], quantityAt(q));
        }
    }
    writeHeader(file, &maps);
    if (maps.precision()) {
        file.write("# noise: " + noiseText(*maps.precision()) + "; degrees of freedom " +
                   QByteArray::number(maps.precision()->freedom) + '\n');
    }
    file.write("\n");
    LineWriter line(file);
    writeColumns(file, line, maps, columns);
    return file.commit();
}

} // namespace orvel
