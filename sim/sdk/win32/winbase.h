#pragma once

// Kernel calls: errors, modules, files, environment, time, code pages.
//
// Paths: drive Z: is the root directory, as Wine has it; "Z:\home\me\a.txt" and "/home/me/a.txt" name the
// same file, and names that are not found as spelt are looked for without regard to case. Other drives do not
// exist. Simplified: share modes are enforced among the handles of this process only; no overlapped input and
// output; no security attributes, attributes or templates.

#include "windef.h"
#include "winerror.h"

// Errors. Each thread has its own last error.
WIN32API DWORD GetLastError();
WIN32API void SetLastError(DWORD error);

// Modules. A handle is the address the image is mapped at. Shared libraries of any name are modules, .arx
// ones too.

/// Loads by path, or by name from the program's folder, the current folder and the system's; a name without
/// an extension gets ".dll". Null and ERROR_MOD_NOT_FOUND (no such file), ERROR_BAD_EXE_FORMAT (not a
/// library) or ERROR_PROC_NOT_FOUND (a symbol it needs is missing). Each success adds a reference.
WIN32API HMODULE LoadLibraryW(LPCWSTR fileName);
WIN32API HMODULE LoadLibraryA(LPCSTR fileName);
/// The module's own folder is searched first for the libraries it needs, where LoadLibrary searches the
/// program's.
constexpr DWORD LOAD_WITH_ALTERED_SEARCH_PATH = 0x8;
/// Simplified: a module brings its search path itself, so the flag changes nothing; there are no others.
WIN32API HMODULE LoadLibraryExW(LPCWSTR fileName, HANDLE reserved, DWORD flags);
/// Drops one reference made by LoadLibrary; the last one unloads. FALSE and ERROR_MOD_NOT_FOUND for a handle
/// that is no module.
WIN32API BOOL FreeLibrary(HMODULE module);
WIN32API FARPROC GetProcAddress(HMODULE module, LPCSTR name);
/// The loaded module with that base name (without regard to case; ".dll" added when there is no extension) or
/// that path; null names the program. Adds no reference.
WIN32API HMODULE GetModuleHandleW(LPCWSTR name);
WIN32API HMODULE GetModuleHandleA(LPCSTR name);

constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_PIN = 0x1;
constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 0x2;
constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 0x4;
WIN32API BOOL GetModuleHandleExW(DWORD flags, LPCWSTR nameOrAddress, HMODULE* module);

// The reasons that a module's DllMain is given.
constexpr DWORD DLL_PROCESS_DETACH = 0;
constexpr DWORD DLL_PROCESS_ATTACH = 1;
constexpr DWORD DLL_THREAD_ATTACH = 2;
constexpr DWORD DLL_THREAD_DETACH = 3;

/// The module's path as "Z:\…"; null is the program. Returns the length without the terminator. A buffer that
/// is too small is filled with a terminated, cut path, size is returned and the last error is
/// ERROR_INSUFFICIENT_BUFFER. 0 on failure. The A form gives UTF-8.
WIN32API DWORD GetModuleFileNameW(HMODULE module, LPWSTR buffer, DWORD size);
WIN32API DWORD GetModuleFileNameA(HMODULE module, LPSTR buffer, DWORD size);

// Files.
#define INVALID_HANDLE_VALUE (reinterpret_cast<HANDLE>(static_cast<LONG_PTR>(-1)))
constexpr DWORD INVALID_FILE_ATTRIBUTES = 0xFFFFFFFFU;

constexpr DWORD GENERIC_READ = 0x80000000U;
constexpr DWORD GENERIC_WRITE = 0x40000000U;
constexpr DWORD FILE_SHARE_READ = 0x1;
constexpr DWORD FILE_SHARE_WRITE = 0x2;
constexpr DWORD FILE_SHARE_DELETE = 0x4;
constexpr DWORD CREATE_NEW = 1;
constexpr DWORD CREATE_ALWAYS = 2;
constexpr DWORD OPEN_EXISTING = 3;
constexpr DWORD OPEN_ALWAYS = 4;
constexpr DWORD TRUNCATE_EXISTING = 5;
constexpr DWORD FILE_ATTRIBUTE_READONLY = 0x1;
constexpr DWORD FILE_ATTRIBUTE_HIDDEN = 0x2;
constexpr DWORD FILE_ATTRIBUTE_DIRECTORY = 0x10;
constexpr DWORD FILE_ATTRIBUTE_NORMAL = 0x80;
constexpr DWORD FILE_FLAG_WRITE_THROUGH = 0x80000000U;
constexpr DWORD FILE_FLAG_SEQUENTIAL_SCAN = 0x08000000U;
constexpr DWORD FILE_FLAG_RANDOM_ACCESS = 0x10000000U;
constexpr DWORD FILE_BEGIN = 0;
constexpr DWORD FILE_CURRENT = 1;
constexpr DWORD FILE_END = 2;

struct SECURITY_ATTRIBUTES {
    DWORD nLength;
    LPVOID lpSecurityDescriptor;
    BOOL bInheritHandle;
};
using LPSECURITY_ATTRIBUTES = SECURITY_ATTRIBUTES*;
struct OVERLAPPED;
using LPOVERLAPPED = OVERLAPPED*;

/// INVALID_HANDLE_VALUE on failure. CREATE_ALWAYS and OPEN_ALWAYS leave ERROR_ALREADY_EXISTS when the file
/// was there, else 0. Security is ignored; of the attributes only FILE_ATTRIBUTE_READONLY means something
/// here.
WIN32API HANDLE CreateFileW(LPCWSTR fileName, DWORD access, DWORD shareMode, LPSECURITY_ATTRIBUTES security,
                            DWORD creation, DWORD attributes, HANDLE templateFile);
WIN32API BOOL ReadFile(HANDLE file, LPVOID buffer, DWORD count, LPDWORD read, LPOVERLAPPED overlapped);
WIN32API BOOL WriteFile(HANDLE file, LPCVOID buffer, DWORD count, LPDWORD written, LPOVERLAPPED overlapped);
WIN32API BOOL SetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER newPosition, DWORD method);
WIN32API BOOL GetFileSizeEx(HANDLE file, PLARGE_INTEGER size);
WIN32API BOOL SetEndOfFile(HANDLE file);
WIN32API BOOL FlushFileBuffers(HANDLE file);
/// Closes a file handle; FALSE and ERROR_INVALID_HANDLE for anything else.
WIN32API BOOL CloseHandle(HANDLE handle);

WIN32API BOOL DeleteFileW(LPCWSTR fileName);
WIN32API DWORD GetFileAttributesW(LPCWSTR fileName);
WIN32API BOOL CreateDirectoryW(LPCWSTR path, LPSECURITY_ATTRIBUTES security);
/// The full path as "Z:\…", with "." and ".." resolved; the result as GetEnvironmentVariableW's.
WIN32API DWORD GetFullPathNameW(LPCWSTR fileName, DWORD size, LPWSTR buffer, LPWSTR* filePart);
WIN32API DWORD GetCurrentDirectoryW(DWORD size, LPWSTR buffer);

// Process, threads, environment, time.
/// The command line, each argument quoted when it holds a blank. The program's path is as it was given.
WIN32API LPWSTR GetCommandLineW();
WIN32API DWORD GetCurrentThreadId();
WIN32API DWORD GetCurrentProcessId();
/// The value's length without the terminator; when the buffer is too small, the size it must have with it
/// (and the buffer is left alone). 0 and ERROR_ENVVAR_NOT_FOUND when there is no such variable.
WIN32API DWORD GetEnvironmentVariableW(LPCWSTR name, LPWSTR buffer, DWORD size);
/// A null value removes the variable. As on Unix, not safe while another thread reads the environment.
WIN32API BOOL SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value);
WIN32API void Sleep(DWORD milliseconds);
WIN32API DWORD GetTickCount();
WIN32API ULONGLONG GetTickCount64();
/// Writes to the standard error output.
WIN32API void OutputDebugStringW(LPCWSTR text);

// Code pages. The system's own is UTF-8.
constexpr UINT CP_ACP = 0;
constexpr UINT CP_UTF8 = 65001;
constexpr DWORD MB_ERR_INVALID_CHARS = 0x8;
constexpr DWORD WC_ERR_INVALID_CHARS = 0x80;
WIN32API int MultiByteToWideChar(UINT codePage, DWORD flags, LPCSTR text, int bytes, LPWSTR buffer, int size);
WIN32API int WideCharToMultiByte(UINT codePage, DWORD flags, LPCWSTR text, int units, LPSTR buffer, int size,
                                 LPCSTR defaultChar, LPBOOL usedDefault);

WIN32API int lstrlenW(LPCWSTR text);
WIN32API int lstrcmpW(LPCWSTR left, LPCWSTR right);
WIN32API int lstrcmpiW(LPCWSTR left, LPCWSTR right);

#define LoadLibrary LoadLibraryW
#define LoadLibraryEx LoadLibraryExW
#define GetModuleHandle GetModuleHandleW
#define GetModuleHandleEx GetModuleHandleExW
#define GetModuleFileName GetModuleFileNameW
#define CreateFile CreateFileW
#define DeleteFile DeleteFileW
#define GetFileAttributes GetFileAttributesW
#define CreateDirectory CreateDirectoryW
#define GetFullPathName GetFullPathNameW
#define GetCurrentDirectory GetCurrentDirectoryW
#define GetCommandLine GetCommandLineW
#define GetEnvironmentVariable GetEnvironmentVariableW
#define SetEnvironmentVariable SetEnvironmentVariableW
#define OutputDebugString OutputDebugStringW
#define lstrlen lstrlenW
#define lstrcmp lstrcmpW
#define lstrcmpi lstrcmpiW
