#pragma once

// Loading of modules, and services that modules and hosts offer one another by name.

#include "rxdefs.h"
#include "rxdict.h"

/// The entry points that every module exports under these names.
extern "C" {
typedef AcRx::AppRetCode (*AcRxEntryPointPtr)(AcRx::AppMsgCode message, void* packet);
typedef DWORD (*AcRxApiVersionPtr)();
}

/// Loads a module: maps its file, checks its release and sends it kInitAppMsg, then kLoadDwgMsg for the open
/// document. A module whose kInitAppMsg does not return kRetOK is unmapped again; one that throws is given up
/// but stays mapped. False on any failure (said on the command line when `printIt`) and when it is loaded
/// already.
bool acrxLoadModule(const ACHAR* moduleName, bool printIt, bool asCommand = false);
/// Unloads a module: kUnloadDwgMsg for the open document, then kUnloadAppMsg, then its file is unmapped.
/// False when it is not loaded or has not been unlocked.
bool acrxUnloadModule(const ACHAR* moduleName, bool asCommand = false);
bool acrxAppIsLoaded(const ACHAR* moduleName);
/// The file names of the loaded modules, oldest first: a `CStringArray*` that the caller deletes.
void* acrxLoadedApps();

bool acrxServiceIsRegistered(const ACHAR* serviceId);
/// The address of a C symbol of a service, or null when the service or the symbol is not there.
void* acrxGetServiceSymbolAddr(const ACHAR* serviceId, const char* symbol);
