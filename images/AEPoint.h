#pragma once

#include "images/A2DData.h"

#include <QFrame>

#include <array>
#include <memory>

class AFileSelect;
class QAbstractButton;
class QLineEdit;
namespace Ui {
class AEPoint;
}

/// One energy of an image stack: the image, the energy, and the absorptions of references and
/// target there.
class AEPoint : public QFrame, public A2DData {
    Q_OBJECT

public:
    static constexpr int kReferences = 4;

    explicit AEPoint(QWidget *parent = nullptr);
    ~AEPoint() override;

    void setNumber(const QString &text);
    bool isLoaded() const { return m_isLoaded; } ///< whether an image is there
    bool isUsed() const;
    bool isLcf() const;
    bool isVPoint() const;
    double energyEv() const;
    void setChecks(bool use, bool lcf, bool vPoint); ///< without a signal

    AFileSelect *fileSelect() const;
    QLineEdit *energyEdit() const;
    QLineEdit *targetEdit() const;
    QLineEdit *referenceEdit(int i) const; ///< 0 to 3
    QAbstractButton *showMapButton() const;
    QAbstractButton *pickButton() const; ///< takes energies from a graph

signals:
    void newDir(const QString &dir);
    void newEnergy(double e);
    void newData();
    void changedCB();
    /// The image is gone: cleared, or replaced by a file without pixels.
    void lostData();

public slots:
    /// Loads a text map or a processed map, told apart by the first bytes; an empty path unloads.
    /// A file that cannot be opened leaves the image as it is.
    void loadData(const QString &path);
    void load2dProcData(const QString &path);
    void inNewEnergy();

private:
    void takeEnergy(const QString &text);
    void loadingDone(bool loaded, const QString &path);

    std::unique_ptr<Ui::AEPoint> m_ui;
    bool m_isLoaded = false;
};
