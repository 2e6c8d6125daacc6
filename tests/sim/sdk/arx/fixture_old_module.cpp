// A module for another API release: the loader must not send it any message.

#include <acutads.h>
#include <arxEntryPoint.h>

#ifdef _WIN32
#define EXPORT extern "C" __declspec(dllexport)
#else
#define EXPORT extern "C" __attribute__((visibility("default")))
#endif

EXPORT AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode, void*) {
    acutPrintf(_T("[old called]"));
    return AcRx::kRetOK;
}

EXPORT DWORD acrxGetApiVersion() {
    return static_cast<DWORD>(MAKELONG(0, kAcRxRelease - 1));
}
