#pragma once

#include "analysis/Calculations.h"
#include "session/SessionTexts.h"

#include <QFrame>

#include <memory>
#include <vector>

namespace Ui {
class AdvancedPanel;
}

/// Precision and bounds: what stands beside the results, and the choices for it. Shows and
/// collects; computes nothing.
class AdvancedPanel : public QFrame {
    Q_OBJECT

public:
    explicit AdvancedPanel(QWidget *parent = nullptr);
    ~AdvancedPanel() override;

    orvel::AdvancedTexts texts() const;
    void setTexts(const orvel::AdvancedTexts &texts);
    /// Takes and gives the three choices of the view that stand here.
    void readView(orvel::ViewTexts &view) const;
    void setView(const orvel::ViewTexts &view);

    bool hidesUncertain() const;
    double sigmaLimit() const;
    bool showsPixelWindow() const;

    /// Counts may be chosen as noise only where all images can hold them.
    void setCountsOffered(bool offered);

    void showMap(const orvel::ResultMaps &maps);
    void showTarget(const orvel::TargetOutcome &outcome);
    void showLcf(const orvel::LcfResult &result);

signals:
    /// Planes of precision are to be computed anew.
    void precisionChanged();
    /// What the maps and histograms leave out has changed.
    void hidingChanged();
    void adviserWanted();

private:
    void enableWhatCounts();
    static QString heldText(unsigned held, const std::vector<int> &rows);

    std::unique_ptr<Ui::AdvancedPanel> m_ui;
};
