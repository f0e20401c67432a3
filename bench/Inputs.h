#pragma once

#include "bench/Random.h"
#include "bench/Sample.h"

#include <QString>
#include <QTemporaryDir>

#include <optional>

namespace orvel::bench {

/// Inputs of the works: each made once, at its first use, the same numbers in every run.
class Inputs {
public:
    /// mapSide  pixels a side of the images of the map works
    Inputs(int threadsWanted, int mapSide);

    const int side;
    const int threads; ///< for every work that takes some; 0: all cores

    const QString &textMapFile();
    const QString &spectrumFile();
    const QString &processedFile();
    const Sample &sample();

    /// A path in the folder of the inputs, which goes away with them.
    QString path(const char *name) const { return m_folder.filePath(QLatin1String(name)); }

private:
    QTemporaryDir m_folder;
    QString m_textMapFile;
    QString m_spectrumFile;
    QString m_processedFile;
    std::optional<Sample> m_sample;
};

// --- text map ----------------------------------------------------------------------------------

inline constexpr int kMapSide = 1000; ///< pixels a side of all maps but the processed one
inline constexpr int kMapPixels = kMapSide * kMapSide;

/// Positions of pixel i: its column and row.
inline int columnOf(int i)
{
    return i % kMapSide;
}
inline int rowOf(int i)
{
    return i / kMapSide;
}

/// Intensities of the text map's pixels one after the other, as its lines have them: six decimals.
class TextMapPixels {
public:
    struct Pixel {
        int signal; ///< [millionths]
        int reference;
        int blanks[3]; ///< beyond the one that stands between two items
    };

    Pixel next();

private:
    Random m_random{20039011};
};

// --- spectrum ----------------------------------------------------------------------------------

inline constexpr int kSpectrumPoints = 2000;
inline constexpr double kSpectrumNoise = 1e-3;
inline constexpr double kSpectrumJump = 0.8;
inline constexpr double kSpectrumEdgeEv = 7120.0;

/// Energies from 6900 to 7900 eV.
double spectrumEnergy(int point);
/// Its background; behind the edge the jump is added.
double spectrumBackground(double energyEv);

// --- processed map -----------------------------------------------------------------------------

inline constexpr int kProcessedSide = 4096;
inline constexpr qint64 kProcessedPixels = qint64(kProcessedSide) * kProcessedSide;

/// Value of pixel i: scattered over [0, 4), so that a misplaced one shows.
inline double processedValue(qint64 i)
{
    return static_cast<double>(static_cast<quint32>(i * 2654435761LL)) * 0x1p-30;
}
inline bool processedFlag(qint64 i)
{
    return i % 7 != 0;
}

} // namespace orvel::bench
