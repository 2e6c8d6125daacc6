#pragma once

// An extension DLL's instance handle, and switching MFC's resource handle to it.
// Simplified: no CDynLinkLibrary; a module has no MFC state beyond its handle.

#include <afx.h>
#include <afxwin.h>

class CAcExtensionModule {
public:
    constexpr CAcExtensionModule() = default;
    CAcExtensionModule(const CAcExtensionModule&) = delete;
    CAcExtensionModule& operator=(const CAcExtensionModule&) = delete;

    /// To be called from DllMain when the module is loaded and unloaded. FALSE when the module cannot be
    /// attached: here, when there is no instance.
    BOOL AttachInstance(HINSTANCE instance);
    void DetachInstance();

    HINSTANCE ModuleResourceInstance() const { return m_instance; }

private:
    HINSTANCE m_instance = nullptr;
};

/// Sets MFC's resource handle; the destructor restores the previous one.
class CTemporaryResourceOverride {
public:
    explicit CTemporaryResourceOverride(HINSTANCE instance);
    ~CTemporaryResourceOverride();
    CTemporaryResourceOverride(const CTemporaryResourceOverride&) = delete;
    CTemporaryResourceOverride& operator=(const CTemporaryResourceOverride&) = delete;

private:
    HINSTANCE m_former;
};

/// Declares the DLL's module object and a CAcModuleResourceOverride, without arguments, for its resources.
#define AC_DECLARE_EXTENSION_MODULE(module)                                                            \
    extern CAcExtensionModule module;                                                                  \
    class CAcModuleResourceOverride : public CTemporaryResourceOverride {                              \
    public:                                                                                            \
        CAcModuleResourceOverride() : CTemporaryResourceOverride((module).ModuleResourceInstance()) {} \
    }
#define AC_IMPLEMENT_EXTENSION_MODULE(module) CAcExtensionModule module
