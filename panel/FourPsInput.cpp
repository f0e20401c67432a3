// Widgets to values and back: the only place where the form is read for an analysis or a session.
#include "panel/FourPs.h"

#include "display/DispMBase.h"
#include "display/Histgram.h"
#include "images/AEPoint.h"
#include "panel/AdvancedPanel.h"
#include "panel/EnergyAdviserDialog.h"
#include "panel/PanelUndo.h"
#include "panel/RegionPanel.h"
#include "spectra/ARefFile.h"
#include "spectra/AXafsFileSelect.h"
#include "ui_FourPs.h"

#include <QDir>

using orvel::kPointRows;
using orvel::kQuantities;
using orvel::kReferenceRows;
using orvel::Quantity;

namespace {

/// Button of a quantity in one of the three series of the form, e.g. "MapRatio1". Looked for once
/// among its many widgets.
template <class Button, size_t n>
Button *quantityButton(const QWidget *form, const char *series, Quantity q,
                       std::array<Button *, n> &known)
{
    const int index = orvel::indexOf(q);
    Button *&button = known[static_cast<size_t>(index)];
    if (button == nullptr) {
        button =
            form->findChild<Button *>(QLatin1String(series) + orvel::mapQuantityNames()[index]);
    }
    return button;
}

orvel::HistogramTexts histogramTexts(const QLineEdit *from, const QLineEdit *to,
                                     const QLineEdit *boxes, const QAbstractButton *automatic)
{
    return {from->text(), to->text(), boxes->text(), automatic->isChecked()};
}

/// A file that a session names, or none. What was there goes first: a file that cannot be read
/// would leave it, under the new name.
void choose(AFileSelect &selector, const QString &path, bool mayKeep)
{
    if (mayKeep && selector.path() == path && selector.problem().isEmpty()) {
        return;
    }
    selector.clearFileName();
    if (!path.isEmpty()) {
        selector.newFile(path);
    }
}

} // namespace

orvel::AnalysisInput FourPs::readInput() const
{
    orvel::AnalysisInput input;
    for (int n = 0; n < kReferenceRows; ++n) {
        const ARefFile *row = m_references[static_cast<size_t>(n)];
        input.references.push_back({n, row->isUsed(), *row->selector(), row->valence()});
    }
    for (int i = 0; i < kPointRows; ++i) {
        const AEPoint *row = m_points[static_cast<size_t>(i)];
        orvel::EnergyPointInput point;
        point.row = i;
        point.use = row->isUsed();
        point.lcf = row->isLcf();
        point.vPoint = row->isVPoint();
        point.energyEv = row->energyEv();
        point.targetMu = row->targetEdit()->text().toDouble();
        for (int n = 0; n < kReferenceRows; ++n) {
            point.referenceMu[static_cast<size_t>(n)] = row->referenceEdit(n)->text().toDouble();
        }
        point.map = row->map();
        input.points.push_back(point);
    }
    input.target = *m_ui->TargetFile;
    input.method.nonEquiv = m_ui->TypeNonEquiv->isChecked();
    input.method.exact = m_ui->TypeTMKisExact->isChecked();
    input.method.subPostForRef = m_ui->SubPostEforRef->isChecked();
    input.method.subPostForTarget = m_ui->SubPostEforTarget->isChecked();
    input.method.linearBackground = m_ui->NonEquivBGLinear->isChecked();
    const orvel::AdvancedTexts advanced = m_advanced->texts();
    input.method.nonEquivBounds = advanced.nonEquivBounds;
    input.method.lcfBounds = advanced.lcfBounds;
    input.precision = precisionOf(advanced);
    input.valenceHistogram = m_valenceHistogram->settings();
    input.amountHistogram = m_amountHistogram->settings();
    return input;
}

orvel::PanelState FourPs::state() const
{
    return {texts(), view()};
}

orvel::SessionTexts FourPs::texts() const
{
    orvel::SessionTexts texts;
    texts.edgeE = m_ui->EdgeE->text();
    texts.preEdgeEndDE = m_ui->PreEEndDE->text();
    texts.postEdgeStartDE = m_ui->PostEStartDE->text();
    for (size_t n = 0; n < m_references.size(); ++n) {
        const ARefFile *row = m_references[n];
        const AFileSelect *selector = row->selector();
        texts.references[n] = {row->isUsed(), selector->path(), selector->deEdit()->text(),
                               row->valenceEdit()->text()};
    }
    const AFileSelect *target = m_ui->TargetFile;
    texts.target = {target->path(), target->deEdit()->text()};
    for (size_t i = 0; i < m_points.size(); ++i) {
        const AEPoint *row = m_points[i];
        texts.points[i] = {row->isUsed(), row->isLcf(), row->isVPoint(), row->energyEdit()->text(),
                           row->fileSelect()->path()};
    }
    texts.nonEquiv = m_ui->TypeNonEquiv->isChecked();
    texts.solver = m_ui->TypeTMKisExact->isChecked() ? orvel::FourPointsSolver::Exact
                                                     : orvel::FourPointsSolver::LeastSquares;
    texts.subForRef = m_ui->SubPostEforRef->isChecked() ? orvel::SubtractedLine::Post
                                                        : orvel::SubtractedLine::Pre;
    texts.subForTarget = m_ui->SubPostEforTarget->isChecked() ? orvel::SubtractedLine::Post
                                                              : orvel::SubtractedLine::Pre;
    texts.background = m_ui->NonEquivBGLinear->isChecked() ? orvel::BackgroundLine::Linear
                                                           : orvel::BackgroundLine::Victoreen;
    texts.valenceHistogram =
        histogramTexts(m_ui->HgAFrom, m_ui->HgATo, m_ui->HgABoxes, m_ui->HgAAuto);
    texts.amountHistogram =
        histogramTexts(m_ui->HgTFrom, m_ui->HgTTo, m_ui->HgTBoxes, m_ui->HgTAuto);
    for (int i = 0; i < kQuantities; ++i) {
        texts.record[static_cast<size_t>(i)] = recordButton(orvel::quantityAt(i))->isChecked();
    }
    // A typed name is taken from the working directory, a session's from the session's folder.
    texts.regions = m_regions->regions();
    texts.resultFile = m_ui->SaveFSelect->text();
    if (!texts.resultFile.isEmpty() && QDir::isRelativePath(texts.resultFile)) {
        texts.resultFile = QDir::current().absoluteFilePath(texts.resultFile);
    }
    texts.advanced = m_advanced->texts();
    texts.advanced.adviser = m_adviser != nullptr ? m_adviser->texts() : m_adviserTexts;
    return texts;
}

orvel::ViewTexts FourPs::view() const
{
    using orvel::GraphNormalization;
    orvel::ViewTexts view;
    view.mapQuantity = chosenMap();
    view.histogramQuantity = chosenHistogram();
    view.normalize = m_ui->NNone->isChecked()       ? GraphNormalization::None
                     : m_ui->NBySubPre->isChecked() ? GraphNormalization::SubPre
                     : m_ui->NByEJ->isChecked()     ? GraphNormalization::EdgeJump
                                                    : GraphNormalization::TwoVictoreens;
    view.fullRange = m_ui->FullRangeCB->isChecked();
    view.mapWithGrid = m_ui->MapWGrid->isChecked();
    view.showDataMap = m_ui->ShowDMap->isChecked();
    view.showGraphs = m_ui->ShowDAB->isChecked();
    view.showResultMap = m_ui->ShowMap->isChecked();
    view.dataMapRow = QString::number(dataMapRow() + 1);
    for (int i = 0; i < m_ui->SelectedFs->count(); ++i) {
        view.displayFiles.append(m_ui->SelectedFs->item(i)->text());
    }
    m_advanced->readView(view);
    view.regionsAlone = m_regions->alone();
    return view;
}

void FourPs::setState(const orvel::PanelState &state)
{
    m_isHeld = true;
    setTexts(state.texts, Files::Read);
    setView(state.view, Files::Read);
    m_isHeld = false;
    calcBoth();
    showAll();
}

void FourPs::restore(const orvel::PanelState &state)
{
    const orvel::PanelState now = this->state();
    orvel::PanelState quiet = state; // as it would be if nothing that calculates were another
    quiet.texts.regions = now.texts.regions;
    quiet.texts.record = now.texts.record;
    quiet.texts.resultFile = now.texts.resultFile;
    quiet.texts.advanced.adviser = now.texts.advanced.adviser;
    const bool calculates = !isSameState({now.texts, quiet.view}, quiet);
    m_isHeld = true;
    if (calculates) {
        setTexts(state.texts, Files::Keep);
    } else {
        setOutputs(state.texts, Files::Keep);
    }
    setView(state.view, Files::Keep);
    m_isHeld = false;
    if (calculates) {
        calcBoth();
    }
    showAll();
}

void FourPs::showAll()
{
    if (m_regionsAreNew) { // without a new map
        countRegions();
    }
    updatePlots();
    updateMaps(true);
}

void FourPs::setTexts(const orvel::SessionTexts &texts, Files files)
{
    const bool mayKeep = files == Files::Keep;
    m_ui->TypeNonEquiv->setChecked(texts.nonEquiv);
    const bool exact = texts.solver == orvel::FourPointsSolver::Exact;
    (exact ? m_ui->TypeTMKisExact : m_ui->TypeTMKisLS)->setChecked(true);
    const bool refPre = texts.subForRef == orvel::SubtractedLine::Pre;
    (refPre ? m_ui->SubPreEforRef : m_ui->SubPostEforRef)->setChecked(true);
    const bool targetPre = texts.subForTarget == orvel::SubtractedLine::Pre;
    (targetPre ? m_ui->SubPreEforTarget : m_ui->SubPostEforTarget)->setChecked(true);
    const bool victoreen = texts.background == orvel::BackgroundLine::Victoreen;
    (victoreen ? m_ui->NonEquivBGVic : m_ui->NonEquivBGLinear)->setChecked(true);
    const auto setHistogram = [](const orvel::HistogramTexts &from, QLineEdit *low, QLineEdit *high,
                                 QLineEdit *boxes, QAbstractButton *automatic) {
        low->setText(from.from);
        high->setText(from.to);
        boxes->setText(from.boxes);
        automatic->setChecked(from.autoRange);
    };
    setHistogram(texts.valenceHistogram, m_ui->HgAFrom, m_ui->HgATo, m_ui->HgABoxes, m_ui->HgAAuto);
    setHistogram(texts.amountHistogram, m_ui->HgTFrom, m_ui->HgTTo, m_ui->HgTBoxes, m_ui->HgTAuto);
    m_advanced->setTexts(texts.advanced);
    setOutputs(texts, files);

    // Shifts before files, so that found edges are shifted too; edges and energies last, since
    // files bring their own.
    m_ui->EdgeE->setText(orvel::kDefaultEdge);
    m_ui->PreEEndDE->setText(texts.preEdgeEndDE);
    m_ui->PostEStartDE->setText(texts.postEdgeStartDE);
    const auto setSpectrum = [mayKeep](AXafsFileSelect &selector, const QString &dE,
                                       const QString &file) {
        selector.deEdit()->setText(dE);
        selector.setDE(dE.toDouble());
        choose(selector, file, mayKeep);
    };
    for (size_t n = 0; n < m_references.size(); ++n) {
        ARefFile *row = m_references[n];
        const orvel::ReferenceTexts &reference = texts.references[n];
        row->setUse(reference.use);
        row->valenceEdit()->setText(reference.valence);
        setSpectrum(*row->selector(), reference.dE, reference.file);
    }
    setSpectrum(*m_ui->TargetFile, texts.target.dE, texts.target.file);
    for (size_t i = 0; i < m_points.size(); ++i) {
        AEPoint *row = m_points[i];
        const orvel::PointTexts &point = texts.points[i];
        row->setChecks(point.use, point.lcf, point.vPoint);
        row->targetEdit()->clear();
        for (int n = 0; n < kReferenceRows; ++n) {
            row->referenceEdit(n)->clear();
        }
        row->energyEdit()->clear();
        choose(*row->fileSelect(), point.file, mayKeep);
        if (!point.energy.isEmpty()) {
            row->energyEdit()->setText(point.energy);
            row->energyEdit()->setCursorPosition(0);
        }
    }
    if (texts.edgeE) {
        m_ui->EdgeE->setText(*texts.edgeE);
    }
    setEdge(); // and with it every row's values
    updateMarkLines();
}

/// What no calculation depends on.
void FourPs::setOutputs(const orvel::SessionTexts &texts, Files files)
{
    for (int i = 0; i < kQuantities; ++i) {
        recordButton(orvel::quantityAt(i))->setChecked(texts.record[static_cast<size_t>(i)]);
    }
    if (files == Files::Read ||
        this->texts().resultFile != texts.resultFile) { // or a typed name becomes a path
        m_ui->SaveFSelect->setText(texts.resultFile);
    }
    m_adviserTexts = texts.advanced.adviser;
    if (m_adviser != nullptr && m_adviser->texts() != m_adviserTexts) {
        m_adviser->setTexts(m_adviserTexts);
    }
    if (m_regions->regions() != texts.regions) {
        m_regions->setRegions(texts.regions);
    }
}

void FourPs::setView(const orvel::ViewTexts &view, Files files)
{
    using orvel::GraphNormalization;
    m_advanced->setView(view);
    m_regions->setAlone(view.regionsAlone);
    const bool isShown =
        orvel::indexOf(view.mapQuantity) < kQuantities || m_advanced->texts().wantsSigmaMaps();
    mapButton(isShown ? view.mapQuantity : Quantity::Valence)->setChecked(true);
    histogramButton(view.histogramQuantity)->setChecked(true);
    (view.normalize == GraphNormalization::None       ? m_ui->NNone
     : view.normalize == GraphNormalization::SubPre   ? m_ui->NBySubPre
     : view.normalize == GraphNormalization::EdgeJump ? m_ui->NByEJ
                                                      : m_ui->NBy2Vics)
        ->setChecked(true);
    m_ui->FullRangeCB->setChecked(view.fullRange);
    m_ui->MapWGrid->setChecked(view.mapWithGrid);
    m_ui->ShowDMap->setChecked(view.showDataMap);
    m_ui->ShowDAB->setChecked(view.showGraphs);
    m_ui->ShowMap->setChecked(view.showResultMap);
    const int row = view.dataMapRow.toInt() - 1;
    m_points[static_cast<size_t>(qBound(0, row, kPointRows - 1))]->showMapButton()->setChecked(
        true);
    if (files == Files::Read || this->view().displayFiles != view.displayFiles) {
        receiveNewDispFiles(view.displayFiles);
    }
}

QRadioButton *FourPs::mapButton(Quantity quantity) const
{
    return quantityButton(this, "Map", quantity, m_mapButtons);
}

QRadioButton *FourPs::histogramButton(Quantity quantity) const
{
    return quantityButton(m_ui->HgValence->parentWidget(), "Hg", quantity, m_histogramButtons);
}

QCheckBox *FourPs::recordButton(Quantity quantity) const
{
    return quantityButton(m_ui->RecValence->parentWidget(), "Rec", quantity, m_recordButtons);
}

Quantity FourPs::chosenMap() const
{
    for (int i = 0; i < orvel::kMapQuantities; ++i) {
        if (mapButton(orvel::quantityAt(i))->isChecked()) {
            return orvel::quantityAt(i);
        }
    }
    return Quantity::Valence;
}

Quantity FourPs::chosenHistogram() const
{
    for (int i = 0; i < kQuantities; ++i) {
        if (histogramButton(orvel::quantityAt(i))->isChecked()) {
            return orvel::quantityAt(i);
        }
    }
    return Quantity::Valence;
}

int FourPs::normalization() const
{
    return m_ui->NNone->isChecked()       ? AMutE::NoNormalization
           : m_ui->NBySubPre->isChecked() ? AMutE::SubPre
           : m_ui->NByEJ->isChecked()     ? AMutE::ByEdgeJump
           : m_ui->NBy2Vics->isChecked()  ? AMutE::By2Victoreens
                                          : AMutE::By2Victoreens + 1;
}

int FourPs::dataMapRow() const
{
    for (int i = 0; i < kPointRows; ++i) {
        if (m_points[static_cast<size_t>(i)]->showMapButton()->isChecked()) {
            return i;
        }
    }
    return 0;
}

int FourPs::rowOf(const QObject *sender) const
{
    for (int i = 0; i < kPointRows; ++i) {
        if (m_points[static_cast<size_t>(i)] == sender) {
            return i;
        }
    }
    return -1;
}
