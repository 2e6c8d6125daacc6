#include <string>

#include "afx.h"

int AFXAPI AfxMessageBox(LPCTSTR text, UINT type, UINT helpId);

IMPLEMENT_DYNAMIC(CException, CObject)
IMPLEMENT_DYNAMIC(CSimpleException, CException)
IMPLEMENT_DYNAMIC(CMemoryException, CSimpleException)
IMPLEMENT_DYNAMIC(CNotSupportedException, CSimpleException)
IMPLEMENT_DYNAMIC(CInvalidArgException, CSimpleException)
IMPLEMENT_DYNAMIC(CResourceException, CSimpleException)
IMPLEMENT_DYNAMIC(CUserException, CSimpleException)
IMPLEMENT_DYNAMIC(CFileException, CException)
IMPLEMENT_DYNAMIC(CArchiveException, CException)

namespace {

/// The message for a cause; "unknown error" for a cause that is not in the table.
template <size_t Count>
CString causeText(const LPCTSTR (&texts)[Count], int cause, const CString& fileName) {
    LPCTSTR format = cause >= 0 && static_cast<size_t>(cause) < Count
                         ? texts[cause]
                         : _T("An unknown error occurred while accessing %s.");
    CString text;
    text.Format(format, fileName.IsEmpty() ? _T("an unnamed file") : fileName.GetString());
    return text;
}

}  // namespace

CException::CException(BOOL autoDelete) : m_bAutoDelete(autoDelete) {}

void CException::Delete() {
    if (m_bAutoDelete) {
        delete this;
    }
}

CString CException::errorText() const {
    return {};
}

BOOL CException::GetErrorMessage(LPTSTR error, UINT maxError, UINT* helpContext) const {
    if (error == nullptr || maxError == 0) {
        return FALSE;
    }
    if (helpContext != nullptr) {
        *helpContext = 0;
    }
    const CString text = errorText();
    const CString cut = text.Left(static_cast<int>(maxError - 1));
    std::char_traits<TCHAR>::copy(error, cut.GetString(), static_cast<size_t>(cut.GetLength()) + 1);
    return !text.IsEmpty();
}

int CException::ReportError(UINT type, UINT /*messageId*/) {
    CString text = errorText();
    if (text.IsEmpty()) {
        text = _T("An error has occurred.");
    }
    return AfxMessageBox(text.GetString(), type, 0);
}

CSimpleException::CSimpleException(LPCTSTR text, BOOL autoDelete) : CException(autoDelete), m_text(text) {}
CString CSimpleException::errorText() const {
    return m_text;
}

CMemoryException::CMemoryException() : CSimpleException(_T("Out of memory."), FALSE) {}
CNotSupportedException::CNotSupportedException()
    : CSimpleException(_T("An attempt was made to perform an unsupported operation."), FALSE) {}
CInvalidArgException::CInvalidArgException()
    : CSimpleException(_T("Encountered an improper argument."), FALSE) {}
CResourceException::CResourceException()
    : CSimpleException(_T("A required resource was unavailable."), FALSE) {}
CUserException::CUserException() : CSimpleException(_T(""), FALSE) {}

CFileException::CFileException(int cause, LONG osError, LPCTSTR fileName)
    : m_cause(cause), m_lOsError(osError), m_strFileName(fileName) {}

int PASCAL CFileException::OsErrorToException(LONG osError) {
    switch (static_cast<DWORD>(osError)) {
        case NO_ERROR:
            return none;
        case ERROR_FILE_NOT_FOUND:
            return fileNotFound;
        case ERROR_PATH_NOT_FOUND:
        case ERROR_INVALID_NAME:
        case ERROR_DIRECTORY:
            return badPath;
        case ERROR_TOO_MANY_OPEN_FILES:
            return tooManyOpenFiles;
        case ERROR_ACCESS_DENIED:
        case ERROR_WRITE_PROTECT:
        case ERROR_ALREADY_EXISTS:
        case ERROR_FILE_EXISTS:
            return accessDenied;
        case ERROR_INVALID_HANDLE:
            return fileNotFound;
        case ERROR_SHARING_VIOLATION:
            return sharingViolation;
        case ERROR_DISK_FULL:
            return diskFull;
        case ERROR_NEGATIVE_SEEK:
            return badSeek;
        case ERROR_HANDLE_EOF:
            return endOfFile;
        case ERROR_IO_DEVICE:
            return hardIO;
        default:
            return genericException;
    }
}

void PASCAL CFileException::ThrowOsError(LONG osError, LPCTSTR fileName) {
    if (osError != NO_ERROR) {
        AfxThrowFileException(OsErrorToException(osError), osError, fileName);
    }
}

CString CFileException::errorText() const {
    static const LPCTSTR texts[] = {_T("No error occurred."),
                                    _T("An unknown error occurred while accessing %s."),
                                    _T("%s was not found."),
                                    _T("%s contains an incorrect path."),
                                    _T("%s could not be opened because there are too many open files."),
                                    _T("Access to %s was denied."),
                                    _T("An incorrect file handle was associated with %s."),
                                    _T("%s could not be removed because it is the current directory."),
                                    _T("%s could not be created because the directory is full."),
                                    _T("Seek failed on %s"),
                                    _T("A hardware I/O error was reported while accessing %s."),
                                    _T("A sharing violation occurred while accessing %s."),
                                    _T("A locking violation occurred while accessing %s."),
                                    _T("Disk full while accessing %s."),
                                    _T("An attempt was made to access %s past its end.")};
    return causeText(texts, m_cause, m_strFileName);
}

CArchiveException::CArchiveException(int cause, LPCTSTR fileName) : m_cause(cause), m_strFileName(fileName) {}

CString CArchiveException::errorText() const {
    static const LPCTSTR texts[] = {_T("No error occurred."),
                                    _T("An unknown error occurred while accessing %s."),
                                    _T("An attempt was made to write to the reading %s."),
                                    _T("An attempt was made to access %s past its end."),
                                    _T("An attempt was made to read from the writing %s."),
                                    _T("%s has a bad format."),
                                    _T("%s contained an unexpected object."),
                                    _T("%s contains an incorrect schema."),
                                    _T("%s has a line too long for the buffer.")};
    return causeText(texts, m_cause, m_strFileName);
}

// CMemoryException and the other simple exceptions are static objects: throwing one must not allocate.
void AFXAPI AfxThrowMemoryException() {
    static CMemoryException exception;
    throw &exception;
}
void AFXAPI AfxThrowNotSupportedException() {
    static CNotSupportedException exception;
    throw &exception;
}
void AFXAPI AfxThrowInvalidArgException() {
    static CInvalidArgException exception;
    throw &exception;
}
void AFXAPI AfxThrowResourceException() {
    static CResourceException exception;
    throw &exception;
}
void AFXAPI AfxThrowUserException() {
    static CUserException exception;
    throw &exception;
}
void AFXAPI AfxThrowFileException(int cause, LONG osError, LPCTSTR fileName) {
    throw new CFileException(cause, osError, fileName);
}
void AFXAPI AfxThrowArchiveException(int cause, LPCTSTR fileName) {
    throw new CArchiveException(cause, fileName);
}
