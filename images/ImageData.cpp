#include "images/ImageData.h"

#include <algorithm>

#include "base/Parallel.h"

#include <cmath>

namespace orvel {

double absorptionOf(double signal, double reference)
{
    if (reference == 0.0) {
        return signal;
    }
    if (signal == 0.0) {
        return 1.0;
    }
    return std::log(reference / signal);
}

void fillAbsorption(const double *signal, const double *reference, std::size_t n, double *out,
                    int threads)
{
    constexpr std::size_t kPerThread = 65536;
    inParallel(n, kPerThread, threadsFor(threads), [=](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            out[i] = absorptionOf(signal[i], reference[i]);
        }
    });
}

std::shared_ptr<const ImageData> ImageData::fromColumns(QStringList header, int xNum, int yNum,
                                                        MapColumns columns)
{
    Q_ASSERT(columns.x.size() == columns.signal.size() &&
             columns.y.size() == columns.signal.size() &&
             columns.reference.size() == columns.signal.size());
    std::shared_ptr<ImageData> image(new ImageData);
    image->m_header = std::move(header);
    image->m_xNum = xNum;
    image->m_yNum = yNum;
    image->m_columns = std::move(columns);
    image->m_absorption.resize(image->m_columns.signal.size());
    fillAbsorption(image->m_columns.signal.data(), image->m_columns.reference.data(),
                   image->m_absorption.size(), image->m_absorption.data());
    return image;
}

std::shared_ptr<const ImageData> ImageData::fromAbsorption(int xNum, int yNum, Column absorption)
{
    std::shared_ptr<ImageData> image(new ImageData);
    image->m_xNum = xNum;
    image->m_yNum = yNum;
    image->m_processed = true;
    image->m_columns.signal = std::move(absorption);
    return image;
}

PixelRecord ImageData::pixel(qint64 i) const
{
    PixelRecord record;
    if (inside(i)) {
        record.x = positionX(i);
        record.y = positionY(i);
        record.signal = m_columns.signal[static_cast<size_t>(i)];
        record.reference = m_processed ? 0.0 : m_columns.reference[static_cast<size_t>(i)];
    }
    return record;
}

double ImageData::positionX(qint64 i) const
{
    if (!inside(i)) {
        return 0.0;
    }
    return m_processed ? static_cast<double>(i % m_xNum) : m_columns.x[static_cast<size_t>(i)];
}

double ImageData::positionY(qint64 i) const
{
    if (!inside(i)) {
        return 0.0;
    }
    if (!m_processed) { // whose width may be 0
        return m_columns.y[static_cast<size_t>(i)];
    }
    const qint64 row = i / m_xNum;
    return static_cast<double>(row);
}

bool ImageData::hasCounts() const
{
    if (m_hasCounts < 0) { // any thread may find out, all find the same
        const auto all = [](const Column &column, auto is) {
            return std::all_of(column.begin(), column.end(), is);
        };
        const auto isCount = [](double value) { return value >= 1.0; };
        m_hasCounts = !m_processed && size() > 0 && all(m_columns.signal, isCount) &&
                              all(m_columns.reference, isCount) &&
                              !all(m_columns.reference, [](double value) { return value == 1.0; })
                          ? 1
                          : 0;
    }
    return m_hasCounts == 1;
}

bool ImageData::hasDeadPixels() const
{
    if (m_hasDeadPixels < 0) {
        bool any = false;
        for (std::size_t i = 0; i < static_cast<std::size_t>(size()) && !any; ++i) {
            any = isDead(i);
        }
        m_hasDeadPixels = any ? 1 : 0;
    }
    return m_hasDeadPixels == 1;
}

} // namespace orvel
