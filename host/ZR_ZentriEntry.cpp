// The module's exports and its DllMain, nothing else. It is linked into the loadable module only.

#include <afxwin.h>

// Once in the module: it defines _pRawDllMain, with which the C run-time has MFC keep the host's class list
// intact before the constructors of this module's static objects add to it.
#include <afxdllx.h>

#include <acui.h>
#include <arxEntryPoint.h>

#include "host/CZR_ZentriApp.h"
#include "host/ZR_ZentriModule.h"

namespace {
bool g_attached = false;
}

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        _hdllInstance = instance;
        if (theArxDLL.AttachInstance(instance) == FALSE) {
            return FALSE;
        }
        g_attached = true;
        InitAcUiDLL();
    } else if (reason == DLL_PROCESS_DETACH && g_attached) {
        // Windows sends this also after a refused attachment.
        g_attached = false;
        theArxDLL.DetachInstance();
    }
    return TRUE;
}

IMPLEMENT_ARX_ENTRYPOINT(CZR_ZentriApp)
