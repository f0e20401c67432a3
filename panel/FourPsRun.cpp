// The slots that calculate: take the inputs, run, show what came out. No arithmetic here.
#include "panel/FourPs.h"

#include "analysis/ResultFile.h"
#include "display/DispMBase.h"
#include "display/Histgram.h"
#include "panel/AdvancedPanel.h"
#include "panel/RegionPanel.h"
#include "panel/WaitCursor.h"
#include "session/MessageText.h"
#include "session/RegionTexts.h"
#include "session/ResultPaths.h"
#include "spectra/ARefFile.h"
#include "spectra/AXafsFileSelect.h"
#include "ui_FourPs.h"

#include <QFileInfo>
#include <QMessageBox>
#include <QToolTip>

#include <new>

using orvel::kQuantities;
using orvel::WaitCursor;

namespace {

/// What the range of a histogram's plot follows from.
std::array<double, 3> spanOf(const orvel::BinCounts &counts)
{
    return {counts.from(), counts.to(), static_cast<double>(counts.largest())};
}

/// Settings with the limits that "Auto" chooses for these values.
orvel::HistogramSettings autoSettings(orvel::HistogramSettings settings,
                                      const orvel::MapValues &values)
{
    const auto n = static_cast<size_t>(values.count);
    if (const auto limits = orvel::autoLimits(values.values, n)) {
        settings.from = limits->low;
        settings.to = limits->high;
    }
    return settings;
}

void showText(QLineEdit *field, const QString &text)
{
    field->setText(text);
    field->setCursorPosition(0);
}

} // namespace

void FourPs::writeMessage(const QString &text)
{
    QTextCursor cursor = m_ui->Message->textCursor();
    cursor.clearSelection(); // or the line would replace what is selected, to copy it for instance
    m_ui->Message->setTextCursor(cursor);
    m_ui->Message->insertPlainText(text.simplified() + QLatin1Char('\n'));
    m_ui->Message->moveCursor(QTextCursor::End);
}

void FourPs::writeLines(const std::vector<orvel::Line> &lines)
{
    for (const orvel::Line &line : lines) {
        writeMessage(orvel::textOf(line));
    }
}

void FourPs::calcBoth()
{
    if (m_isHeld) {
        return;
    }
    const WaitCursor wait;
    const orvel::AnalysisInput input = readInput();
    runMap(input);
    runTarget(input);
    runLcf(input);
}

void FourPs::calcMap()
{
    runMap(readInput());
}

void FourPs::calcTarget()
{
    runTarget(readInput());
}

void FourPs::lcf()
{
    runLcf(readInput());
}

void FourPs::runMap(const orvel::AnalysisInput &input)
{
    const WaitCursor wait;
    try {
        const orvel::MapOutcome outcome = calculateMap(input, {0, m_pool}, &m_memory);
        writeLines(outcome.messages);
        if (outcome.maps) {
            showResults(outcome);
        }
    } catch (const std::bad_alloc &) {
        writeMessage(tr("There is not enough memory for these maps"));
    }
}

void FourPs::showResults(const orvel::MapOutcome &outcome)
{
    const bool sizeChanged = !m_maps || m_maps->width() != outcome.maps->width() ||
                             m_maps->height() != outcome.maps->height();
    const bool isNew = m_maps != outcome.maps;
    m_maps = outcome.maps;
    m_calculatedFrom = texts();
    m_valenceHistogram->setCounts(outcome.valenceCounts);
    m_valenceSettings = outcome.valenceHistogram;
    m_amountSettings = outcome.amountHistogram;
    if (spanOf(outcome.amountCounts) != spanOf(m_amountHistogram->counts())) {
        m_ui->Disps->panel(Displays::DHistDMut)->clearScale();
    }
    m_amountHistogram->setCounts(outcome.amountCounts);
    if (outcome.amountHistogram.autoRange) {
        m_amountHistogram->showLimits(outcome.amountHistogram.from, outcome.amountHistogram.to);
    }
    for (int i = 0; i < kQuantities; ++i) {
        const bool isThere = m_maps->fills(orvel::quantityAt(i));
        mapButton(orvel::quantityAt(i))->setEnabled(isThere);
        histogramButton(orvel::quantityAt(i))->setEnabled(isThere);
    }
    for (int i = kQuantities; i < orvel::kMapQuantities; ++i) {
        mapButton(orvel::quantityAt(i))->setEnabled(m_maps->fills(orvel::quantityAt(i)));
    }
    if (orvel::indexOf(chosenMap()) >= kQuantities && !m_maps->fills(chosenMap())) {
        mapButton(orvel::Quantity::Valence)->setChecked(true);
    }
    m_advanced->showMap(*m_maps);
    m_regions->setResults(m_maps, validReferenceCount());
    offerCounts();
    if (sizeChanged) {
        m_ui->ResultMap->clearScale();
        m_markedPixel.reset();
    }
    if (isNew) {
        newMapLimits();
    }
    countShownHistogram();
    m_mapPainter.clear();
    m_dMapPainter.clear();
    updateMaps(true);
    updatePlots();
}

/// The calculation counted valences; of another quantity that is shown, count here. "Auto" shows
/// the limits of the shown one.
void FourPs::countShownHistogram()
{
    if (!m_maps) {
        return;
    }
    const std::array<double, 3> oldSpan = spanOf(m_shownCounts);
    orvel::HistogramSettings settings = m_valenceSettings;
    m_shownCounts = m_valenceHistogram->counts();
    if (chosenHistogram() != orvel::Quantity::Valence) {
        const orvel::MapValues values = valuesOf(chosenHistogram());
        settings = m_valenceHistogram->settings();
        if (settings.autoRange) {
            settings = autoSettings(settings, values);
        }
        m_shownCounts.setUp(settings);
        m_shownCounts.count(values.values, static_cast<size_t>(values.count));
    }
    m_shownAmounts = m_amountHistogram->counts();
    if (m_advanced->hidesUncertain()) { // the files count every pixel nevertheless
        m_shownCounts = visibleCounts(chosenHistogram(), settings);
        m_shownAmounts = visibleCounts(orvel::Quantity::Amount, m_amountSettings);
    }
    if (settings.autoRange) {
        m_valenceHistogram->showLimits(settings.from, settings.to);
    }
    if (spanOf(m_shownCounts) != oldSpan) {
        m_ui->Disps->panel(Displays::DHistA)->clearScale();
    }
    countRegions();
}

int FourPs::validReferenceCount() const
{
    return static_cast<int>(
        std::count_if(m_references.begin(), m_references.end(), [](const ARefFile *row) {
            return row->isUsed() && row->selector()->isValid();
        }));
}

/// What the plots show of the regions, in the boxes that they show of the whole map.
void FourPs::countRegions()
{
    ++m_regionRevision;
    m_regionsAreNew = false;
    const bool hadAny = !m_regionGroups.empty();
    m_regionGroups.clear();
    if (m_maps) {
        m_regionGroups =
            orvel::groupsOf(m_regions->regions(), m_maps->width(), m_maps->height(), m_colours);
        const orvel::MapValues shown = shownMap();
        for (orvel::RegionGroup &group : m_regionGroups) {
            group.shown = countsOf(group.pixels, valuesOf(chosenHistogram()), shown, m_shownCounts);
            group.amounts =
                countsOf(group.pixels, valuesOf(orvel::Quantity::Amount), shown, m_shownAmounts);
        }
    }
    if (hadAny || !m_regionGroups.empty()) { // alone they have a range of their own
        for (const Displays::DispId id : {Displays::DHistA, Displays::DHistDMut}) {
            if (!m_ui->Disps->panel(id)->area()->isZoomed()) {
                m_ui->Disps->panel(id)->clearScale();
            }
        }
    }
}

/// Counts of a quantity over the pixels that the map shows.
orvel::BinCounts FourPs::visibleCounts(orvel::Quantity quantity,
                                       const orvel::HistogramSettings &settings) const
{
    const orvel::MapValues shown = shownMap();
    const orvel::MapValues values = valuesOf(quantity);
    orvel::BinCounts counts;
    counts.setUp(settings);
    for (qint64 i = 0; i < values.count; ++i) {
        if (!shown.isHidden(i)) {
            counts.count(values.values[i]);
        }
    }
    return counts;
}

/// Another choice of noise: the results stay, and so do messages and comparison.
void FourPs::runPrecision()
{
    enableWhatCounts();
    if (m_isHeld) {
        return;
    }
    const WaitCursor wait;
    const orvel::AnalysisInput input = readInput();
    try {
        const orvel::MapOutcome outcome = calculateMap(input, {0, m_pool}, &m_memory);
        if (outcome.maps) {
            showResults(outcome);
        }
    } catch (const std::bad_alloc &) {
        writeMessage(tr("There is not enough memory for these maps"));
    }
    const orvel::TargetOutcome target = calculateTarget(input);
    if (target.ran) {
        m_advanced->showTarget(target);
    }
    if (const auto lcf = calculateLcf(input).result) {
        m_advanced->showLcf(*lcf);
    }
}

void FourPs::runTarget(const orvel::AnalysisInput &input)
{
    const WaitCursor wait;
    const orvel::TargetOutcome outcome = calculateTarget(input);
    writeLines(outcome.messages);
    if (!outcome.ran) {
        return;
    }
    m_advanced->showTarget(outcome);
    m_targetA = outcome.a;
    m_targetValence = outcome.valence;
    showText(m_ui->CalcRes, orvel::textOf(outcome.resultField));
    if (outcome.dMutField) {
        showText(m_ui->TargetDMut, *outcome.dMutField);
    }
    for (size_t n = 0; n < m_references.size(); ++n) {
        showText(m_references[n]->ratioDisp(), outcome.rows[n].ratio);
        showText(m_references[n]->amountDisp(), outcome.rows[n].amount);
    }
}

void FourPs::runLcf(const orvel::AnalysisInput &input)
{
    const WaitCursor wait;
    const orvel::LcfOutcome outcome = calculateLcf(input);
    writeLines(outcome.messages);
    if (!outcome.result) {
        return;
    }
    showText(m_ui->LCFRes, orvel::textOf(outcome.resultField));
    m_advanced->showLcf(*outcome.result);
    m_comparison.add({m_targetA, m_targetValence, outcome.result->ratios.front(),
                      outcome.result->valence, m_comparisonColour});
    m_fittedCurve = outcome.result->curve;
    m_ui->Disps->panel(Displays::DMuts)->updateSurface();
    m_ui->Disps->panel(Displays::DLCFvsMPS)->updateSurface();
}

void FourPs::clearLCFvs4PS(MouseC * /*m*/)
{
    m_comparison.clear();
    m_comparisonColour = 0;
    m_ui->Disps->panel(Displays::DLCFvsMPS)->updateSurface();
}

void FourPs::newColorLCFvs4PS(MouseC * /*m*/)
{
    ++m_comparisonColour;
    if (m_comparisonColour >= m_colours.count()) {
        m_comparisonColour = 0;
    }
}

void FourPs::calcAndWrite()
{
    calcMap();
    writeResults();
}

void FourPs::writeResults()
{
    const QString path = m_ui->SaveFSelect->text();
    if (QFileInfo::exists(path)) {
        // Built, as it always was, and never shown: nothing asks before overwriting.
        const QMessageBox box(
            QMessageBox::Warning, QStringLiteral("Over Write"),
            QStringLiteral("The file %1 is already there.").arg(QFileInfo(path).fileName()),
            QMessageBox::NoButton);
    }
    orvel::ResultFileOptions options;
    options.record = texts().record;
    for (const ARefFile *row : m_references) {
        if (row->isUsed() && row->selector()->isValid()) {
            options.valences.push_back(row->valence());
        }
    }
    const WaitCursor wait;
    if (!writeResultFile(path, m_maps.get(), options)) {
        writeMessage(tr("Can't open the file [%1]").arg(path));
        return;
    }
    m_valenceHistogram->write(path, orvel::kRatioTag);
    m_amountHistogram->write(path, orvel::kThicknessTag);
    if (m_advanced->texts().sigmaFile && m_maps && m_maps->precision()) {
        const QString sigmaPath = orvel::sigmaPathBeside(path);
        if (!writeSigmaFile(sigmaPath, *m_maps)) {
            writeMessage(tr("Can't open the file [%1]").arg(sigmaPath));
        }
    }
    if (m_maps && !m_regions->regions().empty() &&
        !writeRegionFile(path, *m_maps, m_regions->references(), m_regions->regions())) {
        writeMessage(tr("Can't open the file [%1]").arg(orvel::regionPathBeside(path)));
    }
    // In passing: the message box is for what needs attention.
    QToolTip::showText(m_ui->WriteB->mapToGlobal(QPoint(0, 0)),
                       tr("Written: %1").arg(QFileInfo(path).absoluteFilePath()), m_ui->WriteB);
}
