#pragma once

// Module state. Include <afxwin.h>.
//
// Simplified: modules are extension DLLs, so they all share the application's state. AFX_MANAGE_STATE can
// still make another state current for a scope.

#include "afxdefs_.h"

class CWinApp;

struct AFX_MODULE_STATE {
    CWinApp* m_pCurrentWinApp = nullptr;
    HINSTANCE m_hCurrentInstanceHandle = nullptr;
    HINSTANCE m_hCurrentResourceHandle = nullptr;
    LPCTSTR m_lpszCurrentAppName = nullptr;
};

/// The calling thread's current module state: the application's, unless AFX_MANAGE_STATE has set another.
AFX_MODULE_STATE* AFXAPI AfxGetModuleState();
/// The calling module's state, here always the application's.
AFX_MODULE_STATE* AFXAPI AfxGetStaticModuleState();
AFX_MODULE_STATE* AFXAPI AfxGetAppModuleState();
/// Sets the calling thread's current module state and returns the previous one.
AFX_MODULE_STATE* AFXAPI AfxSetModuleState(AFX_MODULE_STATE* newState);

/// Makes a module state current for its own lifetime.
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
