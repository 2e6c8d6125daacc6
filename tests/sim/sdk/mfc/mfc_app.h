#pragma once

#include <afxext.h>
#include <afxwin.h>

#include <string>
#include <vector>

#include "mfc_text.h"

/// An application object as a program has it, for the time of a test.
class TestApp : public CWinApp {
public:
    TestApp() : CWinApp(_T("MFC test")) {
        AfxWinInit(GetModuleHandleW(nullptr), nullptr, m_commandLine, SW_SHOW);
    }

private:
    TCHAR m_commandLine[1] = {0};
};

/// A hidden window of its own, not owned by anything.
inline BOOL createHidden(CWnd& window) {
    return window.CreateEx(0, nullptr, _T("hidden"), WS_POPUP, 0, 0, 200, 100, nullptr, nullptr);
}

/// Joins what was logged with blanks.
inline std::string joined(const std::vector<std::string>& entries) {
    std::string text;
    for (const std::string& entry : entries) {
        text += (text.empty() ? "" : " ") + entry;
    }
    return text;
}
