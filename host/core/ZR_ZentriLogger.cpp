#include "host/core/ZR_ZentriLogger.h"

#include <acutads.h>
#include <tchar.h>
#include <time.h>

#include <QCoreApplication>
#include <QThread>

namespace {

constexpr const TCHAR* kModuleName = _T("ZR_Zentri.arx");
constexpr const TCHAR* kLogName = _T("ZR_ZentriLogs.txt");
constexpr DWORD kMaxModulePath = 260;
constexpr std::size_t kMaxStamp = 128;
constexpr BYTE kByteOrderMark[] = {0xFF, 0xFE};

/// The log's full path; empty when the module file's name cannot be obtained.
CString logPath() {
    TCHAR moduleFile[kMaxModulePath + 1] = {};
    const HMODULE module = GetModuleHandleW(kModuleName);
    // A null handle would yield the program's file name instead.
    if (module == nullptr || GetModuleFileNameW(module, moduleFile, kMaxModulePath) == 0) {
        return CString();
    }
    const CString path(moduleFile);
    const int lastBackslash = path.ReverseFind(_T('\\'));
    return lastBackslash < 0 ? CString() : path.Left(lastBackslash + 1) + kLogName;
}

/// The current local time in the format of an entry; empty when it cannot be formatted.
CString stamp() {
    const __time64_t now = _time64(nullptr);
    struct tm local = {};
    TCHAR text[kMaxStamp] = {};
    if (_localtime64_s(&local, &now) != 0) {
        return CString();
    }
    if (_tcsftime(text, kMaxStamp, _T("\n[%Y年%m月%d日  %T]"), &local) == 0) {
        return CString();
    }
    return CString(text);
}

/// Runs a step that uses CFile; false if it throws. Whoever catches an MFC exception has to delete it.
template <typename Step>
bool succeeds(Step step) {
    try {
        step();
        return true;
    } catch (CException* exception) {
        exception->Delete();
        return false;
    }
}

/// Prints a failure on the host's command line, unless the text is empty. The command line belongs to the UI
/// thread, to which another thread's report is queued.
void report(const CString& failure) {
    if (failure.IsEmpty()) {
        return;
    }
    const auto print = [failure] { acutPrintf(_T("%s"), failure.GetString()); };
    QCoreApplication* const application = QCoreApplication::instance();
    if (application == nullptr || application->thread() == QThread::currentThread()) {
        print();
    } else {
        QMetaObject::invokeMethod(application, print, Qt::QueuedConnection);
    }
}

}  // namespace

ZR_ZentriLogger& ZR_ZentriLogger::instance() {
    // Never destroyed: a worker thread may still log while the process exits.
    static ZR_ZentriLogger* const logger = new ZR_ZentriLogger;
    static std::once_flag opened;
    CString failure;
    std::call_once(opened, [&failure] { failure = logger->open(); });
    // With no lock held: the host's command line may call back into the module.
    report(failure);
    return *logger;
}

void ZR_ZentriLogger::init() {
    report(open());
}

CString ZR_ZentriLogger::open() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_valid = false;
    m_path = logPath();
    if (m_path.IsEmpty()) {
        return _T("\nZR_Zentri Logger init failed : get empty logger path.");
    }

    CFile file;
    if (!file.Open(m_path,
                   CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite | CFile::typeUnicode)) {
        CString failure;
        failure.Format(_T("\nZR_Zentri Logger init failed : create log file failed.Error:%d"),
                       static_cast<int>(GetLastError()));
        return failure;
    }
    m_valid = succeeds([&file] {
        if (file.GetLength() == 0) {
            file.Write(kByteOrderMark, sizeof(kByteOrderMark));
        }
        file.Close();
    });
    if (!m_valid) {
        file.Abort();
    }
    return CString();
}

bool ZR_ZentriLogger::write(const CString& message) {
    // Each entry opens and closes the file, so the entries of different threads are serialised.
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_valid || m_path.IsEmpty()) {
        return false;
    }

    CFile file;
    if (!file.Open(m_path, CFile::modeWrite)) {
        return false;
    }
    const bool written = succeeds([&file, &message] {
        file.SeekToEnd();
        const CString entry = stamp() + _T("\n") + message + _T("\n");
        file.Write(entry.GetString(), static_cast<UINT>(entry.GetLength()) * sizeof(TCHAR));
        file.Close();
    });
    if (!written) {
        file.Abort();
    }
    return written;
}

bool zentriLog(const CString& message) {
    return ZR_ZentriLogger::instance().write(message);
}
