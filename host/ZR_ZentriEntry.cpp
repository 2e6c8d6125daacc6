// The module's exports and its DllMain, nothing else. It is linked into the loadable module only.

#include <arxEntryPoint.h>
#include <windows.h>

#include "host/CZR_ZentriApp.h"
#include "host/ZR_ZentriModule.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) {
        theArxDLL.AttachInstance(instance);
    } else if (reason == DLL_PROCESS_DETACH) {
        theArxDLL.DetachInstance();
    }
    return TRUE;
}

IMPLEMENT_ARX_ENTRYPOINT(CZR_ZentriApp)
