#include "arxEntryPoint.h"

#include "ArxHost.h"

AcRx::AppRetCode AcRxDbxApp::On_kInitAppMsg(void* packet) {
    AcRxDynamicLinker* const linker = acrxDynamicLinker;
    linker->unlockApplication(packet);
    linker->registerAppMDIAware(packet);
    RegisterServerComponents();
    return arxHost().baseInitialised();
}

AcRx::AppRetCode AcRxDbxApp::On_kUnloadAppMsg(void*) {
    arxHost().baseUnloaded();
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kLoadDwgMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kUnloadDwgMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kInvkSubrMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kCfgMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kEndMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kQuitMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kSaveMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kDependencyMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kNoDependencyMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kOleUnloadAppMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxDbxApp::On_kPreQuitMsg(void*) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxDbxApp::acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    switch (message) {
        case AcRx::kInitAppMsg:
            return On_kInitAppMsg(packet);
        case AcRx::kUnloadAppMsg:
            return On_kUnloadAppMsg(packet);
        case AcRx::kLoadDwgMsg:
            return On_kLoadDwgMsg(packet);
        case AcRx::kUnloadDwgMsg:
            return On_kUnloadDwgMsg(packet);
        case AcRx::kInvkSubrMsg:
            return On_kInvkSubrMsg(packet);
        case AcRx::kCfgMsg:
            return On_kCfgMsg(packet);
        case AcRx::kEndMsg:
            return On_kEndMsg(packet);
        case AcRx::kQuitMsg:
            return On_kQuitMsg(packet);
        case AcRx::kSaveMsg:
            return On_kSaveMsg(packet);
        case AcRx::kDependencyMsg:
            return On_kDependencyMsg(packet);
        case AcRx::kNoDependencyMsg:
            return On_kNoDependencyMsg(packet);
        case AcRx::kOleUnloadAppMsg:
            return On_kOleUnloadAppMsg(packet);
        case AcRx::kPreQuitMsg:
            return On_kPreQuitMsg(packet);
        default:
            return AcRx::kRetOK;
    }
}

AcRx::AppRetCode AcRxArxApp::On_kInitAppMsg(void* packet) {
    return AcRxDbxApp::On_kInitAppMsg(packet);
}
AcRx::AppRetCode AcRxArxApp::On_kUnloadAppMsg(void* packet) {
    return AcRxDbxApp::On_kUnloadAppMsg(packet);
}
AcRx::AppRetCode AcRxArxApp::On_kInitDialogMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxArxApp::On_kEndDialogMsg(void*) {
    return AcRx::kRetOK;
}
AcRx::AppRetCode AcRxArxApp::On_kSuspendMsg(void*) {
    return AcRx::kRetOK;
}

AcRx::AppRetCode AcRxArxApp::acrxEntryPoint(AcRx::AppMsgCode message, void* packet) {
    switch (message) {
        case AcRx::kInitDialogMsg:
            return On_kInitDialogMsg(packet);
        case AcRx::kEndDialogMsg:
            return On_kEndDialogMsg(packet);
        case AcRx::kSuspendMsg:
            return On_kSuspendMsg(packet);
        default:
            return AcRxDbxApp::acrxEntryPoint(message, packet);
    }
}

#ifndef _WIN32
ArxDllMainCaller::ArxDllMainCaller(DllMainPtr dllMain) : m_dllMain(dllMain), m_instance(nullptr) {
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       reinterpret_cast<LPCWSTR>(dllMain), &m_instance);
    m_dllMain(m_instance, DLL_PROCESS_ATTACH, nullptr);
}

ArxDllMainCaller::~ArxDllMainCaller() {
    m_dllMain(m_instance, DLL_PROCESS_DETACH, nullptr);
}
#endif
