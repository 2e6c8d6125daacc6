#pragma once

#include <afx.h>

#include <QObject>
#include <QString>

/// Runs CAD commands on the chat's behalf. UI thread, except for instance().
class ZR_ZentriCmdManager : public QObject {
    Q_OBJECT

public:
    /// The one instance, created on first use. Any thread.
    static ZR_ZentriCmdManager& instance();

    /// Queues the command on the current document's command line; the host runs it when it is next idle. If a
    /// command is in progress there, the user is asked first, and No drops the request, as does closing the
    /// document; switching to another one does not redirect it. By value: the question runs
    /// the host's message loop, during which the caller and its text may be destroyed.
    void runCommand(CString command);

    /// Part of the interface; nothing in the module calls it.
    QString lastRunCommand() const { return m_lastRunCommand; }

private:
    ZR_ZentriCmdManager() = default;

    QString m_lastRunCommand;
};
