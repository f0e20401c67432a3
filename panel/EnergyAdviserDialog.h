#pragma once

#include "analysis/EnergyAdviser.h"
#include "session/SessionTexts.h"

#include <QDialog>

#include <array>
#include <functional>
#include <memory>
#include <optional>

class ExportMenu;
class QLabel;
class QLineEdit;
class QStylePainter;
namespace Ui {
class EnergyAdviserDialog;
}

namespace orvel {

/// An energy [eV] as the dialog shows, copies and fills it in.
QString energyText(double energyEv);

} // namespace orvel

/// Which energies to measure: what the used ones and better ones promise, side by side. Collects
/// what is asked and shows the answer of orvel::adviseEnergies; computes nothing.
class EnergyAdviserDialog : public QDialog {
    Q_OBJECT

public:
    /// readInput  what an analysis would read now; called for each advice and whenever the user
    ///            comes back to the window
    explicit EnergyAdviserDialog(std::function<orvel::AnalysisInput()> readInput,
                                 QWidget *parent = nullptr);
    ~EnergyAdviserDialog() override;

    /// Of the graph.
    ExportMenu *exportMenu() const { return m_export; }

    /// Advises, then shows the window beside the panel. What the user has entered stays.
    /// mapSigma  noise [1] found in the present map, if any
    void showAdvice(std::optional<double> mapSigma);

    orvel::AdviserSettings settings() const;

    /// What was asked, as a session keeps it, and back.
    orvel::AdviserTexts texts() const;
    void setTexts(const orvel::AdviserTexts &texts);

signals:
    /// The user wants to measure at these.
    void energiesWanted(const orvel::ExpectedPrecision &design);

protected:
    void changeEvent(QEvent *event) override;

private:
    void makeParts();
    void inkHints();
    void connectFields();
    void advise();
    void takeInput();
    void showAnswer();
    void fillTable();
    void showNotes();
    void showOutdated(bool isOutdated);
    void drawPlot(QStylePainter *p);
    void useProposed();
    void copyProposed();

    static QString textOf(orvel::Method method);
    static QString textOf(orvel::DesignFault fault);
    static QString textOf(orvel::DesignWarning warning);

    std::unique_ptr<Ui::EnergyAdviserDialog> m_ui;
    ExportMenu *m_export;
    std::function<orvel::AnalysisInput()> m_readInput;
    std::array<QLabel *, orvel::kReferenceRows> m_partLabels = {};
    std::array<QLineEdit *, orvel::kReferenceRows> m_parts = {};
    bool m_hasPoints = false;     ///< the user chose how many energies
    bool m_hasImages = false;     ///< some used row has one
    bool m_areImagesOld = false;  ///< measured at other energies than those filled in
    orvel::AnalysisInput m_input; ///< of the last advice, without images
    orvel::EnergyAdvice m_advice;
};
