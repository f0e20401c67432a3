#include "bench/MapWorks.h"

#include "analysis/Checks.h"
#include "analysis/FourPoints.h"
#include "analysis/NonEquiv.h"
#include "analysis/SmallQr.h"
#include "bench/Inputs.h"
#include "bench/Random.h"

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

/// With the planes of residuals and standard deviations.
class SigmaWork : public NonEquivWork {
public:
    SigmaWork() : NonEquivWork(false) {}

    void prepare(Inputs &inputs) override
    {
        NonEquivWork::prepare(inputs);
        m_input = sample().nonEquiv();
        m_input.precision.maps = true;
    }

private:
    ResultMaps map() const override { return nonEquivMap(m_input, plan(), resources()); }

    /// The residual is what the found coefficients leave of each pixel; deviations are to each
    /// other as their formula says, by way of the inverse of the normal matrix.
    QString checkMaps(const ResultMaps &maps) const override
    {
        const RefValues model = gatherRefValues(m_input, plan());
        const NonEquivFit fit(model);
        const size_t m = model.references();
        const Rows inverse = SmallQr(fit.basis()).normalInverse();
        const double s = maps.precision()->sigma;
        double residuals = 0.0;
        for (qint64 i = 0; i < maps.size(); ++i) {
            const auto at = [&maps, i](Quantity quantity, size_t k) {
                return maps.at(quantityAt(indexOf(quantity) + static_cast<int>(k)), i);
            };
            double square = 0.0;
            for (size_t e = 0; e < fit.basis().size(); ++e) {
                double rest = absorption(e, static_cast<size_t>(i));
                for (size_t k = 0; k < fit.basis()[e].size(); ++k) {
                    rest -= fit.basis()[e][k] *
                            (k < m ? at(Quantity::DMut1, k) / (model.jumpShares[k] * model.jump)
                                   : at(Quantity::Mut0, k - m));
                }
                square += rest * rest;
            }
            residuals += square;
            const double points = static_cast<double>(fit.basis().size());
            if (!isNear(at(Quantity::Residual, 0), std::sqrt(square / points), 1e-9)) {
                return QStringLiteral("residual of pixel %1").arg(i);
            }
            const double total = at(Quantity::Amount, 0);
            double variance = 0.0; // of the first ratio
            for (size_t a = 0; a < m; ++a) {
                for (size_t b = 0; b < m; ++b) {
                    const double r = at(Quantity::Ratio1, 0);
                    variance += ((a == 0 ? 1.0 : 0.0) - r) * model.jumpShares[a] * inverse[a][b] *
                                model.jumpShares[b] * ((b == 0 ? 1.0 : 0.0) - r);
                }
            }
            const double expected = s * std::sqrt(variance) * model.jump / std::fabs(total);
            const double found = at(Quantity::SigmaRatio1, 0);
            if (!std::isnan(found) && !isNear(found / expected, 1.0, 1e-6)) {
                return QStringLiteral("deviation of pixel %1").arg(i);
            }
        }
        if (!isNear(s * s * static_cast<double>(maps.size()) / residuals, 1.0, 1e-6)) {
            return QStringLiteral("pooled noise %1").arg(s); // one degree of freedom a pixel
        }
        return {};
    }

    AnalysisInput m_input;
};

/// Pixels on the model, a quarter of them with a negative coefficient, fitted with bounds.
class BoundedWork : public NonEquivWork {
public:
    BoundedWork() : NonEquivWork(false) {}

    void prepare(Inputs &inputs) override
    {
        NonEquivWork::prepare(inputs);
        m_input = sample().nonEquiv();
        m_input.method.nonEquivBounds = NonEquivBounds::NonNegative;
        const NonEquivFit fit(gatherRefValues(m_input, plan()));
        const size_t m = fit.references().references();
        const ImageData &origin = *m_input.points[0].map;
        std::vector<Column> absorptions(m_input.points.size());
        Random random(20);
        for (qint64 i = 0; i < origin.size(); ++i) {
            std::array<double, kReferenceRows> x;
            for (double &coefficient : x) {
                coefficient = 0.1 + random.uniform();
            }
            if (i % 4 == 0) {
                x[static_cast<size_t>(i / 4) % m] -= 1.6; // as far below 0 as others are above
            }
            for (size_t e = 0; e < absorptions.size(); ++e) {
                double value = 0.2;
                for (size_t k = 0; k < m; ++k) {
                    value += x[k] * fit.basis()[e][k];
                }
                absorptions[e].push_back(value);
            }
        }
        for (size_t e = 0; e < absorptions.size(); ++e) {
            m_input.points[e].map =
                ImageData::fromAbsorption(origin.xNum(), origin.yNum(), std::move(absorptions[e]));
        }
    }

private:
    ResultMaps map() const override { return nonEquivMap(m_input, plan(), resources()); }

    QString checkMaps(const ResultMaps &maps) const override
    {
        for (qint64 i = 0; i < maps.size(); ++i) {
            const bool held = maps.heldReferences()[static_cast<size_t>(i)] != 0;
            bool negative = false;
            for (int k = 0; k < kReferenceRows; ++k) {
                negative = negative || maps.at(quantityAt(indexOf(Quantity::DMut1) + k), i) < 0;
            }
            if (held != (i % 4 == 0) || negative) {
                return QStringLiteral("bounds of pixel %1").arg(i);
            }
        }
        return {};
    }

    AnalysisInput m_input;
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

std::unique_ptr<Work> makeSigmaMap()
{
    return std::make_unique<SigmaWork>();
}

std::unique_ptr<Work> makeBoundedMap()
{
    return std::make_unique<BoundedWork>();
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
