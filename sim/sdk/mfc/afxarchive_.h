#pragma once

// CArchive: MFC's binary serialization format, little-endian, byte for byte. Include <afx.h>.
//
// Simplified: no document, and the archive always has its own buffer (no direct access to a CMemFile's, and
// the constructor ignores the caller's).

#include "afxobject_.h"

#include "cstringt.h"

#include <memory>

class CFile;

/// Stores objects in a file or loads them from one; one archive does one or the other. Errors throw
/// CArchiveException: endOfFile for truncated data, badIndex, badClass and badSchema for corrupt data,
/// readOnly and writeOnly for an operation in the wrong direction.
class CArchive {
public:
    enum Mode : UINT { store = 0, load = 1, bNoFlushOnDelete = 2, bNoByteSwap = 4 };

    CArchive(CFile* file, UINT mode, int bufferSize = 4096, void* buffer = nullptr);
    /// Closes, unless bNoFlushOnDelete was given.
    ~CArchive();
    CArchive(const CArchive&) = delete;
    CArchive& operator=(const CArchive&) = delete;

    BOOL IsLoading() const { return (m_mode & load) != 0; }
    BOOL IsStoring() const { return (m_mode & load) == 0; }
    CFile* GetFile() const { return m_file; }

    /// The schema number of the object being read. To be called once, from Serialize; the next call returns
    /// -1.
    UINT GetObjectSchema();
    void SetObjectSchema(UINT schema) { m_objectSchema = schema; }

    /// Returns the number of bytes read; fewer than requested only at the end of the file.
    UINT Read(void* buffer, UINT count);
    void EnsureRead(void* buffer, UINT count);
    void Write(const void* buffer, UINT count);
    void Flush();
    void Close();
    /// Detaches the archive from the file and discards the buffer.
    void Abort();

    void WriteString(LPCTSTR text);
    /// Reads a line without its terminator; false at the end of the data.
    BOOL ReadString(CString& text);

    /// The element count of a collection: 16 bits if below FFFF; else FFFF and 32 bits if below FFFFFFFF;
    /// else FFFF, FFFFFFFF and 64 bits.
    void WriteCount(DWORD_PTR count);
    DWORD_PTR ReadCount();

    /// Objects with their class. An object that is referenced several times is stored once and loaded once.
    void WriteObject(const CObject* object);
    CObject* ReadObject(const CRuntimeClass* requestedClass);
    void MapObject(const CObject* object);
    void WriteClass(const CRuntimeClass* runtimeClass);
    CRuntimeClass* ReadClass(const CRuntimeClass* requestedClass = nullptr, UINT* schema = nullptr,
                             DWORD* objectTag = nullptr);
    void SerializeClass(const CRuntimeClass* runtimeClass);

    CArchive& operator<<(BYTE value);
    CArchive& operator<<(WORD value);
    CArchive& operator<<(LONG value);
    CArchive& operator<<(DWORD value);
    CArchive& operator<<(float value);
    CArchive& operator<<(double value);
    CArchive& operator<<(LONGLONG value);
    CArchive& operator<<(ULONGLONG value);
    CArchive& operator<<(char value);
    CArchive& operator<<(TCHAR value);
    CArchive& operator<<(short value);
    CArchive& operator<<(bool value);
#ifdef _WIN32
    // LONG and DWORD are long on Windows, so int and unsigned need their own overloads.
    CArchive& operator<<(int value);
    CArchive& operator<<(unsigned value);
#else
    // LONGLONG and ULONGLONG are long on Linux, so long long needs its own overloads.
    CArchive& operator<<(long long value);
    CArchive& operator<<(unsigned long long value);
#endif

    CArchive& operator>>(BYTE& value);
    CArchive& operator>>(WORD& value);
    CArchive& operator>>(LONG& value);
    CArchive& operator>>(DWORD& value);
    CArchive& operator>>(float& value);
    CArchive& operator>>(double& value);
    CArchive& operator>>(LONGLONG& value);
    CArchive& operator>>(ULONGLONG& value);
    CArchive& operator>>(char& value);
    CArchive& operator>>(TCHAR& value);
    CArchive& operator>>(short& value);
    CArchive& operator>>(bool& value);
#ifdef _WIN32
    CArchive& operator>>(int& value);
    CArchive& operator>>(unsigned& value);
#else
    CArchive& operator>>(long long& value);
    CArchive& operator>>(unsigned long long& value);
#endif

private:
    struct Maps;

    template <typename T>
    CArchive& put(T value);
    template <typename T>
    CArchive& get(T& value);
    Maps& maps();
    void fill();
    void requireStoring() const;
    void requireLoading() const;

    CFile* m_file;
    UINT m_mode;
    CString m_fileName;
    std::unique_ptr<BYTE[]> m_buffer;
    UINT m_bufferSize;
    UINT m_position = 0;  ///< The next byte in the buffer to read or write.
    UINT m_filled = 0;    ///< The end of the data read ahead.
    UINT m_objectSchema = 0xFFFFFFFFU;
    std::unique_ptr<Maps> m_maps;
};

CArchive& AFXAPI operator<<(CArchive& ar, const CObject* object);
CArchive& AFXAPI operator>>(CArchive& ar, CObject*& object);
/// Writes FF FFFE, the length in one, three or seven bytes, and the UTF-16 code units. Reading accepts narrow
/// strings too.
CArchive& AFXAPI operator<<(CArchive& ar, const CString& text);
CArchive& AFXAPI operator>>(CArchive& ar, CString& text);
