#include "panel/SessionKeeper.h"

#include "panel/PanelUndo.h"
#include "session/SessionFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMenu>
#include <QSettings>
#include <QStandardPaths>
#include <QUuid>

namespace {

const QString kRecentKey = QStringLiteral("recentSessions");
constexpr int kMostCopies = 5; ///< of earlier runs; older ones go

QString settingsPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/orvel/orvel.ini");
}

QString lockOf(const QString &copy)
{
    return copy.left(copy.size() - 4) + QStringLiteral(".lock");
}

/// The process may have died in any way; only the lock of a living one holds.
std::unique_ptr<QLockFile> newLock(const QString &path)
{
    auto lock = std::make_unique<QLockFile>(path);
    lock->setStaleLockTime(0);
    return lock;
}

/// Copies without a living process, the newest first.
QStringList leftCopies(const QString &folder, const QString &own)
{
    QStringList copies;
    const QDir dir(folder);
    for (const QFileInfo &info :
         dir.entryInfoList({QStringLiteral("*.ini")}, QDir::Files, QDir::Time)) {
        const QString path = info.absoluteFilePath();
        if (path != own && newLock(lockOf(path))->tryLock(0)) {
            copies.append(path);
        }
    }
    return copies;
}

} // namespace

SessionKeeper::SessionKeeper(Take take, int delayMs, QObject *parent)
    : QObject(parent), m_take(std::move(take)),
      m_folder(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
               QStringLiteral("/autosave/")),
      m_name(QStringLiteral("%1-%2")
                 .arg(QCoreApplication::applicationPid())
                 .arg(QUuid::createUuid().toString(QUuid::Id128).left(8))),
      m_kept(m_take())
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(delayMs);
    connect(&m_timer, &QTimer::timeout, this, &SessionKeeper::writeCopy);
    QDir().mkpath(m_folder);
    m_lock = newLock(lockOf(ownCopy()));
    m_lock->tryLock(0); // an unwritable folder has no copies either
    for (const QString &copy : leftCopies(m_folder, ownCopy()).mid(kMostCopies)) {
        QFile::remove(copy);
    }
    const QDir folder(m_folder);
    for (const QString &name : folder.entryList({QStringLiteral("*.lock")}, QDir::Files)) {
        const QString path = folder.filePath(name);
        if (path != lockOf(ownCopy())) {
            newLock(path)->tryLock(0); // and is removed again, unless its process lives
        }
    }
}

/// The lock goes, the copy stays.
SessionKeeper::~SessionKeeper()
{
    if (m_timer.isActive()) {
        writeCopy();
    }
}

QStringList SessionKeeper::recent() const
{
    QSettings settings(settingsPath(), QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    return settings.value(kRecentKey).toStringList().mid(0, kMostRecent);
}

void SessionKeeper::fill(QMenu &menu)
{
    menu.clear();
    for (const QString &path : recent()) {
        QString text = QDir::toNativeSeparators(path);
        text.replace(QLatin1Char('&'), QLatin1String("&&"));
        QAction *action = menu.addAction(text);
        action->setData(path);
        action->setEnabled(QFileInfo(path).isFile());
        connect(action, &QAction::triggered, this, [this, path] { emit chosen(path); });
    }
    if (menu.isEmpty()) {
        menu.addAction(tr("No session was opened or saved yet"))->setEnabled(false);
    }
}

void SessionKeeper::handled(const QString &path)
{
    QStringList paths = recent(); // another window may have added one
    const QString absolute = QFileInfo(path).absoluteFilePath();
    paths.removeAll(absolute);
    paths.prepend(absolute);
    QSettings settings(settingsPath(), QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    settings.setValue(kRecentKey, QStringList(paths.mid(0, kMostRecent)));
    m_kept = m_take();
    m_timer.stop();
    QFile::remove(ownCopy());
}

void SessionKeeper::writeCopy()
{
    const orvel::PanelState now = m_take();
    if (!isSameState(now, m_kept) && orvel::writeSession(ownCopy(), now)) {
        m_kept = now;
    }
}

QString SessionKeeper::leftCopy() const
{
    for (const QString &copy : leftCopies(m_folder, ownCopy())) {
        if (orvel::readSession(copy).error.isEmpty()) {
            return copy;
        }
    }
    return QString();
}

void SessionKeeper::tookOver(const QString &copy)
{
    const orvel::PanelState now = m_take();
    if (orvel::writeSession(ownCopy(), now)) { // or the work would be nowhere
        m_kept = now;
        QFile::remove(copy);
    }
}
