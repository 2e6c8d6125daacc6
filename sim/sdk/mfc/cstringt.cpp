#include "cstringt.h"

#include <atomic>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "afx.h"
#include "cstringchars_.h"

using namespace cstring;

namespace {

// CStringData declares the reference count as a plain long, as the documented structure does. Every access
// goes through this function.
std::atomic<long>& references(CStringData* data) {
    static_assert(sizeof(std::atomic<long>) == sizeof(long),
                  "the reference count is used as an atomic in place");
    return *reinterpret_cast<std::atomic<long>*>(&data->nRefs);
}

bool isNil(CStringData* data) {
    return references(data).load(std::memory_order_relaxed) < 0;
}

bool isOwnedOnce(CStringData* data) {
    return references(data).load(std::memory_order_acquire) == 1;
}

// All empty strings share this buffer, which is never freed.
struct NilText {
    CStringData header = {-1, 0, 0};
    TCHAR terminator = 0;
};
static_assert(offsetof(NilText, terminator) == sizeof(CStringData),
              "data() of the nil string must be its terminator");

CStringData* nil() {
    static NilText text;
    return &text.header;
}

// A new buffer with a reference count of 1, the length set and the terminator written; the characters are not
// initialized.
CStringData* allocate(int capacity, int length) {
    if (capacity < 0 || capacity > INT_MAX / 2 || length < 0) {
        AfxThrowInvalidArgException();
    }
    const size_t bytes = sizeof(CStringData) + (static_cast<size_t>(capacity) + 1) * sizeof(TCHAR);
    void* memory = std::malloc(bytes);
    if (memory == nullptr) {
        AfxThrowMemoryException();
    }
    auto* data = ::new (memory) CStringData{1, length, capacity};
    data->data()[length] = 0;
    return data;
}

}  // namespace

CStringW::CStringW() noexcept {
    attach(nil());
}

CStringW::CStringW(const CStringW& other) noexcept : m_pszData(other.m_pszData) {
    if (!isNil(header())) {
        references(header()).fetch_add(1, std::memory_order_relaxed);
    }
}

CStringW::CStringW(CStringW&& other) noexcept : m_pszData(other.m_pszData) {
    other.attach(nil());
}

CStringW::CStringW(LPCTSTR text) {
    attach(nil());
    SetString(text);
}

CStringW::CStringW(LPCTSTR characters, int length) {
    attach(nil());
    SetString(characters, length);
}

CStringW::CStringW(TCHAR character, int repeat) {
    attach(nil());
    if (repeat > 0) {
        Traits::assign(GetBufferSetLength(repeat), static_cast<size_t>(repeat), character);
    }
}

CStringW::CStringW(const char* text)
    : CStringW(text, text == nullptr ? 0 : static_cast<int>(std::strlen(text))) {}

CStringW::CStringW(const char* characters, int length) {
    attach(nil());
    if (characters == nullptr || length <= 0) {
        return;
    }
    const int needed = MultiByteToWideChar(CP_ACP, 0, characters, length, nullptr, 0);
    if (needed > 0) {
        MultiByteToWideChar(CP_ACP, 0, characters, length, GetBufferSetLength(needed), needed);
    }
}

CStringW::~CStringW() {
    release();
}

void CStringW::release() noexcept {
    CStringData* data = header();
    if (!isNil(data) && references(data).fetch_sub(1, std::memory_order_acq_rel) == 1) {
        std::free(data);
    }
}

CStringW& CStringW::operator=(const CStringW& other) noexcept {
    if (m_pszData != other.m_pszData) {
        CStringW copy(other);
        std::swap(m_pszData, copy.m_pszData);
    }
    return *this;
}

CStringW& CStringW::operator=(CStringW&& other) noexcept {
    std::swap(m_pszData, other.m_pszData);
    return *this;
}

CStringW& CStringW::operator=(LPCTSTR text) {
    SetString(text);
    return *this;
}

CStringW& CStringW::operator=(TCHAR character) {
    SetString(&character, 1);
    return *this;
}

CStringW& CStringW::operator=(const char* text) {
    return *this = CStringW(text);
}

LPTSTR CStringW::writable(int capacity) {
    CStringData* data = header();
    const bool own = isOwnedOnce(data);
    if (own && data->nAllocLength >= capacity) {
        return m_pszData;
    }
    const int length = data->nDataLength;
    if (capacity < length) {
        capacity = length;
    }
    if (own && capacity > 16) {
        // Grow by half, so that appending piece by piece is amortized linear.
        const int more = length / 2 < INT_MAX / 2 - capacity ? length / 2 : 0;
        capacity += more;
    }
    CStringData* fresh = allocate(capacity, length);
    Traits::copy(fresh->data(), m_pszData, static_cast<size_t>(length));
    release();
    attach(fresh);
    return m_pszData;
}

void CStringW::setLength(int length) noexcept {
    header()->nDataLength = length;
    m_pszData[length] = 0;
}

TCHAR CStringW::GetAt(int index) const {
    if (index < 0 || index > GetLength()) {
        AfxThrowInvalidArgException();
    }
    return m_pszData[index];
}

void CStringW::SetAt(int index, TCHAR character) {
    if (index < 0 || index >= GetLength()) {
        AfxThrowInvalidArgException();
    }
    writable(GetLength())[index] = character;
}

void CStringW::SetString(LPCTSTR text) {
    SetString(text, lengthOf(text));
}

void CStringW::SetString(LPCTSTR characters, int length) {
    if (length < 0 || (characters == nullptr && length > 0)) {
        AfxThrowInvalidArgException();
    }
    if (length == 0) {
        Empty();
        return;
    }
    if (characters >= m_pszData && characters <= m_pszData + GetLength()) {
        // The characters are part of this string.
        *this = CStringW(characters, length);
        return;
    }
    CStringData* data = header();
    const bool own = isOwnedOnce(data);
    if (!own || data->nAllocLength < length) {
        CStringData* fresh = allocate(length, length);
        release();
        attach(fresh);
    }
    Traits::copy(m_pszData, characters, static_cast<size_t>(length));
    setLength(length);
}

void CStringW::Empty() noexcept {
    release();
    attach(nil());
}

CStringW& CStringW::operator+=(const CStringW& text) {
    if (IsEmpty()) {
        return *this = text;
    }
    Append(text.m_pszData, text.GetLength());
    return *this;
}

CStringW& CStringW::operator+=(LPCTSTR text) {
    Append(text, lengthOf(text));
    return *this;
}

CStringW& CStringW::operator+=(TCHAR character) {
    AppendChar(character);
    return *this;
}

void CStringW::Append(LPCTSTR text) {
    Append(text, lengthOf(text));
}

void CStringW::Append(LPCTSTR characters, int length) {
    if (length < 0 || (characters == nullptr && length > 0)) {
        AfxThrowInvalidArgException();
    }
    const int oldLength = GetLength();
    if (length > INT_MAX / 2 - oldLength) {
        AfxThrowMemoryException();
    }
    // The characters may be part of this string, whose buffer moves when it grows.
    const bool inside = characters >= m_pszData && characters <= m_pszData + oldLength;
    const std::ptrdiff_t offset = inside ? characters - m_pszData : 0;
    LPTSTR buffer = writable(oldLength + length);
    Traits::copy(buffer + oldLength, inside ? buffer + offset : characters, static_cast<size_t>(length));
    setLength(oldLength + length);
}

void CStringW::AppendChar(TCHAR character) {
    Append(&character, 1);
}

int CStringW::Compare(LPCTSTR text) const noexcept {
    LPCTSTR a = m_pszData;
    LPCTSTR b = text == nullptr ? nil()->data() : text;
    while (*a != 0 && *a == *b) {
        ++a;
        ++b;
    }
    return *a < *b ? -1 : (*a > *b ? 1 : 0);
}

int CStringW::CompareNoCase(LPCTSTR text) const noexcept {
    LPCTSTR a = m_pszData;
    LPCTSTR b = text == nullptr ? nil()->data() : text;
    while (*a != 0 && lower(*a) == lower(*b)) {
        ++a;
        ++b;
    }
    return lower(*a) < lower(*b) ? -1 : (lower(*a) > lower(*b) ? 1 : 0);
}

int CStringW::Find(LPCTSTR text, int start) const noexcept {
    if (text == nullptr || start < 0 || start > GetLength()) {
        return -1;
    }
    const std::basic_string_view<TCHAR> searched(m_pszData + start);
    const size_t found = searched.find(text);
    return found == std::basic_string_view<TCHAR>::npos ? -1 : start + static_cast<int>(found);
}

int CStringW::Find(TCHAR character, int start) const noexcept {
    if (start < 0 || start >= GetLength()) {
        return -1;
    }
    // With the terminator: as wcschr, it finds that too.
    const LPCTSTR begin = m_pszData + start;
    const TCHAR* const found = Traits::find(begin, static_cast<size_t>(lengthOf(begin)) + 1, character);
    return found == nullptr ? -1 : static_cast<int>(found - m_pszData);
}

int CStringW::ReverseFind(TCHAR character) const noexcept {
    for (int i = lengthOf(m_pszData) - 1; i >= 0; --i) {
        if (m_pszData[i] == character) {
            return i;
        }
    }
    return -1;
}

int CStringW::FindOneOf(LPCTSTR characters) const noexcept {
    for (int i = 0; m_pszData[i] != 0; ++i) {
        if (isOneOf(m_pszData[i], characters)) {
            return i;
        }
    }
    return -1;
}

CStringW CStringW::Left(int count) const {
    return Mid(0, count);
}

CStringW CStringW::Right(int count) const {
    if (count < 0) {
        count = 0;
    }
    return count >= GetLength() ? *this : Mid(GetLength() - count, count);
}

CStringW CStringW::Mid(int first) const {
    return Mid(first, GetLength());
}

CStringW CStringW::Mid(int first, int count) const {
    if (first < 0) {
        first = 0;
    }
    if (count < 0) {
        count = 0;
    }
    if (first > GetLength()) {
        first = GetLength();
    }
    if (count > GetLength() - first) {
        count = GetLength() - first;
    }
    return first == 0 && count == GetLength() ? *this : CStringW(m_pszData + first, count);
}

void CStringW::Format(LPCTSTR format, ...) {
    va_list arguments;
    va_start(arguments, format);
    FormatV(format, arguments);
    va_end(arguments);
}

void CStringW::AppendFormat(LPCTSTR format, ...) {
    va_list arguments;
    va_start(arguments, format);
    AppendFormatV(format, arguments);
    va_end(arguments);
}

void CStringW::FormatV(LPCTSTR format, va_list arguments) {
    AfxFormatV(*this, format, arguments);
}

void CStringW::AppendFormatV(LPCTSTR format, va_list arguments) {
    CStringW text;
    AfxFormatV(text, format, arguments);
    *this += text;
}

LPTSTR CStringW::GetBuffer() {
    return writable(GetLength());
}

LPTSTR CStringW::GetBuffer(int minLength) {
    if (minLength < 0) {
        AfxThrowInvalidArgException();
    }
    return writable(minLength > GetLength() ? minLength : GetLength());
}

LPTSTR CStringW::GetBufferSetLength(int length) {
    LPTSTR buffer = GetBuffer(length);
    setLength(length);
    return buffer;
}

void CStringW::ReleaseBuffer(int newLength) {
    if (newLength == -1) {
        const TCHAR* end = Traits::find(m_pszData, static_cast<size_t>(GetAllocLength()), TCHAR(0));
        newLength = end == nullptr ? GetAllocLength() : static_cast<int>(end - m_pszData);
    }
    ReleaseBufferSetLength(newLength);
}

void CStringW::ReleaseBufferSetLength(int newLength) {
    if (newLength < 0 || newLength > GetAllocLength()) {
        AfxThrowInvalidArgException();
    }
    if (!isNil(header())) {
        setLength(newLength);
    }
}

void CStringW::Preallocate(int length) {
    writable(length);
}

void CStringW::FreeExtra() {
    if (GetAllocLength() > GetLength()) {
        *this = CStringW(m_pszData, GetLength());
    }
}

CString operator+(const CString& a, const CString& b) {
    CString result;
    result.Preallocate(a.GetLength() + b.GetLength());
    result.Append(a.GetString(), a.GetLength());
    result.Append(b.GetString(), b.GetLength());
    return result;
}

CString operator+(const CString& a, LPCTSTR b) {
    CString result(a);
    result += b;
    return result;
}

CString operator+(LPCTSTR a, const CString& b) {
    CString result(a);
    result.Append(b.GetString(), b.GetLength());
    return result;
}

CString operator+(const CString& a, TCHAR b) {
    CString result(a);
    result += b;
    return result;
}

CString operator+(TCHAR a, const CString& b) {
    CString result(a);
    result.Append(b.GetString(), b.GetLength());
    return result;
}
