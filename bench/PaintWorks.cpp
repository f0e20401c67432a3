#include "bench/PaintWorks.h"

#include "bench/Inputs.h"
#include "display/ChCoord.h"
#include "display/CurvePainter.h"
#include "display/MapPainter.h"
#include "display/PlotFrame.h"

#include <QImage>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvel::bench {
namespace {

constexpr int kWidth = 900;
constexpr int kHeight = 700;

// --- maps --------------------------------------------------------------------------------------

/// Waves, a slope and noise.
std::vector<double> wavyMap(int side)
{
    Random random(20039015);
    std::vector<double> values;
    values.reserve(static_cast<size_t>(side) * static_cast<size_t>(side));
    for (int j = 0; j < side; ++j) {
        for (int i = 0; i < side; ++i) {
            const double x = static_cast<double>(i) / side;
            const double y = static_cast<double>(j) / side;
            values.push_back(std::sin(9.0 * x) * std::cos(7.0 * y) + x * y + 0.1 * random.normal());
        }
    }
    return values;
}

class PaintMap : public Work {
public:
    void prepare(Inputs &inputs) override
    {
        m_side = inputs.side;
        m_values = wavyMap(m_side);
        m_coord.setArea(0.0, kHeight, kWidth, 0.0);
        m_coord.setRange(0.0, 0.0, m_side, m_side);
        takeNewData();
    }

    void run() override
    {
        takeNewData();
        paint();
    }

    QString check() const override
    {
        // By the definition of the rectangles, one after the other.
        const std::vector<int> columns = owners(
            kWidth, [this](int i) { return m_coord.sx(i); }, 1);
        const std::vector<int> rows = owners(
            kHeight, [this](int j) { return m_coord.sy(j); }, -1);
        const auto [low, high] = std::minmax_element(m_values.begin(), m_values.end());
        for (int y = 0; y < kHeight; ++y) {
            for (int x = 0; x < kWidth; ++x) {
                const int column = columns[static_cast<size_t>(x)];
                const int row = rows[static_cast<size_t>(y)];
                const QRgb expected = column < 0 || row < 0
                                          ? qRgb(255, 255, 255)
                                          : colourOf(valueAt(column, row), *low, *high);
                if (m_target.pixel(x, y) != expected) {
                    return QStringLiteral("screen pixel %1, %2").arg(x).arg(y);
                }
            }
        }
        return {};
    }

protected:
    /// What a window does after a calculation: new values, limits from them.
    void takeNewData()
    {
        m_owner = std::make_shared<int>();
        m_map = {m_values.data(), static_cast<qint64>(m_values.size()), m_side, m_side, m_owner};
        const ValueLimits limits = limitsOf(m_map);
        m_scale.setLimits(limits.low, limits.high);
    }
    void paint()
    {
        QPainter painter(&m_target);
        m_painter.paint(painter, m_coord, m_map, m_scale, false);
    }
    ChCoord &coord() { return m_coord; }

private:
    /// step  1 when edge(i) grows with i, else -1
    template <class Edge> std::vector<int> owners(int size, Edge edge, int step) const
    {
        std::vector<int> owner(static_cast<size_t>(size), -1);
        for (int i = 0; i < m_side; ++i) {
            const int from = static_cast<int>(step > 0 ? edge(i) : edge(i + 1));
            const int to = static_cast<int>(step > 0 ? edge(i + 1) : edge(i));
            for (int s = std::max(0, from); s < std::min(size, to); ++s) {
                owner[static_cast<size_t>(s)] = i;
            }
        }
        return owner;
    }
    double valueAt(int column, int row) const
    {
        return m_values[static_cast<size_t>(row) * static_cast<size_t>(m_side) +
                        static_cast<size_t>(column)];
    }
    /// Black, red, yellow, white in 256 steps each.
    static QRgb colourOf(double value, double low, double high)
    {
        constexpr int kEntries = 768;
        const double at = (kEntries - 0.0) / (high - low) * (value - low) + 0.0;
        const int k = std::clamp(static_cast<int>(at), 0, kEntries - 1);
        const auto component = [k](int c) { return std::clamp(k - 256 * c, 0, 255); };
        return qRgb(component(0), component(1), component(2));
    }

    int m_side = 0;
    std::vector<double> m_values;
    std::shared_ptr<int> m_owner;
    MapValues m_map;
    ChCoord m_coord;
    ColourScale m_scale;
    MapPainter m_painter;
    QImage m_target{kWidth, kHeight, QImage::Format_RGB32};
};

class PaintMapAgain : public PaintMap {
public:
    void run() override { paint(); }
};

/// To and fro, a step a run.
class PanMap : public PaintMap {
public:
    void run() override
    {
        constexpr int kSteps = 25;
        constexpr double kAcross = 4.0; // [screen pixels] a step, as of a hand that drags
        constexpr double kAlong = 3.0;
        const double direction = m_step++ % (2 * kSteps) < kSteps ? 1.0 : -1.0;
        const double dx = direction * coord().rdx(kAcross);
        const double dy = direction * coord().rdy(kAlong);
        coord().setRange(coord().xMin() + dx, coord().yMin() + dy, coord().xMax() + dx,
                         coord().yMax() + dy);
        paint();
    }

private:
    int m_step = 0;
};

// --- graphs ------------------------------------------------------------------------------------

class PaintGraph : public Work {
public:
    explicit PaintGraph(int pixelRatio)
        : m_target(kWidth * pixelRatio, kHeight * pixelRatio, QImage::Format_RGB32)
    {
        m_target.setDevicePixelRatio(pixelRatio);
    }

    void prepare(Inputs &) override
    {
        Random random(20039016);
        for (int i = 0; i < kSpectrumPoints; ++i) {
            const double e = spectrumEnergy(i);
            const double step = 0.5 * (1.0 + std::erf((e - kSpectrumEdgeEv) / 3.0));
            m_energies.push_back(e);
            m_values.push_back(spectrumBackground(e) + kSpectrumJump * step +
                               kSpectrumNoise * random.normal());
        }
        const auto [low, high] = std::minmax_element(m_values.begin(), m_values.end());
        m_coord.setArea(0.0, kHeight, kWidth, 0.0);
        m_coord.setFrameByMargins();
        m_coord.setRange(m_energies.front(), *low, m_energies.back(), *high);
    }

    void run() override
    {
        QPainter painter(&m_target);
        painter.fillRect(0, 0, kWidth, kHeight, Qt::white);
        drawCurve(painter, m_coord, m_energies.data(), m_values.data(), m_energies.size(),
                  Qt::blue);
        drawPlotFrame(painter, m_coord, false);
        drawAxisTitles(painter, m_coord, QStringLiteral("Eng.[eV]"), QStringLiteral("mut"));
    }

    QString check() const override
    {
        // Blue is where the points are, column by column of the device, and nowhere else.
        const double ratio = m_target.devicePixelRatioF();
        const int left = static_cast<int>(m_coord.frameX0() * ratio) + 2;
        const int right = static_cast<int>(m_coord.frameX1() * ratio) - 2;
        for (int x = left; x < right; ++x) {
            double top = std::numeric_limits<double>::infinity();
            double bottom = -top;
            for (size_t i = 0; i < m_energies.size(); ++i) {
                // At less than two points a pixel the neighbours' belong to the line as well.
                if (std::fabs(m_coord.sx(m_energies[i]) * ratio - (x + 0.5)) < 2.0) {
                    top = std::min(top, m_coord.sy(m_values[i]) * ratio);
                    bottom = std::max(bottom, m_coord.sy(m_values[i]) * ratio);
                }
            }
            int blue = 0;
            for (int y = 2; y < m_target.height() - 2; ++y) {
                const QColor colour(m_target.pixel(x, y));
                if (colour.blue() > colour.red() + 60) {
                    ++blue;
                    if (y + 1 < top - 2.0 || y > bottom + 2.0) {
                        return QStringLiteral("device pixel %1, %2").arg(x).arg(y);
                    }
                }
            }
            if (blue == 0) {
                return QStringLiteral("nothing in device column %1").arg(x);
            }
        }
        return {};
    }

private:
    std::vector<double> m_energies;
    std::vector<double> m_values;
    ChCoord m_coord;
    QImage m_target;
};

} // namespace

std::unique_ptr<Work> makePaintMap()
{
    return std::make_unique<PaintMap>();
}

std::unique_ptr<Work> makePaintMapAgain()
{
    return std::make_unique<PaintMapAgain>();
}

std::unique_ptr<Work> makePanMap()
{
    return std::make_unique<PanMap>();
}

std::unique_ptr<Work> makePaintGraph()
{
    return std::make_unique<PaintGraph>(1);
}

std::unique_ptr<Work> makePaintGraph2x()
{
    return std::make_unique<PaintGraph>(2);
}

} // namespace orvel::bench
