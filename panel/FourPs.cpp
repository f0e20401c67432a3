#include "panel/FourPs.h"

#include "display/DispMBase.h"
#include "display/Histgram.h"
#include "display/LargeForm.h"
#include "display/Letters.h"
#include "display/LightFields.h"
#include "display/NumberEdit.h"
#include "display/cBar.h"
#include "images/AEPoint.h"
#include "panel/AccessibleNames.h"
#include "panel/AdvancedPanel.h"
#include "panel/EnergyAdviserDialog.h"
#include "panel/Manual.h"
#include "panel/PanelUndo.h"
#include "panel/PointHeader.h"
#include "panel/RegionPanel.h"
#include "panel/SessionKeeper.h"
#include "panel/Shortcuts.h"
#include "panel/TabOrder.h"
#include "panel/ToolTips.h"
#include "session/ResultPaths.h"
#include "spectra/ARefFile.h"
#include "spectra/AXafsFileSelect.h"
#include "ui_FourPs.h"

#include <QButtonGroup>
#include <QEvent>
#include <QMenu>
#include <QScrollBar>
#include <QStyle>
#include <QTimer>
#include <QToolButton>

#include <algorithm>

using orvel::kPointRows;
using orvel::kReferenceRows;

namespace {

constexpr double kSmall = 8.0 / 9.0; ///< letters of what stands side by side by the dozen

/// With letters so much larger the window scrolls as a whole, and inputs that scroll inside of it
/// would hide twice.
constexpr double kScrolledAsAWhole = 1.3;

/// Gives buttons the width of their texts; a style's least width would cost the fields theirs.
void shrinkButtons(QWidget *form)
{
    for (QPushButton *button : form->findChildren<QPushButton *>()) {
        const int text = button->fontMetrics().horizontalAdvance(button->text());
        constexpr double kAround = 12.0;
        button->setFixedWidth(text + qRound(kAround * orvel::letterPixelScale()));
    }
}

} // namespace

FourPs::FourPs(QWidget *parent)
    : QFrame(parent), m_ui(std::make_unique<Ui::FourPs>()),
      m_pool(std::make_shared<orvel::ColumnPool>())
{
    m_ui->setupUi(this);
    orvel::enlargeForm(*this);
    QFont compact = font();
    compact.setPointSizeF(orvel::compactPoints());
    setFont(compact);
    for (QWidget *widget : findChildren<QWidget *>()) {
        if (!widget->styleSheet().isEmpty() && widget->font().pointSizeF() > compact.pointSizeF()) {
            widget->setFont(compact); // a style sheet keeps a widget from inheriting it
        }
    }
    m_valenceHistogram =
        std::make_unique<Histgram>(m_ui->HgAFrom, m_ui->HgATo, m_ui->HgABoxes, m_ui->HgAAuto);
    m_amountHistogram =
        std::make_unique<Histgram>(m_ui->HgTFrom, m_ui->HgTTo, m_ui->HgTBoxes, m_ui->HgTAuto);
    makeAdvanced();
    makeRegions();
    makeRows();
    fitFields();
    m_ui->ResultMap->setTitle(tr("Result Map"));
    m_ui->DataMap->setTitle(tr("Data Map"));
    m_ui->SaveFSelect->setMode(AFileSelect::Save);
    m_ui->DispFSelect->setMultiple(true);
    m_ui->Disps->panel(Displays::DMuts)->area()->setMarkLines(&m_energyLines);
    makeHints();
    orvel::inkLightFields(*this);
    orvel::setToolTips(*this);
    orvel::setSplitterKeys(*this);
    orvel::setAccessibleNames(*this);
    for (QLineEdit *field : {m_ui->CalcRes, m_ui->TargetDMut, m_ui->LCFRes}) {
        orvel::showTextInToolTip(field);
    }
    for (const ARefFile *row : m_references) {
        orvel::showTextInToolTip(row->ratioDisp());
        orvel::showTextInToolTip(row->amountDisp());
    }
    for (const AEPoint *row : m_points) {
        orvel::showTextInToolTip(row->targetEdit());
        for (int n = 0; n < kReferenceRows; ++n) {
            orvel::showTextInToolTip(row->referenceEdit(n));
        }
    }
    connectInputs();
    connectRuns();
    connectDisplays();
    makeExports();
    dispCalcConditions(m_ui->MoreCondsCB->isChecked());
    enableWhatCounts();
    shrinkButtons(this);
    orvel::orderTabsByLayout(this);
    orvel::setShortcuts(*this);
    m_ui->Inputs->installEventFilter(this);
    // More room goes to the plots first.
    m_ui->MainSplitter->setStretchFactor(0, 1);
    m_ui->MainSplitter->setStretchFactor(1, 3);
    connect(m_ui->MainSplitter, &QSplitter::splitterMoved, this, [this] { m_wasSplit = true; });
    m_ui->GraphSplitter->setStretchFactor(0, 1);
    m_ui->GraphSplitter->setStretchFactor(1, 1);
    makeUndo();
}

FourPs::~FourPs()
{
    delete m_undo; // what the fields tell while they go is no change
    delete m_keeper;
    delete m_adviser; // it would read the form when it gets the focus of a panel that closes
    // A field that has the focus tells of its last edit when it goes, and later than this.
    for (QObject *child : findChildren<QObject *>()) {
        child->disconnect(this);
    }
    // The surface may still ask for its lines while the widgets go.
    m_ui->Disps->panel(Displays::DMuts)->area()->setMarkLines(nullptr);
}

QSize FourPs::minimumSizeHint() const
{
    // Scroll areas would let it open as a strip; and a splitter that is narrower than its two
    // sides lays one over the other.
    return QFrame::minimumSizeHint().expandedTo(QSize(1200, 660));
}

/// The inputs scroll up and down only: a table whose columns are out of sight is no table.
void FourPs::showEvent(QShowEvent *event)
{
    QFrame::showEvent(event);
    if (!m_wasShown) {
        m_wasShown = true;
        // Once the splitter has its height: graphs get a little more of it than maps.
        auto *timer = new QTimer(this);
        timer->setSingleShot(true);
        connect(timer, &QTimer::timeout, this, [this] {
            m_ui->GraphSplitter->setSizes({4600, 5400});
        });
        timer->start(0);
    }
}

void FourPs::resizeEvent(QResizeEvent *event)
{
    QFrame::resizeEvent(event);
    shareWidth();
}

bool FourPs::eventFilter(QObject *object, QEvent *event)
{
    if (object == m_ui->Inputs && event->type() == QEvent::LayoutRequest) {
        m_ui->InputScroll->setMinimumWidth(
            m_ui->Inputs->minimumSizeHint().width() +
            m_ui->InputScroll->verticalScrollBar()->sizeHint().width());
        if (orvel::letterPixelScale() > kScrolledAsAWhole) {
            m_ui->InputScroll->setMinimumHeight(m_ui->Inputs->minimumSizeHint().height());
        }
        shareWidth();
    }
    return QFrame::eventFilter(object, event);
}

/// Until the user says otherwise: wide enough for the absorptions' six digits if maps and graphs
/// can do with the rest, and for their exponents where a small share of the window suffices.
void FourPs::shareWidth()
{
    if (m_wasSplit) {
        return;
    }
    const QLineEdit *field = m_points[0]->targetEdit();
    const auto widthFor = [&](const char *number) {
        const int more = orvel::widthForText(*field, QLatin1String(number)) - field->minimumWidth();
        return m_ui->InputScroll->minimumWidth() + (kReferenceRows + 1) * qMax(0, more);
    };
    const int left = qBound(widthFor("-0.0123457"), width() * 9 / 20, widthFor("-1.23457e-05"));
    if (m_ui->MainSplitter->sizes().value(0) != left) {
        m_ui->MainSplitter->setSizes({left, width() - left});
    }
}

void FourPs::makeRows()
{
    for (int n = 0; n < kReferenceRows; ++n) {
        auto *row = new ARefFile(this);
        orvel::enlargeForm(*row);
        row->setName(tr("Ref %1").arg(n + 1));
        row->selector()->setDisplay(
            m_ui->Disps->panel(static_cast<Displays::DispId>(Displays::DRef1 + n)));
        row->selector()->hideLabel();
        m_ui->RefFileLayout->addWidget(row);
        m_references[static_cast<size_t>(n)] = row;
        m_refFiles.append(row);
    }
    m_ui->TargetFile->setDisplay(m_ui->Disps->panel(Displays::DTarget));
    m_ui->TargetFile->hideLabel();
    m_ui->DispFSelect->hideLabel();

    auto *shown = new QButtonGroup(this);
    for (int i = 0; i < kPointRows; ++i) {
        auto *row = new AEPoint(this);
        orvel::enlargeForm(*row);
        row->setNumber(tr("%1").arg(i + 1) + QStringLiteral(":  "));
        m_points[static_cast<size_t>(i)] = row;
        shown->addButton(row->showMapButton(), i);
        row->pickButton()->setAutoExclusive(false); // the chosen one can be unchosen
    }
    m_points[0]->showMapButton()->setChecked(true);

    auto *header = new PointHeader(m_points[0], this);
    header->setObjectName(QStringLiteral("PointHead"));
    const QString line = QStringLiteral("\n");
    header->setCaptions({tr("No."), tr("Use"), tr("Non") + line + tr("Equiv."), tr("LCF"),
                         tr("Eng.") + line + tr("[eV]"), tr("Ref.1"), tr("Ref.2"), tr("Ref.3"),
                         tr("Ref.4"), tr("Target"), tr("Map") + line + tr("Select 2D Map Data"),
                         tr("Show"), tr("F.P.")},
                        tr("mut"));
    m_ui->PointLayout->addWidget(header);
    for (AEPoint *row : m_points) {
        m_ui->PointLayout->addWidget(row);
    }
}

/// Smaller letters where there are many, and result lines that show the longest result.
void FourPs::fitFields()
{
    QFont small = font();
    small.setPointSizeF(kSmall * small.pointSizeF());
    QList<QWidget *> crowded = {m_ui->HgSelectF, m_ui->MapSelectF, m_regions,
                                m_ui->CalcRes,   m_ui->LCFRes,     findChild<PointHeader *>()};
    for (int i = 0; i < orvel::kQuantities; ++i) {
        crowded.append(recordButton(orvel::quantityAt(i)));
    }
    for (const ARefFile *row : m_references) {
        crowded << row->ratioDisp() << row->amountDisp();
    }
    for (const AEPoint *row : m_points) {
        crowded.append(row->targetEdit());
        for (int n = 0; n < kReferenceRows; ++n) {
            crowded.append(row->referenceEdit(n));
        }
    }
    for (QWidget *widget : crowded) {
        widget->setFont(small);
    }
    if (orvel::letterPixelScale() > 1.0) {
        m_ui->ExecTargetLabel->setMinimumWidth(m_ui->ExecTargetLabel->sizeHint().width());
    }
    if (orvel::letterPixelScale() > kScrolledAsAWhole) { // no need to save room for maps beside
        for (const AEPoint *row : m_points) {
            for (int n = 0; n <= kReferenceRows; ++n) {
                QLineEdit *field = n < kReferenceRows ? row->referenceEdit(n) : row->targetEdit();
                field->setMinimumWidth(orvel::widthForText(*field, QStringLiteral("-0.0123457")));
            }
        }
    }
    const QString number = QStringLiteral("-0.000");
    QString ratios = number;
    for (int n = 1; n < kReferenceRows; ++n) {
        ratios += QStringLiteral(" : ") + number;
    }
    const QString nonEquiv =
        tr("Result of NEQ :: ") + ratios + tr(", Valence = %1, t = %2").arg(number, number);
    const QString combination =
        tr("Result of LCF :: ") + ratios + tr(", Valence = %1, Base = %2").arg(number, number);
    for (QLineEdit *field : {m_ui->CalcRes, m_ui->LCFRes}) {
        field->setMinimumWidth(
            qMax(orvel::widthForText(*field, nonEquiv), orvel::widthForText(*field, combination)));
    }
}

void FourPs::connectInputs()
{
    for (QLineEdit *edit : {m_ui->EdgeE, m_ui->PreEEndDE, m_ui->PostEStartDE}) {
        connect(edit, &QLineEdit::editingFinished, this, &FourPs::setEdge);
    }
    const auto otherSpectra = [this] { m_ui->Disps->panel(Displays::DMuts)->clearScale(); };
    void (FourPs::*const received[kReferenceRows])() = {
        &FourPs::receiveNewRef1, &FourPs::receiveNewRef2, &FourPs::receiveNewRef3,
        &FourPs::receiveNewRef4};
    for (int n = 0; n < kReferenceRows; ++n) {
        const ARefFile *row = m_references[static_cast<size_t>(n)];
        connect(row, &ARefFile::selectedFile, this, otherSpectra);
        connect(row, &ARefFile::selectedFile, this, received[n]);
        connect(row, &ARefFile::foundNewEdge, this, &FourPs::noticedNewEdge);
        connect(row->selector(), &AFileSelect::newDir, this, &FourPs::receiveNewDir);
        connectSpectrumShift(row->selector(), n);
    }
    connect(&m_refFiles, &RefFiles::changedUse, this, &FourPs::calcBoth);

    connect(m_ui->TargetFile, &AFileSelect::selectedFile, this, otherSpectra);
    connect(m_ui->TargetFile, &AFileSelect::newFilePath, this, &FourPs::receiveNewFile);
    connect(m_ui->TargetFile, &AFileSelect::newDir, this, &FourPs::receiveNewDir);
    connectSpectrumShift(m_ui->TargetFile, -1);
    connect(m_ui->DispFSelect, &AFileSelect::newFilePaths, this, &FourPs::receiveNewDispFiles);
    connect(m_ui->DispFSelect, &AFileSelect::newFilePath, this, [this](const QString &path) {
        receiveNewDispFiles(path.isEmpty() ? QStringList() : QStringList(path)); // a drop
    });
    connect(m_ui->DispFSelect, &AFileSelect::selectedFile, this, [this] {
        if (m_ui->DispFSelect->text().isEmpty()) {
            receiveNewDispFiles({}); // cleared, be it of one file or of several
        }
    });
    connect(m_ui->DispFSelect, &AFileSelect::newDir, this, &FourPs::receiveNewDir);
    connect(m_ui->SaveFSelect, &AFileSelect::newDir, this, &FourPs::receiveNewDir);
    // Whatever an input is called, and whatever the result is to be called.
    for (const AFileSelect *selector : findChildren<AFileSelect *>()) {
        connect(selector, &AFileSelect::selectedFile, this, &FourPs::warnOfOverwriting);
    }
    connect(m_ui->SaveFSelect->nameEdit(), &QLineEdit::textChanged, this,
            &FourPs::warnOfOverwriting);
    connect(m_ui->RemoveAFile, &QPushButton::clicked, this, &FourPs::removeAFile);

    for (AEPoint *row : m_points) {
        connect(row, &AEPoint::newDir, this, &FourPs::receiveNewDir);
        connect(row, &AEPoint::newEnergy, this, &FourPs::receiveNewEnergy);
        connect(row, &AEPoint::changedCB, this, &FourPs::updateMarkLines);
        connect(row, &AEPoint::changedCB, this, &FourPs::calcBoth);
        connect(row, &AEPoint::newData, this, &FourPs::updateDMap);
        connect(row, &AEPoint::lostData, this, &FourPs::updateDMap);
        connect(row->fileSelect(), &AFileSelect::newFilePaths, this, &FourPs::receiveNewPaths);
        connect(row->showMapButton(), &QAbstractButton::toggled, this, &FourPs::updateDMap);
        connect(row->pickButton(), &QAbstractButton::toggled, this,
                [this, row](bool on) { toggledPickButton(row, on); });
    }
    for (const QRadioButton *button : {m_ui->SubPreEforRef, m_ui->SubPostEforRef}) {
        connect(button, &QRadioButton::toggled, this, &FourPs::changedSubBGTypeForRef);
    }
    for (const QRadioButton *button : {m_ui->SubPreEforTarget, m_ui->SubPostEforTarget}) {
        connect(button, &QRadioButton::toggled, this, &FourPs::changedSubBGTypeForTarget);
    }
}

/// A spectrum that was shifted gets its lines anew, and its column, before the calculation.
void FourPs::connectSpectrumShift(AXafsFileSelect *selector, int reference)
{
    connect(selector, &AXafsFileSelect::updated, this, [this, selector, reference] {
        applyEdge(*selector);
        for (int row = 0; row < kPointRows; ++row) {
            if (reference < 0) {
                refreshTarget(row);
            } else {
                refreshReference(row, reference);
            }
        }
        calcBoth();
        updatePlots();
    });
}

void FourPs::connectRuns()
{
    connect(m_ui->CalcTargetB, &QPushButton::clicked, this, &FourPs::calcTarget);
    connect(m_ui->CalcMapB, &QPushButton::clicked, this, &FourPs::calcMap);
    connect(m_ui->WriteB, &QPushButton::clicked, this, &FourPs::calcAndWrite);
    connect(m_ui->LCFB, &QPushButton::clicked, this, &FourPs::lcf);
    connect(m_ui->OpenSessionB, &QPushButton::clicked, this, [this] { chooseSession(false); });
    connect(m_ui->SaveSessionB, &QPushButton::clicked, this, [this] { chooseSession(true); });
    connect(m_ui->HelpB, &QPushButton::clicked, this, [this] {
        const QString fault = orvel::openManual();
        if (!fault.isEmpty()) {
            writeMessage(fault);
        }
    });
}

void FourPs::connectDisplays()
{
    connect(m_ui->Disps, &Displays::draw, this, &FourPs::draw);
    const DispABase *comparison = m_ui->Disps->panel(Displays::DLCFvsMPS);
    connect(comparison, &DispABase::mDClicked, this, &FourPs::clearLCFvs4PS);
    connect(comparison, &DispABase::mReleased, this, &FourPs::newColorLCFvs4PS);
    connect(m_ui->ResultMap, &DispMBase::draw, this, &FourPs::drawMap);
    connect(m_ui->ResultMap, &DispMBase::nowPos, this, &FourPs::receiveNowPosInMap);
    connect(m_ui->ResultMap, &DispMBase::mDClicked, this, &FourPs::dClickedInMap);
    connect(m_ui->DataMap, &DispMBase::draw, this, &FourPs::drawDMap);
    connect(m_ui->DataMap, &DispMBase::nowPos, this, &FourPs::receiveNowPosInDMap);
    connect(m_ui->Disps->panel(Displays::DMuts), &DispABase::mPressed, this,
            &FourPs::mPressedInAllMut);
    connect(&m_energyLines, &MarkLines::moving, this, [this] {
        const int selected = m_energyLines.selected();
        for (AEPoint *row : m_points) {
            if (row->energyEdit() == m_energyLines.lines()[selected]->edit()) {
                row->inNewEnergy();
            }
        }
    });

    connect(m_ui->Disps->panel(Displays::DMuts), &DispABase::mReleased, this,
            &FourPs::followUsedEnergies);

    connect(m_ui->MapGroup, QOverload<QAbstractButton *, bool>::of(&QButtonGroup::buttonToggled),
            this, &FourPs::selectedNewMap);
    connect(m_ui->HgGroup, QOverload<QAbstractButton *, bool>::of(&QButtonGroup::buttonToggled),
            this, [this](QAbstractButton *, bool on) {
                if (on) {
                    countShownHistogram();
                    m_ui->Disps->panel(Displays::DHistA)->updateSurface();
                }
            });
    connect(m_ui->MapWGrid, &QCheckBox::toggled, this, &FourPs::updateMaps);
    for (DispMBase *panel : {m_ui->ResultMap, m_ui->DataMap}) {
        const bool isResult = panel == m_ui->ResultMap;
        const auto typed = [panel] { panel->bar()->setAutoScale(false); };
        for (const char *name : {"MinV", "MaxV"}) {
            connect(panel->findChild<QLineEdit *>(QLatin1String(name)), &QLineEdit::textEdited,
                    this, typed);
        }
        connect(panel->bar(), &cBar::autoScaleChosen, this, [this, isResult](bool on) {
            if (on && isResult) {
                newMapLimits();
            } else if (on) {
                newDMapLimits();
            }
        });
    }
    connect(m_ui->ShowDMap, &QCheckBox::toggled, m_ui->DataMap, &QWidget::setVisible);
    connect(m_ui->ShowDAB, &QCheckBox::toggled, m_ui->Disps, &QWidget::setVisible);
    connect(m_ui->ShowMap, &QCheckBox::toggled, this, [this](bool on) {
        m_ui->ResultMap->setVisible(on);
        m_ui->MapSelectF->setVisible(on);
    });
    connect(m_ui->MoreCondsCB, &QCheckBox::toggled, this, &FourPs::dispCalcConditions);
    for (const QCheckBox *box : {m_ui->TypeNonEquiv, m_ui->HgAAuto, m_ui->HgTAuto}) {
        connect(box, &QCheckBox::toggled, this, &FourPs::enableWhatCounts);
    }
    DispABase *muts = m_ui->Disps->panel(Displays::DMuts);
    for (const QAbstractButton *button : {static_cast<QAbstractButton *>(m_ui->NNone),
                                          static_cast<QAbstractButton *>(m_ui->NBySubPre),
                                          static_cast<QAbstractButton *>(m_ui->NByEJ),
                                          static_cast<QAbstractButton *>(m_ui->NBy2Vics),
                                          static_cast<QAbstractButton *>(m_ui->FullRangeCB)}) {
        connect(button, &QAbstractButton::toggled, this, [muts] {
            muts->clearScale(); // other units, or another range
            muts->updateSurface();
        });
    }
}

/// At most one row takes energies from the graph; the chosen one can be unchosen.
void FourPs::toggledPickButton(AEPoint *row, bool on)
{
    if (!on) {
        return;
    }
    for (const AEPoint *other : m_points) {
        if (other != row) {
            other->pickButton()->setChecked(false);
        }
    }
}

// --- inputs that follow other inputs ------------------------------------------------------------

void FourPs::noticedNewEdge(double e)
{
    m_ui->EdgeE->setText(QString::number(e, 'g', 6));
    m_ui->EdgeE->setCursorPosition(0);
    setEdge();
}

void FourPs::applyEdge(AMutE &spectrum) const
{
    const double edge = m_ui->EdgeE->text().toDouble();
    spectrum.setEdge(edge + m_ui->PreEEndDE->text().toDouble(), edge,
                     edge + m_ui->PostEStartDE->text().toDouble());
    spectrum.fitVictoreens();
}

void FourPs::setEdge()
{
    for (const ARefFile *row : m_references) {
        applyEdge(*row->selector());
    }
    applyEdge(*m_ui->TargetFile);
    for (AMutE &spectrum : m_displaySpectra) {
        applyEdge(spectrum);
    }
    receiveNewTarget();
    for (int n = 0; n < kReferenceRows; ++n) {
        receiveNewRef(n);
    }
    updatePlots();
}

/// The spectrum's value at the row's energy; rows without an energy stay as they are.
static void showRowValue(QLineEdit *field, const AXafsFileSelect &selector, double energyEv)
{
    double value = 0.0;
    if (!(energyEv > 0.0)) {
        return;
    }
    if (selector.valueMinusLine(energyEv, value)) {
        field->setText(QString::number(value, 'g', 6));
        field->setCursorPosition(0);
    } else {
        field->clear();
    }
}

void FourPs::refreshReference(int row, int n)
{
    const AEPoint *point = m_points[static_cast<size_t>(row)];
    const AXafsFileSelect *selector = m_references[static_cast<size_t>(n)]->selector();
    if (selector->isValid()) {
        showRowValue(point->referenceEdit(n), *selector, point->energyEv());
    }
}

void FourPs::refreshTarget(int row)
{
    const AEPoint *point = m_points[static_cast<size_t>(row)];
    showRowValue(point->targetEdit(), *m_ui->TargetFile, point->energyEv());
}

void FourPs::receiveNewEnergy(double /*e*/)
{
    const int row = rowOf(sender());
    if (row < 0) {
        return;
    }
    for (int n = 0; n < kReferenceRows; ++n) {
        refreshReference(row, n);
    }
    refreshTarget(row);
    followUsedEnergies();
    updatePlots();
}

void FourPs::receiveNewRef(int n)
{
    if (n < 0 || n >= kReferenceRows) {
        return;
    }
    if (!m_references[static_cast<size_t>(n)]->selector()->isValid()) {
        updatePlots(); // a spectrum that was cleared vanishes
        return;
    }
    for (int row = 0; row < kPointRows; ++row) {
        refreshReference(row, n);
    }
    calcBoth();
    updatePlots();
}

void FourPs::receiveNewRef1()
{
    receiveNewRef(0);
}

void FourPs::receiveNewRef2()
{
    receiveNewRef(1);
}

void FourPs::receiveNewRef3()
{
    receiveNewRef(2);
}

void FourPs::receiveNewRef4()
{
    receiveNewRef(3);
}

void FourPs::receiveNewTarget()
{
    for (int row = 0; row < kPointRows; ++row) {
        refreshTarget(row);
    }
    updatePlots();
}

void FourPs::receiveNewFile(const QString & /*fname*/)
{
    applyEdge(*m_ui->TargetFile);
    receiveNewTarget();
    calcBoth();
}

void FourPs::changedSubBGTypeForRef(bool /*on*/)
{
    for (int n = 0; n < kReferenceRows; ++n) {
        m_references[static_cast<size_t>(n)]->selector()->setSubtractPost(
            m_ui->SubPostEforRef->isChecked());
        for (int row = 0; row < kPointRows; ++row) {
            refreshReference(row, n);
        }
    }
    updatePlots();
}

void FourPs::changedSubBGTypeForTarget(bool /*on*/)
{
    m_ui->TargetFile->setSubtractPost(m_ui->SubPostEforTarget->isChecked());
    receiveNewTarget();
}

void FourPs::receiveNewDir(const QString &dir)
{
    m_lastDir = dir;
    for (const ARefFile *row : m_references) {
        row->selector()->setDir(dir);
    }
    for (const AEPoint *row : m_points) {
        row->fileSelect()->setDir(dir);
    }
    for (AFileSelect *selector :
         {static_cast<AFileSelect *>(m_ui->TargetFile), m_ui->DispFSelect, m_ui->SaveFSelect}) {
        selector->setDir(dir);
    }
}

void FourPs::receiveNewPaths(const QStringList &paths)
{
    const int first = sender() ? rowOf(sender()->parent()) : -1;
    if (first < 0 || paths.size() < 2) {
        return; // a single one comes by the row's own newFilePath
    }
    for (int row = first, k = 0; k < paths.size() && row < kPointRows; ++row, ++k) {
        m_points[static_cast<size_t>(row)]->fileSelect()->newFile(paths[k]);
    }
}

void FourPs::receiveNewDispFiles(const QStringList &paths)
{
    m_ui->SelectedFs->clear();
    m_ui->SelectedFs->addItems(paths);
    loadDisplaySpectra();
}

void FourPs::removeAFile()
{
    delete m_ui->SelectedFs->takeItem(m_ui->SelectedFs->currentRow());
    loadDisplaySpectra();
}

void FourPs::loadDisplaySpectra()
{
    m_displaySpectra.clear();
    for (int i = 0; i < m_ui->SelectedFs->count(); ++i) {
        QListWidgetItem *item = m_ui->SelectedFs->item(i);
        item->setToolTip(item->text());
        AMutE spectrum;
        if (spectrum.readFile(item->text())) {
            applyEdge(spectrum);
            m_displaySpectra.push_back(spectrum);
        } else {
            item->setToolTip(QStringLiteral("%1: %2").arg(item->text(),
                                                          orvel::describe(spectrum.readFailure())));
            item->setIcon(style()->standardIcon(QStyle::SP_MessageBoxWarning)); // a colour would
            // be lost on some grounds, and to some eyes
        }
    }
    m_ui->Disps->panel(Displays::DMuts)->clearScale();
    warnOfOverwriting();
    updatePlots();
}

/// Every file that is read, those that are shown alone too.
QStringList FourPs::inputPaths() const
{
    QStringList paths = {m_ui->TargetFile->path()};
    for (const ARefFile *row : m_references) {
        paths.append(row->selector()->path());
    }
    for (const AEPoint *row : m_points) {
        paths.append(row->fileSelect()->path());
    }
    for (int i = 0; i < m_ui->SelectedFs->count(); ++i) {
        paths.append(m_ui->SelectedFs->item(i)->text());
    }
    paths.removeAll(QString());
    return paths;
}

/// Nothing asks before a file is overwritten: a warning at its name, beforehand, where that file
/// is an input.
void FourPs::warnOfOverwriting()
{
    const QString result = m_ui->SaveFSelect->text();
    const QString input =
        result.isEmpty()
            ? QString()
            : orvel::overwrittenInput(
                  orvel::resultPaths(result, m_advanced->texts(), !m_regions->regions().empty()),
                  inputPaths());
    m_ui->SaveFSelect->showProblem(
        input.isEmpty() ? QString() : tr("Writing replaces the input %1").arg(input));
}

/// Every used row with its energy is a line in the graph of all spectra.
void FourPs::updateMarkLines()
{
    const QVector<MarkLine *> old = m_energyLines.lines();
    m_energyLines.clear();
    qDeleteAll(old);
    for (const AEPoint *row : m_points) {
        if (row->isUsed()) {
            m_energyLines.append(new MarkLine(row->energyEdit(), 0, this));
        }
    }
    followUsedEnergies();
    m_ui->Disps->panel(Displays::DMuts)->updateSurface();
}

/// The range about the used energies changes with them, unless the user zoomed. A line that is
/// being dragged would run away from the pointer: its range follows when it is let go.
void FourPs::followUsedEnergies()
{
    DispABase *muts = m_ui->Disps->panel(Displays::DMuts);
    if (!m_ui->FullRangeCB->isChecked() && !m_energyLines.isMoving() && !muts->area()->isZoomed()) {
        muts->clearScale();
        muts->updateSurface();
    }
}

void FourPs::mPressedInAllMut(MouseC *m)
{
    const ChCoord *coord = m_ui->Disps->panel(Displays::DMuts)->coord();
    if (m_energyLines.isMoving() || !coord->hasContent()) {
        return; // the press took a marker, or there is no energy axis
    }
    for (AEPoint *row : m_points) {
        if (row->pickButton()->isChecked()) {
            row->energyEdit()->setText(QString::number(coord->rx(m->x()), 'g', 6));
            row->energyEdit()->setCursorPosition(0);
            row->inNewEnergy();
        }
    }
}

/// Disables what the present choices leave without a meaning.
void FourPs::enableWhatCounts()
{
    const bool nonEquiv = m_ui->TypeNonEquiv->isChecked();
    m_ui->FourPCondsF->setEnabled(!nonEquiv);
    m_ui->NonEquivCondsF->setEnabled(nonEquiv);
    for (int i = 0; i < orvel::kQuantities; ++i) { // a four-points file has its fixed columns
        recordButton(orvel::quantityAt(i))->setEnabled(nonEquiv);
    }
    for (int i = orvel::kQuantities; i < orvel::kMapQuantities; ++i) {
        mapButton(orvel::quantityAt(i))->setVisible(m_advanced->texts().wantsSigmaMaps());
    }
    for (QLineEdit *edit : {m_ui->HgAFrom, m_ui->HgATo}) {
        edit->setEnabled(!m_ui->HgAAuto->isChecked());
    }
    for (QLineEdit *edit : {m_ui->HgTFrom, m_ui->HgTTo}) {
        edit->setEnabled(!m_ui->HgTAuto->isChecked());
    }
}

void FourPs::dispCalcConditions(bool f)
{
    m_ui->FourPCondsF->setVisible(f);
    m_ui->NonEquivCondsF->setVisible(f);
}

/// What is beside the results stands in a frame of its own, out of sight until it is asked for.
void FourPs::makeAdvanced()
{
    m_advanced = new AdvancedPanel(this);
    m_ui->ProcL->insertWidget(m_ui->ProcL->indexOf(m_ui->NonEquivCondsF) + 1, m_advanced);
    m_advanced->hide();
    connect(m_ui->AdvancedCB, &QCheckBox::toggled, m_advanced, &QWidget::setVisible);
    connect(m_ui->AdvancedCB, &QCheckBox::toggled, this, &FourPs::offerCounts);
    connect(m_advanced, &AdvancedPanel::precisionChanged, this, &FourPs::runPrecision);
    connect(m_advanced, &AdvancedPanel::hidingChanged, this, [this] {
        newMapLimits();
        countShownHistogram();
        updatePlots();
    });
    connect(m_advanced, &AdvancedPanel::adviserWanted, this, &FourPs::adviseOnEnergies);
}

/// The window stays beside the panel, so that what it fills in can be seen.
void FourPs::adviseOnEnergies()
{
    if (!m_adviser) {
        m_adviser = new EnergyAdviserDialog([this] { return readInput(); }, this);
        connect(m_adviser, &EnergyAdviserDialog::energiesWanted, this, &FourPs::useEnergies);
        connectExport(m_adviser->exportMenu());
        m_adviser->setTexts(m_adviserTexts);
    }
    std::optional<double> sigma;
    if (m_maps && m_maps->precision()) {
        sigma = m_maps->precision()->sigma;
    }
    m_adviser->showAdvice(sigma);
}

/// As if they were typed and ticked row by row, but for one calculation at the end. Further rows go
/// out of use, or the energies would be others than those that were advised.
void FourPs::useEnergies(const orvel::ExpectedPrecision &design)
{
    const int used = static_cast<int>(design.energiesEv.size());
    int hadV = 0;
    for (int i = 0; i < kPointRows; ++i) {
        hadV = m_points[static_cast<size_t>(i)]->isVPoint() ? i : hadV;
    }
    for (int i = 0; i < kPointRows; ++i) {
        AEPoint *row = m_points[static_cast<size_t>(i)];
        // The target's checks want a V point of the non-equivalent method, too: one in use.
        const bool isV = design.vPoint >= 0 ? i == design.vPoint
                         : hadV < used      ? row->isVPoint()
                                            : i == used - 1;
        row->setChecks(i < used, row->isLcf(), isV);
        if (i < used) {
            row->energyEdit()->setText(
                orvel::energyText(design.energiesEv[static_cast<size_t>(i)]));
            row->energyEdit()->setCursorPosition(0);
            row->inNewEnergy();
        }
    }
    updateMarkLines();
    calcBoth();
}

/// The button above the map, what belongs to it below the choice of maps.
void FourPs::makeRegions()
{
    m_regions = new RegionPanel(m_ui->ResultMap->area(), this);
    m_ui->ResultMap->addToHeader(m_regions->button());
    m_ui->MapsL->addWidget(m_regions);
    QStringList titles;
    for (int i = 0; i < orvel::kMapQuantities; ++i) {
        titles << mapButton(orvel::quantityAt(i))->text();
    }
    m_regions->setTitles(titles);
    connect(m_regions, &RegionPanel::changed, this, [this] {
        warnOfOverwriting(); // a table of them would be written too
        if (m_isHeld) {
            m_regionsAreNew = true; // counted once, when the rest is there
            return;
        }
        countRegions();
        m_ui->ResultMap->updateSurface();
        updatePlots();
    });
    connect(m_regions, &RegionPanel::couldNotWrite, this, [this](const QString &path) {
        writeMessage(tr("Can't open the file [%1]").arg(path));
    });
    connect(m_ui->ShowMap, &QCheckBox::toggled, this,
            [this](bool on) { m_regions->setVisible(on && m_regions->button()->isChecked()); });
}

/// Looks at every intensity of images that are new, so only when somebody can see the answer.
void FourPs::offerCounts()
{
    if (m_ui->AdvancedCB->isChecked()) {
        m_advanced->setCountsOffered(
            std::all_of(m_points.begin(), m_points.end(), [](const AEPoint *row) {
                return !row->isUsed() || !row->map() || row->map()->hasCounts();
            }));
    }
}

void FourPs::makeHints()
{
    for (const ARefFile *row : m_references) {
        row->selector()->setHint(tr("Drop or select an XAFS spectrum"));
    }
    m_ui->TargetFile->setHint(tr("Drop or select the target's spectrum"));
    m_ui->DispFSelect->setHint(tr("Further spectra to show"));
    for (const AEPoint *row : m_points) {
        row->fileSelect()->setHint(tr("Drop a map"));
    }
    m_ui->SaveFSelect->setHint(tr("Result file"));
    const QStringList steps = {tr("1. References: spectrum, valence, Use"),
                               tr("2. Energies: map, Use     3. Calc."),
                               tr("4. Result file, Write")};
    m_ui->Message->setPlaceholderText(steps.join(QLatin1Char('\n')));
}
