#pragma once

#include "session/SessionTexts.h"

#include <QLockFile>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <functional>
#include <memory>

class QMenu;

/// What lasts from one run of the window to the next: the sessions that were opened or saved last,
/// and a copy of the form that is written while somebody works, beside any session of the user's.
///
/// Recent sessions stand in orvel.ini in the user's folder of configurations. Copies lie in the
/// user's folder of application data, one a process, each with a lock: a copy without a living
/// process is of an earlier run.
class SessionKeeper : public QObject {
    Q_OBJECT

public:
    using Take = std::function<orvel::PanelState()>;
    static constexpr int kMostRecent = 10;

    /// delayMs  from the last change to the copy
    SessionKeeper(Take take, int delayMs, QObject *parent);
    ~SessionKeeper() override;

    QStringList recent() const;
    /// Fills the menu; sessions that are not there any more are grey.
    void fill(QMenu &menu);

    /// A session that was opened or saved: the form as it is now needs no copy.
    void handled(const QString &path);
    /// Something may have changed. A copy follows within the delay, however much goes on.
    void notice()
    {
        if (!m_timer.isActive()) {
            m_timer.start();
        }
    }

    /// The newest copy of an earlier run that can be read; empty: none. One of a newer version
    /// stays for that one.
    QString leftCopy() const;
    /// The form was taken from that copy: from here on this run's own one holds it. Further copies
    /// are for later runs: a run has one copy of its own.
    void tookOver(const QString &copy);

signals:
    void chosen(const QString &path);

private:
    QString ownCopy() const { return m_folder + m_name + QStringLiteral(".ini"); }
    void writeCopy();

    Take m_take;
    QString m_folder; ///< ends in a slash
    QString m_name;
    std::unique_ptr<QLockFile> m_lock;
    QTimer m_timer;
    orvel::PanelState m_kept; ///< in a session of the user's or in the copy
};
