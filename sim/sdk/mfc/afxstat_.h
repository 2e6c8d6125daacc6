#pragma once

// Module state. Include <afxwin.h>.
//
// Simplified: modules are extension libraries of the program, so they all share the program's one state.
// AFX_MANAGE_STATE can still make another state current for a while.

#include "afxdefs_.h"

class CWinApp;

struct AFX_MODULE_STATE {
    CWinApp* m_pCurrentWinApp = nullptr;
    HINSTANCE m_hCurrentInstanceHandle = nullptr;
    HINSTANCE m_hCurrentResourceHandle = nullptr;
    LPCTSTR m_lpszCurrentAppName = nullptr;
};

/// The calling thread's current state: the application's, unless AFX_MANAGE_STATE has set another.
AFX_MODULE_STATE* AFXAPI AfxGetModuleState();
/// The state of the code that asks: the application's.
AFX_MODULE_STATE* AFXAPI AfxGetStaticModuleState();
AFX_MODULE_STATE* AFXAPI AfxGetAppModuleState();
/// Sets the calling thread's state and returns the one before.
AFX_MODULE_STATE* AFXAPI AfxSetModuleState(AFX_MODULE_STATE* newState);

/// Makes a state current while it lives.
struct AFX_MAINTAIN_STATE2 {
    explicit AFX_MAINTAIN_STATE2(AFX_MODULE_STATE* newState);
    ~AFX_MAINTAIN_STATE2();
    AFX_MAINTAIN_STATE2(const AFX_MAINTAIN_STATE2&) = delete;
    AFX_MAINTAIN_STATE2& operator=(const AFX_MAINTAIN_STATE2&) = delete;

private:
    AFX_MODULE_STATE* m_previous;
};
#define AFX_MANAGE_STATE(p) AFX_MAINTAIN_STATE2 afxManagedState(p)

HINSTANCE AFXAPI AfxGetInstanceHandle();
HINSTANCE AFXAPI AfxGetResourceHandle();
void AFXAPI AfxSetResourceHandle(HINSTANCE resource);
