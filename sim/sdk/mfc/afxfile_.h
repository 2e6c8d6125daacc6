#pragma once

// Files on disk and in memory. Include <afx.h>.
//
// Simplified: no text mode, no file times and status, no Duplicate, no locking of ranges, no transactions.

#include "afxobject_.h"

#include "cstringt.h"

class CFileException;

/// An unbuffered binary file. Failures raise CFileException, but for Open, which reports.
class CFile : public CObject {
    DECLARE_DYNAMIC(CFile)

public:
    enum OpenFlags : UINT {
        modeRead = 0x00000,
        modeWrite = 0x00001,
        modeReadWrite = 0x00002,
        shareCompat = 0x00000,  ///< Means shareExclusive.
        shareExclusive = 0x00010,
        shareDenyWrite = 0x00020,
        shareDenyRead = 0x00030,
        shareDenyNone = 0x00040,
        modeNoInherit = 0x00080,
        typeUnicode = 0x00400,     ///< Accepted; a CFile is binary all the same.
        modeCreate = 0x01000,      ///< Creates the file, or empties it.
        modeNoTruncate = 0x02000,  ///< With modeCreate: an existing file keeps its contents.
        typeText = 0x04000,
        typeBinary = 0x08000,
        osNoBuffer = 0x10000,
        osWriteThrough = 0x20000,
        osRandomAccess = 0x40000,
        osSequentialScan = 0x80000
    };
    enum SeekPosition { begin = 0, current = 1, end = 2 };

    /// The handle of a file that is not open.
    static HANDLE fileNull() { return INVALID_HANDLE_VALUE; }

    CFile();
    /// Takes an open file over.
    explicit CFile(HANDLE file);
    /// Opens, or raises CFileException.
    CFile(LPCTSTR fileName, UINT openFlags);
    ~CFile() override;

    operator HANDLE() const { return m_hFile; }  // NOLINT(google-explicit-constructor)

    /// False on failure, with the reason in `error` when given; GetLastError still tells it too.
    virtual BOOL Open(LPCTSTR fileName, UINT openFlags, CFileException* error = nullptr);
    /// Fewer bytes than asked for come back at the end of the file only.
    virtual UINT Read(void* buffer, UINT count);
    virtual void Write(const void* buffer, UINT count);
    virtual ULONGLONG Seek(LONGLONG offset, UINT from);
    virtual void SetLength(ULONGLONG newLength);
    virtual ULONGLONG GetLength() const;
    virtual ULONGLONG GetPosition() const;
    virtual void Flush();
    virtual void Close();
    /// Closes and ignores errors.
    virtual void Abort();

    ULONGLONG SeekToEnd() { return Seek(0, end); }
    void SeekToBegin() { Seek(0, begin); }

    /// The name without its folder, and the full path.
    virtual CString GetFileName() const;
    virtual CString GetFilePath() const;
    virtual void SetFilePath(LPCTSTR newName);

    static void PASCAL Remove(LPCTSTR fileName);

    HANDLE m_hFile;

protected:
    CString m_strFileName;
    BOOL m_bCloseOnDelete;
};

/// A file in memory that grows by steps of `growBytes`.
class CMemFile : public CFile {
    DECLARE_DYNAMIC(CMemFile)

public:
    explicit CMemFile(UINT growBytes = 1024);
    /// Over a buffer of the caller's; with growBytes 0 it cannot grow.
    CMemFile(BYTE* buffer, UINT size, UINT growBytes = 0);
    ~CMemFile() override;

    /// Gives the buffer away (free it with free()) and leaves the file empty.
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
