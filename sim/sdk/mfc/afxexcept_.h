#pragma once

// MFC's exceptions: thrown by pointer, caught with `catch (CFileException* e)` and released with e->Delete().
// Include <afx.h>.
//
// Simplified: GetErrorMessage's messages are always English; no help contexts.

#include "afxobject_.h"

#include "cstringt.h"

class CException : public CObject {
    DECLARE_DYNAMIC(CException)

public:
    explicit CException(BOOL autoDelete = TRUE);

    /// Deletes the exception if it was allocated on the heap.
    void Delete();
    /// Copies the message to `error`, truncated to `maxError` characters including the terminator. False if
    /// there is no message.
    virtual BOOL GetErrorMessage(LPTSTR error, UINT maxError, UINT* helpContext = nullptr) const;
    /// Shows the message in a message box.
    virtual int ReportError(UINT type = MB_OK, UINT messageId = 0);

    BOOL m_bAutoDelete;

protected:
    /// GetErrorMessage's message; empty for none.
    virtual CString errorText() const;
};

/// Base of the exceptions that are static objects, since allocating one could fail.
class CSimpleException : public CException {
    DECLARE_DYNAMIC(CSimpleException)

public:
    CSimpleException(LPCTSTR text, BOOL autoDelete);

protected:
    CString errorText() const override;

private:
    LPCTSTR m_text;
};

class CMemoryException : public CSimpleException {
    DECLARE_DYNAMIC(CMemoryException)

public:
    CMemoryException();
};

class CNotSupportedException : public CSimpleException {
    DECLARE_DYNAMIC(CNotSupportedException)

public:
    CNotSupportedException();
};

class CInvalidArgException : public CSimpleException {
    DECLARE_DYNAMIC(CInvalidArgException)

public:
    CInvalidArgException();
};

class CResourceException : public CSimpleException {
    DECLARE_DYNAMIC(CResourceException)

public:
    CResourceException();
};

/// Ends an operation whose failure has already been reported to the user.
class CUserException : public CSimpleException {
    DECLARE_DYNAMIC(CUserException)

public:
    CUserException();
};

class CFileException : public CException {
    DECLARE_DYNAMIC(CFileException)

public:
    enum {
        none,
        genericException,
        fileNotFound,
        badPath,
        tooManyOpenFiles,
        accessDenied,
        invalidFile,
        removeCurrentDir,
        directoryFull,
        badSeek,
        hardIO,
        sharingViolation,
        lockViolation,
        diskFull,
        endOfFile
    };

    explicit CFileException(int cause = none, LONG osError = -1, LPCTSTR fileName = nullptr);

    /// The cause that corresponds to a GetLastError code.
    static int PASCAL OsErrorToException(LONG osError);
    static void PASCAL ThrowOsError(LONG osError, LPCTSTR fileName = nullptr);

    int m_cause;
    LONG m_lOsError;
    CString m_strFileName;

protected:
    CString errorText() const override;
};

class CArchiveException : public CException {
    DECLARE_DYNAMIC(CArchiveException)

public:
    enum {
        none,
        genericException,
        readOnly,
        endOfFile,
        writeOnly,
        badIndex,
        badClass,
        badSchema,
        bufferFull
    };

    explicit CArchiveException(int cause = none, LPCTSTR fileName = nullptr);

    int m_cause;
    CString m_strFileName;

protected:
    CString errorText() const override;
};

[[noreturn]] void AFXAPI AfxThrowMemoryException();
[[noreturn]] void AFXAPI AfxThrowNotSupportedException();
[[noreturn]] void AFXAPI AfxThrowInvalidArgException();
[[noreturn]] void AFXAPI AfxThrowResourceException();
[[noreturn]] void AFXAPI AfxThrowUserException();
[[noreturn]] void AFXAPI AfxThrowFileException(int cause, LONG osError = -1, LPCTSTR fileName = nullptr);
[[noreturn]] void AFXAPI AfxThrowArchiveException(int cause, LPCTSTR fileName = nullptr);
