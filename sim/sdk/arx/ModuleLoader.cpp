#include <afx.h>
#include <afxcoll.h>

#include <memory>
#include <optional>
#include <vector>

#include "ArxHost.h"
#include "ArxObjects.h"
#include "acdocman.h"
#include "acutads.h"
#include "rxregsvc.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcRxDynamicLinker, AcRxObject)

namespace {

/// A loaded module. Its address is the application id that is passed to the module.
struct Module {
    CString fileName;
    HMODULE handle = nullptr;
    AcRxEntryPointPtr entryPoint = nullptr;
    bool locked = true;
    bool mdiAware = false;
};

/// The file name without its folder, by which modules are identified and listed.
CString baseName(const CString& path) {
    int start = 0;
    for (int i = 0; i < path.GetLength(); ++i) {
        const ACHAR unit = path[i];
        if (unit == ACRX_T('\\') || unit == ACRX_T('/') || unit == ACRX_T(':')) {
            start = i + 1;
        }
    }
    return path.Mid(start);
}

CString fullPath(const ACHAR* fileName) {
    CString path;
    const DWORD needed = GetFullPathNameW(fileName, 0, nullptr, nullptr);
    const DWORD length =
        GetFullPathNameW(fileName, needed, path.GetBuffer(static_cast<int>(needed)), nullptr);
    path.ReleaseBuffer(length < needed ? static_cast<int>(length) : 0);
    return path;
}

/// Loads the module's file. If the name has a folder, the libraries that the module depends on are searched
/// for there.
HMODULE map(const ACHAR* fileName) {
    if (baseName(fileName) == fileName) {
        return LoadLibraryW(fileName);
    }
    return LoadLibraryExW(fullPath(fileName), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
}

/// Restores the keyboard focus at the end of the scope: windows that a module creates while it is loaded must
/// not take the focus.
class FocusKeeper {
public:
    FocusKeeper() : m_focus(GetFocus()) {}
    ~FocusKeeper() {
        if (m_focus != nullptr && GetFocus() != m_focus && IsWindow(m_focus)) {
            SetFocus(m_focus);
        }
    }
    FocusKeeper(const FocusKeeper&) = delete;
    FocusKeeper& operator=(const FocusKeeper&) = delete;

private:
    HWND m_focus;
};

template <typename Function>
Function symbol(HMODULE handle, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(GetProcAddress(handle, name)));
}

class DynamicLinker : public AcRxDynamicLinker {
public:
    bool loadModule(const ACHAR* fileName, bool printIt, bool) override {
        if (fileName == nullptr || *fileName == 0) {
            return false;
        }
        if (find(fileName) != nullptr) {
            say(printIt, ACRX_T("\n%s is already loaded."), fileName);
            return false;
        }

        const HMODULE handle = map(fileName);
        if (handle == nullptr) {
            say(printIt, ACRX_T("\n%s cannot be loaded."), fileName);
            return false;
        }
        const auto version = symbol<AcRxApiVersionPtr>(handle, "acrxGetApiVersion");
        const auto entryPoint = symbol<AcRxEntryPointPtr>(handle, "acrxEntryPoint");
        if (version == nullptr || entryPoint == nullptr || HIWORD(version()) != kAcRxRelease) {
            say(printIt, ACRX_T("\n%s is not a module for this release."), fileName);
            FreeLibrary(handle);
            return false;
        }

        auto module = std::make_unique<Module>();
        module->fileName = fileName;
        module->handle = handle;
        module->entryPoint = entryPoint;
        Module* const loaded = module.get();
        m_modules.push_back(std::move(module));
        const FocusKeeper focus;
        const std::optional<AcRx::AppRetCode> result = tell(*loaded, AcRx::kInitAppMsg);
        if (result != AcRx::kRetOK) {
            say(printIt, ACRX_T("\n%s cannot be initialized."), fileName);
            forget(loaded);
            if (result) {
                FreeLibrary(handle);
            }
            return false;
        }
        if (acDocManagerPtr()->curDocument() != nullptr) {
            tell(*loaded, AcRx::kLoadDwgMsg);
        }
        return true;
    }

    bool unloadModule(const ACHAR* fileName, bool) override {
        Module* const module = fileName != nullptr ? find(fileName) : nullptr;
        if (module == nullptr || module->locked) {
            return false;
        }
        unload(module);
        return true;
    }

    bool unlockApplication(void* appId) const override { return set(appId, &Module::locked, false); }
    bool lockApplication(void* appId) const override { return set(appId, &Module::locked, true); }

    bool isApplicationLocked(const ACHAR* fileName) const override {
        const Module* const module = find(fileName);
        return module != nullptr && module->locked;
    }

    bool registerAppMDIAware(void* appId) const override { return set(appId, &Module::mdiAware, true); }
    bool registerAppNotMDIAware(void* appId) const override { return set(appId, &Module::mdiAware, false); }

    bool isAppMDIAware(const ACHAR* fileName) const override {
        const Module* const module = find(fileName);
        return module != nullptr && module->mdiAware;
    }

    bool isLoaded(const ACHAR* fileName) const { return find(fileName) != nullptr; }

    CStringArray* names() const {
        auto* const result = new CStringArray;
        for (const auto& module : m_modules) {
            result->Add(baseName(module->fileName));
        }
        return result;
    }

    void send(AcRx::AppMsgCode message) {
        std::vector<Module*> modules;
        for (const auto& module : m_modules) {
            modules.push_back(module.get());
        }
        for (Module* module : modules) {
            if (isModule(module)) {
                tell(*module, message);
            }
        }
    }

    void unloadAll() {
        while (!m_modules.empty()) {
            unload(m_modules.back().get());
        }
    }

private:
    /// Calls the module's entry point; nullopt if it threw. The caller must not unmap such a module: the host
    /// may still hold addresses in it that the module did not get to unregister.
    static std::optional<AcRx::AppRetCode> tell(Module& module, AcRx::AppMsgCode message) {
        try {
            return module.entryPoint(message, &module);
        } catch (...) {
            acutPrintf(ACRX_T("\n%s failed."), baseName(module.fileName).GetString());
            return std::nullopt;
        }
    }

    static void say(bool printIt, const ACHAR* format, const ACHAR* fileName) {
        if (printIt) {
            acutPrintf(format, fileName);
        }
    }

    Module* find(const ACHAR* fileName) const {
        const CString wanted = baseName(fileName);
        for (const auto& module : m_modules) {
            if (baseName(module->fileName).CompareNoCase(wanted) == 0) {
                return module.get();
            }
        }
        return nullptr;
    }

    bool isModule(const void* appId) const {
        for (const auto& module : m_modules) {
            if (module.get() == appId) {
                return true;
            }
        }
        return false;
    }

    bool set(void* appId, bool Module::*flag, bool value) const {
        if (!isModule(appId)) {
            return false;
        }
        static_cast<Module*>(appId)->*flag = value;
        return true;
    }

    void unload(Module* module) {
        const HMODULE handle = module->handle;
        if (acDocManagerPtr()->curDocument() != nullptr) {
            tell(*module, AcRx::kUnloadDwgMsg);
        }
        const bool ended = tell(*module, AcRx::kUnloadAppMsg).has_value();
        forget(module);
        if (ended) {
            FreeLibrary(handle);
        }
    }

    void forget(const Module* module) {
        for (auto it = m_modules.begin(); it != m_modules.end(); ++it) {
            if (it->get() == module) {
                m_modules.erase(it);
                return;
            }
        }
    }

    std::vector<std::unique_ptr<Module>> m_modules;
};

DynamicLinker& linker() {
    static DynamicLinker instance;
    return instance;
}

}  // namespace

AcRxDynamicLinker& arxDynamicLinker() {
    return linker();
}

bool acrxLoadModule(const ACHAR* moduleName, bool printIt, bool asCommand) {
    return linker().loadModule(moduleName, printIt, asCommand);
}

bool acrxUnloadModule(const ACHAR* moduleName, bool asCommand) {
    return linker().unloadModule(moduleName, asCommand);
}

bool acrxAppIsLoaded(const ACHAR* moduleName) {
    return moduleName != nullptr && linker().isLoaded(moduleName);
}

void* acrxLoadedApps() {
    return linker().names();
}

void arxSendToModules(AcRx::AppMsgCode message) {
    linker().send(message);
}

void arxUnloadAllModules() {
    linker().unloadAll();
}
