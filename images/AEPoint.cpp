#include "images/AEPoint.h"

#include "spectra/AFileSelect.h"
#include "ui_AEPoint.h"

AEPoint::AEPoint(QWidget *parent) : QFrame(parent), m_ui(std::make_unique<Ui::AEPoint>())
{
    m_ui->setupUi(this);
    // A table head has the captions; hidden, they still name the fields to screen readers.
    for (QLabel *caption : {m_ui->EnergyLabel, m_ui->Mut1Label, m_ui->Mut2Label, m_ui->Mut3Label,
                            m_ui->Mut4Label, m_ui->MutTLabel, m_ui->ShowMapBLabel}) {
        caption->hide();
    }
    m_ui->FileSelect->hideLabel();
    m_ui->FileSelect->setNameFilters(
        {QStringLiteral("Maps (*.dat *.txt)"), QStringLiteral("All (* *.*)")});
    m_ui->FileSelect->setMultiple(true);
    connect(m_ui->FileSelect, &AFileSelect::newDir, this, &AEPoint::newDir);
    connect(m_ui->FileSelect, &AFileSelect::newFilePath, this, &AEPoint::loadData);
    connect(m_ui->Energy, &QLineEdit::editingFinished, this, &AEPoint::inNewEnergy);
    for (const QCheckBox *box : {m_ui->UseCB, m_ui->LCFCB, m_ui->VPointCB}) {
        connect(box, &QCheckBox::clicked, this, &AEPoint::changedCB);
    }
}

AEPoint::~AEPoint() = default;

void AEPoint::setNumber(const QString &text)
{
    m_ui->NumDisp->setText(text);
}

bool AEPoint::isUsed() const
{
    return m_ui->UseCB->isChecked();
}

bool AEPoint::isLcf() const
{
    return m_ui->LCFCB->isChecked();
}

bool AEPoint::isVPoint() const
{
    return m_ui->VPointCB->isChecked();
}

double AEPoint::energyEv() const
{
    return m_ui->Energy->text().toDouble();
}

void AEPoint::setChecks(bool use, bool lcf, bool vPoint)
{
    m_ui->UseCB->setChecked(use);
    m_ui->LCFCB->setChecked(lcf);
    m_ui->VPointCB->setChecked(vPoint);
}

AFileSelect *AEPoint::fileSelect() const
{
    return m_ui->FileSelect;
}

QLineEdit *AEPoint::energyEdit() const
{
    return m_ui->Energy;
}

QLineEdit *AEPoint::targetEdit() const
{
    return m_ui->MutT;
}

QLineEdit *AEPoint::referenceEdit(int i) const
{
    const std::array<QLineEdit *, kReferences> edits = {m_ui->Mut1, m_ui->Mut2, m_ui->Mut3,
                                                        m_ui->Mut4};
    return edits[static_cast<std::size_t>(i)];
}

QAbstractButton *AEPoint::showMapButton() const
{
    return m_ui->ShowMapB;
}

QAbstractButton *AEPoint::pickButton() const
{
    return m_ui->FPB;
}

void AEPoint::inNewEnergy()
{
    emit newEnergy(energyEv());
}

void AEPoint::takeEnergy(const QString &text)
{
    m_ui->Energy->setText(text);
    m_ui->Energy->setCursorPosition(0);
    inNewEnergy();
}

void AEPoint::loadData(const QString &path)
{
    if (path.isEmpty()) {
        unload();
        m_isLoaded = false;
        emit lostData();
        return;
    }
    loadingDone(loadMap(path, [this](const QString &energy) { takeEnergy(energy); }), path);
}

void AEPoint::load2dProcData(const QString &path)
{
    loadingDone(loadProcessedMap(path), path);
}

void AEPoint::loadingDone(bool loaded, const QString &path)
{
    m_ui->FileSelect->showProblem(
        loaded ? QString() : QStringLiteral("%1: %2").arg(path, orvel::describe(loadFailure())));
    const bool hadData = m_isLoaded;
    m_isLoaded = hasMap();
    if (loaded) {
        emit newData();
    } else if (hadData && !m_isLoaded) {
        emit lostData();
    }
}
