// Loading and looking up modules (shared libraries).

#include "win32_support.h"
#include "winbase.h"

#include <dlfcn.h>
#include <link.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <fstream>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace {

using win32::failWith;

struct LoadedModule {
    HMODULE handle;
    std::string path;
};

// One dlopen handle for each LoadLibrary that no FreeLibrary has balanced yet.
std::mutex g_referencesMutex;
std::map<HMODULE, std::vector<void*>>& references() {
    static std::map<HMODULE, std::vector<void*>> all;
    return all;
}

std::string programPath() {
    char path[PATH_MAX];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
}

std::string absolutePath(const char* path) {
    if (*path == '/') {
        return path;
    }
    char resolved[PATH_MAX];
    return realpath(path, resolved) != nullptr ? resolved : path;
}

/// All loaded modules, the executable first.
std::vector<LoadedModule> loadedModules() {
    std::vector<LoadedModule> modules;
    const auto add = [](dl_phdr_info* info, std::size_t, void* target) {
        constexpr ElfW(Addr) kPageMask = 0xFFF;
        for (int i = 0; i < info->dlpi_phnum; ++i) {
            if (info->dlpi_phdr[i].p_type == PT_LOAD) {
                const auto base = info->dlpi_addr + (info->dlpi_phdr[i].p_vaddr & ~kPageMask);
                auto& list = *static_cast<std::vector<LoadedModule>*>(target);
                const std::string path = list.empty() ? programPath() : absolutePath(info->dlpi_name);
                list.push_back({reinterpret_cast<HMODULE>(base), path});
                break;
            }
        }
        return 0;
    };
    dl_iterate_phdr(add, &modules);
    return modules;
}

std::u16string baseName(std::u16string_view path) {
    const std::size_t slash = path.find_last_of(u"\\/");
    return std::u16string(slash != std::u16string_view::npos ? path.substr(slash + 1) : path);
}

/// Adds the default extension ".dll" if there is none; a trailing dot means no extension and is removed.
std::u16string withExtension(std::u16string name) {
    const std::u16string base = baseName(name);
    if (!base.empty() && base.back() == u'.') {
        name.pop_back();
    } else if (base.find(u'.') == std::u16string::npos) {
        name += u".dll";
    }
    return name;
}

bool hasFolder(std::u16string_view name) {
    return name.find_first_of(u"\\/:") != std::u16string_view::npos;
}

const LoadedModule* findByName(const std::vector<LoadedModule>& modules, const std::u16string& name) {
    const std::string path = hasFolder(name) ? win32::toUnixPath(name) : std::string();
    for (const LoadedModule& module : modules) {
        const bool same = path.empty()
                              ? win32::equalIgnoringCase(baseName(win32::toUtf16(module.path)), name)
                              : win32::equalIgnoringCase(win32::toUtf16(module.path), win32::toUtf16(path));
        if (same) {
            return &module;
        }
    }
    return nullptr;
}

const LoadedModule* findByHandle(const std::vector<LoadedModule>& modules, HMODULE handle) {
    const auto found = std::find_if(modules.begin(), modules.end(),
                                    [handle](const LoadedModule& module) { return module.handle == handle; });
    return found != modules.end() ? &*found : nullptr;
}

bool isFile(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode);
}

/// The path of a module that is not loaded yet; empty to leave the search to the dynamic linker.
std::string searchModule(const std::u16string& name) {
    if (hasFolder(name)) {
        const std::string path = win32::toUnixPath(name);
        return path.empty() || path.front() == '/' ? path : absolutePath(path.c_str());
    }
    const std::string program = programPath();
    const std::u16string folder = win32::toUtf16(program.substr(0, program.find_last_of('/') + 1));
    for (const std::u16string& candidate : {folder + name, std::u16string(u"./") + name}) {
        const std::string path = win32::toUnixPath(candidate);
        if (isFile(path)) {
            return absolutePath(path.c_str());
        }
    }
    return {};
}

DWORD loadError(const char* text) {
    const std::string message = text != nullptr ? text : "";
    const auto tells = [&message](const char* part) { return message.find(part) != std::string::npos; };
    if (tells("undefined symbol") || tells("symbol lookup")) {
        return ERROR_PROC_NOT_FOUND;
    }
    if (tells("cannot open shared object file") || tells("No such file")) {
        return ERROR_MOD_NOT_FOUND;
    }
    return ERROR_BAD_EXE_FORMAT;
}

/// Whether the file has all segments that its headers declare. The dynamic linker maps a truncated file too,
/// and the process dies of SIGBUS as soon as it touches a missing page.
bool isWhole(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    if (!file) {
        return true;
    }
    const auto size = static_cast<std::uint64_t>(file.tellg());
    ElfW(Ehdr) header{};
    file.seekg(0);
    if (!file.read(reinterpret_cast<char*>(&header), sizeof header) ||
        std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 || header.e_phentsize != sizeof(ElfW(Phdr))) {
        return false;
    }
    file.seekg(static_cast<std::streamoff>(header.e_phoff));
    for (int i = 0; i < header.e_phnum; ++i) {
        ElfW(Phdr) part{};
        if (!file.read(reinterpret_cast<char*>(&part), sizeof part) ||
            (part.p_type == PT_LOAD && (part.p_offset > size || part.p_filesz > size - part.p_offset))) {
            return false;
        }
    }
    return true;
}

HMODULE handleOf(void* loaded) {
    const link_map* map = nullptr;
    if (dlinfo(loaded, RTLD_DI_LINKMAP, &map) != 0) {
        return nullptr;
    }
    // The dynamic section lies inside the module, so dladdr finds the module's base by its address.
    Dl_info info{};
    return dladdr(map->l_ld, &info) != 0 ? static_cast<HMODULE>(static_cast<void*>(info.dli_fbase)) : nullptr;
}

HMODULE reference(const std::string& path, int extraFlags) {
    if (!isWhole(path)) {
        return failWith<HMODULE>(ERROR_BAD_EXE_FORMAT, nullptr);
    }
    void* loaded = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL | extraFlags);
    if (loaded == nullptr) {
        return failWith<HMODULE>(loadError(dlerror()), nullptr);
    }
    const HMODULE handle = handleOf(loaded);
    const std::lock_guard<std::mutex> lock(g_referencesMutex);
    references()[handle].push_back(loaded);
    return handle;
}

std::u16string fileName(HMODULE handle) {
    const auto modules = loadedModules();
    const LoadedModule* module = handle == nullptr ? &modules.front() : findByHandle(modules, handle);
    return module != nullptr ? win32::toWindowsPath(module->path) : std::u16string();
}

template <typename Text, typename Unit>
DWORD copyFileName(const Text& name, Unit* buffer, DWORD size) {
    if (name.empty()) {
        return failWith<DWORD>(ERROR_MOD_NOT_FOUND, 0);
    }
    if (size == 0) {
        return failWith<DWORD>(ERROR_INSUFFICIENT_BUFFER, 0);
    }
    const std::size_t copied = name.copy(buffer, size - 1);
    buffer[copied] = 0;
    if (copied < name.size()) {
        return failWith<DWORD>(ERROR_INSUFFICIENT_BUFFER, size);
    }
    SetLastError(ERROR_SUCCESS);
    return static_cast<DWORD>(copied);
}

}  // namespace

HMODULE LoadLibraryW(LPCWSTR name) {
    if (name == nullptr || *name == 0) {
        return failWith<HMODULE>(ERROR_INVALID_PARAMETER, nullptr);
    }
    const std::u16string wanted = withExtension(name);
    const auto modules = loadedModules();
    if (const LoadedModule* loaded = hasFolder(wanted) ? nullptr : findByName(modules, wanted);
        loaded != nullptr && loaded != &modules.front()) {
        return reference(loaded->path, 0);
    }
    const std::string path = searchModule(wanted);
    if (path.empty() && hasFolder(wanted)) {
        return failWith<HMODULE>(ERROR_MOD_NOT_FOUND, nullptr);
    }
    return reference(path.empty() ? win32::toUtf8(wanted) : path, 0);
}

HMODULE LoadLibraryA(LPCSTR name) {
    return LoadLibraryW(name != nullptr ? win32::toUtf16(name).c_str() : nullptr);
}

HMODULE LoadLibraryExW(LPCWSTR name, HANDLE reserved, DWORD flags) {
    if (reserved != nullptr || (flags & ~LOAD_WITH_ALTERED_SEARCH_PATH) != 0) {
        win32::unsupported("LoadLibraryEx", "flags other than LOAD_WITH_ALTERED_SEARCH_PATH");
    }
    return LoadLibraryW(name);
}

BOOL FreeLibrary(HMODULE handle) {
    void* loaded = nullptr;
    {
        const std::lock_guard<std::mutex> lock(g_referencesMutex);
        const auto found = references().find(handle);
        if (found != references().end()) {
            loaded = found->second.back();
            found->second.pop_back();
            if (found->second.empty()) {
                references().erase(found);
            }
        }
    }
    if (loaded != nullptr) {
        return dlclose(loaded) == 0 ? TRUE : failWith<BOOL>(ERROR_MOD_NOT_FOUND, FALSE);
    }
    // A library that the program was linked with is never unloaded; FreeLibrary still succeeds.
    return findByHandle(loadedModules(), handle) != nullptr ? TRUE
                                                            : failWith<BOOL>(ERROR_MOD_NOT_FOUND, FALSE);
}

FARPROC GetProcAddress(HMODULE handle, LPCSTR name) {
    if (IS_INTRESOURCE(name)) {
        win32::unsupported("GetProcAddress", "an ordinal");
    }
    const auto modules = loadedModules();
    const LoadedModule* module = handle == nullptr ? &modules.front() : findByHandle(modules, handle);
    if (module == nullptr) {
        return failWith<FARPROC>(ERROR_MOD_NOT_FOUND, nullptr);
    }
    const bool program = module == &modules.front();
    void* loaded = dlopen(program ? nullptr : module->path.c_str(), RTLD_LAZY | RTLD_NOLOAD);
    void* symbol = loaded != nullptr ? dlsym(loaded, name) : nullptr;
    // dlsym also searches the libraries that the module depends on; GetProcAddress does not.
    Dl_info info{};
    if (symbol != nullptr &&
        (dladdr(symbol, &info) == 0 || info.dli_fbase != static_cast<void*>(module->handle))) {
        symbol = nullptr;
    }
    if (loaded != nullptr) {
        dlclose(loaded);
    }
    if (symbol == nullptr) {
        return failWith<FARPROC>(ERROR_PROC_NOT_FOUND, nullptr);
    }
    FARPROC procedure = nullptr;
    static_assert(sizeof procedure == sizeof symbol, "function and object pointers must have the same size");
    std::memcpy(&procedure, &symbol, sizeof procedure);
    return procedure;
}

HMODULE GetModuleHandleW(LPCWSTR name) {
    const auto modules = loadedModules();
    if (name == nullptr) {
        return modules.front().handle;
    }
    const LoadedModule* module = findByName(modules, withExtension(name));
    return module != nullptr ? module->handle : failWith<HMODULE>(ERROR_MOD_NOT_FOUND, nullptr);
}

HMODULE GetModuleHandleA(LPCSTR name) {
    return GetModuleHandleW(name != nullptr ? win32::toUtf16(name).c_str() : nullptr);
}

BOOL GetModuleHandleExW(DWORD flags, LPCWSTR nameOrAddress, HMODULE* result) {
    *result = nullptr;
    if ((flags & GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS) != 0) {
        Dl_info info{};
        if (dladdr(static_cast<const void*>(nameOrAddress), &info) == 0) {
            return failWith<BOOL>(ERROR_MOD_NOT_FOUND, FALSE);
        }
        *result = static_cast<HMODULE>(info.dli_fbase);
    } else {
        *result = GetModuleHandleW(nameOrAddress);
    }
    const auto modules = loadedModules();
    const LoadedModule* module = findByHandle(modules, *result);
    if (module == nullptr) {
        *result = nullptr;
        return failWith<BOOL>(ERROR_MOD_NOT_FOUND, FALSE);
    }
    if (module == &modules.front()) {
        return TRUE;
    }
    if ((flags & GET_MODULE_HANDLE_EX_FLAG_PIN) != 0) {
        return dlopen(module->path.c_str(), RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE) != nullptr ? TRUE
                                                                                                : FALSE;
    }
    if ((flags & GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT) == 0) {
        return reference(module->path, RTLD_NOLOAD) != nullptr ? TRUE : FALSE;
    }
    return TRUE;
}

DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD size) {
    return copyFileName(fileName(module), buffer, size);
}

DWORD GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size) {
    return copyFileName(win32::toUtf8(fileName(module)), buffer, size);
}
