#pragma once

#include <afx.h>

#include <mutex>

/// The module's log, "ZR_ZentriLogs.txt" beside the module file, UTF-16LE with a byte-order mark.
/// Entries may be written from any thread.
class ZR_ZentriLogger {
public:
    /// The one logger of the module; initialised on first use, which is when the module is loaded. A failure
    /// is printed on the host's command line once.
    static ZR_ZentriLogger& instance();

    ZR_ZentriLogger() = default;
    ZR_ZentriLogger(const ZR_ZentriLogger&) = delete;
    ZR_ZentriLogger& operator=(const ZR_ZentriLogger&) = delete;

    /// Determines the path and creates the file if it does not exist. A failure is printed on the host's
    /// command line; on a worker thread the report is queued to the UI thread.
    void init();

    /// Appends a time-stamped entry. False when the log is not valid or any step fails; nothing is reported.
    bool write(const CString& message);

    // Part of the interface; nothing in the module calls these.
    bool isValid() const { return m_valid; }
    CString path() const { return m_path; }

private:
    /// As init(), but returns what to print; empty on success.
    CString open();

    std::mutex m_mutex;
    bool m_valid = false;
    CString m_path;
};

/// Appends an entry to the module's log.
bool zentriLog(const CString& message);
