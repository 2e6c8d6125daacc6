#include <string_view>
#include <utility>

#include "cstringchars_.h"

// CString: extracting parts and editing in place.

using namespace cstring;

CStringW CStringW::SpanIncluding(LPCTSTR characters) const {
    int length = 0;
    while (isOneOf(m_pszData[length], characters)) {
        ++length;
    }
    return Left(length);
}

CStringW CStringW::SpanExcluding(LPCTSTR characters) const {
    int length = 0;
    while (length < GetLength() && !isOneOf(m_pszData[length], characters)) {
        ++length;
    }
    return Left(length);
}

CStringW CStringW::Tokenize(LPCTSTR separators, int& start) const {
    if (start < 0) {
        AfxThrowInvalidArgException();
    }
    int first = start;
    while (first < GetLength() && isOneOf(m_pszData[first], separators)) {
        ++first;
    }
    if (first >= GetLength()) {
        start = -1;
        return {};
    }
    int last = first;
    while (last < GetLength() && !isOneOf(m_pszData[last], separators)) {
        ++last;
    }
    start = last < GetLength() ? last + 1 : last;
    return Mid(first, last - first);
}

CStringW& CStringW::MakeLower() {
    LPTSTR buffer = writable(GetLength());
    for (int i = 0; i < GetLength(); ++i) {
        buffer[i] = lower(buffer[i]);
    }
    return *this;
}

CStringW& CStringW::MakeUpper() {
    LPTSTR buffer = writable(GetLength());
    for (int i = 0; i < GetLength(); ++i) {
        buffer[i] = upper(buffer[i]);
    }
    return *this;
}

CStringW& CStringW::MakeReverse() {
    LPTSTR buffer = writable(GetLength());
    for (int i = 0, j = GetLength() - 1; i < j; ++i, --j) {
        std::swap(buffer[i], buffer[j]);
    }
    return *this;
}

CStringW& CStringW::Trim() {
    return TrimRight().TrimLeft();
}
CStringW& CStringW::Trim(TCHAR character) {
    return TrimRight(character).TrimLeft(character);
}
CStringW& CStringW::Trim(LPCTSTR characters) {
    return TrimRight(characters).TrimLeft(characters);
}

CStringW& CStringW::TrimLeft() {
    int count = 0;
    while (count < GetLength() && isSpace(m_pszData[count])) {
        ++count;
    }
    return *this = Mid(count);
}

CStringW& CStringW::TrimLeft(TCHAR character) {
    const TCHAR characters[] = {character, 0};
    return TrimLeft(characters);
}

CStringW& CStringW::TrimLeft(LPCTSTR characters) {
    int count = 0;
    while (count < GetLength() && isOneOf(m_pszData[count], characters)) {
        ++count;
    }
    return *this = Mid(count);
}

CStringW& CStringW::TrimRight() {
    int length = GetLength();
    while (length > 0 && isSpace(m_pszData[length - 1])) {
        --length;
    }
    return *this = Left(length);
}

CStringW& CStringW::TrimRight(TCHAR character) {
    const TCHAR characters[] = {character, 0};
    return TrimRight(characters);
}

CStringW& CStringW::TrimRight(LPCTSTR characters) {
    int length = GetLength();
    while (length > 0 && isOneOf(m_pszData[length - 1], characters)) {
        --length;
    }
    return *this = Left(length);
}

int CStringW::Replace(TCHAR oldCharacter, TCHAR newCharacter) {
    int count = 0;
    if (oldCharacter != newCharacter) {
        for (int i = 0; i < GetLength(); ++i) {
            if (m_pszData[i] == oldCharacter) {
                writable(GetLength())[i] = newCharacter;
                ++count;
            }
        }
    }
    return count;
}

int CStringW::Replace(LPCTSTR oldText, LPCTSTR newText) {
    const int oldLength = lengthOf(oldText);
    if (oldLength == 0) {
        return 0;
    }
    const int newLength = lengthOf(newText);
    CStringW result;
    int count = 0;
    int done = 0;
    // Unlike Find, this goes on behind embedded zeros.
    const std::basic_string_view<TCHAR> whole(m_pszData, static_cast<size_t>(GetLength()));
    for (size_t found = whole.find(oldText); found != whole.npos;
         found = whole.find(oldText, static_cast<size_t>(done))) {
        result.Append(m_pszData + done, static_cast<int>(found) - done);
        result.Append(newText, newLength);
        done = static_cast<int>(found) + oldLength;
        ++count;
    }
    if (count > 0) {
        result.Append(m_pszData + done, GetLength() - done);
        *this = std::move(result);
    }
    return count;
}

int CStringW::Remove(TCHAR character) {
    const TCHAR old[] = {character, 0};
    return character == 0 ? 0 : Replace(old, nullptr);
}

int CStringW::Insert(int index, TCHAR character) {
    const TCHAR text[] = {character, 0};
    return Insert(index, text);
}

int CStringW::Insert(int index, LPCTSTR text) {
    index = index < 0 ? 0 : (index > GetLength() ? GetLength() : index);
    CStringW result = Left(index);
    result += text;
    result.Append(m_pszData + index, GetLength() - index);
    *this = std::move(result);
    return GetLength();
}

int CStringW::Delete(int index, int count) {
    index = index < 0 ? 0 : index;
    if (index < GetLength() && count > 0) {
        CStringW result = Left(index);
        if (count < GetLength() - index) {
            result.Append(m_pszData + index + count, GetLength() - index - count);
        }
        *this = std::move(result);
    }
    return GetLength();
}
