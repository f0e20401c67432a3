#include "panel/AdvancedPanel.h"

#include "display/NumberEdit.h"
#include "panel/ToolTips.h"
#include "ui_AdvancedPanel.h"

#include <QStandardItemModel>

#include <cmath>
#include <limits>

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
    connect(m_ui->NoiseSigma, &QLineEdit::editingFinished, this, [this] {
        if (m_ui->NoiseSigma->isEnabled()) { // else it is not heeded
            emit precisionChanged();
        }
    });
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
    bool isNumber = false;
    const double limit = m_ui->SigmaLimit->text().toDouble(&isNumber);
    return isNumber && !std::isnan(limit) ? limit : std::numeric_limits<double>::infinity();
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
    QString bounds;
    if (maps.isBounded()) {
        QStringList counts;
        for (int i = 0; i < orvel::kReferenceRows; ++i) {
            if (maps.fills(orvel::quantityAt(orvel::indexOf(orvel::Quantity::DMut1) + i))) {
                counts.append(QString::number(maps.pixelsHolding(i)));
            }
        }
        bounds =
            tr("%1 pixels on a bound (%2)")
                .arg(QString::number(maps.pixelsOnBounds()), counts.join(QStringLiteral(" : ")));
    }
    m_ui->BoundsFound->setText(bounds);
}

/// rows  of the valid references
QString AdvancedPanel::heldText(unsigned held, const std::vector<int> &rows)
{
    QStringList numbers;
    for (size_t i = 0; i < rows.size(); ++i) {
        if ((held >> i & 1U) != 0) {
            numbers.append(QString::number(rows[i] + 1));
        }
    }
    return tr("held at 0: Ref. %1").arg(numbers.join(QStringLiteral(", ")));
}

void AdvancedPanel::showTarget(const orvel::TargetOutcome &outcome)
{
    const orvel::TargetPrecision &precision = outcome.precision;
    std::vector<int> rows;
    for (const orvel::TargetOutcome::RowFields &row : outcome.rows) {
        if (!row.ratio.isEmpty()) {
            rows.push_back(static_cast<int>(&row - outcome.rows.data()));
        }
    }
    QStringList parts = {
        tr("ratios %1").arg(sigmasText(precision.sigmas.ratios, rows.size())),
        tr("valence %1").arg(sigmaText(precision.sigmas.valence)),
        tr("t %1").arg(sigmaText(precision.sigmas.amount)),
        tr("s %1").arg(sigmaText(precision.sigma)),
        tr("d.o.f. %1").arg(precision.freedom),
    };
    if (!std::isnan(precision.condition)) {
        parts.append(tr("condition %1").arg(QString::number(precision.condition, 'e', 1)));
    }
    if (precision.held != 0) {
        parts.append(heldText(precision.held, rows));
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
        parts.append(heldText(result.held, result.rows));
    }
    showText(m_ui->LcfPrecision, parts.join(QStringLiteral(", ")));
}
