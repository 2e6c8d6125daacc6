#pragma once

// CArchive: MFC's binary form of objects, little-endian, byte for byte. Include <afx.h>.
//
// Simplified: no document, no direct buffer access of the file (the archive always has a buffer of its own).

#include "afxobject_.h"

#include "cstringt.h"

#include <memory>

class CFile;

/// Stores objects in a file or loads them from one; a given archive does one or the other. What goes wrong
/// raises CArchiveException: endOfFile when the data ends too soon, badIndex, badClass and badSchema for data
/// that no archive wrote, readOnly and writeOnly for the wrong direction.
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

    /// The schema number of the object being read; callable once, from Serialize. -1 when there is none.
    UINT GetObjectSchema();
    void SetObjectSchema(UINT schema) { m_objectSchema = schema; }

    /// Fewer bytes than asked for come back at the end of the file only.
    UINT Read(void* buffer, UINT count);
    void EnsureRead(void* buffer, UINT count);
    void Write(const void* buffer, UINT count);
    void Flush();
    void Close();
    /// Ends the archive without writing what is buffered.
    void Abort();

    void WriteString(LPCTSTR text);
    /// A line without its end; false when there is none left.
    BOOL ReadString(CString& text);

    /// Counts of collections: 16 bits below FFFF, else FFFF and 32 bits below FFFFFFFF, else that and 64
    /// bits.
    void WriteCount(DWORD_PTR count);
    DWORD_PTR ReadCount();

    /// Objects with their class; an object met twice is stored once and loaded once.
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
    // LONG and DWORD are long there.
    CArchive& operator<<(int value);
    CArchive& operator<<(unsigned value);
#else
    // LONGLONG and ULONGLONG are long here.
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
    UINT m_position = 0;  ///< Next byte to read, or end of what is written.
    UINT m_filled = 0;    ///< End of what was read ahead.
    UINT m_objectSchema = 0xFFFFFFFFU;
    std::unique_ptr<Maps> m_maps;
};

CArchive& AFXAPI operator<<(CArchive& ar, const CObject* object);
CArchive& AFXAPI operator>>(CArchive& ar, CObject*& object);
/// FF FFFE, the length in one, three or seven bytes, then the UTF-16 units. Reading takes narrow strings too.
CArchive& AFXAPI operator<<(CArchive& ar, const CString& text);
CArchive& AFXAPI operator>>(CArchive& ar, CString& text);
