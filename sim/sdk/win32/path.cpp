#include "win32_support.h"

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <memory>

namespace win32 {

namespace {

bool exists(const std::string& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0;
}

/// The folder's entry that equals the wanted name ignoring case; empty if there is none.
std::string findIgnoringCase(const std::string& folder, const std::string& wanted) {
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(folder.empty() ? "." : folder.c_str()),
                                                      closedir);
    if (!entries) {
        return {};
    }
    const std::u16string name = toUtf16(wanted);
    while (const dirent* entry = readdir(entries.get())) {
        if (equalIgnoringCase(toUtf16(static_cast<const char*>(entry->d_name)), name)) {
            return static_cast<const char*>(entry->d_name);
        }
    }
    return {};
}

/// The path with the case of every component as it is on disk; components that do not exist are unchanged.
std::string asOnDisk(const std::string& path) {
    std::string found = path.front() == '/' ? "/" : "";
    std::size_t start = found.size();
    while (start < path.size()) {
        const std::size_t end = std::min(path.find('/', start), path.size());
        std::string part = path.substr(start, end - start);
        start = end + 1;
        if (part.empty()) {
            continue;
        }
        if (!exists(found + part)) {
            const std::string spelt = findIgnoringCase(found, part);
            if (spelt.empty()) {
                return found + part + (end < path.size() ? path.substr(end) : std::string());
            }
            part = spelt;
        }
        found += part;
        if (end < path.size()) {
            found.push_back('/');
        }
    }
    return found;
}

}  // namespace

std::string toUnixPath(std::u16string_view path) {
    constexpr std::u16string_view kVerbatim = u"\\\\?\\";
    if (path.substr(0, kVerbatim.size()) == kVerbatim) {
        path.remove_prefix(kVerbatim.size());
    }
    if (path.size() >= 2 && path[1] == u':') {
        if (foldCase(path[0]) != u'z') {
            return {};
        }
        path.remove_prefix(2);
        if (path.empty()) {
            return "/";
        }
    }
    std::string unixPath = toUtf8(path);
    std::replace(unixPath.begin(), unixPath.end(), '\\', '/');
    return unixPath.empty() || exists(unixPath) ? unixPath : asOnDisk(unixPath);
}

std::u16string toWindowsPath(std::string_view path) {
    std::u16string windowsPath = toUtf16(path);
    std::replace(windowsPath.begin(), windowsPath.end(), u'/', u'\\');
    return u"Z:" + windowsPath;
}

}  // namespace win32
