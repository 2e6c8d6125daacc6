#pragma once

// Loading modules, and services that the host provides by name.
// Simplified: modules cannot register services.

#include "rxdefs.h"
#include "rxdict.h"

/// The types of a module's exports acrxEntryPoint and acrxGetApiVersion.
extern "C" {
typedef AcRx::AppRetCode (*AcRxEntryPointPtr)(AcRx::AppMsgCode message, void* packet);
typedef DWORD (*AcRxApiVersionPtr)();
}

/// Loads a module: maps its file, checks its API release and sends it kInitAppMsg, then kLoadDwgMsg for the
/// open document. If kInitAppMsg does not return kRetOK the module is unmapped again; if it throws the module
/// is dropped but stays mapped. False on failure or if the module is already loaded; with `printIt` the
/// reason is printed on the command line.
bool acrxLoadModule(const ACHAR* moduleName, bool printIt, bool asCommand = false);
/// Unloads a module: sends kUnloadDwgMsg for the open document and kUnloadAppMsg, then unmaps its file. False
/// if it is not loaded or is locked.
bool acrxUnloadModule(const ACHAR* moduleName, bool asCommand = false);
bool acrxAppIsLoaded(const ACHAR* moduleName);
/// The file names of the loaded modules in order of loading: a `CStringArray*` that the caller owns.
void* acrxLoadedApps();

bool acrxServiceIsRegistered(const ACHAR* serviceId);
/// The address of a C symbol of a service; null if there is no such service or symbol.
void* acrxGetServiceSymbolAddr(const ACHAR* serviceId, const char* symbol);
