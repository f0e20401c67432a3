#include "analysis/DesignSearch.h"

#include <cmath>
#include <limits>
#include <numeric>
#include <random>
#include <utility>

namespace orvel {
namespace {

constexpr double kInfinite = std::numeric_limits<double>::infinity();
/// Less is rounding, and would leave which of two equals is found to the compiler.
constexpr double kBetter = 1.0 - 1e-9;

/// Same at every place: the standard fixes the engine, not its distributions.
class Draws {
public:
    explicit Draws(std::uint32_t seed) : m_engine(seed) {}

    /// 0 to bound - 1, the bias of the remainder is below 1e-6.
    size_t below(size_t bound) { return m_engine() % bound; }
    void shuffle(std::vector<int> &list)
    {
        for (size_t i = list.size(); i > 1; --i) {
            std::swap(list[i - 1], list[below(i)]);
        }
    }

private:
    std::mt19937 m_engine;
};

/// All but V ascending: a design is one design in whatever order its energies came.
void arrange(Design &design, bool withV)
{
    const auto first = static_cast<size_t>(withV ? 1 : 0);
    for (size_t i = first + 1; i < static_cast<size_t>(design.count); ++i) {
        for (size_t k = i; k > first && design.at[k] < design.at[k - 1]; --k) {
            std::swap(design.at[k], design.at[k - 1]);
        }
    }
}

/// Adds candidates in the order of a list as long as they fit, up to `most` in all.
Design filled(const DesignGround &ground, Design design, const std::vector<int> &list, int most)
{
    for (const int candidate : list) {
        if (design.count < most && ground.allows(design, design.count, candidate)) {
            design.at[static_cast<size_t>(design.count++)] = candidate;
        }
    }
    arrange(design, ground.withV);
    return design;
}

/// Energies spread evenly over the places that can be had; count 0: there are too few.
/// vPlaces  candidates for V, the best first; one that is -1 where there is none
Design spread(const DesignGround &ground, int points, const std::vector<int> &vPlaces)
{
    const size_t others = static_cast<size_t>(ground.withV ? points - 1 : points);
    for (const int v : vPlaces) {
        const std::vector<int> places = packedPlaces(ground, v);
        if (places.size() < others) {
            continue;
        }
        Design design;
        if (v >= 0) {
            design.at[static_cast<size_t>(design.count++)] = v;
        }
        for (size_t i = 0; i < others; ++i) {
            design.at[static_cast<size_t>(design.count++)] =
                places[i * (places.size() - 1) / (others - 1)];
        }
        return design;
    }
    return {};
}

/// A random design; count below `points` where the draw blocked itself.
Design randomDesign(const DesignGround &ground, int points, Draws &draws)
{
    std::vector<int> list(ground.energiesEv.size());
    std::iota(list.begin(), list.end(), 0);
    Design design;
    if (ground.withV) {
        design.at[0] = static_cast<int>(draws.below(list.size()));
        design.count = 1;
    }
    draws.shuffle(list);
    return filled(ground, design, list, points);
}

/// A design with all but two of its energies kept; count below where the draw blocked itself.
Design kicked(const DesignGround &ground, Design design, Draws &draws)
{
    const int points = design.count;
    for (int k = 0; k < 2; ++k) { // V is moved, the others are drawn anew
        const auto position = draws.below(static_cast<size_t>(design.count));
        if (ground.withV && position == 0) {
            const int v = static_cast<int>(draws.below(ground.energiesEv.size()));
            if (ground.allows(design, 0, v)) {
                design.at[0] = v;
            }
            continue;
        }
        design.at[position] = design.at[static_cast<size_t>(--design.count)];
    }
    std::vector<int> list(ground.energiesEv.size());
    std::iota(list.begin(), list.end(), 0);
    draws.shuffle(list);
    return filled(ground, design, list, points);
}

/// Replaces one energy after the other by the best candidate until nothing improves.
class Exchange {
public:
    Exchange(const DesignGround &ground, const DesignCost &cost) : m_ground(ground), m_cost(cost) {}

    void from(Design design)
    {
        double value = m_cost(design);
        for (bool improved = true; improved;) {
            improved = false;
            for (int position = 0; position < design.count; ++position) {
                improved = replace(design, position, value) || improved;
            }
        }
        const bool better = value < m_best * kBetter;
        const bool equalAndLower =
            value * kBetter <= m_best && design.at < m_found.at && std::isfinite(value);
        if (better || equalAndLower) {
            m_best = value;
            m_found = design;
        }
    }

    /// Exchanges two energies at a time, beside the best design, until not even that improves it.
    void polish()
    {
        for (double before = kInfinite; m_best < before;) {
            before = m_best;
            const Design design = m_found;
            for (int first = 0; first < design.count; ++first) {
                for (int second = first + 1; second < design.count; ++second) {
                    replaceTwo(design, first, second);
                }
            }
        }
    }

    double best() const { return m_best; }
    const Design &found() const { return m_found; }

private:
    bool replace(Design &design, int position, double &value) const
    {
        Design best = design;
        for (int c = 0; c < m_ground.count(); ++c) {
            if (!m_ground.allows(design, position, c)) {
                continue;
            }
            Design changed = design;
            changed.at[static_cast<size_t>(position)] = c;
            arrange(changed, m_ground.withV);
            const double found = m_cost(changed);
            if (found < value * kBetter || (std::isfinite(found) && !std::isfinite(value))) {
                value = found;
                best = changed;
            }
        }
        const bool improved = best.at != design.at;
        design = best;
        return improved;
    }

    void replaceTwo(const Design &design, int first, int second)
    {
        Design changed = design;
        for (int c = 0; c < m_ground.count(); ++c) {
            changed.at[static_cast<size_t>(second)] = design.at[static_cast<size_t>(second)];
            changed.at[static_cast<size_t>(first)] = c;
            if (!m_ground.mayBe(first, c)) {
                continue;
            }
            for (int d = m_ground.withV && first == 0 ? 0 : c + 1; d < m_ground.count(); ++d) {
                changed.at[static_cast<size_t>(second)] = d;
                if (m_ground.allows(changed, first, c) && m_ground.allows(changed, second, d)) {
                    const double found = m_cost(changed);
                    if (found < m_best * kBetter) {
                        m_best = found;
                        m_found = changed;
                        arrange(m_found, m_ground.withV);
                    }
                }
            }
        }
    }

    const DesignGround &m_ground;
    const DesignCost &m_cost;
    double m_best = kInfinite;
    Design m_found;
};

} // namespace

bool DesignGround::areApart(int i, int j) const
{
    const double apart =
        std::fabs(energiesEv[static_cast<size_t>(i)] - energiesEv[static_cast<size_t>(j)]);
    return i != j && apart >= spacingEv * (1.0 - 1e-12); // multiples of a step are rounded
}

bool DesignGround::mayBe(int position, int candidate) const
{
    return mayBeOther[static_cast<size_t>(candidate)] != 0 || (withV && position == 0);
}

bool DesignGround::allows(const Design &design, int position, int candidate) const
{
    if (!mayBe(position, candidate)) {
        return false;
    }
    for (int p = 0; p < design.count; ++p) {
        if (p != position && !areApart(design.at[static_cast<size_t>(p)], candidate)) {
            return false;
        }
    }
    return true;
}

std::vector<int> packedPlaces(const DesignGround &ground, int v)
{
    std::vector<int> list;
    for (int c = 0; c < ground.count(); ++c) {
        const bool fits =
            (list.empty() || ground.areApart(list.back(), c)) && (v < 0 || ground.areApart(v, c));
        if (fits && ground.mayBeOther[static_cast<size_t>(c)] != 0) {
            list.push_back(c);
        }
    }
    return list;
}

FoundDesign searchDesign(const DesignGround &ground, const DesignCost &cost,
                         const DesignStarts &starts)
{
    const Design first = spread(ground, starts.points, starts.vPlaces);
    if (first.count == 0) {
        return {};
    }
    Exchange exchange(ground, cost);
    exchange.from(first);
    Draws draws(starts.seed);
    for (int start = 1; start < starts.count; ++start) {
        const Design random = randomDesign(ground, starts.points, draws);
        if (random.count == starts.points) {
            exchange.from(random);
        }
    }
    for (int kick = 0; kick < starts.count && std::isfinite(exchange.best()); ++kick) {
        const Design near = kicked(ground, exchange.found(), draws);
        if (near.count == starts.points) {
            exchange.from(near);
        }
    }
    exchange.polish();
    return {true, exchange.found(), exchange.best()};
}

FoundDesign improvedDesign(const DesignGround &ground, const DesignCost &cost, const Design &design)
{
    Exchange exchange(ground, cost);
    exchange.from(design);
    return {true, exchange.found(), exchange.best()};
}

} // namespace orvel
