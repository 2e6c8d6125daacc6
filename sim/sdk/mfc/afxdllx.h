// MFC's part of the entry of an extension DLL, to be included once in the DLL, in the source that defines
// DllMain: it defines _pRawDllMain, which the C run-time's start-up code calls before the constructors of
// static objects. As in MFC there is no include guard, so a second inclusion is a redefinition. Simplified:
// MFC saves the program's lists of classes there, so that CAcExtensionModule can set those of the DLL apart;
// this slice has no such lists, and on Linux and with mingw-w64 nothing calls it.

#include <afxwin.h>

static BOOL WINAPI RawDllMain(HINSTANCE, DWORD, LPVOID) {
    return TRUE;
}

extern "C" {
extern BOOL(WINAPI* const _pRawDllMain)(HINSTANCE, DWORD, LPVOID);
BOOL(WINAPI* const _pRawDllMain)(HINSTANCE, DWORD, LPVOID) = &RawDllMain;
}
