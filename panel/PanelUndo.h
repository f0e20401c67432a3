#pragma once

#include "session/SessionTexts.h"

#include <QLineEdit>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUndoStack>

#include <functional>

class QAction;
class QWidget;

/// Undo and redo of every change of an input or a choice of a form. A step is the form before and
/// after it, taken once the events of a user's action are done: what an action brings along (the
/// edge and energies of a file, a row of dropped maps) goes with it. Typing is a step when the
/// field is left or Enter pressed; until then Ctrl+Z is the field's own.
class PanelUndo : public QObject {
    Q_OBJECT

public:
    using Take = std::function<orvel::PanelState()>;
    using Restore = std::function<void(const orvel::PanelState &)>;
    /// Whether an action still goes on, for instance a drag.
    using IsBusy = std::function<bool()>;

    PanelUndo(Take take, Restore restore, IsBusy isBusy, QObject *parent);

    /// Heeds all fields, boxes, lists and file selectors that are in the form now, and starts from
    /// what it shows.
    void watch(QWidget &form);
    /// Makes a step of what has changed, if anything has, without waiting for further events.
    void settle();

    QAction *undoAction() const { return m_undoAction; }
    QAction *redoAction() const { return m_redoAction; }

public slots:
    void undo();
    void redo();
    /// Something may have changed that no widget of the form tells of.
    void notice();

signals:
    /// Something may have changed.
    void noticed();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;

private:
    class Step;

    void settleAfterDrag();
    void forgetTyping();
    void noticeText(const QLineEdit *field);
    void restore(const orvel::PanelState &state);
    QString nameOf(const orvel::PanelState &before, const orvel::PanelState &after) const;
    void showSteps();

    Take m_take;
    Restore m_restore;
    IsBusy m_isBusy;
    QUndoStack m_stack;
    orvel::PanelState m_last; ///< of which the stack knows
    bool m_isRestoring = false;
    const QLineEdit *m_typedIn = nullptr; ///< from its textEdited() to its textChanged()
    QPointer<QLineEdit> m_edited;         ///< holds typing that is no step yet
    QTimer m_timer;
    QAction *m_undoAction;
    QAction *m_redoAction;
};

namespace orvel {

/// Whether two forms say the same. Limits that "Auto" shows are no inputs.
bool isSameState(const PanelState &one, const PanelState &other);

} // namespace orvel
