#pragma once

#include "analysis/AnalysisInput.h"
#include "analysis/Calculations.h"
#include "analysis/MapMemory.h"
#include "display/CColors.h"
#include "display/Displays.h"
#include "display/MapPainter.h"
#include "display/MarkLines.h"
#include "display/PictureExport.h"
#include "panel/plots/ComparisonPlot.h"
#include "panel/plots/ImageDifferences.h"
#include "panel/plots/RegionGroups.h"
#include "panel/plots/ScatterPlot.h"
#include "session/SessionTexts.h"
#include "spectra/RefFiles.h"

#include <QFrame>
#include <QPoint>

#include <array>
#include <memory>
#include <optional>
#include <vector>

class AEPoint;
class ARefFile;
class AXafsFileSelect;
class DispMBase;
class EnergyAdviserDialog;
class ExportMenu;
class Histgram;
class QFileDialog;
class QRadioButton;
class QCheckBox;
class AdvancedPanel;
class RegionPanel;
class PanelUndo;
class SessionKeeper;
namespace orvel {
class PixelWindow;
}
namespace Ui {
class FourPs;
}
namespace orvel {
struct ExpectedPrecision;
struct MutsPlot;
struct TableCurve;
} // namespace orvel

/// The analysis panel: every input, the parameters, the results and the displays. It wires widgets
/// to the analyses: what is computed is taken from the form as one AnalysisInput (FourPsInput.cpp),
/// run and shown in FourPsRun.cpp, painted in FourPsDraw.cpp, given to files in FourPsExport.cpp;
/// this class computes nothing itself.
class FourPs : public QFrame {
    Q_OBJECT

public:
    explicit FourPs(QWidget *parent = nullptr);
    ~FourPs() override;

    QSize minimumSizeHint() const override;

    /// The form as a value, and back. Setting it loads the files it names and runs calcBoth()
    /// once; previous results and messages stay.
    orvel::PanelState state() const;
    void setState(const orvel::PanelState &state);

    /// As setState(), but files that are there already are not read again, and nothing is
    /// calculated where only the view differs.
    void restore(const orvel::PanelState &state);

    /// Remembers sessions from run to run and keeps a copy of unsaved inputs; without this call the
    /// panel touches no file that it was not told to.
    /// delayMs  from the last change to the copy
    void keepSessions(int delayMs = kCopyDelayMs);
    static constexpr int kCopyDelayMs = 5000;

    /// What an analysis would read now.
    orvel::AnalysisInput readInput() const;
    std::shared_ptr<const orvel::ResultMaps> results() const { return m_maps; }

public slots:
    void noticedNewEdge(double e);
    void setEdge();
    void updateMaps(bool);
    void dispCalcConditions(bool f);
    void changedSubBGTypeForRef(bool);
    void changedSubBGTypeForTarget(bool);
    void removeAFile();
    void receiveNewDir(const QString &dir);
    void receiveNewEnergy(double);
    void receiveNewFile(const QString &fname);
    void receiveNewRef(int n);
    void receiveNewRef1();
    void receiveNewRef2();
    void receiveNewRef3();
    void receiveNewRef4();
    void receiveNewTarget();
    void receiveNewDispFiles(const QStringList &paths);
    void receiveNewPaths(const QStringList &paths);
    void calcBoth();
    void calcMap();
    void calcTarget();
    void calcAndWrite();
    void clearLCFvs4PS(MouseC *m);
    void newColorLCFvs4PS(MouseC *m);
    void updateDMap();
    void draw(Displays::DispId id, DispABase *dab, QStylePainter *p);
    void drawMap(QStylePainter *p);
    void drawDMap(QStylePainter *p);
    void selectedNewMap();
    void receiveNowPosInMap(double x, double y);
    void receiveNowPosInDMap(double x, double y);
    void lcf();
    void mPressedInAllMut(MouseC *m);
    void dClickedInMap(MouseC *m);

    /// Opens or saves a session file; a failure is a line in the message box.
    void openSession(const QString &path);
    void saveSession(const QString &path);

protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *object, QEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    // construction and wiring (FourPs.cpp)
    void makeRows();
    void fitFields();
    void shareWidth();
    void makeHints();
    QStringList inputPaths() const;
    void warnOfOverwriting();
    void makeAdvanced();
    void adviseOnEnergies();
    void makeRegions();
    void offerCounts();
    void enableWhatCounts();
    void connectInputs();
    void connectRuns();
    void connectDisplays();
    void connectSpectrumShift(AXafsFileSelect *selector, int reference);
    void toggledPickButton(AEPoint *row, bool on);
    void chooseSession(bool save);
    void makeUndo();
    void restoreCopy();

    // widgets to values and back (FourPsInput.cpp)
    orvel::SessionTexts texts() const;
    orvel::ViewTexts view() const;
    /// Read: every file, also one that is there: it may have changed.
    enum class Files { Read, Keep };
    void setTexts(const orvel::SessionTexts &texts, Files files);
    void showAll();
    void setOutputs(const orvel::SessionTexts &texts, Files files);
    void setView(const orvel::ViewTexts &view, Files files);
    QRadioButton *mapButton(orvel::Quantity quantity) const;
    QRadioButton *histogramButton(orvel::Quantity quantity) const;
    QCheckBox *recordButton(orvel::Quantity quantity) const;
    orvel::Quantity chosenMap() const;
    orvel::Quantity chosenHistogram() const;
    int normalization() const;
    int dataMapRow() const;
    int rowOf(const QObject *sender) const; ///< -1: no energy-point row

    // inputs that follow other inputs (FourPs.cpp)
    void applyEdge(AMutE &spectrum) const;
    void refreshReference(int row, int n);
    void refreshTarget(int row);
    void loadDisplaySpectra();
    void updateMarkLines();
    void followUsedEnergies();
    void useEnergies(const orvel::ExpectedPrecision &design);

    // runs (FourPsRun.cpp)
    void writeMessage(const QString &text);
    void writeLines(const std::vector<orvel::Line> &lines);
    void runMap(const orvel::AnalysisInput &input);
    void runTarget(const orvel::AnalysisInput &input);
    void runLcf(const orvel::AnalysisInput &input);
    void writeResults();
    void showResults(const orvel::MapOutcome &outcome);
    void countShownHistogram();
    void runPrecision();
    void countRegions();
    int validReferenceCount() const;
    orvel::BinCounts visibleCounts(orvel::Quantity quantity,
                                   const orvel::HistogramSettings &settings) const;

    // drawing (FourPsDraw.cpp)
    void updatePlots();
    void newMapLimits();
    void newDMapLimits();
    orvel::MapValues valuesOf(orvel::Quantity quantity) const;
    orvel::MapValues shownMap() const;
    orvel::MapValues dataValues() const;
    void showPixel(int x, int y);
    void showValueAt(DispMBase *panel, const orvel::MapValues &map, double x, double y);
    void drawMapOn(DispMBase *panel, orvel::MapPainter &painter, const orvel::MapValues &map,
                   QStylePainter *p);
    orvel::MutsPlot mutsPlot() const;
    std::shared_ptr<const orvel::ImageDifferences> shownDifferences();
    void drawMuts(DispABase *dab, QStylePainter *p);
    void drawComparison(DispABase *dab, QStylePainter *p);
    void drawAmounts(DispABase *dab, QStylePainter *p);
    void drawDifferences(DispABase *dab, QStylePainter *p);

    // pictures and numbers for files (FourPsExport.cpp)
    void makeExports();
    void connectExport(ExportMenu *menu);
    void addRegions(orvel::Settings &settings) const;
    QString quantityName() const;
    QString mapUnit(bool isResult) const;
    QString mapTitle(bool isResult) const;
    orvel::Settings mapSettings(bool isResult) const;
    orvel::Settings graphSettings(Displays::DispId id) const;
    std::vector<orvel::TableCurve> shownCurves(Displays::DispId id);

    std::unique_ptr<Ui::FourPs> m_ui;
    std::array<ARefFile *, orvel::kReferenceRows> m_references = {};
    std::array<AEPoint *, orvel::kPointRows> m_points = {};
    RefFiles m_refFiles;
    CColors m_colours;
    std::unique_ptr<Histgram> m_valenceHistogram;
    std::unique_ptr<Histgram> m_amountHistogram;
    std::vector<AMutE> m_displaySpectra;
    MarkLines m_energyLines;
    AdvancedPanel *m_advanced = nullptr;
    orvel::PixelWindow *m_pixelWindow = nullptr; ///< made at first use
    EnergyAdviserDialog *m_adviser = nullptr;    ///< once it was wanted
    orvel::AdviserTexts m_adviserTexts;          ///< for the dialog, once it is made
    RegionPanel *m_regions = nullptr;
    std::vector<orvel::RegionGroup> m_regionGroups; ///< of the regions, for the plots
    int m_regionRevision = 0;
    bool m_wasShown = false;
    bool m_wasSplit = false; ///< by the user
    mutable std::array<QRadioButton *, orvel::kMapQuantities> m_mapButtons = {};
    mutable std::array<QRadioButton *, orvel::kQuantities> m_histogramButtons = {};
    mutable std::array<QCheckBox *, orvel::kQuantities> m_recordButtons = {};
    bool m_isHeld = false;        ///< while a session is taken over nothing is calculated
    bool m_regionsAreNew = false; ///< and not counted yet
    QString m_lastDir;
    PanelUndo *m_undo = nullptr;
    SessionKeeper *m_keeper = nullptr; ///< once sessions are kept
    QFileDialog *m_openDialog = nullptr;
    QFileDialog *m_saveDialog = nullptr;

    std::shared_ptr<orvel::ColumnPool> m_pool;
    orvel::MapMemory m_memory;
    std::shared_ptr<const orvel::ResultMaps> m_maps; ///< null: nothing calculated yet
    orvel::SessionTexts m_calculatedFrom;            ///< the form that these came from
    mutable orvel::Column m_derived;                 ///< of a quantity that has no plane of its own
    mutable std::weak_ptr<const orvel::ResultMaps> m_derivedFrom;
    orvel::HistogramSettings m_valenceSettings; ///< of the last calculation
    orvel::HistogramSettings m_amountSettings;
    orvel::BinCounts m_shownCounts; ///< of the quantity that the histogram shows
    orvel::BinCounts m_shownAmounts;
    std::optional<QPoint> m_markedPixel;
    double m_targetA = 0.0;
    double m_targetValence = 0.0;
    orvel::ComparisonPlot m_comparison; ///< LCF against the maps' methods
    int m_comparisonColour = 0;
    std::optional<AMutE> m_fittedCurve;

    orvel::MapPainter m_mapPainter;
    orvel::MapPainter m_dMapPainter;
    orvel::ScatterPlot m_amountScatter;
    orvel::ScatterPlot m_differenceScatter;
    orvel::ImageDifferenceCache m_differences;
    QSize m_dataMapSize;
};
