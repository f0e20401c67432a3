#include "panel/AdvancedPanel.h"

#include "display/NumberEdit.h"
#include "panel/ToolTips.h"
#include "ui_AdvancedPanel.h"

#include <QStandardItemModel>

#include <cmath>

namespace {

constexpr int kCounts = static_cast<int>(orvel::NoiseSource::Counts);

/// Two digits are all that a standard deviation is worth.
QString sigmaText(double sigma)
{
    return std::isnan(sigma) ? QStringLiteral("?") : QString::number(sigma, 'g', 2);
}

template <class Sigmas> QString sigmasText(const Sigmas &sigmas, size_t n)
{
    QStringList texts;
    for (size_t i = 0; i < n; ++i) {
        texts.append(sigmaText(sigmas[i]));
    }
    return texts.join(QStringLiteral(" : "));
}

void showText(QLineEdit *field, const QString &text)
{
    field->setText(text);
    field->setCursorPosition(0);
}

} // namespace

AdvancedPanel::AdvancedPanel(QWidget *parent)
    : QFrame(parent), m_ui(std::make_unique<Ui::AdvancedPanel>())
{
    m_ui->setupUi(this);
    setTexts({});
    setView({});
    QFont small = font();
    small.setPointSizeF(small.pointSizeF() - 1.0);
    for (QLineEdit *field : {m_ui->TargetPrecision, m_ui->LcfPrecision}) {
        field->setFont(small);
    }
    for (QLineEdit *field : {m_ui->NoiseSigma, m_ui->SigmaLimit}) {
        field->setFixedWidth(orvel::widthForText(*field, QStringLiteral("0.000001")));
    }
    for (QLineEdit *field : {m_ui->TargetPrecision, m_ui->LcfPrecision}) {
        orvel::showTextInToolTip(field);
    }
    enableWhatCounts();

    for (QCheckBox *box : {m_ui->SigmaMaps, m_ui->SigmaFile}) {
        connect(box, &QCheckBox::toggled, this, &AdvancedPanel::enableWhatCounts);
        connect(box, &QCheckBox::toggled, this, &AdvancedPanel::precisionChanged);
    }
    connect(m_ui->Noise, QOverload<int>::of(&QComboBox::activated), this, [this] {
        enableWhatCounts();
        emit precisionChanged();
    });
    connect(m_ui->NoiseSigma, &QLineEdit::editingFinished, this, &AdvancedPanel::precisionChanged);
    connect(m_ui->HideUncertain, &QCheckBox::toggled, this, &AdvancedPanel::enableWhatCounts);
    connect(m_ui->HideUncertain, &QCheckBox::toggled, this, &AdvancedPanel::hidingChanged);
    connect(m_ui->SigmaLimit, &QLineEdit::editingFinished, this, &AdvancedPanel::hidingChanged);
    connect(m_ui->AdviserB, &QPushButton::clicked, this, &AdvancedPanel::adviserWanted);
}

AdvancedPanel::~AdvancedPanel() = default;

void AdvancedPanel::enableWhatCounts()
{
    const bool wanted = m_ui->SigmaMaps->isChecked() || m_ui->SigmaFile->isChecked();
    m_ui->NoiseSigma->setEnabled(m_ui->Noise->currentIndex() ==
                                 static_cast<int>(orvel::NoiseSource::Given));
    m_ui->HideUncertain->setEnabled(wanted);
    m_ui->SigmaLimit->setEnabled(wanted && m_ui->HideUncertain->isChecked());
}

orvel::AdvancedTexts AdvancedPanel::texts() const
{
    orvel::AdvancedTexts texts;
    texts.sigmaMaps = m_ui->SigmaMaps->isChecked();
    texts.sigmaFile = m_ui->SigmaFile->isChecked();
    texts.noise = static_cast<orvel::NoiseSource>(m_ui->Noise->currentIndex());
    texts.noiseSigma = m_ui->NoiseSigma->text();
    texts.nonEquivBounds = static_cast<orvel::NonEquivBounds>(m_ui->NonEquivBounds->currentIndex());
    texts.lcfBounds = static_cast<orvel::LcfBounds>(m_ui->LcfBounds->currentIndex());
    return texts;
}

void AdvancedPanel::setTexts(const orvel::AdvancedTexts &texts)
{
    m_ui->SigmaMaps->setChecked(texts.sigmaMaps);
    m_ui->SigmaFile->setChecked(texts.sigmaFile);
    m_ui->Noise->setCurrentIndex(static_cast<int>(texts.noise));
    m_ui->NoiseSigma->setText(texts.noiseSigma);
    m_ui->NonEquivBounds->setCurrentIndex(static_cast<int>(texts.nonEquivBounds));
    m_ui->LcfBounds->setCurrentIndex(static_cast<int>(texts.lcfBounds));
    enableWhatCounts();
}

void AdvancedPanel::readView(orvel::ViewTexts &view) const
{
    view.hideUncertain = m_ui->HideUncertain->isChecked();
    view.sigmaLimit = m_ui->SigmaLimit->text();
    view.showPixelWindow = m_ui->ShowPixelWindow->isChecked();
}

void AdvancedPanel::setView(const orvel::ViewTexts &view)
{
    m_ui->SigmaLimit->setText(view.sigmaLimit);
    m_ui->HideUncertain->setChecked(view.hideUncertain);
    m_ui->ShowPixelWindow->setChecked(view.showPixelWindow);
}

bool AdvancedPanel::hidesUncertain() const
{
    return m_ui->HideUncertain->isEnabled() && m_ui->HideUncertain->isChecked();
}

double AdvancedPanel::sigmaLimit() const
{
    return m_ui->SigmaLimit->text().toDouble();
}

bool AdvancedPanel::showsPixelWindow() const
{
    return m_ui->ShowPixelWindow->isChecked();
}

void AdvancedPanel::setCountsOffered(bool offered)
{
    auto *model = qobject_cast<QStandardItemModel *>(m_ui->Noise->model());
    model->item(kCounts)->setEnabled(offered);
}

void AdvancedPanel::showMap(const orvel::ResultMaps &maps)
{
    QString found;
    if (const auto &precision = maps.precision()) {
        if (!std::isnan(precision->sigma)) {
            found = tr("s = %1").arg(QString::number(precision->sigma, 'g', 3));
        } else if (precision->noise == orvel::NoiseSource::Pooled ||
                   precision->noise == orvel::NoiseSource::Given || precision->freedom <= 0) {
            found =
                precision->noise == orvel::NoiseSource::Counts ? QString() : tr("not determined");
        }
    }
    m_ui->NoiseFound->setText(found);
    m_ui->BoundsFound->setText(
        maps.isBounded() ? tr("%1 pixels on a bound").arg(maps.pixelsOnBounds()) : QString());
}

void AdvancedPanel::showTarget(const orvel::TargetOutcome &outcome)
{
    const orvel::TargetPrecision &precision = outcome.precision;
    size_t references = 0;
    for (const orvel::TargetOutcome::RowFields &row : outcome.rows) {
        references += row.ratio.isEmpty() ? 0 : 1;
    }
    QStringList parts = {
        tr("ratios %1").arg(sigmasText(precision.sigmas.ratios, references)),
        tr("valence %1").arg(sigmaText(precision.sigmas.valence)),
        tr("t %1").arg(sigmaText(precision.sigmas.amount)),
        tr("s %1").arg(sigmaText(precision.sigma)),
        tr("d.o.f. %1").arg(precision.freedom),
    };
    if (!std::isnan(precision.condition)) {
        parts.append(tr("condition %1").arg(QString::number(precision.condition, 'e', 1)));
    }
    if (precision.held != 0) {
        parts.append(tr("on a bound"));
    }
    showText(m_ui->TargetPrecision, parts.join(QStringLiteral(", ")));
}

void AdvancedPanel::showLcf(const orvel::LcfResult &result)
{
    const orvel::LcfPrecision &precision = result.precision;
    QStringList parts = {
        tr("ratios %1").arg(sigmasText(precision.sigmaRatios, precision.sigmaRatios.size())),
        tr("valence %1").arg(sigmaText(precision.sigmaValence)),
        tr("s %1").arg(sigmaText(precision.sigma)),
        tr("d.o.f. %1").arg(precision.freedom),
        tr("R factor %1").arg(QString::number(precision.rFactor, 'g', 3)),
    };
    if (!std::isnan(precision.chiSquare)) {
        parts.append(tr("reduced chi square %1").arg(QString::number(precision.chiSquare, 'g', 3)));
    }
    if (result.held != 0) {
        parts.append(tr("on a bound"));
    }
    showText(m_ui->LcfPrecision, parts.join(QStringLiteral(", ")));
}
