#pragma once

// CString: a UTF-16 string with a shared, reference-counted buffer. Include <afx.h>.
//
// Simplified: the wide string only; buffers come from the C heap (no IAtlStringMgr); case mapping for ASCII
// letters only (as MFC in the C locale); Format takes no resource ids.

#include "afxdefs_.h"

#include <cstdarg>

/// The header before the characters in a CString's buffer.
struct CStringData {
    long nRefs;        ///< Reference count; negative for the static empty string.
    int nDataLength;   ///< Length in characters, without the terminator.
    int nAllocLength;  ///< Capacity in characters, without the terminator.

    TCHAR* data() { return reinterpret_cast<TCHAR*>(this + 1); }
};

/// A string. Copies share the buffer until one of them is modified. The reference count is atomic, so copies
/// may be used on different threads; a single object may not be modified on one thread while another uses it.
///
/// The object is a single pointer to the terminated characters. Only Microsoft's compiler lets it be passed
/// through "...": pass `text.GetString()` to Format and similar functions.
class CStringW {
public:
    typedef TCHAR XCHAR;
    typedef LPTSTR PXSTR;
    typedef LPCTSTR PCXSTR;

    CStringW() noexcept;
    CStringW(const CStringW& other) noexcept;
    CStringW(CStringW&& other) noexcept;
    CStringW(LPCTSTR text);  // NOLINT(google-explicit-constructor): implicit in MFC too
    CStringW(LPCTSTR characters, int length);
    explicit CStringW(TCHAR character, int repeat = 1);
    /// Converts from the ANSI code page.
    explicit CStringW(const char* text);
    CStringW(const char* characters, int length);
    ~CStringW();

    CStringW& operator=(const CStringW& other) noexcept;
    CStringW& operator=(CStringW&& other) noexcept;
    CStringW& operator=(LPCTSTR text);
    CStringW& operator=(TCHAR character);
    CStringW& operator=(const char* text);

    int GetLength() const noexcept { return header()->nDataLength; }
    bool IsEmpty() const noexcept { return GetLength() == 0; }
    int GetAllocLength() const noexcept { return header()->nAllocLength; }
    /// The terminated characters; valid until the string is changed or destroyed.
    LPCTSTR GetString() const noexcept { return m_pszData; }
    operator LPCTSTR() const noexcept { return m_pszData; }  // NOLINT(google-explicit-constructor)

    /// Valid indexes are 0 to the length, which is the terminator's; others throw CInvalidArgException.
    TCHAR GetAt(int index) const;
    TCHAR operator[](int index) const { return GetAt(index); }
    void SetAt(int index, TCHAR character);
    void SetString(LPCTSTR text);
    void SetString(LPCTSTR characters, int length);
    void Empty() noexcept;

    CStringW& operator+=(const CStringW& text);
    CStringW& operator+=(LPCTSTR text);
    CStringW& operator+=(TCHAR character);
    void Append(LPCTSTR text);
    void Append(LPCTSTR characters, int length);
    void AppendChar(TCHAR character);

    // Comparing (the operators too) and searching stop at an embedded zero, as the C functions that MFC calls
    // for them do.

    int Compare(LPCTSTR text) const noexcept;
    int CompareNoCase(LPCTSTR text) const noexcept;

    /// The index of the first occurrence at or after `start`, or -1. A text beyond an embedded zero is not
    /// found, unless `start` is beyond it too. Searching for a zero finds the next one, be it the terminator.
    int Find(LPCTSTR text, int start = 0) const noexcept;
    int Find(TCHAR character, int start = 0) const noexcept;
    int ReverseFind(TCHAR character) const noexcept;
    int FindOneOf(LPCTSTR characters) const noexcept;

    CStringW Left(int count) const;
    CStringW Right(int count) const;
    CStringW Mid(int first) const;
    CStringW Mid(int first, int count) const;
    CStringW SpanIncluding(LPCTSTR characters) const;
    CStringW SpanExcluding(LPCTSTR characters) const;
    /// The next token between separators; `start` becomes -1 if there is none.
    CStringW Tokenize(LPCTSTR separators, int& start) const;

    CStringW& MakeLower();
    CStringW& MakeUpper();
    CStringW& MakeReverse();
    /// Remove white space, the character, or any of the characters.
    CStringW& Trim();
    CStringW& Trim(TCHAR character);
    CStringW& Trim(LPCTSTR characters);
    CStringW& TrimLeft();
    CStringW& TrimLeft(TCHAR character);
    CStringW& TrimLeft(LPCTSTR characters);
    CStringW& TrimRight();
    CStringW& TrimRight(TCHAR character);
    CStringW& TrimRight(LPCTSTR characters);

    /// Return the number of replacements or removals.
    int Replace(TCHAR oldCharacter, TCHAR newCharacter);
    int Replace(LPCTSTR oldText, LPCTSTR newText);
    int Remove(TCHAR character);
    /// Return the new length.
    int Insert(int index, TCHAR character);
    int Insert(int index, LPCTSTR text);
    int Delete(int index, int count = 1);

    void Format(LPCTSTR format, ...);
    void AppendFormat(LPCTSTR format, ...);
    void FormatV(LPCTSTR format, va_list arguments);
    void AppendFormatV(LPCTSTR format, va_list arguments);

    /// A writable, unshared buffer; call ReleaseBuffer after writing. Length -1: up to the terminator.
    LPTSTR GetBuffer();
    LPTSTR GetBuffer(int minLength);
    LPTSTR GetBufferSetLength(int length);
    void ReleaseBuffer(int newLength = -1);
    void ReleaseBufferSetLength(int newLength);
    void Preallocate(int length);
    void FreeExtra();

private:
    CStringData* header() const noexcept { return reinterpret_cast<CStringData*>(m_pszData) - 1; }
    void attach(CStringData* data) noexcept { m_pszData = data->data(); }
    void release() noexcept;
    /// Makes the buffer unshared, with room for at least `capacity` characters; keeps the contents.
    LPTSTR writable(int capacity);
    void setLength(int length) noexcept;

    LPTSTR m_pszData;
};

typedef CStringW CString;

CString operator+(const CString& a, const CString& b);
CString operator+(const CString& a, LPCTSTR b);
CString operator+(LPCTSTR a, const CString& b);
CString operator+(const CString& a, TCHAR b);
CString operator+(TCHAR a, const CString& b);

inline bool operator==(const CString& a, const CString& b) noexcept {
    return a.GetString() == b.GetString() || a.Compare(b.GetString()) == 0;
}
inline bool operator==(const CString& a, LPCTSTR b) noexcept {
    return a.Compare(b) == 0;
}
inline bool operator==(LPCTSTR a, const CString& b) noexcept {
    return b.Compare(a) == 0;
}
inline bool operator!=(const CString& a, const CString& b) noexcept {
    return !(a == b);
}
inline bool operator!=(const CString& a, LPCTSTR b) noexcept {
    return a.Compare(b) != 0;
}
inline bool operator!=(LPCTSTR a, const CString& b) noexcept {
    return b.Compare(a) != 0;
}
inline bool operator<(const CString& a, const CString& b) noexcept {
    return a.Compare(b.GetString()) < 0;
}
inline bool operator<(const CString& a, LPCTSTR b) noexcept {
    return a.Compare(b) < 0;
}
inline bool operator<(LPCTSTR a, const CString& b) noexcept {
    return b.Compare(a) > 0;
}
inline bool operator>(const CString& a, const CString& b) noexcept {
    return a.Compare(b.GetString()) > 0;
}
inline bool operator>(const CString& a, LPCTSTR b) noexcept {
    return a.Compare(b) > 0;
}
inline bool operator>(LPCTSTR a, const CString& b) noexcept {
    return b.Compare(a) < 0;
}
inline bool operator<=(const CString& a, const CString& b) noexcept {
    return !(a > b);
}
inline bool operator<=(const CString& a, LPCTSTR b) noexcept {
    return !(a > b);
}
inline bool operator<=(LPCTSTR a, const CString& b) noexcept {
    return !(a > b);
}
inline bool operator>=(const CString& a, const CString& b) noexcept {
    return !(a < b);
}
inline bool operator>=(const CString& a, LPCTSTR b) noexcept {
    return !(a < b);
}
inline bool operator>=(LPCTSTR a, const CString& b) noexcept {
    return !(a < b);
}

/// Sets `text` to the formatted text, by the rules of Windows' wide printf on every platform: %s, %c and %ls
/// are wide, %S, %C and %hs narrow (ANSI code page); `l` means 32 bits, `ll`, `j` and `I64` 64 bits, `I`, `z`
/// and `t` the size of a pointer; %p is sixteen upper-case hexadecimal digits; a null string is formatted as
/// "(null)". %n writes nothing, and the decimal point is a full stop in every locale.
void AFXAPI AfxFormatV(CString& text, LPCTSTR format, va_list arguments);
