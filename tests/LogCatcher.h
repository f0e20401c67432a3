#pragma once

#include <QStringList>
#include <QtGlobal>

/// Collects what is logged while it lives.
class LogCatcher {
public:
    LogCatcher()
    {
        caught().clear();
        m_previous = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext &, const QString &text) { caught() << text; });
    }
    ~LogCatcher() { qInstallMessageHandler(m_previous); }
    LogCatcher(const LogCatcher &) = delete;
    LogCatcher &operator=(const LogCatcher &) = delete;

    QStringList lines() const { return caught(); }

private:
    static QStringList &caught()
    {
        static QStringList lines;
        return lines;
    }

    QtMessageHandler m_previous;
};
