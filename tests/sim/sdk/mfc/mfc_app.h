#pragma once

#include <afxext.h>
#include <afxwin.h>

#include <string>
#include <vector>

#include "mfc_text.h"

/// An initialized application object for the duration of a test.
class TestApp : public CWinApp {
public:
    TestApp() : CWinApp(_T("MFC test")) {
        AfxWinInit(GetModuleHandleW(nullptr), nullptr, m_commandLine, SW_SHOW);
    }

private:
    TCHAR m_commandLine[1] = {0};
};

/// Creates a hidden top-level window without an owner.
inline BOOL createHidden(CWnd& window) {
    return window.CreateEx(0, nullptr, _T("hidden"), WS_POPUP, 0, 0, 200, 100, nullptr, nullptr);
}

/// Joins log entries with spaces.
inline std::string joined(const std::vector<std::string>& entries) {
    std::string text;
    for (const std::string& entry : entries) {
        text += (text.empty() ? "" : " ") + entry;
    }
    return text;
}
