#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "afxwin.h"

/// MFC's per-thread state.
struct AfxThreadState {
    MSG lastSentMsg = {};     ///< The message being handled.
    CWnd* wndInit = nullptr;  ///< The object to which the CBT hook attaches the next window.
    HHOOK cbtHook = nullptr;
    CWinThread* currentThread = nullptr;
    AFX_MODULE_STATE* moduleState = nullptr;
    std::unordered_map<HWND, CWnd*> windows;
    std::unordered_map<HWND, std::unique_ptr<CWnd>> temporaryWindows;
    std::unordered_map<HMENU, std::unique_ptr<CMenu>> temporaryMenus;
    std::vector<CFrameWnd*> frames;
    CString className;  ///< AfxRegisterWndClass's last result.
};

AfxThreadState& afxThreadState();
