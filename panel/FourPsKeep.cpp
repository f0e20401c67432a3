// What outlasts a moment of work: undo, sessions, the copy of what no session holds.
#include "panel/FourPs.h"

#include "panel/PanelUndo.h"
#include "panel/RegionPanel.h"
#include "panel/SessionKeeper.h"
#include "panel/WaitCursor.h"
#include "session/SessionFile.h"
#include "ui_FourPs.h"

#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QStyle>
#include <QToolButton>

using orvel::WaitCursor;

/// The form as it is now is where undoing ends.
void FourPs::makeUndo()
{
    m_ui->RestoreB->hide();
    m_ui->RecentB->hide();
    m_undo = new PanelUndo([this] { return state(); },
                           [this](const orvel::PanelState &state) { restore(state); },
                           [this] { return m_isHeld || m_energyLines.isMoving(); }, this);
    m_undo->watch(*this);
    connect(m_regions, &RegionPanel::changed, m_undo, &PanelUndo::notice);
    connect(m_ui->Disps->panel(Displays::DMuts), &DispABase::mReleased, m_undo, &PanelUndo::settle);
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("UndoMenu"));
    for (QAction *action : {m_undo->undoAction(), m_undo->redoAction()}) {
        menu->addAction(action);
        addAction(action); // for its keys
    }
    connect(menu, &QMenu::aboutToShow, m_undo, &PanelUndo::settle);
    m_ui->UndoB->setMenu(menu);
    m_ui->UndoB->setIcon(style()->standardIcon(QStyle::SP_ArrowBack)); // a word has no room
    // A session may be dropped wherever no field takes files; as texts of fields URLs mean nothing.
    setAcceptDrops(true);
    for (QLineEdit *field : findChildren<QLineEdit *>()) {
        field->setAcceptDrops(false);
    }
    m_ui->Message->setAcceptDrops(false);
}

void FourPs::keepSessions(int delayMs)
{
    m_keeper = new SessionKeeper([this] { return state(); }, delayMs, this);
    connect(m_undo, &PanelUndo::noticed, m_keeper, &SessionKeeper::notice);
    connect(m_keeper, &SessionKeeper::chosen, this, &FourPs::openSession);
    auto *menu = new QMenu(this);
    menu->setObjectName(QStringLiteral("RecentMenu"));
    connect(menu, &QMenu::aboutToShow, this, [this, menu] { m_keeper->fill(*menu); });
    m_ui->RecentB->setMenu(menu);
    m_ui->RecentB->show();
    connect(m_ui->RestoreB, &QPushButton::clicked, this, &FourPs::restoreCopy);
    m_ui->RestoreB->setVisible(!m_keeper->leftCopy().isEmpty());
}

/// The session that is dragged; empty: something else.
static QString draggedSession(const QDropEvent &event)
{
    const QList<QUrl> urls = event.mimeData()->urls();
    const QString path = urls.isEmpty() ? QString() : urls.first().toLocalFile();
    return !path.isEmpty() && orvel::isSession(path) ? path : QString();
}

void FourPs::dragEnterEvent(QDragEnterEvent *event)
{
    if (!draggedSession(*event).isEmpty()) {
        event->acceptProposedAction();
    }
}

void FourPs::dropEvent(QDropEvent *event)
{
    const QString path = draggedSession(*event);
    if (!path.isEmpty()) {
        event->acceptProposedAction();
        openSession(path);
    }
}

void FourPs::chooseSession(bool save)
{
    QFileDialog *&dialog = save ? m_saveDialog : m_openDialog;
    if (!dialog) {
        dialog = new QFileDialog(this);
        dialog->setNameFilters({QStringLiteral("Sessions (*.ini)"), QStringLiteral("All (* *.*)")});
        dialog->setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
        dialog->setFileMode(save ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
        dialog->setDefaultSuffix(QStringLiteral("ini"));
        connect(dialog, &QFileDialog::fileSelected, this,
                save ? &FourPs::saveSession : &FourPs::openSession);
    }
    if (!m_lastDir.isEmpty()) {
        dialog->setDirectory(m_lastDir);
    }
    dialog->open();
}

void FourPs::openSession(const QString &path)
{
    const WaitCursor wait;
    m_undo->settle(); // typing before it is a step of its own
    const orvel::SessionReading session = orvel::readSession(path);
    if (!session.error.isEmpty()) {
        writeMessage(tr("Can't open the file [%1]").arg(path) + QStringLiteral(": ") +
                     session.error);
        return;
    }
    for (const QString &note : session.notes + session.viewNotes) {
        writeMessage(QStringLiteral("%1: %2").arg(path, note));
    }
    receiveNewDir(QFileInfo(path).absolutePath());
    setState(session.state);
    m_undo->settle();
    if (m_keeper) {
        m_keeper->handled(path);
    }
}

void FourPs::saveSession(const QString &path)
{
    if (!orvel::writeSession(path, state())) {
        writeMessage(tr("Can't open the file [%1]").arg(path));
    } else if (m_keeper) {
        m_keeper->handled(path);
    }
}

void FourPs::restoreCopy()
{
    const QString path = m_keeper->leftCopy();
    const orvel::SessionReading copy = orvel::readSession(path);
    if (copy.error.isEmpty()) {
        const WaitCursor wait;
        m_undo->settle();
        setState(copy.state);
        m_undo->settle();
        m_keeper->tookOver(path);
    } else if (!path.isEmpty()) {
        writeMessage(tr("Can't open the file [%1]").arg(path) + QStringLiteral(": ") + copy.error);
    }
    // Further copies are offered by later runs: a second one would take the place of this one.
    m_ui->RestoreB->hide();
}
