#pragma once

#include <afxwin.h>

#include "rxdefs.h"
#include "rxdlinkr.h"
#include "rxregsvc.h"

/// The module's instance, which DllMain sets.
extern "C" HINSTANCE _hdllInstance;

/// The base class of a module without a user interface: dispatches the host's messages to virtual handlers.
/// All handlers return kRetOK unless overridden. Simplified: no class and command maps.
class AcRxDbxApp {
public:
    AcRxDbxApp() = default;
    virtual ~AcRxDbxApp() = default;
    AcRxDbxApp(const AcRxDbxApp&) = delete;
    AcRxDbxApp& operator=(const AcRxDbxApp&) = delete;

    /// Unlocks the module, registers it as MDI-aware and calls RegisterServerComponents; the packet is the
    /// application id.
    virtual AcRx::AppRetCode On_kInitAppMsg(void* packet);
    virtual AcRx::AppRetCode On_kUnloadAppMsg(void* packet);
    virtual AcRx::AppRetCode On_kLoadDwgMsg(void* packet);
    virtual AcRx::AppRetCode On_kUnloadDwgMsg(void* packet);
    virtual AcRx::AppRetCode On_kInvkSubrMsg(void* packet);
    virtual AcRx::AppRetCode On_kCfgMsg(void* packet);
    virtual AcRx::AppRetCode On_kEndMsg(void* packet);
    virtual AcRx::AppRetCode On_kQuitMsg(void* packet);
    virtual AcRx::AppRetCode On_kSaveMsg(void* packet);
    virtual AcRx::AppRetCode On_kDependencyMsg(void* packet);
    virtual AcRx::AppRetCode On_kNoDependencyMsg(void* packet);
    virtual AcRx::AppRetCode On_kOleUnloadAppMsg(void* packet);
    virtual AcRx::AppRetCode On_kPreQuitMsg(void* packet);

    virtual AcRx::AppRetCode acrxEntryPoint(AcRx::AppMsgCode message, void* packet);

    /// Called after the base class has initialized the module.
    virtual void RegisterServerComponents() = 0;
};
