#pragma once

#include <afx.h>

#include <QObject>
#include <QString>

/// Runs CAD commands on the chat's behalf. UI thread, but for instance().
class ZR_ZentriCmdManager : public QObject {
    Q_OBJECT

public:
    /// The one instance, made on first use. Any thread.
    static ZR_ZentriCmdManager& instance();

    /// Queues the command on the current document's command line; the host runs it when it is next idle.
    /// When a command is in progress the user is asked first, and No drops the request. By value: the
    /// question runs the host's loop, in which the caller and its text may go.
    void runCommand(CString command);

    QString lastRunCommand() const { return m_lastRunCommand; }

private:
    ZR_ZentriCmdManager() = default;

    QString m_lastRunCommand;
};
