#pragma once

// Files on disk and in memory. Include <afx.h>.
//
// Simplified: no text mode, no CFileStatus and file times, no Duplicate, no range locking, no transactions.

#include "afxobject_.h"

#include "cstringt.h"

class CFileException;

/// An unbuffered binary file. Failures throw CFileException, except in Open, which returns FALSE.
class CFile : public CObject {
    DECLARE_DYNAMIC(CFile)

public:
    enum OpenFlags : UINT {
        modeRead = 0x00000,
        modeWrite = 0x00001,
        modeReadWrite = 0x00002,
        shareCompat = 0x00000,  ///< The same as shareExclusive.
        shareExclusive = 0x00010,
        shareDenyWrite = 0x00020,
        shareDenyRead = 0x00030,
        shareDenyNone = 0x00040,
        modeNoInherit = 0x00080,
        typeUnicode = 0x00400,     ///< Accepted and ignored: a CFile is always binary.
        modeCreate = 0x01000,      ///< Creates the file, or truncates an existing one.
        modeNoTruncate = 0x02000,  ///< With modeCreate: does not truncate an existing file.
        typeText = 0x04000,
        typeBinary = 0x08000,
        osNoBuffer = 0x10000,
        osWriteThrough = 0x20000,
        osRandomAccess = 0x40000,
        osSequentialScan = 0x80000
    };
    enum SeekPosition { begin = 0, current = 1, end = 2 };

    /// The value of m_hFile while no file is open.
    static HANDLE fileNull() { return INVALID_HANDLE_VALUE; }

    CFile();
    /// Wraps an open file; the destructor does not close it.
    explicit CFile(HANDLE file);
    /// Opens the file or throws CFileException.
    CFile(LPCTSTR fileName, UINT openFlags);
    ~CFile() override;

    operator HANDLE() const { return m_hFile; }  // NOLINT(google-explicit-constructor)

    /// False on failure; `error`, unless null, receives the reason. GetLastError is valid too.
    virtual BOOL Open(LPCTSTR fileName, UINT openFlags, CFileException* error = nullptr);
    /// Returns the number of bytes read; fewer than requested only at the end of the file.
    virtual UINT Read(void* buffer, UINT count);
    virtual void Write(const void* buffer, UINT count);
    virtual ULONGLONG Seek(LONGLONG offset, UINT from);
    virtual void SetLength(ULONGLONG newLength);
    virtual ULONGLONG GetLength() const;
    virtual ULONGLONG GetPosition() const;
    virtual void Flush();
    virtual void Close();
    /// Closes the file, ignoring errors.
    virtual void Abort();

    ULONGLONG SeekToEnd() { return Seek(0, end); }
    void SeekToBegin() { Seek(0, begin); }

    /// GetFileName returns the name without its folder, GetFilePath the full path.
    virtual CString GetFileName() const;
    virtual CString GetFilePath() const;
    virtual void SetFilePath(LPCTSTR newName);

    static void PASCAL Remove(LPCTSTR fileName);

    HANDLE m_hFile;

protected:
    CString m_strFileName;
    BOOL m_bCloseOnDelete;
};

/// A file in memory that grows in multiples of `growBytes`.
class CMemFile : public CFile {
    DECLARE_DYNAMIC(CMemFile)

public:
    explicit CMemFile(UINT growBytes = 1024);
    /// Uses a buffer that the caller keeps owning. With growBytes 0 the file has the buffer's contents and
    /// cannot grow; otherwise it starts empty.
    CMemFile(BYTE* buffer, UINT size, UINT growBytes = 0);
    ~CMemFile() override;

    /// Returns the buffer, which the caller then owns (release it with free()), and leaves the file empty.
    BYTE* Detach();

    UINT Read(void* buffer, UINT count) override;
    void Write(const void* buffer, UINT count) override;
    ULONGLONG Seek(LONGLONG offset, UINT from) override;
    void SetLength(ULONGLONG newLength) override;
    ULONGLONG GetLength() const override;
    ULONGLONG GetPosition() const override;
    void Flush() override;
    void Close() override;
    void Abort() override;

private:
    void grow(size_t needed);

    BYTE* m_buffer = nullptr;
    size_t m_capacity = 0;
    size_t m_size = 0;
    size_t m_position = 0;
    UINT m_growBytes;
    bool m_autoDelete = true;
};
