#include "bench/MapWorks.h"

#include "analysis/Checks.h"
#include "analysis/FourPoints.h"
#include "analysis/NonEquiv.h"
#include "bench/Inputs.h"

#include <cmath>
#include <optional>
#include <stdexcept>

namespace orvel::bench {
namespace {

/// What both methods share: plan, kept planes, the logarithms.
class MapWork : public Work {
public:
    explicit MapWork(bool takeLogarithms) : m_takeLogarithms(takeLogarithms) {}

    void prepare(Inputs &inputs) override
    {
        m_sample = &inputs.sample();
        m_plan = checkMap(input());
        m_resources = {inputs.threads, std::make_shared<ColumnPool>()};
        if (!m_plan.messages.empty() || m_plan.used.size() != m_absorptions.size()) {
            throw std::runtime_error("the checks do not let the map be computed");
        }
        if (m_takeLogarithms) {
            for (Sample::Column &plane : m_absorptions) {
                plane.resize(m_sample->signalColumns()[0].size());
            }
        }
    }

    void run() override
    {
        if (m_takeLogarithms) {
            for (size_t k = 0; k < m_absorptions.size(); ++k) {
                const Sample::Column &signal = m_sample->signalColumns()[k];
                fillAbsorption(signal.data(), m_sample->referenceColumns()[k].data(), signal.size(),
                               m_absorptions[k].data(), m_resources.threads);
            }
        }
        m_maps.reset(); // whose planes the next ones take
        m_maps.emplace(map());
    }

    QString check() const override
    {
        for (size_t k = 0; m_takeLogarithms && k < m_absorptions.size(); ++k) {
            for (size_t i = 0; i < m_absorptions[k].size(); ++i) {
                if (m_absorptions[k][i] != std::log(m_sample->referenceColumns()[k][i] /
                                                    m_sample->signalColumns()[k][i])) {
                    return QStringLiteral("absorption %1 of image %2").arg(i).arg(k);
                }
            }
        }
        return checkMaps(*m_maps);
    }

protected:
    virtual const AnalysisInput &input() const = 0;
    virtual ResultMaps map() const = 0;
    virtual QString checkMaps(const ResultMaps &maps) const = 0;

    const Sample &sample() const { return *m_sample; }
    const Plan &plan() const { return m_plan; }
    const MapResources &resources() const { return m_resources; }
    double absorption(size_t point, size_t pixel) const
    {
        return input().points[point].map->absorptionPlane()[pixel];
    }

private:
    bool m_takeLogarithms;
    const Sample *m_sample = nullptr;
    Plan m_plan;
    MapResources m_resources;
    std::array<Sample::Column, kPointRows> m_absorptions;
    std::optional<ResultMaps> m_maps;
};

/// Whether a value is there and differs by no more than a tolerance; false for not-a-number.
bool isNear(double value, double expected, double tolerance)
{
    return std::fabs(value - expected) <= tolerance;
}

class NonEquivWork : public MapWork {
public:
    using MapWork::MapWork;

private:
    const AnalysisInput &input() const override { return sample().nonEquiv(); }
    ResultMaps map() const override { return nonEquivMap(input(), plan(), resources()); }

    /// A least-squares solution leaves a residual that is orthogonal to every column of the model;
    /// and its mean over a million noisy pixels is what the sample was made of.
    QString checkMaps(const ResultMaps &maps) const override
    {
        constexpr double kRounding = 1e-10; // a hundred times what rounding does here
        // Noise of a pixel, a few thousandths, over all of them.
        const double meanAmount =
            2e-2 / std::sqrt(static_cast<double>(
                       maps.size())); // noise of a pixel, a few thousandths, over 1e6 of them
        const RefValues model = gatherRefValues(input(), plan());
        std::array<double, kReferenceRows> means = {};
        const auto pixels = static_cast<size_t>(maps.size());
        for (size_t i = 0; i < pixels; ++i) {
            const auto at = [&maps, i](int quantity) {
                return maps.at(quantityAt(quantity), static_cast<qint64>(i));
            };
            std::array<double, kReferenceRows> amounts; // multiples of the reference spectra
            double ratios = 0.0;
            double valence = 0.0;
            for (size_t c = 0; c < amounts.size(); ++c) {
                const int row = static_cast<int>(c);
                const double jump = model.jumpShares[c] * model.jump;
                amounts[c] = at(indexOf(Quantity::DMut1) + row) / jump;
                means[c] += amounts[c] / static_cast<double>(pixels);
                ratios += at(row);
                valence += at(row) * model.valences[c];
            }
            const double scale = 1.0 + std::fabs(valence); // a pixel of hardly any amount
            if (!isNear(ratios, 1.0, kRounding * scale) ||
                !isNear(at(indexOf(Quantity::Valence)), valence, kRounding * scale)) {
                return QStringLiteral("ratios of pixel %1").arg(i);
            }
            if (!isOrthogonal(model, amounts, at, i, kRounding)) {
                return QStringLiteral("fit of pixel %1").arg(i);
            }
        }
        for (size_t c = 0; c < means.size(); ++c) {
            if (!isNear(means[c], sample().meanAmounts()[c], meanAmount)) {
                return QStringLiteral("mean amount of compound %1: %2 instead of %3")
                    .arg(c)
                    .arg(means[c])
                    .arg(sample().meanAmounts()[c]);
            }
        }
        return {};
    }

    template <class Values>
    bool isOrthogonal(const RefValues &model, const std::array<double, kReferenceRows> &amounts,
                      const Values &at, size_t pixel, double tolerance) const
    {
        std::array<double, kReferenceRows + 3> products = {};
        for (size_t k = 0; k < model.energiesEv.size(); ++k) {
            const double lambda = AMutE::kHcEvAngstrom / model.energiesEv[k];
            const double cube = lambda * lambda * lambda;
            const double columns[] = {model.values[0][k],
                                      model.values[1][k],
                                      model.values[2][k],
                                      model.values[3][k],
                                      1.0,
                                      cube,
                                      cube * lambda};
            double residual = absorption(k, pixel) - at(indexOf(Quantity::Mut0)) -
                              at(indexOf(Quantity::C1)) * cube -
                              at(indexOf(Quantity::C2)) * (cube * lambda);
            for (size_t c = 0; c < amounts.size(); ++c) {
                residual -= amounts[c] * columns[c];
            }
            for (size_t c = 0; c < products.size(); ++c) {
                products[c] += columns[c] * residual;
            }
        }
        for (const double product : products) {
            if (!isNear(product, 0.0, tolerance)) {
                return false;
            }
        }
        return true;
    }
};

class FourPointWork : public MapWork {
public:
    using MapWork::MapWork;

private:
    const AnalysisInput &input() const override { return sample().fourPoints(); }
    ResultMaps map() const override { return fourPointsMap(input(), plan(), resources()); }

    QString checkMaps(const ResultMaps &maps) const override
    {
        constexpr double kTolerance = 1e-9; // a thousand times what rounding does here
        const double valenceA = input().references[0].valence;
        const double valenceB = input().references[3].valence;
        for (qint64 i = 0; i < maps.size(); ++i) {
            const FourPointsResult expected = solve(static_cast<size_t>(i));
            const double scale = 1.0 + std::fabs(expected.a) + std::fabs(expected.amount);
            const double a = maps.at(Quantity::Ratio1, i);
            if (!isNear(a, expected.a, kTolerance * scale) ||
                !isNear(maps.at(Quantity::Amount, i), expected.amount, kTolerance * scale) ||
                maps.at(Quantity::Valence, i) != a * valenceA + (1 - a) * valenceB) {
                return QStringLiteral("pixel %1: %2 instead of %3").arg(i).arg(a).arg(expected.a);
            }
        }
        return {};
    }

    /// The line T = S / g + m + k E by Cramer's rule on sums about the means, and from it the
    /// fraction of A: a way of its own to the same solution.
    FourPointsResult solve(size_t pixel) const
    {
        const auto &points = input().points;
        const auto v = static_cast<size_t>(plan().vPoint);
        const auto s = [&points](size_t k) {
            return points[k].referenceMu[0] + points[k].referenceMu[3];
        };
        const auto others = static_cast<double>(points.size() - 1);
        double meanE = 0.0;
        double meanT = 0.0;
        double meanS = 0.0;
        for (size_t k = 0; k < points.size(); ++k) {
            if (k != v) {
                meanE += points[k].energyEv / others;
                meanT += absorption(k, pixel) / others;
                meanS += s(k) / others;
            }
        }
        double ee = 0.0;
        double et = 0.0;
        double tt = 0.0;
        double es = 0.0;
        double ts = 0.0;
        for (size_t k = 0; k < points.size(); ++k) {
            if (k != v) {
                const double de = points[k].energyEv - meanE;
                const double dt = absorption(k, pixel) - meanT;
                const double ds = s(k) - meanS;
                ee += de * de;
                et += de * dt;
                tt += dt * dt;
                es += de * ds;
                ts += dt * ds;
            }
        }
        const double determinant = ee * tt - et * et;
        const double g = (ee * ts - et * es) / determinant;
        const double k = -(es * tt - ts * et) / determinant / g;
        const double m = meanT - meanS / g - k * meanE;

        const double r =
            input().references[0].spectrum.edgeJump() / input().references[3].spectrum.edgeJump();
        const double u = g / (r + 1.0);
        const double shareA = points[v].referenceMu[0] / (r * u);
        const double shareB = points[v].referenceMu[3] / u;
        const double line = m + k * points[v].energyEv;
        return {(absorption(v, pixel) - line - shareB) / (shareA - shareB), 2.0 / g};
    }
};

} // namespace

std::unique_ptr<Work> makeNonEquivMap()
{
    return std::make_unique<NonEquivWork>(true);
}

std::unique_ptr<Work> makeNonEquivMapAgain()
{
    return std::make_unique<NonEquivWork>(false);
}

std::unique_ptr<Work> makeFourPointMap()
{
    return std::make_unique<FourPointWork>(true);
}

std::unique_ptr<Work> makeFourPointMapAgain()
{
    return std::make_unique<FourPointWork>(false);
}

} // namespace orvel::bench
