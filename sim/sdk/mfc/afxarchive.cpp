#include <cstring>
#include <string>
#include <type_traits>

#include "afx.h"
#include "archivemaps_.h"

namespace {

const UINT kMinBufferSize = 128;

// Markers in the length prefix of an archived string.
const BYTE kLengthFollows = 0xFF;
const WORD kWideTextFollows = 0xFFFE;
const WORD kLongLengthFollows = 0xFFFF;
const DWORD kHugeCountFollows = 0xFFFFFFFFU;

static_assert(sizeof(TCHAR) == 2, "strings are archived as UTF-16 code units");

}  // namespace

CArchive::CArchive(CFile* file, UINT mode, int bufferSize, void* /*buffer*/)
    : m_file(file),
      m_mode(mode),
      m_bufferSize(bufferSize < static_cast<int>(kMinBufferSize) ? kMinBufferSize
                                                                 : static_cast<UINT>(bufferSize)) {
    if (file == nullptr) {
        AfxThrowInvalidArgException();
    }
    m_fileName = file->GetFilePath();
    m_buffer.reset(new BYTE[m_bufferSize]);
}

CArchive::~CArchive() {
    if (m_file == nullptr || (m_mode & bNoFlushOnDelete) != 0) {
        return;
    }
    try {
        Close();
    } catch (CException* e) {
        // A destructor must not throw: whoever wants to know of a failure calls Close.
        e->Delete();
    }
}

void CArchive::requireStoring() const {
    if (!IsStoring()) {
        AfxThrowArchiveException(CArchiveException::readOnly, m_fileName.GetString());
    }
}

void CArchive::requireLoading() const {
    if (!IsLoading()) {
        AfxThrowArchiveException(CArchiveException::writeOnly, m_fileName.GetString());
    }
}

void CArchive::Close() {
    if (m_file != nullptr) {
        Flush();
        m_file = nullptr;
    }
}

void CArchive::Abort() {
    m_file = nullptr;
    m_position = 0;
    m_filled = 0;
}

void CArchive::Flush() {
    if (m_file == nullptr) {
        return;
    }
    if (IsLoading()) {
        // Seek back over what was read ahead, so that the file position is the archive's.
        if (m_position != m_filled) {
            m_file->Seek(-static_cast<LONGLONG>(m_filled - m_position), CFile::current);
        }
        m_position = 0;
        m_filled = 0;
    } else {
        const UINT count = m_position;
        m_position = 0;
        m_file->Write(m_buffer.get(), count);
        m_file->Flush();
    }
}

void CArchive::fill() {
    m_position = 0;
    m_filled = 0;
    m_filled = m_file == nullptr ? 0 : m_file->Read(m_buffer.get(), m_bufferSize);
}

UINT CArchive::Read(void* buffer, UINT count) {
    requireLoading();
    UINT done = 0;
    while (done < count) {
        if (m_position == m_filled) {
            fill();
            if (m_filled == 0) {
                break;
            }
        }
        const UINT left = m_filled - m_position;
        const UINT now = count - done < left ? count - done : left;
        std::memcpy(static_cast<BYTE*>(buffer) + done, m_buffer.get() + m_position, now);
        m_position += now;
        done += now;
    }
    return done;
}

void CArchive::EnsureRead(void* buffer, UINT count) {
    if (Read(buffer, count) != count) {
        AfxThrowArchiveException(CArchiveException::endOfFile, m_fileName.GetString());
    }
}

void CArchive::Write(const void* buffer, UINT count) {
    requireStoring();
    UINT done = 0;
    while (done < count) {
        if (m_position == m_bufferSize) {
            m_position = 0;
            m_file->Write(m_buffer.get(), m_bufferSize);
        }
        const UINT room = m_bufferSize - m_position;
        const UINT now = count - done < room ? count - done : room;
        std::memcpy(m_buffer.get() + m_position, static_cast<const BYTE*>(buffer) + done, now);
        m_position += now;
        done += now;
    }
}

// Values are little-endian on every platform.
template <typename T>
CArchive& CArchive::put(T value) {
    using Unsigned = std::make_unsigned_t<T>;
    auto rest = static_cast<unsigned long long>(static_cast<Unsigned>(value));
    BYTE bytes[sizeof(T)];
    for (BYTE& place : bytes) {
        place = static_cast<BYTE>(rest & 0xFFU);
        rest >>= 8U;
    }
    Write(bytes, sizeof bytes);
    return *this;
}

template <typename T>
CArchive& CArchive::get(T& value) {
    BYTE bytes[sizeof(T)];
    EnsureRead(bytes, sizeof bytes);
    unsigned long long whole = 0;
    for (size_t i = sizeof(T); i > 0; --i) {
        whole = (whole << 8U) | bytes[i - 1];
    }
    value = static_cast<T>(whole);
    return *this;
}

CArchive& CArchive::operator<<(BYTE value) {
    return put(value);
}
CArchive& CArchive::operator<<(WORD value) {
    return put(value);
}
CArchive& CArchive::operator<<(LONG value) {
    return put(value);
}
CArchive& CArchive::operator<<(DWORD value) {
    return put(value);
}
CArchive& CArchive::operator<<(LONGLONG value) {
    return put(value);
}
CArchive& CArchive::operator<<(ULONGLONG value) {
    return put(value);
}
CArchive& CArchive::operator<<(char value) {
    return put(static_cast<BYTE>(value));
}
CArchive& CArchive::operator<<(TCHAR value) {
    return put(static_cast<WORD>(value));
}
CArchive& CArchive::operator<<(short value) {
    return put(value);
}
CArchive& CArchive::operator<<(bool value) {
    return put(static_cast<BYTE>(value ? 1 : 0));
}

CArchive& CArchive::operator<<(float value) {
    DWORD bits = 0;
    static_assert(sizeof bits == sizeof value, "archived as its bits");
    std::memcpy(&bits, &value, sizeof bits);
    return put(bits);
}

CArchive& CArchive::operator<<(double value) {
    ULONGLONG bits = 0;
    static_assert(sizeof bits == sizeof value, "archived as its bits");
    std::memcpy(&bits, &value, sizeof bits);
    return put(bits);
}

CArchive& CArchive::operator>>(BYTE& value) {
    return get(value);
}
CArchive& CArchive::operator>>(WORD& value) {
    return get(value);
}
CArchive& CArchive::operator>>(LONG& value) {
    return get(value);
}
CArchive& CArchive::operator>>(DWORD& value) {
    return get(value);
}
CArchive& CArchive::operator>>(LONGLONG& value) {
    return get(value);
}
CArchive& CArchive::operator>>(ULONGLONG& value) {
    return get(value);
}
CArchive& CArchive::operator>>(short& value) {
    return get(value);
}

CArchive& CArchive::operator>>(char& value) {
    BYTE stored = 0;
    get(stored);
    value = static_cast<char>(stored);
    return *this;
}

CArchive& CArchive::operator>>(TCHAR& value) {
    WORD unit = 0;
    get(unit);
    value = static_cast<TCHAR>(unit);
    return *this;
}

CArchive& CArchive::operator>>(bool& value) {
    BYTE stored = 0;
    get(stored);
    value = stored != 0;
    return *this;
}

CArchive& CArchive::operator>>(float& value) {
    DWORD bits = 0;
    get(bits);
    std::memcpy(&value, &bits, sizeof bits);
    return *this;
}

CArchive& CArchive::operator>>(double& value) {
    ULONGLONG bits = 0;
    get(bits);
    std::memcpy(&value, &bits, sizeof bits);
    return *this;
}

#ifdef _WIN32
CArchive& CArchive::operator<<(int value) {
    return put(value);
}
CArchive& CArchive::operator<<(unsigned value) {
    return put(value);
}
CArchive& CArchive::operator>>(int& value) {
    return get(value);
}
CArchive& CArchive::operator>>(unsigned& value) {
    return get(value);
}
#else
CArchive& CArchive::operator<<(long long value) {
    return put(value);
}
CArchive& CArchive::operator<<(unsigned long long value) {
    return put(value);
}
CArchive& CArchive::operator>>(long long& value) {
    return get(value);
}
CArchive& CArchive::operator>>(unsigned long long& value) {
    return get(value);
}
#endif

void CArchive::WriteCount(DWORD_PTR count) {
    if (count < kLongLengthFollows) {
        *this << static_cast<WORD>(count);
        return;
    }
    *this << kLongLengthFollows;
    if (count < kHugeCountFollows) {
        *this << static_cast<DWORD>(count);
        return;
    }
    *this << kHugeCountFollows << static_cast<ULONGLONG>(count);
}

DWORD_PTR CArchive::ReadCount() {
    WORD small = 0;
    *this >> small;
    if (small != kLongLengthFollows) {
        return small;
    }
    DWORD medium = 0;
    *this >> medium;
    if (medium != kHugeCountFollows) {
        return medium;
    }
    ULONGLONG large = 0;
    *this >> large;
    return static_cast<DWORD_PTR>(large);
}

void CArchive::WriteString(LPCTSTR text) {
    for (; *text != 0; ++text) {
        *this << *text;
    }
}

BOOL CArchive::ReadString(CString& text) {
    text.Empty();
    bool any = false;
    for (;;) {
        BYTE bytes[sizeof(TCHAR)];
        const UINT count = Read(bytes, sizeof bytes);
        if (count != sizeof bytes) {
            break;
        }
        any = true;
        const auto unit = static_cast<TCHAR>(bytes[0] | bytes[1] << 8);
        if (unit == _T('\n') || unit == _T('\r')) {
            if (unit == _T('\r')) {
                Read(bytes, sizeof bytes);  // the line feed after it
            }
            break;
        }
        text.AppendChar(unit);
    }
    return any;
}

CArchive& AFXAPI operator<<(CArchive& ar, const CString& text) {
    const auto length = static_cast<DWORD>(text.GetLength());
    ar << kLengthFollows << kWideTextFollows;
    if (length < kLengthFollows) {
        ar << static_cast<BYTE>(length);
    } else if (length < kWideTextFollows) {
        ar << kLengthFollows << static_cast<WORD>(length);
    } else {
        ar << kLengthFollows << kLongLengthFollows << length;
    }
    for (DWORD i = 0; i < length; ++i) {
        ar << text.GetString()[i];
    }
    return ar;
}

namespace {

/// Reads the length prefix of a string; sets `wide` if UTF-16 code units follow instead of bytes.
ULONGLONG readTextLength(CArchive& ar, bool& wide) {
    wide = false;
    BYTE small = 0;
    ar >> small;
    if (small != kLengthFollows) {
        return small;
    }
    WORD medium = 0;
    ar >> medium;
    if (medium == kWideTextFollows) {
        wide = true;
        ar >> small;
        if (small != kLengthFollows) {
            return small;
        }
        ar >> medium;
    }
    if (medium != kLongLengthFollows) {
        return medium;
    }
    DWORD large = 0;
    ar >> large;
    if (large != kHugeCountFollows) {
        return large;
    }
    ULONGLONG huge = 0;
    ar >> huge;
    return huge;
}

}  // namespace

CArchive& AFXAPI operator>>(CArchive& ar, CString& text) {
    bool wide = false;
    ULONGLONG left = readTextLength(ar, wide);
    // Read piecewise: a corrupt length must not allocate more memory than there is data.
    const ULONGLONG piece = 0x8000;
    CString result;
    std::unique_ptr<BYTE[]> bytes(new BYTE[piece * sizeof(TCHAR)]);
    std::string narrow;
    while (left > 0) {
        const auto now = static_cast<UINT>(left < piece ? left : piece);
        if (wide) {
            ar.EnsureRead(bytes.get(), now * static_cast<UINT>(sizeof(TCHAR)));
            for (size_t i = 0; i < now; ++i) {
                result.AppendChar(static_cast<TCHAR>(bytes[2 * i] | bytes[2 * i + 1] << 8));
            }
        } else {
            ar.EnsureRead(bytes.get(), now);
            narrow.append(reinterpret_cast<const char*>(bytes.get()), now);
        }
        left -= now;
    }
    text = wide ? result : CString(narrow.data(), static_cast<int>(narrow.size()));
    return ar;
}
