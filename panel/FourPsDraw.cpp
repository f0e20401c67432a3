// What the displays show, when they ask for it.
#include "panel/FourPs.h"

#include "display/DispMBase.h"
#include "display/Histgram.h"
#include "display/cBar.h"
#include "images/AEPoint.h"
#include "panel/AdvancedPanel.h"
#include "panel/PixelWindow.h"
#include "panel/RegionPanel.h"
#include "panel/plots/HistogramPlot.h"
#include "panel/plots/MutsPlot.h"
#include "spectra/ARefFile.h"
#include "spectra/AXafsFileSelect.h"
#include "ui_FourPs.h"

#include <QRadioButton>
#include <QToolTip>

#include <cmath>
#include <limits>

using orvel::Quantity;

// --- maps ---------------------------------------------------------------------------------------

/// Values of a quantity of the results; without any pixel when the method does not give it.
orvel::MapValues FourPs::valuesOf(Quantity quantity) const
{
    orvel::MapValues map;
    if (!m_maps) {
        return map;
    }
    map.width = m_maps->width();
    map.height = m_maps->height();
    map.owner = m_maps;
    // A four-points map knows one fraction; the other's deviation is the same.
    const bool isOther = quantity == Quantity::SigmaRatio2 && !isNonEquiv(m_maps->method());
    if (const double *plane = m_maps->plane(isOther ? Quantity::SigmaRatio1 : quantity)) {
        map.values = plane;
        map.count = m_maps->size();
    } else if (m_maps->fills(quantity)) {
        if (m_derivedFrom.lock() != m_maps) {
            m_derived = m_pool->take(static_cast<size_t>(m_maps->size()));
            for (qint64 i = 0; i < m_maps->size(); ++i) {
                m_derived[static_cast<size_t>(i)] = m_maps->at(quantity, i);
            }
            m_derivedFrom = m_maps;
        }
        map.values = m_derived.data();
        map.count = m_maps->size();
    }
    return map;
}

/// The chosen quantity with what is hidden of it: pixels too uncertain, if that is wished, and
/// deviations that are not determined.
orvel::MapValues FourPs::shownMap() const
{
    const Quantity quantity = chosenMap();
    orvel::MapValues map = valuesOf(quantity);
    if (orvel::indexOf(quantity) > orvel::indexOf(Quantity::Residual)) {
        map.sigma = map.values;
        map.sigmaLimit = std::numeric_limits<double>::infinity();
    }
    if (!m_advanced->hidesUncertain()) {
        return map;
    }
    const auto ownSigma = [quantity] {
        switch (quantity) {
        case Quantity::Valence:
            return Quantity::SigmaValence;
        case Quantity::Amount:
            return Quantity::SigmaAmount;
        default:
            return orvel::quantityAt(orvel::indexOf(quantity) +
                                     orvel::indexOf(Quantity::SigmaRatio1));
        }
    };
    const bool hasSigma = quantity <= Quantity::Ratio4 || quantity == Quantity::Valence ||
                          quantity == Quantity::Amount;
    const orvel::MapValues sigma = hasSigma ? valuesOf(ownSigma()) : orvel::MapValues();
    if (sigma.values != nullptr && sigma.count == map.count) {
        map.sigma = sigma.values;
        map.sigmaLimit = m_advanced->sigmaLimit();
    }
    return map;
}

orvel::MapValues FourPs::dataValues() const
{
    orvel::MapValues map;
    if (const auto image = m_points[static_cast<size_t>(dataMapRow())]->map()) {
        map.values = image->absorptionPlane().data();
        map.count = image->size();
        map.width = image->xNum();
        map.height = image->yNum();
        map.owner = image;
    }
    return map;
}

void FourPs::drawMapOn(DispMBase *panel, orvel::MapPainter &painter, const orvel::MapValues &map,
                       QStylePainter *p)
{
    if (!map.isEmpty() && !panel->area()->isRangeSet()) {
        if (panel->bar()->isAutoScale()) {
            const orvel::ValueLimits limits = limitsOf(map);
            panel->setLimits(limits.low, limits.high);
            panel->bar()->update();
        }
        panel->setInitialRange(0, 0, map.width, map.height);
    }
    painter.paint(*p, *panel->coord(), map, panel->bar()->scale(), m_ui->MapWGrid->isChecked());
}

void FourPs::drawMap(QStylePainter *p)
{
    const orvel::MapValues map = shownMap();
    drawMapOn(m_ui->ResultMap, m_mapPainter, map, p);
    if (m_markedPixel && !map.isEmpty()) {
        const ChCoord &coord = *m_ui->ResultMap->coord();
        const QRectF pixel(QPointF(coord.sx(m_markedPixel->x()), coord.sy(m_markedPixel->y() + 1)),
                           QPointF(coord.sx(m_markedPixel->x() + 1), coord.sy(m_markedPixel->y())));
        p->setBrush(Qt::NoBrush);
        p->setPen(Qt::white);
        p->drawRect(pixel.adjusted(-3, -3, 2, 2));
        p->setPen(Qt::black);
        p->drawRect(pixel.adjusted(-2, -2, 1, 1));
    }
    if (!map.isEmpty()) {
        m_regions->tool()->paint(*p, m_colours);
    }
}

void FourPs::drawDMap(QStylePainter *p)
{
    drawMapOn(m_ui->DataMap, m_dMapPainter, dataValues(), p);
}

/// Limits of the colours for new values, where they follow the values; the zoom stays.
void FourPs::newMapLimits()
{
    const orvel::MapValues map = shownMap();
    if (!map.isEmpty() && m_ui->ResultMap->bar()->isAutoScale()) {
        const orvel::ValueLimits limits = limitsOf(map);
        m_ui->ResultMap->setLimits(limits.low, limits.high);
    }
    m_ui->ResultMap->updateSurface();
}

void FourPs::newDMapLimits()
{
    const orvel::MapValues map = dataValues();
    if (!map.isEmpty() && m_ui->DataMap->bar()->isAutoScale()) {
        const orvel::ValueLimits limits = limitsOf(map);
        m_ui->DataMap->setLimits(limits.low, limits.high);
    }
    m_ui->DataMap->updateSurface();
}

void FourPs::updateMaps(bool /*on*/)
{
    m_ui->ResultMap->updateSurface();
    m_ui->DataMap->updateSurface();
}

void FourPs::selectedNewMap()
{
    newMapLimits();
    countShownHistogram();
    for (const Displays::DispId id : {Displays::DHistA, Displays::DHistDMut}) {
        m_ui->Disps->panel(id)->updateSurface();
    }
}

void FourPs::updateDMap()
{
    m_dMapPainter.clear();
    const auto image = m_points[static_cast<size_t>(dataMapRow())]->map();
    const QSize size = image ? QSize(image->xNum(), image->yNum()) : QSize();
    if (size != m_dataMapSize) {
        m_ui->DataMap->clearScale();
        m_dataMapSize = size;
    }
    newDMapLimits();
}

void FourPs::showValueAt(DispMBase *panel, const orvel::MapValues &map, double x, double y)
{
    const double column = std::floor(x);
    const double row = std::floor(y);
    const bool isInside = column >= 0 && column < map.width && row >= 0 && row < map.height;
    if (!isInside) {
        panel->showValue(QString());
        return;
    }
    const qint64 i = static_cast<qint64>(row) * map.width + static_cast<qint64>(column);
    panel->showValue(QString::number(i < map.count ? map.values[i] : 0.0, 'g', 6));
}

void FourPs::receiveNowPosInMap(double x, double y)
{
    showValueAt(m_ui->ResultMap, valuesOf(chosenMap()), x, y);
}

void FourPs::receiveNowPosInDMap(double x, double y)
{
    showValueAt(m_ui->DataMap, dataValues(), x, y);
}

void FourPs::dClickedInMap(MouseC *m)
{
    const ChCoord &coord = *m_ui->ResultMap->coord();
    const double x = std::floor(coord.rx(m->x()));
    const double y = std::floor(coord.ry(m->y()));
    m_markedPixel.reset();
    if (m_maps && x >= 0 && x < m_maps->width() && y >= 0 && y < m_maps->height()) {
        m_markedPixel = QPoint(static_cast<int>(x), static_cast<int>(y));
        if (m_advanced->showsPixelWindow()) {
            showPixel(m_markedPixel->x(), m_markedPixel->y());
        }
    }
    m_ui->Disps->panel(Displays::DMuts)->updateSurface();
}

/// The fit of a pixel, as long as the form still says what the map was calculated from.
void FourPs::showPixel(int x, int y)
{
    const orvel::AnalysisInput input = readInput();
    if (m_memory.find(input, checkMap(input)) != m_maps) {
        QToolTip::showText(QCursor::pos(), tr("The inputs have changed: calculate the map first"),
                           m_ui->ResultMap);
        return;
    }
    if (m_pixelWindow == nullptr) {
        m_pixelWindow = new orvel::PixelWindow(this);
    }
    m_pixelWindow->show(reportPixel(input, *m_maps, x, y));
}

// --- graphs -------------------------------------------------------------------------------------

void FourPs::updatePlots()
{
    for (int id = 0; id < Displays::kPanels; ++id) {
        m_ui->Disps->panel(static_cast<Displays::DispId>(id))->updateSurface();
    }
}

void FourPs::draw(Displays::DispId id, DispABase *dab, QStylePainter *p)
{
    const auto withRegions = [this](orvel::HistogramPlot plot,
                                    orvel::BinCounts orvel::RegionGroup::*counts) {
        for (const orvel::RegionGroup &group : m_regionGroups) {
            plot.parts.push_back({group.*counts, group.colour});
            plot.colour = Qt::darkGray; // or it might be that of a region
        }
        plot.partsAlone = m_regions->areAlone();
        return plot;
    };
    switch (id) {
    case Displays::DRef1:
    case Displays::DRef2:
    case Displays::DRef3:
    case Displays::DRef4:
    case Displays::DTarget:
        break; // their selectors paint them
    case Displays::DMuts:
        drawMuts(dab, p);
        break;
    case Displays::DLCFvsMPS:
        drawComparison(dab, p);
        break;
    case Displays::DHistA:
        orvel::drawHistogramPlot(
            p, *dab, histogramButton(chosenHistogram())->text(), tr("Num."),
            withRegions({m_ui->HgAFrom->text().toDouble(), m_ui->HgATo->text().toDouble(),
                         m_shownCounts, m_colours.colour(2), m_maps != nullptr},
                        &orvel::RegionGroup::shown));
        break;
    case Displays::DHistDMut:
        orvel::drawHistogramPlot(
            p, *dab, tr("Thick."), tr("Num."),
            withRegions({m_ui->HgTFrom->text().toDouble(), m_ui->HgTTo->text().toDouble(),
                         m_shownAmounts, m_colours.colour(8), m_maps != nullptr},
                        &orvel::RegionGroup::amounts));
        break;
    case Displays::DDMutVorA:
        drawAmounts(dab, p);
        break;
    case Displays::DM2M3:
        drawDifferences(dab, p);
        break;
    }
}

orvel::MutsPlot FourPs::mutsPlot() const
{
    orvel::MutsPlot plot;
    plot.mode = normalization();
    int colour = 1; // black is for the target
    for (const ARefFile *row : m_references) {
        if (row->selector()->isValid()) {
            plot.spectra.push_back({row->selector(), m_colours.colour(colour),
                                    QStringLiteral("reference %1").arg(colour)});
        }
        ++colour;
    }
    for (const AMutE &spectrum : m_displaySpectra) {
        plot.spectra.push_back({&spectrum, m_colours.colour(++colour), spectrum.fileName()});
    }
    if (m_ui->TargetFile->isValid()) {
        plot.spectra.push_back({m_ui->TargetFile, Qt::black, QStringLiteral("target")});
    }
    if (m_fittedCurve) {
        plot.fitted = &*m_fittedCurve;
    }
    for (const AEPoint *row : m_points) {
        if (!row->isUsed()) {
            continue;
        }
        plot.energies.push_back(row->energyEv());
        if (m_markedPixel && row->map()) {
            plot.dots.push_back(QPointF(
                row->energyEv(), row->map()->absorption(m_markedPixel->x(), m_markedPixel->y())));
        }
    }
    plot.fullRange = m_ui->FullRangeCB->isChecked();
    return plot;
}

void FourPs::drawMuts(DispABase *dab, QStylePainter *p)
{
    orvel::drawMutsPlot(p, *dab, tr("Eng.[eV]"), tr("mut"), mutsPlot());
}

void FourPs::drawComparison(DispABase *dab, QStylePainter *p)
{
    double valences[2] = {0.0, 0.0};
    int found = 0;
    for (const ARefFile *row : m_references) {
        if (row->isUsed() && found < 2) {
            valences[found++] = row->valence();
        }
    }
    m_comparison.draw(p, *dab, tr("LCF"), QStringLiteral("MPs"), valences[0] - 0.2,
                      valences[1] + 0.2, m_colours);
}

void FourPs::drawAmounts(DispABase *dab, QStylePainter *p)
{
    const orvel::MapValues valence = valuesOf(Quantity::Valence);
    const orvel::MapValues amount = valuesOf(Quantity::Amount);
    orvel::ScatterParts parts;
    for (const orvel::RegionGroup &group : m_regionGroups) {
        parts.list.push_back({group.pixels, group.colour});
    }
    parts.width = valence.width;
    parts.alone = m_regions->areAlone();
    parts.revision = m_regionRevision;
    m_amountScatter.draw(p, *dab, tr("Valence"), tr("Thick."), valence.values, amount.values,
                         static_cast<size_t>(amount.count), m_maps,
                         parts.list.empty() ? m_colours.colour(2) : QColor(Qt::lightGray), parts);
}

/// Absorption differences of every pixel: the two used rows that are no V point, and the V point.
std::shared_ptr<const orvel::ImageDifferences> FourPs::shownDifferences()
{
    orvel::ImageDifferenceCache::Images images;
    size_t next = 0;
    for (const AEPoint *row : m_points) {
        if (row->isUsed() && row->map()) {
            if (row->isVPoint()) {
                images[2] = row->map();
            } else if (next < 2) {
                images[next++] = row->map();
            }
        }
    }
    return m_differences.of(images);
}

void FourPs::drawDifferences(DispABase *dab, QStylePainter *p)
{
    const auto differences = shownDifferences();
    m_differenceScatter.draw(
        p, *dab, tr("M3"), tr("M2"), differences ? differences->x.data() : nullptr,
        differences ? differences->y.data() : nullptr, differences ? differences->x.size() : 0,
        differences, m_colours.colour(1));
}
