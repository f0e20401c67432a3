#pragma once

#include "analysis/DesignVariance.h"

#include <cstdint>
#include <functional>
#include <limits>
#include <vector>

namespace orvel {

/// The candidates and what a design of them must keep to.
struct DesignGround {
    std::vector<double> energiesEv; ///< ascending
    std::vector<char> mayBeOther;   ///< whether it can be any point but V
    bool withV = false;             ///< the first of a design is V, which may be anything
    double spacingEv = 0.0;

    int count() const { return static_cast<int>(energiesEv.size()); }
    bool areApart(int i, int j) const;
    bool mayBe(int position, int candidate) const;
    /// Whether a candidate can take a position, beside what stands at the others.
    bool allows(const Design &design, int position, int candidate) const;
};

/// All that fit, from the left: as many as can beside v, or alone when v is -1.
std::vector<int> packedPlaces(const DesignGround &ground, int v);

/// What is to be least; infinite for a design that will not do.
using DesignCost = std::function<double(const Design &)>;

struct DesignStarts {
    int points = 0;
    std::vector<int> vPlaces; ///< candidates for V, the best first; one that is -1: there is none
    int count = 1;            ///< one spread evenly, the others random
    std::uint32_t seed = 1;
};

struct FoundDesign {
    bool fits = false; ///< whether any design keeps to the ground
    Design design;     ///< set where cost is finite
    double cost = std::numeric_limits<double>::infinity();
};

/// Exchanges single energies from all starts, shakes the best outcome as many times and goes on,
/// then exchanges pairs beside it until none improves it. Of equals the lower energies win; the
/// same everywhere for the same seed.
FoundDesign searchDesign(const DesignGround &ground, const DesignCost &cost,
                         const DesignStarts &starts);

/// Exchanges single energies from one design.
FoundDesign improvedDesign(const DesignGround &ground, const DesignCost &cost,
                           const Design &design);

} // namespace orvel
