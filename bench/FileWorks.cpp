#include "bench/FileWorks.h"

#include "analysis/ResultFile.h"
#include "bench/Inputs.h"
#include "images/A2DData.h"
#include "images/TDData0.h"

#include <QFile>

#include <cmath>
#include <cstring>
#include <optional>

namespace orvel::bench {
namespace {

class ReadMap : public Work {
public:
    void prepare(Inputs &inputs) override { m_path = inputs.textMapFile(); }
    void run() override { m_loaded = m_data.loadMap(m_path); }

    QString check() const override
    {
        if (!m_loaded || m_data.xNum() != kMapSide || m_data.yNum() != kMapSide ||
            m_data.pixelCount() != kMapPixels) {
            return QStringLiteral("grid of %1 x %2 for %3 pixels")
                .arg(m_data.xNum())
                .arg(m_data.yNum())
                .arg(m_data.pixelCount());
        }
        TextMapPixels pixels;
        for (int i = 0; i < kMapPixels; ++i) {
            const TextMapPixels::Pixel expected = pixels.next();
            const PixelRecord pixel = m_data.pixel(i);
            // Integers over 1e6 are the doubles next to their six decimals.
            if (pixel.x != columnOf(i) || pixel.y != rowOf(i) ||
                pixel.signal != expected.signal / 1e6 ||
                pixel.reference != expected.reference / 1e6 ||
                m_data.map()->absorptionPlane()[static_cast<size_t>(i)] !=
                    std::log(pixel.reference / pixel.signal)) {
                return QStringLiteral("pixel %1").arg(i);
            }
        }
        return {};
    }

private:
    QString m_path;
    A2DData m_data;
    bool m_loaded = false;
};

/// Ratios about one half; amounts over many powers of ten, some 0; valences such that their column
/// looks like energies, with four digits before the point.
class WriteMap : public Work {
public:
    void prepare(Inputs &inputs) override
    {
        m_path = inputs.path("result.txt");
        MapColumns columns;
        columns.signal.assign(kMapPixels, 1.0);
        columns.reference.assign(kMapPixels, 1.0);
        for (int i = 0; i < kMapPixels; ++i) {
            columns.x.push_back(columnOf(i));
            columns.y.push_back(rowOf(i));
        }
        m_maps.emplace(Method::LeastSquares,
                       ImageData::fromColumns({QStringLiteral("# bench")}, kMapSide, kMapSide,
                                              std::move(columns)));
        double *ratio = m_maps->addPlane(Quantity::Ratio1);
        double *amount = m_maps->addPlane(Quantity::Amount);
        Random random(20039014);
        for (int i = 0; i < kMapPixels; ++i) {
            ratio[i] = 0.5 + 0.3 * random.normal();
            amount[i] = i % 97 == 0 ? 0.0 : std::exp(4.0 * random.normal() - 2.0);
        }
    }

    void run() override { m_written = writeResultFile(m_path, &*m_maps, {{}, {kLow, kHigh}}); }

    QString check() const override
    {
        constexpr int kStride = 101; // every line would take the toolkit seconds to word
        QFile file(m_path);
        if (!m_written || !file.open(QIODevice::ReadOnly)) {
            return QStringLiteral("the file is not there");
        }
        if (file.readLine() != "# klyv result map V1.0\n" || file.readLine() != "# bench\n" ||
            file.readLine() != "\n") {
            return QStringLiteral("its header");
        }
        for (int i = 0; i < kMapPixels; ++i) {
            const QByteArray line = file.readLine();
            if (line.isEmpty() || (i % kStride == 0 && line != expectedLine(i))) {
                return QStringLiteral("line of pixel %1: %2").arg(i).arg(QString::fromLatin1(line));
            }
        }
        return file.atEnd() ? QString() : QStringLiteral("more lines than pixels");
    }

private:
    static constexpr double kLow = 7100.0;
    static constexpr double kHigh = 7120.0;

    QByteArray expectedLine(int i) const
    {
        const double ratio = m_maps->at(Quantity::Ratio1, i);
        return QStringLiteral(" %1 %2    %3 %4 %5\n")
            .arg(columnOf(i), 10)
            .arg(rowOf(i), 10)
            .arg(ratio, 10)
            .arg(ratio * kLow + (1 - ratio) * kHigh, 10)
            .arg(m_maps->at(Quantity::Amount, i), 10)
            .toLatin1();
    }

    QString m_path;
    std::optional<ResultMaps> m_maps;
    bool m_written = false;
};

class ReadSpectrum : public Work {
public:
    void prepare(Inputs &inputs) override { m_path = inputs.spectrumFile(); }

    void run() override
    {
        AMutE spectrum;
        spectrum.setEdge(kSpectrumEdgeEv - 50.0, kSpectrumEdgeEv, kSpectrumEdgeEv + 100.0);
        spectrum.readFile(m_path);
        m_spectrum = spectrum;
    }

    QString check() const override
    {
        // A line through hundreds of noisy points is far better than one of them.
        constexpr double kTolerance = kSpectrumNoise;
        if (!m_spectrum.isValid() || m_spectrum.points().size() != kSpectrumPoints) {
            return QStringLiteral("%1 points").arg(m_spectrum.points().size());
        }
        for (int i = 0; i < kSpectrumPoints; ++i) {
            if (std::fabs(m_spectrum.points()[i].energyEv - spectrumEnergy(i)) > 0.0005001) {
                return QStringLiteral("energy of point %1").arg(i); // the file has three decimals
            }
        }
        const double pre = m_spectrum.pre(7000.0) - spectrumBackground(7000.0);
        const double post = m_spectrum.post(7500.0) - spectrumBackground(7500.0) - kSpectrumJump;
        if (!(std::fabs(pre) < kTolerance && std::fabs(post) < kTolerance)) {
            return QStringLiteral("lines are off by %1 and %2").arg(pre).arg(post);
        }
        return {};
    }

private:
    QString m_path;
    AMutE m_spectrum;
};

class ReadProcessed : public Work {
public:
    void prepare(Inputs &inputs) override { m_path = inputs.processedFile(); }

    void run() override
    {
        m_map.reset(); // memory of its own each time, as for every file that a user opens
        m_map.emplace();
        m_read = m_map->read(m_path);
    }

    QString check() const override
    {
        if (!m_read || m_map->width != kProcessedSide || m_map->height != kProcessedSide) {
            return QStringLiteral("it was not read");
        }
        for (int i = 0; i < kProcessedPixels; ++i) {
            if (m_map->data[i] != processedValue(i) || m_map->valid[i] != processedFlag(i)) {
                return QStringLiteral("pixel %1").arg(i);
            }
        }
        return {};
    }

private:
    QString m_path;
    std::optional<TDData0> m_map;
    bool m_read = false;
};

/// What reading those bytes costs at least on this machine.
class RawRead : public Work {
public:
    void prepare(Inputs &inputs) override { m_path = inputs.processedFile(); }

    void run() override
    {
        m_bytes.reset();
        QFile file(m_path);
        m_size = file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) ? file.size() : 0;
        m_bytes.reset(new char[static_cast<size_t>(m_size)]); // not zeroed
        m_read = file.read(m_bytes.get(), m_size);
    }

    QString check() const override
    {
        constexpr qint64 kValues = kProcessedPixels * qint64(sizeof(double));
        const qint64 header = m_size - kValues - kProcessedPixels;
        if (m_read != m_size || header < 1) {
            return QStringLiteral("%1 of %2 bytes").arg(m_read).arg(m_size);
        }
        for (qint64 i = 0; i < kProcessedPixels; ++i) {
            double value = 0.0;
            std::memcpy(&value, &m_bytes[static_cast<size_t>(header) + sizeof value * size_t(i)],
                        sizeof value);
            if (value != processedValue(i)) {
                return QStringLiteral("value %1").arg(i);
            }
        }
        return {};
    }

private:
    QString m_path;
    std::unique_ptr<char[]> m_bytes;
    qint64 m_size = 0;
    qint64 m_read = 0;
};

} // namespace

std::unique_ptr<Work> makeReadMap()
{
    return std::make_unique<ReadMap>();
}

std::unique_ptr<Work> makeWriteMap()
{
    return std::make_unique<WriteMap>();
}

std::unique_ptr<Work> makeReadSpectrum()
{
    return std::make_unique<ReadSpectrum>();
}

std::unique_ptr<Work> makeReadProcessed()
{
    return std::make_unique<ReadProcessed>();
}

std::unique_ptr<Work> makeRawRead()
{
    return std::make_unique<RawRead>();
}

} // namespace orvel::bench
