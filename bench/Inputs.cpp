#include "bench/Inputs.h"

#include "images/TDData0.h"

#include <QFile>

#include <cmath>
#include <cstdio>
#include <stdexcept>

namespace orvel::bench {
namespace {

void save(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush()) {
        throw std::runtime_error("cannot write " + path.toStdString());
    }
}

/// "x y signal reference", x fastest, one to three blanks between.
QByteArray textMap()
{
    constexpr int kLongestLine = 48;
    // Columns are counted from the third item.
    QByteArray text = "# 2003901\n# ENERGY : 7120.0 eV\n# I : 0\n# I0 : 1\n";
    text.reserve(kMapPixels * kLongestLine);
    TextMapPixels pixels;
    for (int y = 0; y < kMapSide; ++y) {
        for (int x = 0; x < kMapSide; ++x) {
            const TextMapPixels::Pixel pixel = pixels.next();
            char line[kLongestLine];
            const int length = std::snprintf(
                line, sizeof line, "%d%*s%d%*s%d.%06d%*s%d.%06d\n", x, 1 + pixel.blanks[0], "", y,
                1 + pixel.blanks[1], "", pixel.signal / 1000000, pixel.signal % 1000000,
                1 + pixel.blanks[2], "", pixel.reference / 1000000, pixel.reference % 1000000);
            text.append(line, length);
        }
    }
    return text;
}

QByteArray spectrum()
{
    Random random(20039016);
    QByteArray text = "# energy mu\n";
    for (int i = 0; i < kSpectrumPoints; ++i) {
        const double e = spectrumEnergy(i);
        // An error function, not an arctan: without tails both lines have known values.
        const double step = 0.5 * (1.0 + std::erf((e - kSpectrumEdgeEv) / 3.0));
        const double mut =
            spectrumBackground(e) + kSpectrumJump * step + kSpectrumNoise * random.normal();
        char line[64];
        text.append(line, std::snprintf(line, sizeof line, "%10.3f  %.8f\n", e, mut));
    }
    return text;
}

} // namespace

Inputs::Inputs(int threadsWanted, int mapSide) : side(mapSide), threads(threadsWanted)
{
    if (!m_folder.isValid()) {
        throw std::runtime_error("cannot make a temporary folder");
    }
}

const QString &Inputs::textMapFile()
{
    if (m_textMapFile.isEmpty()) {
        m_textMapFile = path("map.txt");
        save(m_textMapFile, textMap());
    }
    return m_textMapFile;
}

const QString &Inputs::spectrumFile()
{
    if (m_spectrumFile.isEmpty()) {
        m_spectrumFile = path("spectrum.txt");
        save(m_spectrumFile, spectrum());
    }
    return m_spectrumFile;
}

const QString &Inputs::processedFile()
{
    if (m_processedFile.isEmpty()) {
        m_processedFile = path("map.tdd");
        TDData0 map;
        map.dataId = QStringLiteral("bench");
        map.width = kProcessedSide;
        map.height = kProcessedSide;
        map.data.resize(static_cast<int>(kProcessedPixels));
        map.valid.resize(static_cast<int>(kProcessedPixels));
        for (int i = 0; i < kProcessedPixels; ++i) {
            map.data[i] = processedValue(i);
            map.valid[i] = processedFlag(i);
        }
        map.minVal = 0.0;
        map.maxVal = 4.0;
        if (!map.write(m_processedFile)) {
            throw std::runtime_error("cannot write " + m_processedFile.toStdString());
        }
    }
    return m_processedFile;
}

const Sample &Inputs::sample()
{
    if (!m_sample) {
        m_sample.emplace(side);
    }
    return *m_sample;
}

TextMapPixels::Pixel TextMapPixels::next()
{
    const double reference = 1.0 + 0.4 * m_random.uniform();
    const double signal = reference * std::exp(-0.3 - 2.0 * m_random.uniform());
    Pixel pixel = {static_cast<int>(signal * 1e6), static_cast<int>(reference * 1e6), {}};
    for (int &blanks : pixel.blanks) {
        blanks = std::max(0, static_cast<int>(5.0 * m_random.uniform()) - 2); // mostly none
    }
    return pixel;
}

double spectrumEnergy(int point)
{
    return 6900.0 + 1000.0 * point / (kSpectrumPoints - 1);
}

double spectrumBackground(double energyEv)
{
    return AMutE::Victoreen{0.2, 0.05, 0.01}.at(energyEv);
}

} // namespace orvel::bench
