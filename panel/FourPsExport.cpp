// What graphs and maps give to files: pictures with the settings that made them, and their numbers.
#include "panel/FourPs.h"

#include "display/DispMBase.h"
#include "display/ExportMenu.h"
#include "display/cBar.h"
#include "images/AEPoint.h"
#include "panel/AdvancedPanel.h"
#include "panel/RegionPanel.h"
#include "panel/Tables.h"
#include "panel/plots/MutsPlot.h"
#include "panel/plots/SpectrumLine.h"
#include "session/RegionTexts.h"
#include "session/ResultPaths.h"
#include "spectra/ARefFile.h"
#include "spectra/AXafsFileSelect.h"
#include "ui_FourPs.h"

#include <QFileInfo>
#include <QRadioButton>

using orvel::Quantity;
using orvel::TableCurve;

namespace {

TableCurve curveOf(const QString &name, orvel::SpectrumLine line)
{
    return {name, std::move(line.energies), std::move(line.values)};
}

/// Points of the middles of the boxes.
TableCurve curveOf(const orvel::BinCounts &counts)
{
    TableCurve curve;
    curve.name = QStringLiteral("counts");
    for (int i = 0; i < counts.boxes(); ++i) {
        curve.x.push_back(counts.from() + (i + 0.5) * counts.step());
        curve.y.push_back(counts.counts()[static_cast<size_t>(i)]);
    }
    return curve;
}

std::vector<TableCurve> curvesOf(const AXafsFileSelect &spectrum)
{
    const orvel::SpectrumLine measured = orvel::lineOf(spectrum, AMutE::NoNormalization);
    std::vector<TableCurve> curves = {
        {QStringLiteral("spectrum"), measured.energies, measured.values},
        {QStringLiteral("pre-edge line"), measured.energies, {}},
        {QStringLiteral("post-edge line"), measured.energies, {}},
    };
    for (const double energy : measured.energies) {
        curves[1].y.push_back(spectrum.pre(energy));
        curves[2].y.push_back(spectrum.post(energy));
    }
    return curves;
}

} // namespace

void FourPs::makeExports()
{
    for (int i = 0; i < Displays::kPanels; ++i) {
        const auto id = static_cast<Displays::DispId>(i);
        DispABase *panel = m_ui->Disps->panel(id);
        auto *menu = new ExportMenu(panel->area(), [this, id, panel] {
            orvel::PaintedPicture picture = panel->picture();
            picture.settings = graphSettings(id);
            return picture;
        });
        menu->setCurves([panel] { return panel->coord()->hasContent(); },
                        [this, id] { return curvesCsv(graphSettings(id), shownCurves(id)); });
        connectExport(menu);
    }
    for (DispMBase *panel : {m_ui->ResultMap, m_ui->DataMap}) {
        const bool isResult = panel == m_ui->ResultMap;
        const auto map = [this, isResult] {
            return isResult ? valuesOf(chosenMap()) : dataValues();
        };
        auto *menu = new ExportMenu(panel->area(), [this, panel, isResult] {
            orvel::PaintedPicture picture = panel->picture(mapUnit(isResult));
            picture.title = mapTitle(isResult);
            picture.settings = mapSettings(isResult);
            return picture;
        });
        menu->setMap([map] { return !map().isEmpty(); },
                     [this, map, isResult] { return gridCsv(mapSettings(isResult), map()); },
                     [map, isResult, this](const QString &path) {
                         const QString id =
                             isResult ? quantityName() : QStringLiteral("Absorption");
                         return writeProcessedMap(path, QStringLiteral("orvel ") + id, map());
                     });
        connectExport(menu);
    }
}

void FourPs::connectExport(ExportMenu *menu)
{
    menu->setFolder([this] { return m_lastDir; });
    menu->setMayWrite([this](const QString &path) {
        const QString input = orvel::overwrittenInput({path}, inputPaths());
        if (!input.isEmpty()) { // a picture is not worth a measurement
            writeMessage(tr("Writing replaces the input %1").arg(input));
        }
        return input.isEmpty();
    });
    connect(menu, &ExportMenu::saved, this,
            [this](const QString &path) { receiveNewDir(QFileInfo(path).absolutePath()); });
    connect(menu, &ExportMenu::failed, this, [this](const QString &path) {
        writeMessage(tr("Can't open the file [%1]").arg(path));
    });
}

/// The chosen quantity as session files name it.
QString FourPs::quantityName() const
{
    return orvel::mapQuantityNames()[orvel::indexOf(chosenMap())];
}

QString FourPs::mapUnit(bool isResult) const
{
    if (!isResult) {
        return QStringLiteral("\u03bct");
    }
    return m_maps ? orvel::unitOf(chosenMap(), m_maps->method()) : QString();
}

QString FourPs::mapTitle(bool isResult) const
{
    if (isResult) {
        return m_ui->ResultMap->title() + QStringLiteral(": ") + mapButton(chosenMap())->text();
    }
    const AEPoint *row = m_points[static_cast<size_t>(dataMapRow())];
    return m_ui->DataMap->title() + QStringLiteral(": %1 eV").arg(row->energyEdit()->text());
}

/// The regions that a picture shows, as session files hold them.
void FourPs::addRegions(orvel::Settings &settings) const
{
    int n = 0;
    for (const orvel::Region &region : m_regions->regions()) {
        settings.push_back({QStringLiteral("Region%1").arg(++n), orvel::textOf(region)});
    }
}

/// A result is told with the form as it was when it was calculated: the form may have gone on.
orvel::Settings FourPs::mapSettings(bool isResult) const
{
    orvel::Settings settings = settingsOf(isResult && m_maps ? m_calculatedFrom : texts());
    const auto add = [&settings](const char *name, const QString &value) {
        settings.push_back({QLatin1String(name), value});
    };
    const auto number = [](double value) { return QString::number(value, 'g', 10); };
    add("Title", mapTitle(isResult));
    if (isResult) {
        add("Quantity", quantityName());
    } else {
        const AEPoint *row = m_points[static_cast<size_t>(dataMapRow())];
        add("Quantity", QStringLiteral("Absorption"));
        add("Image", row->fileSelect()->path());
        add("ImageEnergy", row->energyEdit()->text());
    }
    add("Unit", mapUnit(isResult));
    const orvel::MapValues map = isResult ? shownMap() : dataValues();
    add("Width", QString::number(map.width));
    add("Height", QString::number(map.height));
    add("FirstRow", QStringLiteral("bottom"));
    const orvel::ColourScale &scale = (isResult ? m_ui->ResultMap : m_ui->DataMap)->bar()->scale();
    add("Lowest", number(scale.zMin()));
    add("Highest", number(scale.zMax()));
    add("Palette", QString::number(scale.type() + 1) +
                       (scale.isInverted() ? QStringLiteral(" inverted") : QString()));
    if (map.sigma != nullptr && m_advanced->hidesUncertain()) {
        add("HiddenAboveSigma", number(map.sigmaLimit));
    }
    if (isResult) {
        addRegions(settings);
    }
    return settings;
}

orvel::Settings FourPs::graphSettings(Displays::DispId id) const
{
    const bool isOfMaps =
        id == Displays::DHistA || id == Displays::DHistDMut || id == Displays::DDMutVorA;
    orvel::Settings settings = settingsOf(isOfMaps && m_maps ? m_calculatedFrom : texts());
    const auto add = [&settings](const char *name, const QString &value) {
        settings.push_back({QLatin1String(name), value});
    };
    const DispABase *panel = m_ui->Disps->panel(id);
    add("Title", panel->title());
    add("XAxis", panel->xTitle());
    add("YAxis", panel->yTitle());
    const auto range = [](double from, double to) {
        return QStringLiteral("%1 %2").arg(from, 0, 'g', 10).arg(to, 0, 'g', 10);
    };
    add("XRange", range(panel->coord()->xMin(), panel->coord()->xMax()));
    add("YRange", range(panel->coord()->yMin(), panel->coord()->yMax()));
    if (id == Displays::DMuts) {
        const char *const modes[] = {"None", "SubPre", "EdgeJump", "TwoVictoreens"};
        add("Normalization", QLatin1String(modes[static_cast<size_t>(view().normalize)]));
    }
    if (id == Displays::DHistA) {
        add("Quantity", orvel::quantityNames()[orvel::indexOf(chosenHistogram())]);
    }
    if (id == Displays::DHistA || id == Displays::DHistDMut) {
        const orvel::BinCounts &counts = id == Displays::DHistA ? m_shownCounts : m_shownAmounts;
        add("Boxes", QString::number(counts.boxes()));
        add("BoxesRange", range(counts.from(), counts.to()));
    }
    if (isOfMaps) {
        addRegions(settings);
        if (m_regions->areAlone()) {
            add("RegionsAlone", QStringLiteral("true"));
        }
    }
    return settings;
}

/// All points of what a graph shows, whatever part of them the zoom leaves.
std::vector<TableCurve> FourPs::shownCurves(Displays::DispId id)
{
    std::vector<TableCurve> curves;
    switch (id) {
    case Displays::DRef1:
    case Displays::DRef2:
    case Displays::DRef3:
    case Displays::DRef4:
        return curvesOf(*m_references[static_cast<size_t>(id - Displays::DRef1)]->selector());
    case Displays::DTarget:
        return curvesOf(*m_ui->TargetFile);
    case Displays::DMuts: {
        const orvel::MutsPlot plot = mutsPlot();
        for (const orvel::MutsPlot::Curve &curve : plot.spectra) {
            curves.push_back(curveOf(curve.name, orvel::lineOf(*curve.spectrum, plot.mode)));
        }
        if (plot.showsFit()) {
            curves.push_back(curveOf(QStringLiteral("fit"),
                                     orvel::lineOf(*plot.fitted, AMutE::NoNormalization)));
        }
        if (plot.showsDots() && !plot.dots.empty()) {
            TableCurve pixel;
            pixel.name = QStringLiteral("pixel");
            for (const QPointF &dot : plot.dots) {
                pixel.x.push_back(dot.x());
                pixel.y.push_back(dot.y());
            }
            curves.push_back(std::move(pixel));
        }
        break;
    }
    case Displays::DLCFvsMPS: {
        TableCurve runs;
        runs.name = QStringLiteral("runs");
        for (const orvel::ComparisonPoint &point : m_comparison.points()) {
            runs.x.push_back(point.lcfValence);
            runs.y.push_back(point.valence);
        }
        curves.push_back(std::move(runs));
        break;
    }
    case Displays::DHistA:
        curves.push_back(curveOf(m_shownCounts));
        break;
    case Displays::DHistDMut:
        curves.push_back(curveOf(m_shownAmounts));
        break;
    case Displays::DDMutVorA: {
        // One derived plane at a time is kept: neither of these is one.
        const orvel::MapValues valence = valuesOf(Quantity::Valence);
        const orvel::MapValues amount = valuesOf(Quantity::Amount);
        if (valence.values != nullptr && amount.values != nullptr) {
            curves.push_back({QStringLiteral("pixels"),
                              {valence.values, valence.values + valence.count},
                              {amount.values, amount.values + amount.count}});
        }
        break;
    }
    case Displays::DM2M3:
        if (const auto differences = shownDifferences()) {
            curves.push_back({QStringLiteral("pixels"),
                              {differences->x.begin(), differences->x.end()},
                              {differences->y.begin(), differences->y.end()}});
        }
        break;
    }
    return curves;
}
