#include <afx.h>
#include <afxcoll.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "ArxHost.h"
#include "ArxObjects.h"
#include "ArxThread.h"
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
    /// Calls of the entry point that have not returned.
    int runningCalls = 0;
    /// Set when the module was unloaded by its own entry point: its file is unmapped when that returns.
    bool unmapWhenReturned = false;
};

using ModulePtr = std::shared_ptr<Module>;

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

        const auto module = std::make_shared<Module>();
        module->fileName = fileName;
        module->handle = handle;
        module->entryPoint = entryPoint;
        m_modules.push_back(module);
        const std::optional<AcRx::AppRetCode> result = tell(module, AcRx::kInitAppMsg);
        // What the module runs while it is initialized, a message loop for example, may unload it.
        if (result != AcRx::kRetOK || !isModule(module.get())) {
            say(printIt, ACRX_T("\n%s cannot be initialized."), fileName);
            if (forget(module) && result) {
                FreeLibrary(handle);
            }
            return false;
        }
        if (acDocManagerPtr()->curDocument() != nullptr) {
            tell(module, AcRx::kLoadDwgMsg);
        }
        return isModule(module.get());
    }

    bool unloadModule(const ACHAR* fileName, bool) override {
        const ModulePtr module = fileName != nullptr ? find(fileName) : nullptr;
        if (module == nullptr || module->locked) {
            return false;
        }
        unload(module);
        return true;
    }

    bool unlockApplication(void* appId) const override { return set(appId, &Module::locked, false); }
    bool lockApplication(void* appId) const override { return set(appId, &Module::locked, true); }

    bool isApplicationLocked(const ACHAR* fileName) const override {
        const ModulePtr module = find(fileName);
        return module != nullptr && module->locked;
    }

    bool registerAppMDIAware(void* appId) const override { return set(appId, &Module::mdiAware, true); }
    bool registerAppNotMDIAware(void* appId) const override { return set(appId, &Module::mdiAware, false); }

    bool isAppMDIAware(const ACHAR* fileName) const override {
        const ModulePtr module = find(fileName);
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
        const std::vector<ModulePtr> modules = m_modules;
        for (const ModulePtr& module : modules) {
            if (isModule(module.get())) {
                tell(module, message);
            }
        }
    }

    void unloadAll() {
        while (!m_modules.empty()) {
            unload(ModulePtr(m_modules.back()));
        }
    }

private:
    /// Calls the module's entry point; nullopt if it threw. The caller must not unmap such a module: the host
    /// may still hold addresses in it that the module did not get to unregister.
    static std::optional<AcRx::AppRetCode> tell(const ModulePtr& module, AcRx::AppMsgCode message) {
        std::optional<AcRx::AppRetCode> result;
        ++module->runningCalls;
        try {
            result = module->entryPoint(message, module.get());
        } catch (...) {
            acutPrintf(ACRX_T("\n%s failed."), baseName(module->fileName).GetString());
        }
        --module->runningCalls;
        if (module->unmapWhenReturned && module->runningCalls == 0 && result) {
            FreeLibrary(module->handle);
        }
        return result;
    }

    static void say(bool printIt, const ACHAR* format, const ACHAR* fileName) {
        if (printIt) {
            acutPrintf(format, fileName);
        }
    }

    ModulePtr find(const ACHAR* fileName) const {
        const CString wanted = baseName(fileName);
        for (const auto& module : m_modules) {
            if (baseName(module->fileName).CompareNoCase(wanted) == 0) {
                return module;
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

    void unload(const ModulePtr& module) {
        if (acDocManagerPtr()->curDocument() != nullptr) {
            tell(module, AcRx::kUnloadDwgMsg);
        }
        const bool ended = tell(module, AcRx::kUnloadAppMsg).has_value();
        if (!forget(module) || !ended) {
            return;
        }
        if (module->runningCalls > 0) {
            module->unmapWhenReturned = true;
        } else {
            FreeLibrary(module->handle);
        }
    }

    /// False if the module was not listed any more.
    bool forget(const ModulePtr& module) {
        const auto found = std::find(m_modules.begin(), m_modules.end(), module);
        if (found == m_modules.end()) {
            return false;
        }
        m_modules.erase(found);
        return true;
    }

    std::vector<ModulePtr> m_modules;
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
    arxRequireUiThread("acrxLoadModule");
    return linker().loadModule(moduleName, printIt, asCommand);
}

bool acrxUnloadModule(const ACHAR* moduleName, bool asCommand) {
    arxRequireUiThread("acrxUnloadModule");
    return linker().unloadModule(moduleName, asCommand);
}

bool acrxAppIsLoaded(const ACHAR* moduleName) {
    arxRequireUiThread("acrxAppIsLoaded");
    return moduleName != nullptr && linker().isLoaded(moduleName);
}

void* acrxLoadedApps() {
    arxRequireUiThread("acrxLoadedApps");
    return linker().names();
}

void arxSendToModules(AcRx::AppMsgCode message) {
    linker().send(message);
}

void arxUnloadAllModules() {
    linker().unloadAll();
}
