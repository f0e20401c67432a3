#include "panel/AccessibleNames.h"

#include "display/DispABase.h"
#include "display/DispMBase.h"
#include "images/AEPoint.h"
#include "panel/WidgetText.h"
#include "spectra/ARefFile.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMultiHash>

namespace orvel {
namespace {

// clang-format off
/// What stands in something that has a name itself: a row, a selector, a display.
constexpr WidgetText kParts[] = {
    {"AFileSelect", "FileName", QT_TRANSLATE_NOOP("AccessibleNames", "file")},
    {"AFileSelect", "SelB", QT_TRANSLATE_NOOP("AccessibleNames", "select a file")},
    {"AFileSelect", "ClearB", QT_TRANSLATE_NOOP("AccessibleNames", "clear the file")},
    {"AFileSelect", "DE", QT_TRANSLATE_NOOP("AccessibleNames", "energy shift [eV]")},
    {"ARefFile", "UseCB", QT_TRANSLATE_NOOP("AccessibleNames", "use")},
    {"ARefFile", "Valence", QT_TRANSLATE_NOOP("AccessibleNames", "valence")},
    {"ARefFile", "RatioDisp", QT_TRANSLATE_NOOP("AccessibleNames", "ratio, result")},
    {"ARefFile", "AmountDisp", QT_TRANSLATE_NOOP("AccessibleNames", "dMut, result")},
    {"AEPoint", "UseCB", QT_TRANSLATE_NOOP("AccessibleNames", "use")},
    {"AEPoint", "VPointCB", QT_TRANSLATE_NOOP("AccessibleNames", "non-equivalent point")},
    {"AEPoint", "LCFCB", QT_TRANSLATE_NOOP("AccessibleNames", "bound of the linear combination fit")},
    {"AEPoint", "Energy", QT_TRANSLATE_NOOP("AccessibleNames", "energy [eV]")},
    {"AEPoint", "Mut1", QT_TRANSLATE_NOOP("AccessibleNames", "mut of reference 1")},
    {"AEPoint", "Mut2", QT_TRANSLATE_NOOP("AccessibleNames", "mut of reference 2")},
    {"AEPoint", "Mut3", QT_TRANSLATE_NOOP("AccessibleNames", "mut of reference 3")},
    {"AEPoint", "Mut4", QT_TRANSLATE_NOOP("AccessibleNames", "mut of reference 4")},
    {"AEPoint", "MutT", QT_TRANSLATE_NOOP("AccessibleNames", "mut of the target")},
    {"AEPoint", "ShowMapB", QT_TRANSLATE_NOOP("AccessibleNames", "show as data map")},
    {"AEPoint", "FPB", QT_TRANSLATE_NOOP("AccessibleNames", "pick the energy in the graph")},
    {"DispABase", "DispA", QT_TRANSLATE_NOOP("AccessibleNames", "graph")},
    {"DispABase", "PopDockB", QT_TRANSLATE_NOOP("AccessibleNames", "own window or back")},
    {"DispABase", "XPos", QT_TRANSLATE_NOOP("AccessibleNames", "x of the pointer")},
    {"DispABase", "YPos", QT_TRANSLATE_NOOP("AccessibleNames", "y of the pointer")},
    {"DispMBase", "DispA", QT_TRANSLATE_NOOP("AccessibleNames", "surface")},
    {"DispMBase", "PopDockB", QT_TRANSLATE_NOOP("AccessibleNames", "own window or back")},
    {"DispMBase", "MaxV", QT_TRANSLATE_NOOP("AccessibleNames", "upper limit of the colours")},
    {"DispMBase", "MinV", QT_TRANSLATE_NOOP("AccessibleNames", "lower limit of the colours")},
    {"DispMBase", "CBar", QT_TRANSLATE_NOOP("AccessibleNames", "colour bar")},
    {"DispMBase", "Val", QT_TRANSLATE_NOOP("AccessibleNames", "value at the pointer")},
    {"DispMBase", "XPos", QT_TRANSLATE_NOOP("AccessibleNames", "x of the pointer")},
    {"DispMBase", "YPos", QT_TRANSLATE_NOOP("AccessibleNames", "y of the pointer")},
};

/// What is called by itself, wherever it stands; also what has parts.
constexpr WidgetText kWholes[] = {
    {"FourPs", "TargetFile", QT_TRANSLATE_NOOP("AccessibleNames", "Target")},
    {"FourPs", "DispFSelect", QT_TRANSLATE_NOOP("AccessibleNames", "Further spectra")},
    {"FourPs", "SaveFSelect", QT_TRANSLATE_NOOP("AccessibleNames", "Result file")},
    {"FourPs", "InputScroll", QT_TRANSLATE_NOOP("AccessibleNames", "Inputs")},
    {"FourPs", "SelectedFs", QT_TRANSLATE_NOOP("AccessibleNames", "Further spectra, list")},
    {"FourPs", "RemoveAFile", QT_TRANSLATE_NOOP("AccessibleNames", "Further spectra, remove the selected one")},
    {"FourPs", "EdgeE", QT_TRANSLATE_NOOP("AccessibleNames", "Edge energy [eV]")},
    {"FourPs", "PreEEndDE", QT_TRANSLATE_NOOP("AccessibleNames", "End of the pre-edge range [eV]")},
    {"FourPs", "PostEStartDE", QT_TRANSLATE_NOOP("AccessibleNames", "Start of the post-edge range [eV]")},
    {"FourPs", "SubPreEforRef", QT_TRANSLATE_NOOP("AccessibleNames", "References, subtract the pre-edge line")},
    {"FourPs", "SubPostEforRef", QT_TRANSLATE_NOOP("AccessibleNames", "References, subtract the post-edge line")},
    {"FourPs", "SubPreEforTarget", QT_TRANSLATE_NOOP("AccessibleNames", "Target, subtract the pre-edge line")},
    {"FourPs", "SubPostEforTarget", QT_TRANSLATE_NOOP("AccessibleNames", "Target, subtract the post-edge line")},
    {"FourPs", "HgAFrom", QT_TRANSLATE_NOOP("AccessibleNames", "Histogram of the valence, from")},
    {"FourPs", "HgATo", QT_TRANSLATE_NOOP("AccessibleNames", "Histogram of the valence, to")},
    {"FourPs", "HgABoxes", QT_TRANSLATE_NOOP("AccessibleNames", "Histogram of the valence, boxes")},
    {"FourPs", "HgAAuto", QT_TRANSLATE_NOOP("AccessibleNames", "Histogram of the valence, automatic limits")},
    {"FourPs", "HgTFrom", QT_TRANSLATE_NOOP("AccessibleNames", "Histogram of the amount, from")},
    {"FourPs", "HgTTo", QT_TRANSLATE_NOOP("AccessibleNames", "Histogram of the amount, to")},
    {"FourPs", "HgTBoxes", QT_TRANSLATE_NOOP("AccessibleNames", "Histogram of the amount, boxes")},
    {"FourPs", "HgTAuto", QT_TRANSLATE_NOOP("AccessibleNames", "Histogram of the amount, automatic limits")},
    {"FourPs", "CalcTargetB", QT_TRANSLATE_NOOP("AccessibleNames", "Calculate the target")},
    {"FourPs", "CalcRes", QT_TRANSLATE_NOOP("AccessibleNames", "Target, result")},
    {"FourPs", "TargetDMut", QT_TRANSLATE_NOOP("AccessibleNames", "Target, dMut, result")},
    {"FourPs", "LCFB", QT_TRANSLATE_NOOP("AccessibleNames", "Linear combination fit of the target")},
    {"FourPs", "LCFRes", QT_TRANSLATE_NOOP("AccessibleNames", "Linear combination fit, result")},
    {"FourPs", "CalcMapB", QT_TRANSLATE_NOOP("AccessibleNames", "Calculate the maps")},
    {"FourPs", "WriteB", QT_TRANSLATE_NOOP("AccessibleNames", "Write the result file")},
    {"FourPs", "RecentB", QT_TRANSLATE_NOOP("AccessibleNames", "Recent sessions")},
    {"FourPs", "MainSplitterHandle", QT_TRANSLATE_NOOP("AccessibleNames", "Border of the inputs")},
    {"FourPs", "GraphSplitterHandle", QT_TRANSLATE_NOOP("AccessibleNames", "Border between maps and graphs")},
    {"FourPs", "MapSplitterHandle", QT_TRANSLATE_NOOP("AccessibleNames", "Border between the maps")},
    {"FourPs", "HelpB", QT_TRANSLATE_NOOP("AccessibleNames", "Manual")},
    {"FourPs", "Message", QT_TRANSLATE_NOOP("AccessibleNames", "Messages")},
    {"AdvancedPanel", "SigmaFile", QT_TRANSLATE_NOOP("AccessibleNames", "File of the standard deviations")},
    {"AdvancedPanel", "Noise", QT_TRANSLATE_NOOP("AccessibleNames", "Noise from")},
    {"AdvancedPanel", "NoiseSigma", QT_TRANSLATE_NOOP("AccessibleNames", "Standard deviation of one absorption")},
    {"AdvancedPanel", "NonEquivBounds", QT_TRANSLATE_NOOP("AccessibleNames", "Bounds of the non-equivalent method")},
    {"AdvancedPanel", "LcfBounds", QT_TRANSLATE_NOOP("AccessibleNames", "Bounds of the linear combination fit")},
    {"AdvancedPanel", "SigmaLimit", QT_TRANSLATE_NOOP("AccessibleNames", "Greatest standard deviation shown")},
    {"AdvancedPanel", "TargetPrecision", QT_TRANSLATE_NOOP("AccessibleNames", "Target, standard deviations")},
    {"AdvancedPanel", "LcfPrecision", QT_TRANSLATE_NOOP("AccessibleNames", "Linear combination fit, standard deviations")},
    {"EnergyAdviserDialog", "Criterion", QT_TRANSLATE_NOOP("AccessibleNames", "What to determine best")},
    {"RegionPanel", "RegionShape", QT_TRANSLATE_NOOP("AccessibleNames", "Shape of a new region")},
    {"RegionTable", "RegionView", QT_TRANSLATE_NOOP("AccessibleNames", "Statistics of the regions")},
    {"PixelWindow", "Plot", QT_TRANSLATE_NOOP("AccessibleNames", "Fit of the pixel, graph")},
    {"PixelWindow", "Numbers", QT_TRANSLATE_NOOP("AccessibleNames", "Fit of the pixel, numbers")},
};

/// What the buttons of a quantity choose, by the beginning of their names; their texts say which.
constexpr WidgetText kSeries[] = {
    {"FourPs", "Map", QT_TRANSLATE_NOOP("AccessibleNames", "Result map")},
    {"FourPs", "Hg", QT_TRANSLATE_NOOP("AccessibleNames", "Histogram")},
    {"FourPs", "Rec", QT_TRANSLATE_NOOP("AccessibleNames", "Recorded column")},
};
// clang-format on

QString tr(const char *text)
{
    return QCoreApplication::translate("AccessibleNames", text);
}

QString joined(const QString &whole, const QString &part)
{
    //: what something belongs to, and what it is
    return tr(QT_TRANSLATE_NOOP("AccessibleNames", "%1, %2")).arg(whole, part);
}

/// What a widget stands in, for its own name: the closest thing around it that has one.
QString wholeAround(const QWidget &widget)
{
    for (QWidget *around = widget.parentWidget(); around; around = around->parentWidget()) {
        if (const auto *map = qobject_cast<DispMBase *>(around)) {
            return map->title();
        }
        if (const auto *graph = qobject_cast<DispABase *>(around)) {
            return graph->title();
        }
        if (!around->accessibleName().isEmpty()) {
            return around->accessibleName();
        }
    }
    return QString();
}

template <class Row> void nameRows(const QWidget &window, const QString &name)
{
    int n = 0;
    for (Row *row : window.findChildren<Row *>()) {
        row->setAccessibleName(name.arg(++n));
    }
}

using NamesByObject = QMultiHash<QString, const WidgetText *>;

template <size_t n> NamesByObject byObject(const WidgetText (&names)[n])
{
    NamesByObject found;
    for (const WidgetText &name : names) {
        found.insert(QLatin1String(name.name), &name);
    }
    return found;
}

const char *textOf(const NamesByObject &names, const QWidget &widget)
{
    const QString object = widget.objectName();
    for (auto name = names.constFind(object); name != names.constEnd() && name.key() == object;
         ++name) {
        if (isInside(widget, (*name)->owner)) {
            return (*name)->text;
        }
    }
    return nullptr;
}

const char *seriesOf(const QWidget &button)
{
    for (const WidgetText &series : kSeries) {
        if (button.objectName().startsWith(QLatin1String(series.name))) {
            return series.text;
        }
    }
    return nullptr;
}

} // namespace

void setAccessibleNames(QWidget &window)
{
    nameRows<ARefFile>(window, tr(QT_TRANSLATE_NOOP("AccessibleNames", "Reference %1")));
    nameRows<AEPoint>(window, tr(QT_TRANSLATE_NOOP("AccessibleNames", "Energy point %1")));
    static const NamesByObject wholes = byObject(kWholes);
    static const NamesByObject parts = byObject(kParts);
    const QList<QWidget *> widgets = window.findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const auto *button = qobject_cast<QAbstractButton *>(widget);
        if (const char *text = textOf(wholes, *widget)) {
            widget->setAccessibleName(tr(text));
        } else if (button && !button->text().isEmpty() && seriesOf(*button)) {
            widget->setAccessibleName(joined(tr(seriesOf(*button)), button->text()));
        }
    }
    for (QWidget *widget : widgets) {
        if (const char *text = textOf(parts, *widget)) {
            widget->setAccessibleName(joined(wholeAround(*widget), tr(text)));
        }
    }
}

} // namespace orvel
