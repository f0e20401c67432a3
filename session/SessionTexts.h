#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Regions.h"
#include "analysis/ResultMaps.h"

#include <QString>
#include <QStringList>

#include <array>
#include <optional>
#include <vector>

namespace orvel {

// Texts, boxes, choices and paths of the form, with the form's defaults. Numbers stay text until
// an analysis reads them. Paths are absolute, or empty.

struct ReferenceTexts {
    bool use = false;
    QString file;
    QString dE = QStringLiteral("0"); ///< [eV]
    QString valence = QStringLiteral("1");

    bool operator==(const ReferenceTexts &) const = default;
};

struct TargetTexts {
    QString file;
    QString dE = QStringLiteral("0"); ///< [eV]

    bool operator==(const TargetTexts &) const = default;
};

struct PointTexts {
    bool use = false;
    bool lcf = false;
    bool vPoint = false;
    QString energy; ///< [eV]; empty: as the map file says
    QString file;

    bool operator==(const PointTexts &) const = default;
};

struct HistogramTexts {
    QString from;
    QString to;
    QString boxes;
    bool autoRange = false;

    bool operator==(const HistogramTexts &) const = default;
};

enum class FourPointsSolver { Exact, LeastSquares };
enum class SubtractedLine { Pre, Post };
enum class BackgroundLine { Victoreen, Linear };
enum class GraphNormalization { None, SubPre, EdgeJump, TwoVictoreens };

/// What the search for energies is asked.
struct AdviserTexts {
    QString points;                        ///< energies wanted; empty: as many as are used
    bool byFractions = false;              ///< otherwise the valence is to be best
    QString low;                           ///< [eV]; empty: from the edge
    QString high;                          ///< [eV]; empty: from the edge
    QString spacing = QStringLiteral("2"); ///< [eV]
    QString amount = QStringLiteral("1");
    QString noise; ///< empty: that of the map, or the usual one
    std::array<QString, kReferenceRows> parts = {QStringLiteral("1"), QStringLiteral("1"),
                                                 QStringLiteral("1"), QStringLiteral("1")};

    bool operator==(const AdviserTexts &) const = default;
};

/// What goes beyond the described analysis: precision and bounds. A session file names only what
/// differs from these defaults.
struct AdvancedTexts {
    bool sigmaMaps = false; ///< maps get planes of residuals and standard deviations
    bool sigmaFile = false; ///< and a file of them beside the result file; implies the planes
    NoiseSource noise = NoiseSource::Pooled;
    QString noiseSigma = QStringLiteral("0.005"); ///< of an absorption [1], with NoiseSource::Given
    NonEquivBounds nonEquivBounds = NonEquivBounds::Free;
    LcfBounds lcfBounds = LcfBounds::Free;
    AdviserTexts adviser;

    bool wantsSigmaMaps() const { return sigmaMaps || sigmaFile; }

    bool operator==(const AdvancedTexts &) const = default;
};

/// The edge field's text before any edge is found [eV].
extern const QString kDefaultEdge;

struct SessionTexts {
    std::optional<QString> edgeE; ///< [eV]; none: the edge found in the last readable reference
    QString preEdgeEndDE = QStringLiteral("-50");    ///< [eV] from the edge
    QString postEdgeStartDE = QStringLiteral("100"); ///< [eV] from the edge
    std::array<ReferenceTexts, kReferenceRows> references;
    TargetTexts target;
    std::array<PointTexts, kPointRows> points;

    bool nonEquiv = false;
    FourPointsSolver solver = FourPointsSolver::Exact;
    SubtractedLine subForRef = SubtractedLine::Pre;
    SubtractedLine subForTarget = SubtractedLine::Pre;
    BackgroundLine background = BackgroundLine::Victoreen;

    HistogramTexts valenceHistogram = {QStringLiteral("1.5"), QStringLiteral("3.5"),
                                       QStringLiteral("51"), false};
    HistogramTexts amountHistogram = {QStringLiteral("-0.2"), QStringLiteral("1.2"),
                                      QStringLiteral("51"), false};

    std::array<bool, kQuantities> record; ///< columns of a non-equivalent file, by Quantity
    QString resultFile;
    AdvancedTexts advanced;
    std::vector<Region> regions; ///< valid ones, kMostRegions at most

    SessionTexts() { record.fill(true); }

    bool operator==(const SessionTexts &) const = default;
};

/// What the window shows, and how; no result depends on it.
struct ViewTexts {
    Quantity mapQuantity = Quantity::Valence;
    Quantity histogramQuantity = Quantity::Valence;
    GraphNormalization normalize = GraphNormalization::None;
    bool fullRange = true;
    bool mapWithGrid = false;
    bool showDataMap = true;
    bool showGraphs = true;
    bool showResultMap = true;
    QString dataMapRow = QStringLiteral("1");   ///< 1 to 8
    QStringList displayFiles;                   ///< further spectra shown in "Muts"
    bool hideUncertain = false;                 ///< pixels whose sigma exceeds the limit stay white
    QString sigmaLimit = QStringLiteral("0.1"); ///< in units of the shown quantity
    bool showPixelWindow = false;               ///< a double click in the map shows the pixel's fit
    bool regionsAlone = false;                  ///< plots show regions without the whole map

    bool operator==(const ViewTexts &) const = default;
};

/// Everything that a session file keeps: the one value to snapshot and restore.
struct PanelState {
    SessionTexts texts;
    ViewTexts view;

    bool operator==(const PanelState &) const = default;
};

/// Names of the quantities, by Quantity: in keys and object names, and in the names of pictures.
const QStringList &quantityNames();
/// The same with those beside the results.
const QStringList &mapQuantityNames();
/// Names of choices, in the order of their enumerations.
const QStringList &noiseNames();
const QStringList &nonEquivBoundsNames();
const QStringList &lcfBoundsNames();

MethodChoice methodOf(const SessionTexts &texts);
PrecisionChoice precisionOf(const AdvancedTexts &texts);
HistogramSettings histogramOf(const HistogramTexts &texts);

} // namespace orvel
