#include "panel/PanelUndo.h"

#include "spectra/AFileSelect.h"

#include <QAbstractButton>
#include <QAbstractItemModel>
#include <QAction>
#include <QComboBox>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QScopedValueRollback>

namespace orvel {
namespace {

void dropShownLimits(HistogramTexts &histogram)
{
    if (histogram.autoRange) {
        histogram.from.clear();
        histogram.to.clear();
    }
}

} // namespace

bool isSameState(const PanelState &one, const PanelState &other)
{
    PanelState a = one;
    PanelState b = other;
    for (PanelState *state : {&a, &b}) {
        dropShownLimits(state->texts.valenceHistogram);
        dropShownLimits(state->texts.amountHistogram);
    }
    return a == b;
}

} // namespace orvel

class PanelUndo::Step : public QUndoCommand {
public:
    Step(PanelUndo &owner, orvel::PanelState before, orvel::PanelState after)
        : m_owner(owner), m_before(std::move(before)), m_after(std::move(after))
    {
        setText(owner.nameOf(m_before, m_after));
    }
    void undo() override { m_owner.restore(m_before); }
    void redo() override
    {
        if (m_isDone) {
            m_owner.restore(m_after);
        }
        m_isDone = true; // the user did it, before it was pushed
    }

private:
    PanelUndo &m_owner;
    orvel::PanelState m_before;
    orvel::PanelState m_after;
    bool m_isDone = false;
};

PanelUndo::PanelUndo(Take take, Restore restore, IsBusy isBusy, QObject *parent)
    : QObject(parent), m_take(std::move(take)), m_restore(std::move(restore)),
      m_isBusy(std::move(isBusy)), m_undoAction(new QAction(this)), m_redoAction(new QAction(this))
{
    constexpr int kMostSteps = 200;
    m_stack.setUndoLimit(kMostSteps);
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &PanelUndo::settleAfterDrag);
    m_undoAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+Z")));
    m_redoAction->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+Z")));
    connect(m_undoAction, &QAction::triggered, this, &PanelUndo::undo);
    connect(m_redoAction, &QAction::triggered, this, &PanelUndo::redo);
    connect(&m_stack, &QUndoStack::indexChanged, this, &PanelUndo::showSteps);
    showSteps();
}

void PanelUndo::watch(QWidget &form)
{
    for (QLineEdit *field : form.findChildren<QLineEdit *>()) {
        field->installEventFilter(this);
        if (field->isReadOnly()) { // shows results, or where the pointer is
            continue;
        }
        connect(field, &QLineEdit::textEdited, this,
                [this, field] { m_typedIn = m_edited = field; });
        connect(field, &QLineEdit::textChanged, this, [this, field] { noticeText(field); });
        connect(field, &QLineEdit::editingFinished, this, &PanelUndo::settle);
    }
    for (const QAbstractButton *button : form.findChildren<QAbstractButton *>()) {
        connect(button, &QAbstractButton::toggled, this, &PanelUndo::notice);
    }
    for (const QComboBox *box : form.findChildren<QComboBox *>()) {
        connect(box, QOverload<int>::of(&QComboBox::currentIndexChanged), this, &PanelUndo::notice);
    }
    for (const AFileSelect *selector : form.findChildren<AFileSelect *>()) {
        connect(selector, &AFileSelect::selectedFile, this, &PanelUndo::notice);
    }
    for (const QListWidget *list : form.findChildren<QListWidget *>()) {
        connect(list->model(), &QAbstractItemModel::rowsInserted, this, &PanelUndo::notice);
        connect(list->model(), &QAbstractItemModel::rowsRemoved, this, &PanelUndo::notice);
    }
    for (QPlainTextEdit *box : form.findChildren<QPlainTextEdit *>()) {
        box->setUndoRedoEnabled(false); // messages are no input
        box->installEventFilter(this);
    }
    m_last = m_take();
}

void PanelUndo::notice()
{
    if (!m_isRestoring) {
        m_timer.start(0);
    }
    emit noticed();
}

/// What is being typed waits until it is done.
void PanelUndo::noticeText(const QLineEdit *field)
{
    if (m_typedIn == field) { // textEdited() came just before
        m_typedIn = nullptr;
        emit noticed();
    } else {
        notice();
    }
}

/// What is dragged changes all the time; a step is where it ends.
void PanelUndo::settleAfterDrag()
{
    constexpr int kLookAgainMs = 50;
    if (m_isBusy() || (QGuiApplication::mouseButtons() & Qt::LeftButton)) {
        m_timer.start(kLookAgainMs);
    } else {
        settle();
    }
}

void PanelUndo::settle()
{
    if (m_isRestoring || m_isBusy()) {
        return;
    }
    m_timer.stop();
    forgetTyping();
    orvel::PanelState now = m_take();
    if (!isSameState(now, m_last)) {
        m_stack.push(new Step(*this, m_last, now));
    }
    m_last = std::move(now);
}

void PanelUndo::undo()
{
    settle();
    m_stack.undo();
}

void PanelUndo::redo()
{
    settle();
    m_stack.redo();
}

void PanelUndo::restore(const orvel::PanelState &state)
{
    {
        const QScopedValueRollback<bool> restoring(m_isRestoring, true);
        m_restore(state);
        m_last = m_take(); // not quite the same where a file has gone
    }
    emit noticed();
}

/// What was typed is part of a step now: the field's own steps would undo half of it.
void PanelUndo::forgetTyping()
{
    if (m_edited != nullptr) {
        const int cursor = m_edited->cursorPosition();
        m_edited->setText(m_edited->text()); // which drops them
        m_edited->setCursorPosition(cursor);
        m_edited = nullptr;
    }
}

/// A field has its own steps while somebody types in it; an event filter, since fields claim the
/// keys before the shortcuts of the window see them.
bool PanelUndo::eventFilter(QObject *object, QEvent *event)
{
    if (event->type() != QEvent::KeyPress) {
        return QObject::eventFilter(object, event);
    }
    const auto *field = qobject_cast<QLineEdit *>(object);
    const bool isTyping = field != nullptr && field == m_edited;
    const auto *key = static_cast<QKeyEvent *>(event);
    if (key->matches(QKeySequence::Undo) && !(isTyping && field->isUndoAvailable())) {
        undo();
        return true;
    }
    if (key->matches(QKeySequence::Redo) && !(isTyping && field->isRedoAvailable())) {
        redo();
        return true;
    }
    return false;
}

QString PanelUndo::nameOf(const orvel::PanelState &before, const orvel::PanelState &after) const
{
    const orvel::SessionTexts &from = before.texts;
    const orvel::SessionTexts &to = after.texts;
    QStringList names;
    const auto note = [&names](bool isOther, const QString &name) {
        if (isOther) {
            names.append(name);
        }
    };
    note(from.references != to.references, tr("reference"));
    note(from.target != to.target, tr("target"));
    note(from.points != to.points, tr("energy points"));
    const bool isFile = !names.isEmpty(); // which brings an edge along
    note(!isFile && (from.edgeE != to.edgeE || from.preEdgeEndDE != to.preEdgeEndDE ||
                     from.postEdgeStartDE != to.postEdgeStartDE),
         tr("edge"));
    note(from.nonEquiv != to.nonEquiv || from.solver != to.solver ||
             from.subForRef != to.subForRef || from.subForTarget != to.subForTarget ||
             from.background != to.background,
         tr("method"));
    note(from.valenceHistogram != to.valenceHistogram || from.amountHistogram != to.amountHistogram,
         tr("histogram"));
    note(from.record != to.record || from.resultFile != to.resultFile, tr("result file"));
    note(from.regions != to.regions, tr("regions"));
    note(from.advanced != to.advanced, tr("precision and bounds"));
    note(before.view != after.view, tr("view"));
    return names.size() == 1 ? names.first() : tr("several inputs");
}

void PanelUndo::showSteps()
{
    m_undoAction->setEnabled(m_stack.canUndo());
    m_redoAction->setEnabled(m_stack.canRedo());
    m_undoAction->setText(m_stack.canUndo() ? tr("Undo: %1").arg(m_stack.undoText()) : tr("Undo"));
    m_redoAction->setText(m_stack.canRedo() ? tr("Redo: %1").arg(m_stack.redoText()) : tr("Redo"));
}
