#include "threadstate_.h"

namespace {

thread_local AfxThreadState* t_state = nullptr;

// Deletes the state when its thread ends. On the main thread static destructors may still need a state after
// that: they get a new one, which is never deleted.
struct StateGuard {
    bool armed = false;

    ~StateGuard() {
        CWnd::DeleteTempMap();
        delete t_state;
        t_state = nullptr;
    }
};

thread_local StateGuard t_guard;
thread_local bool t_guarded = false;

AFX_MODULE_STATE& appModuleState() {
    static AFX_MODULE_STATE state;
    return state;
}

}  // namespace

AfxThreadState& afxThreadState() {
    if (t_state == nullptr) {
        t_state = new AfxThreadState;
        if (!t_guarded) {
            t_guarded = true;
            t_guard.armed = true;
        }
    }
    return *t_state;
}

AFX_MODULE_STATE* AFXAPI AfxGetAppModuleState() {
    return &appModuleState();
}
AFX_MODULE_STATE* AFXAPI AfxGetStaticModuleState() {
    return &appModuleState();
}

AFX_MODULE_STATE* AFXAPI AfxGetModuleState() {
    AFX_MODULE_STATE* const state = afxThreadState().moduleState;
    return state == nullptr ? &appModuleState() : state;
}

AFX_MODULE_STATE* AFXAPI AfxSetModuleState(AFX_MODULE_STATE* newState) {
    AFX_MODULE_STATE* const previous = AfxGetModuleState();
    afxThreadState().moduleState = newState;
    return previous;
}

AFX_MAINTAIN_STATE2::AFX_MAINTAIN_STATE2(AFX_MODULE_STATE* newState)
    : m_previous(AfxSetModuleState(newState)) {}
AFX_MAINTAIN_STATE2::~AFX_MAINTAIN_STATE2() {
    AfxSetModuleState(m_previous);
}

HINSTANCE AFXAPI AfxGetInstanceHandle() {
    const HINSTANCE instance = AfxGetModuleState()->m_hCurrentInstanceHandle;
    return instance == nullptr ? GetModuleHandleW(nullptr) : instance;
}

HINSTANCE AFXAPI AfxGetResourceHandle() {
    const HINSTANCE resource = AfxGetModuleState()->m_hCurrentResourceHandle;
    return resource == nullptr ? AfxGetInstanceHandle() : resource;
}

void AFXAPI AfxSetResourceHandle(HINSTANCE resource) {
    AfxGetModuleState()->m_hCurrentResourceHandle = resource;
}
