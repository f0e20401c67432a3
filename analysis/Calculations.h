#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/BinCounts.h"
#include "analysis/Checks.h"
#include "analysis/LinearCombination.h"
#include "analysis/MapMemory.h"
#include "analysis/Message.h"
#include "analysis/NonEquivPrecision.h"
#include "analysis/ResultMaps.h"

#include <QString>

#include <array>
#include <limits>
#include <memory>
#include <optional>

namespace orvel {

/// The three steps of a calculation: checks, method, and what the form shows of the outcome.
/// Pure functions of their input: window and batch program both call them and so agree to the bit.

/// Maps, with the histograms of valence and amount.
struct MapOutcome {
    std::vector<Line> messages;             ///< of the checks; a map writes no result line
    std::shared_ptr<const ResultMaps> maps; ///< null: a check stopped the step
    BinCounts valenceCounts;
    BinCounts amountCounts;
    HistogramSettings valenceHistogram; ///< as used: "Auto" replaces the limits
    HistogramSettings amountHistogram;
};

/// memory  null, or where the maps of the last run are kept for one that would give the same; the
///         outcome is the same with and without
MapOutcome calculateMap(const AnalysisInput &input, const MapResources &resources = {},
                        MapMemory *memory = nullptr);

/// Standard deviations beside the target's result: from its own residuals, or from the given one of
/// an absorption. References, and the line that is subtracted from the target, are taken for
/// certain. Not-a-number where not determined.
struct TargetPrecision {
    double sigma = std::numeric_limits<double>::quiet_NaN();     ///< s [1]
    int freedom = 0;                                             ///< points minus unknowns
    double condition = std::numeric_limits<double>::quiet_NaN(); ///< of the normal matrix, 2-norm
    FitSigmas sigmas;  ///< of the valid references in their order
    unsigned held = 0; ///< references that bounds hold at 0
};

/// The target's result.
struct TargetOutcome {
    /// Fields of one reference row; empty when the row takes no part.
    struct RowFields {
        QString ratio;
        QString amount;
    };

    std::vector<Line> messages; ///< of the checks, then the result line where it goes to the box
    bool ran = false;           ///< otherwise a check stopped the step and nothing below is set
    bool warned = false;        ///< a check wrote a message, even if the step went on
    double a = 0.0;             ///< first ratio, kept for the comparison plot
    double valence = 0.0;
    Line resultField;                 ///< CalcRes
    std::optional<QString> dMutField; ///< TargetDMut; none: the method leaves it alone
    std::array<RowFields, kReferenceRows> rows;
    TargetPrecision precision;
};

TargetOutcome calculateTarget(const AnalysisInput &input);

/// The linear combination fit of the target.
struct LcfOutcome {
    std::vector<Line> messages;      ///< of the checks, or the result line
    std::optional<LcfResult> result; ///< none: a check stopped the step
    Line resultField;                ///< LCFRes
};

LcfOutcome calculateLcf(const AnalysisInput &input);

} // namespace orvel
