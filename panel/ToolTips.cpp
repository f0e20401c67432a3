#include "panel/ToolTips.h"

#include "panel/WidgetText.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QMultiHash>
#include <QWidget>

namespace orvel {
namespace {

// clang-format off
constexpr WidgetText kTips[] = {
    // files
    {"AFileSelect", "SelB", QT_TRANSLATE_NOOP("ToolTips", "Select a file")},
    {"AFileSelect", "ClearB", QT_TRANSLATE_NOOP("ToolTips", "Take the file away")},
    {"AFileSelect", "DE", QT_TRANSLATE_NOOP("ToolTips", "Energy shift dE of this spectrum [eV]; its energies count as E - dE")},
    {"FourPs", "XafsFS", QT_TRANSLATE_NOOP("ToolTips", "XAFS spectrum of this reference")},
    {"FourPs", "TargetFile", QT_TRANSLATE_NOOP("ToolTips", "XAFS spectrum of the target")},
    {"FourPs", "DispFSelect", QT_TRANSLATE_NOOP("ToolTips", "Further spectra for the graph; not analysed")},
    {"FourPs", "SelectedFs", QT_TRANSLATE_NOOP("ToolTips", "Further spectra in the graph; not analysed")},
    {"FourPs", "RemoveAFile", QT_TRANSLATE_NOOP("ToolTips", "Remove the selected spectrum from this list")},
    {"FourPs", "FileSelect", QT_TRANSLATE_NOOP("ToolTips", "Map at this energy; several at once fill this row and the next ones")},

    // a reference
    {"ARefFile", "UseCB", QT_TRANSLATE_NOOP("ToolTips", "This reference takes part in the calculations")},
    {"ARefFile", "Valence", QT_TRANSLATE_NOOP("ToolTips", "Valence of the absorbing element in this reference")},
    {"ARefFile", "RatioDisp", QT_TRANSLATE_NOOP("ToolTips", "Result: fraction of this reference in the target")},
    {"ARefFile", "AmountDisp", QT_TRANSLATE_NOOP("ToolTips", "Result: share of this reference in the edge jump of the target, in units of mut")},

    // the lines about the edge
    {"FourPs", "EdgeE", QT_TRANSLATE_NOOP("ToolTips", "Edge energy E0 [eV]; found in the reference that was read last")},
    {"FourPs", "PreEEndDE", QT_TRANSLATE_NOOP("ToolTips", "End of the pre-edge range relative to E0 [eV]; negative is below the edge")},
    {"FourPs", "PostEStartDE", QT_TRANSLATE_NOOP("ToolTips", "Start of the post-edge range relative to E0 [eV]")},

    // methods
    {"FourPs", "TypeNonEquiv", QT_TRANSLATE_NOOP("ToolTips", "On: non-equivalent method with all used references; off: four-points methods with the first two")},
    {"FourPs", "MoreCondsCB", QT_TRANSLATE_NOOP("ToolTips", "Show the conditions of both methods")},
    {"FourPs", "TypeTMKisExact", QT_TRANSLATE_NOOP("ToolTips", "Exact solution with four used energies (with three: three points, without k)")},
    {"FourPs", "TypeTMKisLS", QT_TRANSLATE_NOOP("ToolTips", "Least squares over four or more used energies")},
    {"FourPs", "NonEquivBGVic", QT_TRANSLATE_NOOP("ToolTips", "Background mu0 + C1 lambda^3 + C2 lambda^4, fitted to every pixel")},
    {"FourPs", "NonEquivBGLinear", QT_TRANSLATE_NOOP("ToolTips", "Background mu0 + C1 E, fitted to every pixel")},
    {"FourPs", "SubPreEforRef", QT_TRANSLATE_NOOP("ToolTips", "Subtract the pre-edge line from the references")},
    {"FourPs", "SubPostEforRef", QT_TRANSLATE_NOOP("ToolTips", "Subtract the post-edge line from the references")},
    {"FourPs", "SubPreEforTarget", QT_TRANSLATE_NOOP("ToolTips", "Subtract the pre-edge line from the target")},
    {"FourPs", "SubPostEforTarget", QT_TRANSLATE_NOOP("ToolTips", "Subtract the post-edge line from the target")},

    // an energy point
    {"AEPoint", "UseCB", QT_TRANSLATE_NOOP("ToolTips", "This energy takes part in the calculations")},
    {"AEPoint", "VPointCB", QT_TRANSLATE_NOOP("ToolTips", "Non-equivalent point: where the references differ most")},
    {"AEPoint", "LCFCB", QT_TRANSLATE_NOOP("ToolTips", "Bounds the energy range of the linear combination fit")},
    {"AEPoint", "Energy", QT_TRANSLATE_NOOP("ToolTips", "Energy of this image [eV]")},
    {"AEPoint", "Mut1", QT_TRANSLATE_NOOP("ToolTips", "mut of reference 1 at this energy, minus the chosen line")},
    {"AEPoint", "Mut2", QT_TRANSLATE_NOOP("ToolTips", "mut of reference 2 at this energy, minus the chosen line")},
    {"AEPoint", "Mut3", QT_TRANSLATE_NOOP("ToolTips", "mut of reference 3 at this energy, minus the chosen line")},
    {"AEPoint", "Mut4", QT_TRANSLATE_NOOP("ToolTips", "mut of reference 4 at this energy, minus the chosen line")},
    {"AEPoint", "MutT", QT_TRANSLATE_NOOP("ToolTips", "mut of the target at this energy, minus the chosen line")},
    {"AEPoint", "ShowMapB", QT_TRANSLATE_NOOP("ToolTips", "Show this image as the data map")},
    {"AEPoint", "FPB", QT_TRANSLATE_NOOP("ToolTips", "A press in the graph of all spectra sets this energy; within 20 pixels of a marker it moves the marker instead. Press again to end")},

    // histograms
    {"FourPs", "HgAFrom", QT_TRANSLATE_NOOP("ToolTips", "Valence at the centre of the first box")},
    {"FourPs", "HgATo", QT_TRANSLATE_NOOP("ToolTips", "Valence at the centre of the last box")},
    {"FourPs", "HgABoxes", QT_TRANSLATE_NOOP("ToolTips", "Number of boxes, 2 or more")},
    {"FourPs", "HgAAuto", QT_TRANSLATE_NOOP("ToolTips", "Take the limits from the values of the map")},
    {"FourPs", "HgTFrom", QT_TRANSLATE_NOOP("ToolTips", "Amount (in units of mut) or t/ts at the centre of the first box")},
    {"FourPs", "HgTTo", QT_TRANSLATE_NOOP("ToolTips", "Amount (in units of mut) or t/ts at the centre of the last box")},
    {"FourPs", "HgTBoxes", QT_TRANSLATE_NOOP("ToolTips", "Number of boxes, 2 or more")},
    {"FourPs", "HgTAuto", QT_TRANSLATE_NOOP("ToolTips", "Take the limits from the values of the map")},

    // what is shown
    {"FourPs", "ShowDMap", QT_TRANSLATE_NOOP("ToolTips", "Show or hide the data map")},
    {"FourPs", "ShowMap", QT_TRANSLATE_NOOP("ToolTips", "Show or hide the result map")},
    {"FourPs", "ShowDAB", QT_TRANSLATE_NOOP("ToolTips", "Show or hide the graphs")},
    {"FourPs", "NNone", QT_TRANSLATE_NOOP("ToolTips", "Spectra as measured (mut)")},
    {"FourPs", "NBySubPre", QT_TRANSLATE_NOOP("ToolTips", "Spectra minus their pre-edge lines (mut)")},
    {"FourPs", "NByEJ", QT_TRANSLATE_NOOP("ToolTips", "Spectra minus their pre-edge lines, over their edge jumps")},
    {"FourPs", "NBy2Vics", QT_TRANSLATE_NOOP("ToolTips", "Spectra from 0 at the pre-edge line to 1 at the post-edge line")},
    {"FourPs", "FullRangeCB", QT_TRANSLATE_NOOP("ToolTips", "On: whole spectra; off: the range of the used energies")},
    {"FourPs", "MapWGrid", QT_TRANSLATE_NOOP("ToolTips", "Draw lines between the pixels of both maps")},
    {"DispABase", "PopDockB", QT_TRANSLATE_NOOP("ToolTips", "Move the graph into a window of its own, and back")},
    {"DispABase", "XPos", QT_TRANSLATE_NOOP("ToolTips", "Position of the pointer, in units of the x axis")},
    {"DispABase", "YPos", QT_TRANSLATE_NOOP("ToolTips", "Position of the pointer, in units of the y axis")},
    {"DispMBase", "PopDockB", QT_TRANSLATE_NOOP("ToolTips", "Move the map into a window of its own, and back")},
    {"DispMBase", "MaxV", QT_TRANSLATE_NOOP("ToolTips", "Value of the uppermost colour; typing ends auto scale")},
    {"DispMBase", "MinV", QT_TRANSLATE_NOOP("ToolTips", "Value of the lowermost colour; typing ends auto scale")},
    {"DispMBase", "CBar", QT_TRANSLATE_NOOP("ToolTips", "Drag a line to stretch the colours; right button: palettes, invert, auto scale")},
    {"DispMBase", "Val", QT_TRANSLATE_NOOP("ToolTips", "Value of the pixel under the pointer, in units of the map")},
    {"DispMBase", "XPos", QT_TRANSLATE_NOOP("ToolTips", "Position of the pointer, x [pixels]")},
    {"DispMBase", "YPos", QT_TRANSLATE_NOOP("ToolTips", "Position of the pointer, y [pixels]")},

    // execution and results
    {"FourPs", "OpenSessionB", QT_TRANSLATE_NOOP("ToolTips", "Open a session file: files, parameters and view")},
    {"FourPs", "RecentB", QT_TRANSLATE_NOOP("ToolTips", "Sessions that were opened or saved last; grey: not there any more")},
    {"FourPs", "RestoreB", QT_TRANSLATE_NOOP("ToolTips", "An earlier run ended with inputs that no session holds: take them back")},
    {"FourPs", "UndoB", QT_TRANSLATE_NOOP("ToolTips", "Undo (Ctrl+Z) or redo (Ctrl+Shift+Z) a change of an input or a choice")},
    {"FourPs", "SaveSessionB", QT_TRANSLATE_NOOP("ToolTips", "Save files, parameters and view as a session file")},
    {"FourPs", "HelpB", QT_TRANSLATE_NOOP("ToolTips", "Open the manual in the browser")},
    {"FourPs", "CalcTargetB", QT_TRANSLATE_NOOP("ToolTips", "Analyse the spectrum of the target by the chosen method")},
    {"FourPs", "CalcRes", QT_TRANSLATE_NOOP("ToolTips", "Result of the chosen method for the target")},
    {"FourPs", "TargetDMut", QT_TRANSLATE_NOOP("ToolTips", "Result: edge jump of the target, in units of mut (non-equivalent method)")},
    {"FourPs", "LCFB", QT_TRANSLATE_NOOP("ToolTips", "Fit the spectrum of the target by the used references, in the range ticked under LCF")},
    {"FourPs", "LCFRes", QT_TRANSLATE_NOOP("ToolTips", "Result of the linear combination fit: fractions, valence, constant")},
    {"FourPs", "CalcMapB", QT_TRANSLATE_NOOP("ToolTips", "Analyse every pixel of the maps by the chosen method")},
    {"FourPs", "SaveFSelect", QT_TRANSLATE_NOOP("ToolTips", "Result file; two histograms are written beside it")},
    {"FourPs", "WriteB", QT_TRANSLATE_NOOP("ToolTips", "Calculate the maps and write result file and histograms; older ones are replaced without asking")},
    {"FourPs", "Message", QT_TRANSLATE_NOOP("ToolTips", "Messages and results, the last one at the end")},

    // regions
    {"FourPs", "RegionsB", QT_TRANSLATE_NOOP("ToolTips", "Draw regions on the result map and compare their pixels; while this is on, presses and drags on the map belong to them. Shift-drag and wheel still move and zoom")},
    {"RegionPanel", "RegionShape", QT_TRANSLATE_NOOP("ToolTips", "Rectangle: press, drag, release; a click selects. Polygon: click the corners; Enter or a click on the first one ends it, Backspace takes the last one back, Ctrl-click selects. Escape gives up, Delete removes the selected region")},
    {"RegionPanel", "RegionRemoveB", QT_TRANSLATE_NOOP("ToolTips", "Remove the selected region")},
    {"RegionPanel", "RegionTableB", QT_TRANSLATE_NOOP("ToolTips", "Mean, standard deviation and median of every map in every region")},
    {"RegionPanel", "RegionsAlone", QT_TRANSLATE_NOOP("ToolTips", "Histograms and scatter plot show the regions without the whole map")},
    {"RegionTable", "RegionView", QT_TRANSLATE_NOOP("ToolTips", "Of the finite pixels of each region, in units of the map; the standard deviation is that of the pixels (n - 1)")},
    {"RegionTable", "RegionCopyB", QT_TRANSLATE_NOOP("ToolTips", "Copy the table, for a spreadsheet")},
    {"RegionTable", "RegionCsvB", QT_TRANSLATE_NOOP("ToolTips", "Write the table with all digits to a CSV file")},
    {"RegionTable", "RegionCloseB", QT_TRANSLATE_NOOP("ToolTips", "Close this window; the regions stay")},

    // beside the results
    {"FourPs", "AdvancedCB", QT_TRANSLATE_NOOP("ToolTips", "Show what stands beside the results: standard deviations, bounded fits, choice of energies")},
    {"AdvancedPanel", "SigmaMaps", QT_TRANSLATE_NOOP("ToolTips", "Maps of the residual and of the standard deviation (1 sigma) of ratios, valence and amount")},
    {"AdvancedPanel", "SigmaFile", QT_TRANSLATE_NOOP("ToolTips", "Write them beside the result file, as NAME_Sigma")},
    {"AdvancedPanel", "Noise", QT_TRANSLATE_NOOP("ToolTips", "Where the standard deviation s of a measured absorption comes from. A pixel's own residuals are a rough guess: with 1 or 2 degrees of freedom their mean is 0.8 to 0.9 of the truth")},
    {"AdvancedPanel", "NoiseSigma", QT_TRANSLATE_NOOP("ToolTips", "Standard deviation s of one absorption, in units of mut")},
    {"AdvancedPanel", "NonEquivBounds", QT_TRANSLATE_NOOP("ToolTips", "Non-equivalent fit: references free, or none below 0; the background stays free. Holds from the next calculation")},
    {"AdvancedPanel", "LcfBounds", QT_TRANSLATE_NOOP("ToolTips", "Linear combination fit: ratios free, none below 0, their sum one, or both. Holds from the next fit")},
    {"AdvancedPanel", "HideUncertain", QT_TRANSLATE_NOOP("ToolTips", "Leave pixels white whose standard deviation of the shown quantity exceeds the limit; histogram plots leave them out, files never do")},
    {"AdvancedPanel", "SigmaLimit", QT_TRANSLATE_NOOP("ToolTips", "Greatest standard deviation that is shown, in units of the shown quantity")},
    {"AdvancedPanel", "ShowPixelWindow", QT_TRANSLATE_NOOP("ToolTips", "A double click in the result map also shows the fit of that pixel in a window of its own")},
    {"AdvancedPanel", "AdviserB", QT_TRANSLATE_NOOP("ToolTips", "Which energies to measure: expected standard deviations of the present ones and of better ones")},
    {"AdvancedPanel", "TargetPrecision", QT_TRANSLATE_NOOP("ToolTips", "One standard deviation of each result of the target, from its own residuals or the given s; ?: not determined")},
    {"AdvancedPanel", "LcfPrecision", QT_TRANSLATE_NOOP("ToolTips", "One standard deviation of each result of the linear combination fit; s in units of the edge jump; ?: not determined")},

    // the adviser on energies
    {"EnergyAdviserDialog", "Points", QT_TRANSLATE_NOOP("ToolTips", "How many energies to choose; the four-points methods follow from it")},
    {"EnergyAdviserDialog", "Criterion", QT_TRANSLATE_NOOP("ToolTips", "What the energies are to give with the least standard deviation: the mean valence, or the fractions of all references together")},
    {"EnergyAdviserDialog", "Low", QT_TRANSLATE_NOOP("ToolTips", "Lowest energy to choose [eV]; empty: 60 below the edge")},
    {"EnergyAdviserDialog", "High", QT_TRANSLATE_NOOP("ToolTips", "Highest energy to choose [eV]; empty: 200 above the edge")},
    {"EnergyAdviserDialog", "Spacing", QT_TRANSLATE_NOOP("ToolTips", "Least distance between two energies [eV]")},
    {"EnergyAdviserDialog", "Part1", QT_TRANSLATE_NOOP("ToolTips", "Reference 1 in the sample that is assumed, in parts: 2 : 1 : 1 is half of the first")},
    {"EnergyAdviserDialog", "Part2", QT_TRANSLATE_NOOP("ToolTips", "Reference 2 in the sample that is assumed, in parts: 2 : 1 : 1 is half of the first")},
    {"EnergyAdviserDialog", "Part3", QT_TRANSLATE_NOOP("ToolTips", "Reference 3 in the sample that is assumed, in parts: 2 : 1 : 1 is half of the first")},
    {"EnergyAdviserDialog", "Part4", QT_TRANSLATE_NOOP("ToolTips", "Reference 4 in the sample that is assumed, in parts: 2 : 1 : 1 is half of the first")},
    {"EnergyAdviserDialog", "Amount", QT_TRANSLATE_NOOP("ToolTips", "Edge jump of the sample that is assumed, in units of mut; four points: relative thickness t/ts")},
    {"EnergyAdviserDialog", "Noise", QT_TRANSLATE_NOOP("ToolTips", "Standard deviation s of one measured absorption, in units of mut; all standard deviations are proportional to it")},
    {"EnergyAdviserDialog", "AdviseB", QT_TRANSLATE_NOOP("ToolTips", "Look for the best energies, with the references and the method that the panel shows now")},
    {"EnergyAdviserDialog", "Figures", QT_TRANSLATE_NOOP("ToolTips", "Expected standard deviations (1 sigma) for the used rows of the panel and for the proposed energies; -: not determined")},
    {"EnergyAdviserDialog", "UseB", QT_TRANSLATE_NOOP("ToolTips", "Fill the proposed energies into the first rows of the panel, tick their Use boxes and, for four points, the V point; other rows go out of use. Maps stay as they are: images must be measured at these energies")},
    {"EnergyAdviserDialog", "CopyB", QT_TRANSLATE_NOOP("ToolTips", "Put the proposed energies [eV] on the clipboard, one a line")},
    {"EnergyAdviserDialog", "CloseB", QT_TRANSLATE_NOOP("ToolTips", "Close; energies that were filled in stay")},
};

/// What the buttons of a quantity stand for, wherever it can be chosen.
constexpr WidgetText kQuantityTips[] = {
    {"", "Ratio1", QT_TRANSLATE_NOOP("ToolTips", "Fraction of the first reference")},
    {"", "Ratio2", QT_TRANSLATE_NOOP("ToolTips", "Fraction of the second reference")},
    {"", "Ratio3", QT_TRANSLATE_NOOP("ToolTips", "Fraction of the third reference")},
    {"", "Ratio4", QT_TRANSLATE_NOOP("ToolTips", "Fraction of the fourth reference")},
    {"", "DMut1", QT_TRANSLATE_NOOP("ToolTips", "Edge jump by the first reference, in units of mut")},
    {"", "DMut2", QT_TRANSLATE_NOOP("ToolTips", "Edge jump by the second reference, in units of mut")},
    {"", "DMut3", QT_TRANSLATE_NOOP("ToolTips", "Edge jump by the third reference, in units of mut")},
    {"", "DMut4", QT_TRANSLATE_NOOP("ToolTips", "Edge jump by the fourth reference, in units of mut")},
    {"", "Mut0", QT_TRANSLATE_NOOP("ToolTips", "Constant of the background, in units of mut")},
    {"", "C1", QT_TRANSLATE_NOOP("ToolTips", "Background: factor of lambda^3 [1/A^3], or slope [1/eV]")},
    {"", "C2", QT_TRANSLATE_NOOP("ToolTips", "Background: factor of lambda^4 [1/A^4]")},
    {"", "Valence", QT_TRANSLATE_NOOP("ToolTips", "Mean valence of the absorbing element")},
    {"", "Amount", QT_TRANSLATE_NOOP("ToolTips", "Total edge jump in units of mut, or relative thickness t/ts")},
    {"", "Residual", QT_TRANSLATE_NOOP("ToolTips", "Root of the mean squared difference between absorption and fit, in units of mut")},
    {"", "SigmaRatio1", QT_TRANSLATE_NOOP("ToolTips", "One standard deviation of the fraction of the first reference")},
    {"", "SigmaRatio2", QT_TRANSLATE_NOOP("ToolTips", "One standard deviation of the fraction of the second reference")},
    {"", "SigmaRatio3", QT_TRANSLATE_NOOP("ToolTips", "One standard deviation of the fraction of the third reference")},
    {"", "SigmaRatio4", QT_TRANSLATE_NOOP("ToolTips", "One standard deviation of the fraction of the fourth reference")},
    {"", "SigmaValence", QT_TRANSLATE_NOOP("ToolTips", "One standard deviation of the valence")},
    {"", "SigmaAmount", QT_TRANSLATE_NOOP("ToolTips", "One standard deviation of the amount")},
};
// clang-format on

void setTip(QWidget *widget, const char *text)
{
    const QString translated = QCoreApplication::translate("ToolTips", text);
    widget->setToolTip(translated);
    widget->setAccessibleDescription(translated);
}

} // namespace

void setToolTips(QWidget &panel)
{
    QMultiHash<QString, QWidget *> named;
    for (QWidget *widget : panel.findChildren<QWidget *>()) {
        if (!widget->objectName().isEmpty()) {
            named.insert(widget->objectName(), widget);
        }
    }
    for (const WidgetText &tip : kTips) {
        for (QWidget *widget : named.values(QLatin1String(tip.name))) {
            if (isInside(*widget, tip.owner)) {
                setTip(widget, tip.text);
            }
        }
    }
    for (const WidgetText &tip : kQuantityTips) {
        for (const char *series : {"Map", "Hg", "Rec"}) {
            for (QWidget *widget : named.values(QLatin1String(series) + QLatin1String(tip.name))) {
                setTip(widget, tip.text);
            }
        }
    }
}

void showTextInToolTip(QLineEdit *field)
{
    QObject::connect(field, &QLineEdit::textChanged, field, [field](const QString &text) {
        const QString what = field->accessibleDescription();
        field->setToolTip(text.isEmpty() ? what : text + QLatin1Char('\n') + what);
    });
}

} // namespace orvel
