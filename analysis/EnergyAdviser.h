#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Checks.h"

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

namespace orvel {

/// What the energies are to determine best.
enum class DesignCriterion {
    Valence,   ///< least variance of the valence (c-optimal)
    Fractions, ///< least sum of the fractions' variances (A-optimal)
};

/// What is asked, and the sample that is assumed: a curve of this composition and amount, without
/// background, with independent noise of one size at every energy.
struct AdviserSettings {
    int points = 5; ///< energies wanted, 3 to kPointRows
    DesignCriterion criterion = DesignCriterion::Valence;

    /// Range of the candidates [eV]; none: 60 below to 200 above the edge. In any case no further
    /// than all used references reach.
    std::optional<double> lowEv;
    std::optional<double> highEv;
    /// Evenly over the range, both ends included, each rounded to 0.01 eV; 2 to 2000.
    int candidates = 200;
    bool refine = true;            ///< then also between them, by eighths of their distance
    double minimumSpacingEv = 2.0; ///< between any two energies chosen
    /// Four points: how far the references, over their edge jumps, may differ at the points other
    /// than V (FourPointsDesign::isAlike). The methods take them as equal there, so a difference is
    /// a systematic error, which no standard deviation shows.
    double alikeWithin = 0.02;

    /// By reference row, of the used ones; their sum counts as 1. All 0: equal fractions.
    std::array<double, kReferenceRows> fractions = {};
    double amount = 1.0;  ///< t: edge jump of the curve [1]; four points: t/ts
    double sigma = 0.005; ///< s [1], of an absorption

    /// Of the search: one spread evenly, the others random; and as many from the best that these
    /// found with two energies moved at random. 1 to 1000
    int starts = 24;
    std::uint32_t seed = 1;
};

/// Why something has no expected precision.
enum class DesignFault {
    None,
    BadSettings,        ///< a number is out of its range
    FewReferences,      ///< less than two are used and loaded
    InvalidReference,   ///< one that is used is not loaded, or its edge jump is 0 or not finite
    BadComposition,     ///< a negative fraction, or none
    EqualValences,      ///< all valences are the same: any energies determine their mean
    CountForMethod,     ///< the method does not take that many energies
    FewPoints,          ///< less energies than unknowns
    NoVPoint,           ///< four points; of the present energies
    NoEnergy,           ///< a used point has no energy; of the present energies
    FewCandidates,      ///< the range is empty or too narrow for so many energies so far apart
    FewAlikeCandidates, ///< so are the places where the references are alike (four points)
    NotDetermined,      ///< singular: the energies, or the references, do not separate the unknowns
};

enum class DesignWarning {
    NoFreedom,        ///< as many energies as unknowns: residuals say nothing about the noise
    FarFromBest,      ///< a standard deviation of ten times that of the best energies, or more
    UnlikeReferences, ///< they differ at a point other than V by more than alikeWithin
    AmountInNoise,    ///< amount within three of its standard deviations: first order fails
};

/// What a choice of energies will give.
struct ExpectedPrecision {
    DesignFault fault = DesignFault::None; ///< otherwise only energies, vPoint and method are set
    Method method = Method::None;
    std::vector<double> energiesEv; ///< ascending
    int vPoint = -1;                ///< index into these; four points

    /// Standard deviations, first order in s; not-a-number for references that take no part.
    std::array<double, kReferenceRows> fractions;
    double valence;
    double amount;
    int freedom = 0;  ///< energies minus unknowns
    double condition; ///< of the normal equations, 2-norm; not-a-number for four points
    std::vector<DesignWarning> warnings;

    ExpectedPrecision();
};

struct EnergyAdvice {
    ExpectedPrecision present; ///< of the used points' energies, with or without images
    ExpectedPrecision best;
    std::vector<double> candidatesEv; ///< where the best were searched
};

/// Expected precision for the present energies, and the energies that promise the best one, from
/// references alone (docs/numerics.md). Which of the four-points methods runs follows from
/// the number of energies, as in the checks before a calculation.
///
/// Exchange: from each start one energy after the other is replaced by the best candidate, until
/// nothing improves (Fedorov, Theory of Optimal Experiments, 1972, ch. 3); the best that is found
/// this way is improved by exchanges of two at a time. So no exchange of one or two candidates
/// betters it; that nothing else does is likely, not certain. Then it is refined. The same answer
/// everywhere for the same seed; of equals the lower energies.
///
/// Pure. Cost about  20 * starts * points * candidates + (points * candidates)^2 / 2  evaluations
/// of a fraction of a microsecond.
EnergyAdvice adviseEnergies(const AnalysisInput &input, const AdviserSettings &settings);

} // namespace orvel
