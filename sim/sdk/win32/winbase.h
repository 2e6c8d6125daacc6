#pragma once

// Base functions: errors, modules, files, environment, time, code pages.
//
// Paths: drive Z: is the root directory, as in Wine; "Z:\home\me\a.txt" and "/home/me/a.txt" name the same
// file, and names that do not exist as spelt are looked up ignoring case. There are no other drives.
//
// Simplified: share modes are enforced among this process's handles only; no overlapped I/O, no security, no
// template files, no file attributes but FILE_ATTRIBUTE_READONLY; lstrcmp compares code units.

#include "windef.h"
#include "winerror.h"

// Errors. Each thread has its own last error.
WIN32API DWORD GetLastError();
WIN32API void SetLastError(DWORD error);

// Modules. A handle is the base address of the mapped image. Any shared library is a module, whatever its
// extension (.arx too).

/// Loads by path, or by name from the program's folder, the current folder and the system's library path;
/// ".dll" is added to a name without an extension. On failure null and ERROR_MOD_NOT_FOUND (no such file),
/// ERROR_BAD_EXE_FORMAT (not a library) or ERROR_PROC_NOT_FOUND (undefined symbol). Each successful call adds
/// a reference.
WIN32API HMODULE LoadLibraryW(LPCWSTR fileName);
WIN32API HMODULE LoadLibraryA(LPCSTR fileName);
/// Dependencies are searched for in the module's own folder first instead of the program's.
constexpr DWORD LOAD_WITH_ALTERED_SEARCH_PATH = 0x8;
/// Simplified: a module's own RUNPATH determines where its dependencies are found, so the flag has no effect;
/// no other flags.
WIN32API HMODULE LoadLibraryExW(LPCWSTR fileName, HANDLE reserved, DWORD flags);
/// Releases one reference added by LoadLibrary; the last one unloads the module. FALSE and
/// ERROR_MOD_NOT_FOUND for a handle that is not a module.
WIN32API BOOL FreeLibrary(HMODULE module);
WIN32API FARPROC GetProcAddress(HMODULE module, LPCSTR name);
/// The loaded module with that base name (ignoring case; ".dll" is added if there is no extension) or that
/// path; the program for null. Adds no reference.
WIN32API HMODULE GetModuleHandleW(LPCWSTR name);
WIN32API HMODULE GetModuleHandleA(LPCSTR name);

constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_PIN = 0x1;
constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT = 0x2;
constexpr DWORD GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS = 0x4;
WIN32API BOOL GetModuleHandleExW(DWORD flags, LPCWSTR nameOrAddress, HMODULE* module);

// The values of DllMain's reason argument.
constexpr DWORD DLL_PROCESS_DETACH = 0;
constexpr DWORD DLL_PROCESS_ATTACH = 1;
constexpr DWORD DLL_THREAD_ATTACH = 2;
constexpr DWORD DLL_THREAD_DETACH = 3;

/// The module's path as "Z:\…"; the program's for null. Returns the length without the terminator, 0 on
/// failure. If the buffer is too small it receives a truncated, terminated path, `size` is returned and the
/// last error is ERROR_INSUFFICIENT_BUFFER. The A form returns UTF-8.
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

/// INVALID_HANDLE_VALUE on failure. CREATE_ALWAYS and OPEN_ALWAYS set the last error to ERROR_ALREADY_EXISTS
/// if the file existed, else to 0. The security attributes are ignored, as are all attributes but
/// FILE_ATTRIBUTE_READONLY.
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
/// The full path as "Z:\…", with "." and ".." resolved. The result is as for GetEnvironmentVariableW.
WIN32API DWORD GetFullPathNameW(LPCWSTR fileName, DWORD size, LPWSTR buffer, LPWSTR* filePart);
WIN32API DWORD GetCurrentDirectoryW(DWORD size, LPWSTR buffer);

// Process, threads, environment, time.
/// The command line; arguments with spaces are quoted. The program's name is as it was typed.
WIN32API LPWSTR GetCommandLineW();
WIN32API DWORD GetCurrentThreadId();
WIN32API DWORD GetCurrentProcessId();
/// The value's length without the terminator. If the buffer is too small it is left unchanged and the size
/// needed, with the terminator, is returned. 0 and ERROR_ENVVAR_NOT_FOUND if there is no such variable.
WIN32API DWORD GetEnvironmentVariableW(LPCWSTR name, LPWSTR buffer, DWORD size);
/// A null value removes the variable. As on Unix, not safe while another thread reads the environment.
WIN32API BOOL SetEnvironmentVariableW(LPCWSTR name, LPCWSTR value);
WIN32API void Sleep(DWORD milliseconds);
WIN32API DWORD GetTickCount();
WIN32API ULONGLONG GetTickCount64();
/// Writes to standard error.
WIN32API void OutputDebugStringW(LPCWSTR text);

// Code pages. The ANSI code page is UTF-8.
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
