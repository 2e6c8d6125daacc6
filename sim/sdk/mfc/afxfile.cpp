#include "afx.h"

IMPLEMENT_DYNAMIC(CFile, CObject)

namespace {

/// Throws CFileException for GetLastError.
[[noreturn]] void throwLastError(const CString& fileName) {
    const auto error = static_cast<LONG>(GetLastError());
    AfxThrowFileException(CFileException::OsErrorToException(error), error, fileName.GetString());
}

LARGE_INTEGER largeInteger(LONGLONG value) {
    LARGE_INTEGER large;
    large.QuadPart = value;
    return large;
}

/// The full path; the name itself if it cannot be resolved.
CString fullPath(LPCTSTR fileName) {
    CString path;
    const DWORD needed = GetFullPathNameW(fileName, 0, nullptr, nullptr);
    if (needed > 0) {
        const DWORD length =
            GetFullPathNameW(fileName, needed, path.GetBuffer(static_cast<int>(needed)), nullptr);
        if (length < needed) {
            path.ReleaseBuffer(static_cast<int>(length));
        } else {
            path.Empty();
        }
    }
    return path.IsEmpty() ? CString(fileName) : path;
}

DWORD accessOf(UINT openFlags) {
    switch (openFlags & 3U) {
        case CFile::modeRead:
            return GENERIC_READ;
        case CFile::modeWrite:
            return GENERIC_WRITE;
        case CFile::modeReadWrite:
            return GENERIC_READ | GENERIC_WRITE;
        default:
            AfxThrowInvalidArgException();
    }
}

DWORD shareOf(UINT openFlags) {
    switch (openFlags & 0x70U) {
        case CFile::shareCompat:
        case CFile::shareExclusive:
            return 0;
        case CFile::shareDenyWrite:
            return FILE_SHARE_READ;
        case CFile::shareDenyRead:
            return FILE_SHARE_WRITE;
        case CFile::shareDenyNone:
            return FILE_SHARE_READ | FILE_SHARE_WRITE;
        default:
            AfxThrowInvalidArgException();
    }
}

DWORD creationOf(UINT openFlags) {
    if ((openFlags & CFile::modeCreate) == 0) {
        return OPEN_EXISTING;
    }
    return (openFlags & CFile::modeNoTruncate) != 0 ? OPEN_ALWAYS : CREATE_ALWAYS;
}

DWORD attributesOf(UINT openFlags) {
    DWORD attributes = FILE_ATTRIBUTE_NORMAL;
    if ((openFlags & CFile::osWriteThrough) != 0) {
        attributes |= FILE_FLAG_WRITE_THROUGH;
    }
    if ((openFlags & CFile::osRandomAccess) != 0) {
        attributes |= FILE_FLAG_RANDOM_ACCESS;
    }
    if ((openFlags & CFile::osSequentialScan) != 0) {
        attributes |= FILE_FLAG_SEQUENTIAL_SCAN;
    }
    return attributes;
}

}  // namespace

CFile::CFile() : m_hFile(fileNull()), m_bCloseOnDelete(FALSE) {}

CFile::CFile(HANDLE file) : m_hFile(file), m_bCloseOnDelete(FALSE) {}

CFile::CFile(LPCTSTR fileName, UINT openFlags) : m_hFile(fileNull()), m_bCloseOnDelete(FALSE) {
    CFileException error;
    if (!CFile::Open(fileName, openFlags, &error)) {
        AfxThrowFileException(error.m_cause, error.m_lOsError, error.m_strFileName.GetString());
    }
}

CFile::~CFile() {
    if (m_hFile != fileNull() && m_bCloseOnDelete) {
        CFile::Abort();
    }
}

BOOL CFile::Open(LPCTSTR fileName, UINT openFlags, CFileException* error) {
    if (fileName == nullptr) {
        AfxThrowInvalidArgException();
    }
    SECURITY_ATTRIBUTES security = {};
    security.nLength = sizeof security;
    security.bInheritHandle = (openFlags & modeNoInherit) == 0;
    const CString path = fullPath(fileName);
    m_bCloseOnDelete = FALSE;
    m_strFileName.Empty();
    const HANDLE file = CreateFileW(path.GetString(), accessOf(openFlags), shareOf(openFlags), &security,
                                    creationOf(openFlags), attributesOf(openFlags), nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        m_hFile = fileNull();
        if (error != nullptr) {
            error->m_lOsError = static_cast<LONG>(GetLastError());
            error->m_cause = CFileException::OsErrorToException(error->m_lOsError);
            error->m_strFileName = fileName;
        }
        return FALSE;
    }
    m_hFile = file;
    m_strFileName = path;
    m_bCloseOnDelete = TRUE;
    return TRUE;
}

UINT CFile::Read(void* buffer, UINT count) {
    if (count == 0) {
        return 0;
    }
    DWORD read = 0;
    if (!ReadFile(m_hFile, buffer, count, &read, nullptr)) {
        throwLastError(m_strFileName);
    }
    return read;
}

void CFile::Write(const void* buffer, UINT count) {
    if (count == 0) {
        return;
    }
    DWORD written = 0;
    if (!WriteFile(m_hFile, buffer, count, &written, nullptr)) {
        throwLastError(m_strFileName);
    }
    if (written != count) {
        AfxThrowFileException(CFileException::diskFull, -1, m_strFileName.GetString());
    }
}

ULONGLONG CFile::Seek(LONGLONG offset, UINT from) {
    static_assert(begin == FILE_BEGIN && current == FILE_CURRENT && end == FILE_END,
                  "the values are passed to Win32 unchanged");
    if (m_hFile == fileNull()) {
        AfxThrowFileException(CFileException::invalidFile, -1, m_strFileName.GetString());
    }
    LARGE_INTEGER position = largeInteger(0);
    if (!SetFilePointerEx(m_hFile, largeInteger(offset), &position, from)) {
        throwLastError(m_strFileName);
    }
    return static_cast<ULONGLONG>(position.QuadPart);
}

ULONGLONG CFile::GetPosition() const {
    LARGE_INTEGER position = largeInteger(0);
    if (!SetFilePointerEx(m_hFile, largeInteger(0), &position, FILE_CURRENT)) {
        throwLastError(m_strFileName);
    }
    return static_cast<ULONGLONG>(position.QuadPart);
}

void CFile::SetLength(ULONGLONG newLength) {
    Seek(static_cast<LONGLONG>(newLength), begin);
    if (!SetEndOfFile(m_hFile)) {
        throwLastError(m_strFileName);
    }
}

ULONGLONG CFile::GetLength() const {
    LARGE_INTEGER size = largeInteger(0);
    if (!GetFileSizeEx(m_hFile, &size)) {
        throwLastError(m_strFileName);
    }
    return static_cast<ULONGLONG>(size.QuadPart);
}

void CFile::Flush() {
    if (m_hFile != fileNull() && !FlushFileBuffers(m_hFile)) {
        throwLastError(m_strFileName);
    }
}

void CFile::Close() {
    const CString name = m_strFileName;
    const bool open = m_hFile != fileNull();
    const bool failed = open && !CloseHandle(m_hFile);
    m_hFile = fileNull();
    m_bCloseOnDelete = FALSE;
    m_strFileName.Empty();
    if (failed) {
        throwLastError(name);
    }
}

void CFile::Abort() {
    if (m_hFile != fileNull()) {
        CloseHandle(m_hFile);
        m_hFile = fileNull();
    }
    m_bCloseOnDelete = FALSE;
    m_strFileName.Empty();
}

CString CFile::GetFileName() const {
    const int slash = m_strFileName.ReverseFind(_T('/'));
    const int backslash = m_strFileName.ReverseFind(_T('\\'));
    return m_strFileName.Mid((slash > backslash ? slash : backslash) + 1);
}

CString CFile::GetFilePath() const {
    return m_strFileName;
}

void CFile::SetFilePath(LPCTSTR newName) {
    m_strFileName = newName;
}

void PASCAL CFile::Remove(LPCTSTR fileName) {
    if (!DeleteFileW(fileName)) {
        throwLastError(fileName);
    }
}
