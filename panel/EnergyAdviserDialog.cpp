#include "panel/EnergyAdviserDialog.h"

#include "display/CColors.h"
#include "display/DispABase.h"
#include "display/ExportMenu.h"
#include "display/LargeForm.h"
#include "display/NumberEdit.h"
#include "panel/AccessibleNames.h"
#include "panel/TabOrder.h"
#include "panel/ToolTips.h"
#include "panel/WaitCursor.h"
#include "panel/plots/EnergiesPlot.h"
#include "ui_EnergyAdviserDialog.h"

#include <QClipboard>
#include <QEvent>

#include <algorithm>
#include <cmath>
#include <limits>

using orvel::DesignFault;
using orvel::DesignWarning;
using orvel::ExpectedPrecision;
using orvel::kReferenceRows;
using orvel::Method;

namespace {

constexpr double kUsualSigma = orvel::AdviserSettings().sigma;

/// Not-a-number for a text that is none: the adviser refuses it.
double numberIn(const QLineEdit *field)
{
    bool isNumber = false;
    const double number = field->text().toDouble(&isNumber);
    return isNumber ? number : std::numeric_limits<double>::quiet_NaN();
}

std::optional<double> limitIn(const QLineEdit *field)
{
    return field->text().trimmed().isEmpty() ? std::nullopt : std::optional(numberIn(field));
}

/// The plot gets the room that a field does not need.
void setLeastText(QLineEdit *field, const QString &text)
{
    field->setMinimumWidth(orvel::widthForText(*field, text));
    field->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
}

QString significant(double number)
{
    return std::isnan(number) ? QStringLiteral("-") : QString::number(number, 'g', 3);
}

QString energyIn(const ExpectedPrecision &expected, size_t i)
{
    if (i >= expected.energiesEv.size()) {
        return {};
    }
    const QString mark = static_cast<int>(i) == expected.vPoint ? QStringLiteral("V  ") : QString();
    return mark + orvel::energyText(expected.energiesEv[i]);
}

/// Whether the adviser would have the same to answer. Copies of a spectrum share their points.
bool isSame(const orvel::ReferenceInput &a, const orvel::ReferenceInput &b)
{
    const auto lines = [](const AMutE &s) {
        return std::array{s.preEdgeEnd(), s.edgeE(), s.postEdgeStart(), s.dE()};
    };
    return a.use == b.use && a.valence == b.valence &&
           a.spectrum.points().constData() == b.spectrum.points().constData() &&
           lines(a.spectrum) == lines(b.spectrum);
}

bool isSame(const orvel::EnergyPointInput &a, const orvel::EnergyPointInput &b)
{
    return a.use == b.use && a.vPoint == b.vPoint && a.energyEv == b.energyEv;
}

bool isSame(const orvel::MethodChoice &a, const orvel::MethodChoice &b)
{
    return a.nonEquiv == b.nonEquiv && a.exact == b.exact && a.subPostForRef == b.subPostForRef &&
           a.linearBackground == b.linearBackground;
}

bool isSame(const orvel::AnalysisInput &a, const orvel::AnalysisInput &b)
{
    const auto areSame = [](const auto &these, const auto &those) {
        return std::equal(these.begin(), these.end(), those.begin(), those.end(),
                          [](const auto &one, const auto &other) { return isSame(one, other); });
    };
    return areSame(a.references, b.references) && areSame(a.points, b.points) &&
           isSame(a.method, b.method);
}

} // namespace

QString orvel::energyText(double energyEv)
{
    return QString::number(energyEv, 'f', 2);
}

EnergyAdviserDialog::EnergyAdviserDialog(std::function<orvel::AnalysisInput()> readInput,
                                         QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::EnergyAdviserDialog>()),
      m_readInput(std::move(readInput))
{
    m_ui->setupUi(this);
    const QSize leastPlot = m_ui->Plot->minimumSize();
    orvel::enlargeForm(*this);
    m_ui->Plot->setMinimumSize(leastPlot); // or the window would not fit on a screen
    if (parent) {
        setFont(parent->font()); // a window would not take it
    }
    makeParts();
    const orvel::AdviserSettings usual;
    m_ui->Spacing->setText(QString::number(usual.minimumSpacingEv));
    m_ui->Amount->setText(QString::number(usual.amount));
    for (QLineEdit *field : {m_ui->Low, m_ui->High, m_ui->Spacing, m_ui->Amount, m_ui->Noise}) {
        setLeastText(field, QStringLiteral("10000.00"));
    }
    m_ui->High->setAccessibleName(tr("Upper end of the range [eV]"));
    m_ui->Figures->setHorizontalHeaderLabels({tr("Present"), tr("Proposed")});
    m_ui->Figures->horizontalHeader()->setFont(font()); // a style's may be larger
    m_ui->Figures->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    m_ui->Figures->verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    m_ui->Figures->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 4);
    m_ui->Figures->setMinimumWidth(
        fontMetrics().horizontalAdvance(tr("Degrees of freedom") + QStringLiteral("  ")) +
        4 * fontMetrics().horizontalAdvance(QStringLiteral("V  10000.00")));
    m_ui->Figures->setAccessibleName(tr("Expected standard deviations"));
    m_ui->Plot->setTitle(tr("References, each by its edge jump"));
    m_ui->Plot->setTitlesPainted(true, true);
    m_ui->Plot->findChild<QWidget *>(QStringLiteral("PopDockB"))->hide(); // a window already
    m_ui->Figures->setTabKeyNavigation(false); // Tab goes on, arrows stay inside
    inkHints();
    orvel::setToolTips(*this);
    orvel::setAccessibleNames(*this);
    orvel::orderTabsByLayout(this);
    connectFields();
    resize(orvel::largeWindow({940, 640}));
}

EnergyAdviserDialog::~EnergyAdviserDialog() = default;

void EnergyAdviserDialog::makeParts()
{
    for (size_t n = 0; n < m_parts.size(); ++n) {
        auto *field = new QLineEdit(QStringLiteral("1"), this);
        field->setObjectName(QStringLiteral("Part%1").arg(n + 1));
        setLeastText(field, QStringLiteral("0.25"));
        auto *label = new QLabel(tr("Ref %1").arg(n + 1), this);
        label->setBuddy(field);
        m_ui->CompositionL->addWidget(label);
        m_ui->CompositionL->addWidget(field, 1);
        m_partLabels[n] = label;
        m_parts[n] = field;
    }
}

void EnergyAdviserDialog::connectFields()
{
    const auto outdated = [this] { showOutdated(true); };
    for (const QLineEdit *field : findChildren<QLineEdit *>()) {
        connect(field, &QLineEdit::textEdited, this, outdated);
    }
    connect(m_ui->Points, QOverload<int>::of(&QSpinBox::valueChanged), this, [this] {
        m_hasPoints = true;
        showOutdated(true);
    });
    connect(m_ui->Criterion, QOverload<int>::of(&QComboBox::activated), this, outdated);
    connect(m_ui->Noise, &QLineEdit::textEdited, m_ui->NoiseOrigin, &QLabel::clear);
    m_export = new ExportMenu(m_ui->Plot->area(), [this] { return m_ui->Plot->picture(); });
    connect(m_ui->Plot, &DispABase::draw, this, &EnergyAdviserDialog::drawPlot);
    connect(m_ui->AdviseB, &QPushButton::clicked, this, &EnergyAdviserDialog::advise);
    connect(m_ui->UseB, &QPushButton::clicked, this, &EnergyAdviserDialog::useProposed);
    connect(m_ui->CopyB, &QPushButton::clicked, this, &EnergyAdviserDialog::copyProposed);
    connect(m_ui->CloseB, &QPushButton::clicked, this, &QDialog::close);
}

void EnergyAdviserDialog::showAdvice(std::optional<double> mapSigma)
{
    if (!m_ui->Noise->isModified()) {
        const bool isFound = mapSigma && std::isfinite(*mapSigma) && *mapSigma > 0.0;
        m_ui->Noise->setText(QString::number(isFound ? *mapSigma : kUsualSigma, 'g', 3));
        m_ui->NoiseOrigin->setText(isFound ? tr("of the map") : tr("assumed"));
    }
    if (!m_hasPoints) {
        const auto points = m_readInput().points;
        const QSignalBlocker quiet(m_ui->Points);
        m_ui->Points->setValue(static_cast<int>(std::count_if(
            points.begin(), points.end(), [](const auto &point) { return point.use; })));
    }
    advise();
    show();
    raise();
    activateWindow();
}

orvel::AdviserSettings EnergyAdviserDialog::settings() const
{
    orvel::AdviserSettings settings;
    settings.points = m_ui->Points->value();
    settings.criterion = m_ui->Criterion->currentIndex() == 0 ? orvel::DesignCriterion::Valence
                                                              : orvel::DesignCriterion::Fractions;
    settings.lowEv = limitIn(m_ui->Low);
    settings.highEv = limitIn(m_ui->High);
    settings.minimumSpacingEv = numberIn(m_ui->Spacing);
    settings.amount = numberIn(m_ui->Amount);
    settings.sigma = numberIn(m_ui->Noise);
    for (size_t n = 0; n < m_parts.size(); ++n) {
        settings.fractions[n] = m_parts[n]->isHidden() ? 0.0 : numberIn(m_parts[n]);
    }
    return settings;
}

orvel::AdviserTexts EnergyAdviserDialog::texts() const
{
    orvel::AdviserTexts texts;
    texts.points = m_hasPoints ? QString::number(m_ui->Points->value()) : QString();
    texts.byFractions = m_ui->Criterion->currentIndex() != 0;
    texts.low = m_ui->Low->text();
    texts.high = m_ui->High->text();
    texts.spacing = m_ui->Spacing->text();
    texts.amount = m_ui->Amount->text();
    texts.noise = m_ui->Noise->isModified() ? m_ui->Noise->text() : QString();
    for (size_t n = 0; n < m_parts.size(); ++n) {
        texts.parts[n] = m_parts[n]->text();
    }
    return texts;
}

void EnergyAdviserDialog::setTexts(const orvel::AdviserTexts &texts)
{
    m_hasPoints = !texts.points.isEmpty();
    if (m_hasPoints) {
        const QSignalBlocker quiet(m_ui->Points);
        m_ui->Points->setValue(texts.points.toInt());
    }
    m_ui->Criterion->setCurrentIndex(texts.byFractions ? 1 : 0);
    m_ui->Low->setText(texts.low);
    m_ui->High->setText(texts.high);
    m_ui->Spacing->setText(texts.spacing);
    m_ui->Amount->setText(texts.amount);
    m_ui->Noise->setText(texts.noise);
    m_ui->Noise->setModified(!texts.noise.isEmpty());
    for (size_t n = 0; n < m_parts.size(); ++n) {
        m_parts[n]->setText(texts.parts[n]);
    }
    showOutdated(true);
}

/// Palettes that tell nothing of placeholders leave them dark on dark.
void EnergyAdviserDialog::inkHints()
{
    for (QLineEdit *field : {m_ui->Low, m_ui->High}) {
        QColor hint = palette().color(QPalette::Text); // that of the field may follow later
        constexpr double kPale = 0.75;
        hint.setAlphaF(kPale);
        QPalette own;
        own.setColor(QPalette::PlaceholderText, hint);
        field->setPalette(own);
    }
}

void EnergyAdviserDialog::changeEvent(QEvent *event)
{
    QDialog::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        inkHints();
    }
    if (event->type() == QEvent::ActivationChange && isActiveWindow() && isVisible() &&
        !isSame(m_input, m_readInput())) {
        showOutdated(true);
    }
}

void EnergyAdviserDialog::advise()
{
    const orvel::WaitCursor wait;
    takeInput();
    m_areImagesOld = false;
    m_advice = adviseEnergies(m_input, settings());
    showAnswer();
}

/// Images would be kept from going when their rows replace them, and are not needed.
void EnergyAdviserDialog::takeInput()
{
    m_input = m_readInput();
    m_hasImages = false;
    for (orvel::EnergyPointInput &point : m_input.points) {
        m_hasImages = m_hasImages || point.map != nullptr;
        point.map.reset();
    }
    int taken = 0; // four points take the first two
    for (size_t n = 0; n < m_parts.size(); ++n) {
        const bool takesPart =
            m_input.references[n].isValid() && (m_input.method.nonEquiv || taken < 2);
        taken += takesPart ? 1 : 0;
        m_partLabels[n]->setVisible(takesPart);
        m_parts[n]->setVisible(takesPart);
    }
    m_ui->CompositionLabel->setVisible(taken > 0);
}

void EnergyAdviserDialog::showAnswer()
{
    m_ui->MethodName->setText(textOf(m_advice.best.method));
    const std::vector<double> &range = m_advice.candidatesEv;
    m_ui->Low->setPlaceholderText(range.empty() ? QString() : orvel::energyText(range.front()));
    m_ui->High->setPlaceholderText(range.empty() ? QString() : orvel::energyText(range.back()));
    fillTable();
    showNotes();
    showOutdated(false);
    const bool isThere = m_advice.best.fault == DesignFault::None;
    m_ui->UseB->setEnabled(isThere);
    m_ui->CopyB->setEnabled(isThere);
    m_ui->Plot->clearScale();
    m_ui->Plot->updateSurface();
}

void EnergyAdviserDialog::fillTable()
{
    const ExpectedPrecision &present = m_advice.present;
    const ExpectedPrecision &best = m_advice.best;
    QTableWidget *table = m_ui->Figures;
    table->setRowCount(0);
    const auto add = [table](const QString &title, const QString &now, const QString &proposed) {
        const int row = table->rowCount();
        table->insertRow(row);
        table->setVerticalHeaderItem(row, new QTableWidgetItem(title));
        int column = 0;
        for (const QString &text : {now, proposed}) {
            auto *item = new QTableWidgetItem(text);
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
            table->setItem(row, column++, item);
        }
    };
    const auto addNumbers = [&add](const QString &title, double now, double proposed) {
        add(title, significant(now), significant(proposed));
    };
    for (size_t i = 0; i < std::max(present.energiesEv.size(), best.energiesEv.size()); ++i) {
        add(tr("Energy %1 [eV]").arg(i + 1), energyIn(present, i), energyIn(best, i));
    }
    for (size_t n = 0; n < m_parts.size(); ++n) {
        if (!m_parts[n]->isHidden()) {
            addNumbers(tr("Sigma of ratio %1").arg(n + 1), present.fractions[n], best.fractions[n]);
        }
    }
    addNumbers(tr("Sigma of valence"), present.valence, best.valence);
    addNumbers(tr("Sigma of amount"), present.amount, best.amount);
    const auto freedom = [](const ExpectedPrecision &expected) {
        return expected.fault == DesignFault::None ? QString::number(expected.freedom)
                                                   : QStringLiteral("-");
    };
    add(tr("Degrees of freedom"), freedom(present), freedom(best));
    if (!std::isnan(present.condition) || !std::isnan(best.condition)) {
        addNumbers(tr("Condition number"), present.condition, best.condition);
    }
}

void EnergyAdviserDialog::showNotes()
{
    constexpr const char *kFault = "#b00000";
    constexpr const char *kWarning = "#906000";
    QStringList notes;
    const auto add = [&notes](const QString &title, const QString &text, const char *colour) {
        notes.append(QStringLiteral("<b style=\"color:%1\">%2:</b> %3")
                         .arg(QLatin1String(colour), title.toHtmlEscaped(), text.toHtmlEscaped()));
    };
    if (m_areImagesOld) {
        add(tr("Images"),
            tr("Those in the rows were measured at other energies. Take or load new "
               "ones before you trust a map."),
            kFault);
    }
    const ExpectedPrecision &present = m_advice.present;
    const ExpectedPrecision &best = m_advice.best;
    const bool isSameFault = present.fault == best.fault;
    if (isSameFault && best.fault != DesignFault::None) {
        add(tr("No advice"), textOf(best.fault), kFault);
    }
    const auto has = [](const ExpectedPrecision &expected, DesignWarning warning) {
        return std::count(expected.warnings.begin(), expected.warnings.end(), warning) > 0;
    };
    for (const ExpectedPrecision *one : {&present, &best}) {
        const bool isPresent = one == &present;
        const QString title = isPresent ? tr("Present") : tr("Proposed");
        if (one->fault != DesignFault::None && !isSameFault) {
            add(title, textOf(one->fault), kFault);
        }
        for (const DesignWarning warning : one->warnings) {
            const bool isOfBoth = has(isPresent ? best : present, warning);
            if (!isOfBoth || isPresent) {
                add(isOfBoth ? tr("Both") : title, textOf(warning), kWarning);
            }
        }
    }
    m_ui->Notes->setText(notes.join(QStringLiteral("<br>")));
    m_ui->Notes->setHidden(notes.isEmpty());
}

void EnergyAdviserDialog::showOutdated(bool isOutdated)
{
    m_ui->Outdated->setText(isOutdated ? tr("Changed: press Advise") : QString());
}

void EnergyAdviserDialog::drawPlot(QStylePainter *p)
{
    const CColors colours;
    orvel::EnergiesPlot plot;
    for (size_t n = 0; n < m_parts.size(); ++n) {
        if (!m_parts[n]->isHidden()) { // in the colours that they have in the panel's graph
            plot.references.push_back({&m_input.references[n].spectrum,
                                       colours.colour(static_cast<int>(n) + 1),
                                       tr("Ref %1").arg(n + 1)});
        }
    }
    plot.present = {m_advice.present.energiesEv, m_advice.present.vPoint, tr("Present")};
    plot.proposed = {m_advice.best.energiesEv, m_advice.best.vPoint, tr("Proposed")};
    if (!m_advice.candidatesEv.empty()) {
        plot.range = {m_advice.candidatesEv.front(), m_advice.candidatesEv.back()};
    }
    drawEnergiesPlot(p, *m_ui->Plot, tr("Energy [eV]"), tr("mut / edge jump"), plot);
}

/// Then what was proposed is what is present.
void EnergyAdviserDialog::useProposed()
{
    const bool hadImages = m_hasImages;
    emit energiesWanted(m_advice.best);
    advise();
    m_areImagesOld = hadImages;
    showNotes();
}

void EnergyAdviserDialog::copyProposed()
{
    QStringList lines;
    for (const double energy : m_advice.best.energiesEv) {
        lines.append(orvel::energyText(energy));
    }
    QApplication::clipboard()->setText(lines.join(QLatin1Char('\n')));
}

QString EnergyAdviserDialog::textOf(Method method)
{
    switch (method) {
    case Method::None:
        break;
    case Method::ThreePoints:
        return tr("Three points");
    case Method::ExactFourPoints:
        return tr("Exact four points");
    case Method::LeastSquares:
        return tr("Four points, least squares");
    case Method::NonEquivLinear:
        return tr("Non-equivalent, linear background");
    case Method::NonEquivVictoreen:
        return tr("Non-equivalent, Victoreen background");
    }
    return QStringLiteral("-");
}

QString EnergyAdviserDialog::textOf(DesignFault fault)
{
    switch (fault) {
    case DesignFault::None:
        break;
    case DesignFault::BadSettings:
        return tr("Range, distance, amount or noise is no number that can be used.");
    case DesignFault::FewReferences:
        return tr("Fewer than two references are loaded and in use.");
    case DesignFault::InvalidReference:
        return tr("A reference in use has no spectrum, or no edge jump.");
    case DesignFault::BadComposition:
        return tr("The parts of the sample must be numbers of 0 or more.");
    case DesignFault::EqualValences:
        return tr("All references have the same valence: determine fractions instead.");
    case DesignFault::CountForMethod:
        return tr("The chosen method does not take that many energies.");
    case DesignFault::FewPoints:
        return tr("There are fewer energies than unknowns.");
    case DesignFault::NoVPoint:
        return tr("No V point is selected.");
    case DesignFault::NoEnergy:
        return tr("A row in use has no energy.");
    case DesignFault::FewCandidates:
        return tr("So many energies so far apart do not fit into the range.");
    case DesignFault::FewAlikeCandidates:
        return tr("The four-points methods need energies at which the references are alike; the "
                  "range has too few.");
    case DesignFault::NotDetermined:
        return tr("The references cannot be told apart at these energies.");
    }
    return {};
}

QString EnergyAdviserDialog::textOf(DesignWarning warning)
{
    switch (warning) {
    case DesignWarning::NoFreedom:
        return tr("There are as many energies as unknowns (zero degrees of freedom): a fit goes "
                  "through every point and tells nothing about the noise. One more energy would.");
    case DesignWarning::FarFromBest:
        return tr("A standard deviation is ten times that of the proposed energies, or more.");
    case DesignWarning::UnlikeReferences:
        return tr("The references differ at a point other than V: results will be off by more than "
                  "the standard deviations say.");
    case DesignWarning::AmountInNoise:
        return tr("The amount is hardly above its noise: the true standard deviations are larger.");
    }
    return {};
}
