#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Checks.h"
#include "analysis/ResultMaps.h"

#include <memory>
#include <vector>

namespace orvel {

/// The maps of the last calculation, for the next one that would give the same. Loading four
/// references computes maps again and again by requirement, mostly from the same numbers.
///
/// Two calculations are the same when their method and points are, every number that enters the
/// maps has the same bits, and the images are the same objects: a map loaded again, even from the
/// same file, is another. Histogram settings do not enter the maps. The maps themselves are kept;
/// a caller that wants their planes used again lets go of its own outcome before it calculates.
class MapMemory {
public:
    /// The kept maps if a calculation of this input would give just them; else null.
    std::shared_ptr<const ResultMaps> find(const AnalysisInput &input, const Plan &plan) const;
    void keep(const AnalysisInput &input, const Plan &plan, std::shared_ptr<const ResultMaps> maps);
    void forget();

private:
    struct Key {
        Method method = Method::None;
        int vPoint = -1;
        std::vector<size_t> used;
        std::vector<std::weak_ptr<const ImageData>> images; ///< not kept alive for this
        std::vector<quint64> numbers;                       ///< bits of all that enters

        bool operator==(const Key &other) const;
    };

    static Key keyOf(const AnalysisInput &input, const Plan &plan);

    Key m_key;
    std::shared_ptr<const ResultMaps> m_maps;
};

} // namespace orvel
