#include "win32_support.h"
#include "winbase.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <mutex>
#include <vector>

namespace {

using win32::failWith;

struct File {
    int descriptor;
    DWORD access;
    DWORD share;
    dev_t device;
    ino_t node;
};

std::mutex g_filesMutex;
std::vector<std::unique_ptr<File>>& files() {
    static std::vector<std::unique_ptr<File>> open;
    return open;
}

DWORD errorOf(int number) {
    switch (number) {
        case ENOENT:
            return ERROR_FILE_NOT_FOUND;
        case ENOTDIR:
            return ERROR_PATH_NOT_FOUND;
        case EACCES:
        case EPERM:
        case EISDIR:
        case ETXTBSY:
            return ERROR_ACCESS_DENIED;
        case EROFS:
            return ERROR_WRITE_PROTECT;
        case EEXIST:
            return ERROR_FILE_EXISTS;
        case EMFILE:
        case ENFILE:
            return ERROR_TOO_MANY_OPEN_FILES;
        case ENOSPC:
        case EDQUOT:
            return ERROR_DISK_FULL;
        case ENAMETOOLONG:
        case EINVAL:
            return ERROR_INVALID_NAME;
        default:
            return ERROR_IO_DEVICE;
    }
}

/// ERROR_PATH_NOT_FOUND when the folder does not exist, ERROR_FILE_NOT_FOUND when only the file is missing.
DWORD notFoundError(const std::string& path) {
    const std::size_t slash = path.find_last_of('/');
    if (slash == std::string::npos || slash == 0) {
        return ERROR_FILE_NOT_FOUND;
    }
    struct stat status {};
    const bool folderThere = stat(path.substr(0, slash).c_str(), &status) == 0 && S_ISDIR(status.st_mode);
    return folderThere ? ERROR_FILE_NOT_FOUND : ERROR_PATH_NOT_FOUND;
}

DWORD errorOf(int number, const std::string& path) {
    return number == ENOENT ? notFoundError(path) : errorOf(number);
}

/// The Unix path, or an empty one with the last error set.
std::string checkedPath(LPCWSTR name) {
    if (name == nullptr || *name == 0) {
        win32::setError(ERROR_PATH_NOT_FOUND);
        return {};
    }
    if (std::u16string_view(name).find_first_of(u"<>\"|?*", name[0] == u'\\' ? 4 : 0) !=
        std::u16string_view::npos) {
        win32::setError(ERROR_INVALID_NAME);
        return {};
    }
    std::string path = win32::toUnixPath(name);
    if (path.empty()) {
        win32::setError(ERROR_PATH_NOT_FOUND);
    }
    return path;
}

bool sharingAllows(const struct stat& status, DWORD access, DWORD share) {
    const auto blocks = [](DWORD wanted, DWORD granted) {
        return ((wanted & GENERIC_READ) != 0 && (granted & FILE_SHARE_READ) == 0) ||
               ((wanted & GENERIC_WRITE) != 0 && (granted & FILE_SHARE_WRITE) == 0);
    };
    return std::none_of(files().begin(), files().end(), [&](const auto& file) {
        return file->device == status.st_dev && file->node == status.st_ino &&
               (blocks(access, file->share) || blocks(file->access, share));
    });
}

/// The open file, or null with ERROR_INVALID_HANDLE.
File* findFile(HANDLE handle) {
    const std::lock_guard<std::mutex> lock(g_filesMutex);
    for (const auto& file : files()) {
        if (file.get() == handle) {
            return file.get();
        }
    }
    win32::setError(ERROR_INVALID_HANDLE);
    return nullptr;
}

File* findFile(HANDLE handle, DWORD access) {
    File* file = findFile(handle);
    if (file != nullptr && (file->access & access) == 0) {
        return failWith<File*>(ERROR_ACCESS_DENIED, nullptr);
    }
    return file;
}

}  // namespace

HANDLE CreateFileW(LPCWSTR fileName, DWORD access, DWORD shareMode, LPSECURITY_ATTRIBUTES, DWORD creation,
                   DWORD attributes, HANDLE templateFile) {
    if (templateFile != nullptr) {
        win32::unsupported("CreateFile", "a template file");
    }
    const std::string path = checkedPath(fileName);
    if (path.empty()) {
        return INVALID_HANDLE_VALUE;
    }
    const bool writes = (access & GENERIC_WRITE) != 0;
    if (creation < CREATE_NEW || creation > TRUNCATE_EXISTING || (creation == TRUNCATE_EXISTING && !writes)) {
        return failWith(ERROR_INVALID_PARAMETER, INVALID_HANDLE_VALUE);
    }
    const std::lock_guard<std::mutex> lock(g_filesMutex);
    struct stat status {};
    const bool existed = stat(path.c_str(), &status) == 0;
    if (existed) {
        constexpr mode_t kWritable = S_IWUSR | S_IWGRP | S_IWOTH;
        const bool changes = writes || creation == CREATE_ALWAYS;
        if (creation == CREATE_NEW) {
            return failWith(ERROR_FILE_EXISTS, INVALID_HANDLE_VALUE);
        }
        if (S_ISDIR(status.st_mode) || (changes && (status.st_mode & kWritable) == 0)) {
            return failWith(ERROR_ACCESS_DENIED, INVALID_HANDLE_VALUE);
        }
        if (!sharingAllows(status, access, shareMode)) {
            return failWith(ERROR_SHARING_VIOLATION, INVALID_HANDLE_VALUE);
        }
    }
    int flags = O_CLOEXEC | (writes ? (access & GENERIC_READ) != 0 ? O_RDWR : O_WRONLY : O_RDONLY);
    if (creation == CREATE_NEW || creation == CREATE_ALWAYS || creation == OPEN_ALWAYS) {
        flags |= O_CREAT;
    }
    const mode_t mode = (attributes & FILE_ATTRIBUTE_READONLY) != 0 ? 0444 : 0666;
    const int descriptor = open(path.c_str(), flags, mode);
    if (descriptor < 0) {
        return failWith(errorOf(errno, path), INVALID_HANDLE_VALUE);
    }
    if (existed && (creation == CREATE_ALWAYS || creation == TRUNCATE_EXISTING) &&
        truncate(path.c_str(), 0) != 0) {
        const DWORD error = errorOf(errno, path);
        close(descriptor);
        return failWith(error, INVALID_HANDLE_VALUE);
    }
    fstat(descriptor, &status);
    auto file = std::make_unique<File>(File{descriptor, access, shareMode, status.st_dev, status.st_ino});
    const HANDLE handle = file.get();
    files().push_back(std::move(file));
    SetLastError(existed && (creation == CREATE_ALWAYS || creation == OPEN_ALWAYS) ? ERROR_ALREADY_EXISTS
                                                                                   : ERROR_SUCCESS);
    return handle;
}

BOOL ReadFile(HANDLE handle, LPVOID buffer, DWORD count, LPDWORD readCount, LPOVERLAPPED overlapped) {
    if (overlapped != nullptr) {
        win32::unsupported("ReadFile", "overlapped input");
    }
    const File* file = findFile(handle, GENERIC_READ);
    if (readCount != nullptr) {
        *readCount = 0;
    }
    if (file == nullptr) {
        return FALSE;
    }
    DWORD done = 0;
    while (done < count) {
        const ssize_t got = read(file->descriptor, static_cast<char*>(buffer) + done, count - done);
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got < 0) {
            return failWith<BOOL>(errorOf(errno), FALSE);
        }
        if (got == 0) {
            break;
        }
        done += static_cast<DWORD>(got);
    }
    if (readCount != nullptr) {
        *readCount = done;
    }
    return TRUE;
}

BOOL WriteFile(HANDLE handle, LPCVOID buffer, DWORD count, LPDWORD written, LPOVERLAPPED overlapped) {
    if (overlapped != nullptr) {
        win32::unsupported("WriteFile", "overlapped output");
    }
    const File* file = findFile(handle, GENERIC_WRITE);
    if (written != nullptr) {
        *written = 0;
    }
    if (file == nullptr) {
        return FALSE;
    }
    DWORD done = 0;
    while (done < count) {
        const ssize_t put = write(file->descriptor, static_cast<const char*>(buffer) + done, count - done);
        if (put < 0 && errno == EINTR) {
            continue;
        }
        if (put < 0) {
            return failWith<BOOL>(errorOf(errno), FALSE);
        }
        done += static_cast<DWORD>(put);
    }
    if (written != nullptr) {
        *written = done;
    }
    return TRUE;
}

BOOL SetFilePointerEx(HANDLE handle, LARGE_INTEGER distance, PLARGE_INTEGER newPosition, DWORD method) {
    const File* file = findFile(handle);
    if (file == nullptr) {
        return FALSE;
    }
    if (method > FILE_END) {
        return failWith<BOOL>(ERROR_INVALID_PARAMETER, FALSE);
    }
    constexpr int kWhence[] = {SEEK_SET, SEEK_CUR, SEEK_END};
    const off_t position = lseek(file->descriptor, distance.QuadPart, kWhence[method]);
    if (position < 0) {
        return failWith<BOOL>(errno == EINVAL ? ERROR_NEGATIVE_SEEK : errorOf(errno), FALSE);
    }
    if (newPosition != nullptr) {
        newPosition->QuadPart = position;
    }
    return TRUE;
}

BOOL GetFileSizeEx(HANDLE handle, PLARGE_INTEGER size) {
    const File* file = findFile(handle);
    struct stat status {};
    if (file == nullptr) {
        return FALSE;
    }
    if (fstat(file->descriptor, &status) != 0) {
        return failWith<BOOL>(errorOf(errno), FALSE);
    }
    size->QuadPart = status.st_size;
    return TRUE;
}

BOOL SetEndOfFile(HANDLE handle) {
    const File* file = findFile(handle, GENERIC_WRITE);
    if (file == nullptr) {
        return FALSE;
    }
    const off_t position = lseek(file->descriptor, 0, SEEK_CUR);
    return position >= 0 && ftruncate(file->descriptor, position) == 0
               ? TRUE
               : failWith<BOOL>(errorOf(errno), FALSE);
}

BOOL FlushFileBuffers(HANDLE handle) {
    const File* file = findFile(handle, GENERIC_WRITE);
    if (file == nullptr) {
        return FALSE;
    }
    return fsync(file->descriptor) == 0 ? TRUE : failWith<BOOL>(errorOf(errno), FALSE);
}

BOOL CloseHandle(HANDLE handle) {
    const std::lock_guard<std::mutex> lock(g_filesMutex);
    auto& open = files();
    const auto found =
        std::find_if(open.begin(), open.end(), [handle](const auto& file) { return file.get() == handle; });
    if (found == open.end()) {
        return failWith<BOOL>(ERROR_INVALID_HANDLE, FALSE);
    }
    const int result = close((*found)->descriptor);
    open.erase(found);
    return result == 0 ? TRUE : failWith<BOOL>(errorOf(errno), FALSE);
}

BOOL DeleteFileW(LPCWSTR fileName) {
    const std::string path = checkedPath(fileName);
    if (path.empty()) {
        return FALSE;
    }
    const std::lock_guard<std::mutex> lock(g_filesMutex);
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return failWith<BOOL>(errorOf(errno, path), FALSE);
    }
    const bool held = std::any_of(files().begin(), files().end(), [&status](const auto& file) {
        return file->device == status.st_dev && file->node == status.st_ino &&
               (file->share & FILE_SHARE_DELETE) == 0;
    });
    if (held) {
        return failWith<BOOL>(ERROR_SHARING_VIOLATION, FALSE);
    }
    return unlink(path.c_str()) == 0 ? TRUE : failWith<BOOL>(errorOf(errno, path), FALSE);
}

DWORD GetFileAttributesW(LPCWSTR fileName) {
    const std::string path = checkedPath(fileName);
    struct stat status {};
    if (path.empty()) {
        return INVALID_FILE_ATTRIBUTES;
    }
    if (stat(path.c_str(), &status) != 0) {
        return failWith(errorOf(errno, path), INVALID_FILE_ATTRIBUTES);
    }
    DWORD attributes = S_ISDIR(status.st_mode) ? FILE_ATTRIBUTE_DIRECTORY : 0;
    if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        attributes |= FILE_ATTRIBUTE_READONLY;
    }
    return attributes != 0 ? attributes : FILE_ATTRIBUTE_NORMAL;
}

BOOL CreateDirectoryW(LPCWSTR name, LPSECURITY_ATTRIBUTES) {
    const std::string path = checkedPath(name);
    if (path.empty()) {
        return FALSE;
    }
    if (mkdir(path.c_str(), 0777) == 0) {
        return TRUE;
    }
    const DWORD error = errno == EEXIST   ? ERROR_ALREADY_EXISTS
                        : errno == ENOENT ? ERROR_PATH_NOT_FOUND
                                          : errorOf(errno);
    return failWith<BOOL>(error, FALSE);
}

DWORD GetCurrentDirectoryW(DWORD size, LPWSTR buffer) {
    const std::unique_ptr<char, decltype(&std::free)> path(getcwd(nullptr, 0), &std::free);
    if (!path) {
        return failWith<DWORD>(ERROR_PATH_NOT_FOUND, 0);
    }
    return win32::copySized(win32::toWindowsPath(path.get()), buffer, size);
}

DWORD GetFullPathNameW(LPCWSTR fileName, DWORD size, LPWSTR buffer, LPWSTR* filePart) {
    if (fileName == nullptr || *fileName == 0) {
        return failWith<DWORD>(ERROR_INVALID_NAME, 0);
    }
    std::u16string_view name(fileName);
    const bool hasDrive = name.size() >= 2 && name[1] == u':';
    const std::u16string drive = hasDrive ? std::u16string(name.substr(0, 2)) : u"Z:";
    if (hasDrive) {
        name.remove_prefix(2);
    }
    std::u16string full;
    if (name.empty() || (name.front() != u'\\' && name.front() != u'/')) {
        std::u16string current(GetCurrentDirectoryW(0, nullptr), u'\0');
        current.resize(GetCurrentDirectoryW(static_cast<DWORD>(current.size()), current.data()));
        full = current.substr(2) + u'\\';
    }
    full += name;
    std::replace(full.begin(), full.end(), u'/', u'\\');
    std::vector<std::u16string> parts;
    for (std::size_t start = 0; start < full.size();) {
        const std::size_t end = std::min(full.find(u'\\', start), full.size());
        const std::u16string part = full.substr(start, end - start);
        start = end + 1;
        if (part == u"..") {
            if (!parts.empty()) {
                parts.pop_back();
            }
        } else if (!part.empty() && part != u".") {
            parts.push_back(part);
        }
    }
    std::u16string result = drive;
    for (const auto& part : parts) {
        result += u'\\' + part;
    }
    if (parts.empty() || full.back() == u'\\') {
        result += u'\\';
    }
    const DWORD length = win32::copySized(result, buffer, size);
    if (filePart != nullptr && length < size) {
        const std::size_t slash = result.find_last_of(u'\\');
        *filePart = slash + 1 < result.size() ? buffer + slash + 1 : nullptr;
    }
    return length;
}
