#pragma once

// The dynamic linker, which loads modules.
// Simplified: no demand loading, no reactors.

#include "rxdict.h"

#define ACRX_DYNAMIC_LINKER ACRX_T("DynamicLinker")
#define acrxDynamicLinker AcRxDynamicLinker::cast(acrxSysRegistry()->at(ACRX_DYNAMIC_LINKER))

/// Loads and unloads modules and keeps their state (locked, MDI-aware). The application id is the packet that
/// a module receives with kInitAppMsg.
class AcRxDynamicLinker : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcRxDynamicLinker)

    virtual bool loadModule(const ACHAR* fileName, bool printIt, bool asCommand = false) = 0;
    virtual bool unloadModule(const ACHAR* fileName, bool asCommand = false) = 0;

    /// A module is initially locked: it cannot be unloaded until it has been unlocked.
    virtual bool unlockApplication(void* appId) const = 0;
    virtual bool lockApplication(void* appId) const = 0;
    virtual bool isApplicationLocked(const ACHAR* fileName) const = 0;

    virtual bool registerAppMDIAware(void* appId) const = 0;
    virtual bool registerAppNotMDIAware(void* appId) const = 0;
    virtual bool isAppMDIAware(const ACHAR* fileName) const = 0;
};
