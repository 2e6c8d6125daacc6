#pragma once

// An extension DLL's MFC state, and the switch of MFC's resource handle to it.

#include <afx.h>
#include <afxwin.h>

class CAcExtensionModule {
public:
    constexpr CAcExtensionModule() = default;
    CAcExtensionModule(const CAcExtensionModule&) = delete;
    CAcExtensionModule& operator=(const CAcExtensionModule&) = delete;

    /// To be called when the module is mapped and unmapped. FALSE when the module cannot be attached: here,
    /// when there is no instance.
    BOOL AttachInstance(HINSTANCE instance);
    void DetachInstance();

    HINSTANCE ModuleResourceInstance() const { return m_instance; }

private:
    HINSTANCE m_instance = nullptr;
};

/// Makes other resources MFC's current ones while it lives; puts the former handle back when it dies.
class CTemporaryResourceOverride {
public:
    explicit CTemporaryResourceOverride(HINSTANCE instance);
    ~CTemporaryResourceOverride();
    CTemporaryResourceOverride(const CTemporaryResourceOverride&) = delete;
    CTemporaryResourceOverride& operator=(const CTemporaryResourceOverride&) = delete;

private:
    HINSTANCE m_former;
};

/// Names the DLL's module object and gives the DLL its own CAcModuleResourceOverride, which takes no
/// argument.
#define AC_DECLARE_EXTENSION_MODULE(module)                                                            \
    extern CAcExtensionModule module;                                                                  \
    class CAcModuleResourceOverride : public CTemporaryResourceOverride {                              \
    public:                                                                                            \
        CAcModuleResourceOverride() : CTemporaryResourceOverride((module).ModuleResourceInstance()) {} \
    }
#define AC_IMPLEMENT_EXTENSION_MODULE(module) CAcExtensionModule module
