#include "spectra/ARefFile.h"

#include "display/LightFields.h"
#include "spectra/AXafsFileSelect.h"
#include "ui_ARefFile.h"

ARefFile::ARefFile(QWidget *parent) : QFrame(parent), m_ui(std::make_unique<Ui::ARefFile>())
{
    m_ui->setupUi(this);
    orvel::inkLightFields(*this);
    connect(m_ui->UseCB, &QCheckBox::toggled, this, &ARefFile::changedUse);
    connect(m_ui->XafsFS, &AXafsFileSelect::selectedFile, this, &ARefFile::selectedFile);
    connect(m_ui->XafsFS, &AXafsFileSelect::foundNewEdge, this, &ARefFile::foundNewEdge);
}

ARefFile::~ARefFile() = default;

void ARefFile::setName(const QString &name)
{
    m_ui->RefName->setText(name);
}

bool ARefFile::isUsed() const
{
    return m_ui->UseCB->isChecked();
}

void ARefFile::setUse(bool f)
{
    if (f != isUsed()) {
        m_ui->UseCB->setChecked(f);
        emit changedUse(f);
    }
}

AXafsFileSelect *ARefFile::selector() const
{
    return m_ui->XafsFS;
}

QLineEdit *ARefFile::valenceEdit() const
{
    return m_ui->Valence;
}

double ARefFile::valence() const
{
    return m_ui->Valence->text().toDouble();
}

QLineEdit *ARefFile::ratioDisp() const
{
    return m_ui->RatioDisp;
}

QLineEdit *ARefFile::amountDisp() const
{
    return m_ui->AmountDisp;
}
