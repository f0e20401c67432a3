#include "analysis/ResultFile.h"

#include "text/NumberText.h"
#include "text/OutputFile.h"

#include <algorithm>
#include <cstring>

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

void writeNonEquiv(OutputFile &file, LineWriter &line, const ResultMaps &maps,
                   const std::array<bool, kQuantities> &record)
{
    file.write("# y x");
    std::vector<Quantity> columns;
    for (int q = 0; q < kQuantities; ++q) {
        if (record[static_cast<size_t>(q)]) {
            columns.push_back(quantityAt(q));
            file.write(QByteArray(" ") + columnName(q));
        }
    }
    file.write("\n");
    for (qint64 i = 0; i < maps.size(); ++i) {
        line.put(" ");
        line.putNumber(maps.origin().positionX(i));
        line.put(" ");
        line.putNumber(maps.origin().positionY(i));
        for (const Quantity column : columns) {
            line.put(" ");
            line.putNumber(maps.at(column, i));
        }
        line.end();
    }
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
    file.write("# klyv result map V1.0\n");
    if (maps != nullptr) {
        for (const QString &headerLine : maps->origin().header()) {
            file.write(headerLine.toUtf8() + '\n');
        }
    }
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

} // namespace orvel
