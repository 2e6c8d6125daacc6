#include <objbase.h>
#include <tchar.h>
#include <windows.h>
#include <wininet.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <set>
#include <string>

namespace {

template <typename... Arguments>
std::u16string formatted(const TCHAR* format, Arguments... arguments) {
    TCHAR buffer[256];
    EXPECT_EQ(_stprintf_s(buffer, format, arguments...), _sctprintf(format, arguments...));
    return buffer;
}

/// A listening socket on a free loopback port.
class Listener {
public:
    Listener() : m_socket(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        EXPECT_EQ(bind(m_socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
        EXPECT_EQ(listen(m_socket, 4), 0);
        socklen_t size = sizeof address;
        EXPECT_EQ(getsockname(m_socket, reinterpret_cast<sockaddr*>(&address), &size), 0);
        m_port = ntohs(address.sin_port);
    }
    ~Listener() { stop(); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void stop() {
        if (m_socket >= 0) {
            close(m_socket);
        }
        m_socket = -1;
    }
    std::u16string url(const std::u16string& host = u"127.0.0.1") const {
        const std::string port = std::to_string(m_port);
        return u"http://" + host + u":" + std::u16string(port.begin(), port.end());
    }

private:
    int m_socket;
    unsigned m_port = 0;
};

}  // namespace

TEST(Connectivity, ListeningPortIsReachable) {
    const Listener listener;
    EXPECT_TRUE(InternetCheckConnectionW(listener.url().c_str(), FLAG_ICC_FORCE_CONNECTION, 0));
    EXPECT_TRUE(InternetCheckConnectionW((listener.url(u"localhost") + u"/path?x=1").c_str(),
                                         FLAG_ICC_FORCE_CONNECTION, 0));
}

TEST(Connectivity, ClosedPortIsNotReachable) {
    Listener listener;
    listener.stop();
    SetLastError(0);
    EXPECT_FALSE(InternetCheckConnectionW(listener.url().c_str(), FLAG_ICC_FORCE_CONNECTION, 0));
    EXPECT_EQ(GetLastError(), ERROR_NOT_CONNECTED);
}

TEST(Connectivity, MalformedUrlIsNotReachable) {
    for (const TCHAR* url : {u"", u"127.0.0.1", u"http://", u"http://[::1", u"http://127.0.0.1:notaport"}) {
        SetLastError(0);
        EXPECT_FALSE(InternetCheckConnectionW(url, FLAG_ICC_FORCE_CONNECTION, 0));
        EXPECT_EQ(GetLastError(), ERROR_NOT_CONNECTED);
    }
}

TEST(ConnectivityDeathTest, UnforcedCheckIsNotSupported) {
    EXPECT_DEATH(InternetCheckConnectionW(u"http://127.0.0.1", 0, 0), "InternetCheckConnection");
}

TEST(Guids, AreUniqueVersion4Guids) {
    std::set<std::string> seen;
    for (int i = 0; i < 100; ++i) {
        GUID guid;
        ASSERT_TRUE(SUCCEEDED(CoCreateGuid(&guid)));
        EXPECT_EQ(guid.Data3 >> 12, 4);
        EXPECT_EQ(guid.Data4[0] >> 6, 2);
        seen.insert(std::string(reinterpret_cast<const char*>(&guid), sizeof guid));
    }
    EXPECT_EQ(seen.size(), 100U);
    EXPECT_TRUE(FAILED(CoCreateGuid(nullptr)));
}

TEST(Format, HexadecimalFieldsAreZeroPadded) {
    EXPECT_EQ(formatted(_T("%08X-%04X-%02X"), 0xABCU, 0x1FU, 0x7U), u"00000ABC-001F-07");
}

TEST(Format, StringsAreWideUnlessMarkedNarrow) {
    EXPECT_EQ(formatted(_T("【%s】%hs|%S|%ls"), _T("命令"), "窄", "窄", _T("宽")), u"【命令】窄|窄|宽");
    EXPECT_EQ(formatted(_T("[%5s][%-5s][%.2s]"), _T("ab"), _T("ab"), _T("abc")), u"[   ab][ab   ][ab]");
    EXPECT_EQ(formatted(_T("%s"), static_cast<const TCHAR*>(nullptr)), u"(null)");
    EXPECT_EQ(formatted(_T("%c%%"), u'字'), u"字%");
}

TEST(Format, NumbersHaveTheirWindowsSizes) {
    EXPECT_EQ(formatted(_T("%d %u %x"), -1, 4294967295U, 255), u"-1 4294967295 ff");
    EXPECT_EQ(formatted(_T("%ld %lu"), LONG{-5}, DWORD{4000000000U}), u"-5 4000000000");
    EXPECT_EQ(formatted(_T("%I64d %lld %llu"), INT64{-9000000000}, -9000000000LL, 18446744073709551615ULL),
              u"-9000000000 -9000000000 18446744073709551615");
    EXPECT_EQ(formatted(_T("%5.2f|%-6d|%06d|%+d"), 3.14159, 42, 42, 42), u" 3.14|42    |000042|+42");
    EXPECT_EQ(formatted(_T("%*d"), 4, 7), u"   7");
    EXPECT_EQ(formatted(_T("%p"), reinterpret_cast<void*>(std::uintptr_t{0xAB})), u"00000000000000AB");
}

TEST(Format, TextThatDoesNotFitGivesMinusOne) {
    TCHAR buffer[4];
    const auto format = [&buffer](const TCHAR* pattern, ...) {
        va_list arguments;
        va_start(arguments, pattern);
        const int result = _vsntprintf(buffer, 4, pattern, arguments);
        va_end(arguments);
        return result;
    };
    EXPECT_EQ(format(_T("%d"), 123), 3);
    EXPECT_EQ(format(_T("%d"), 12345), -1);
}

TEST(FormatDeathTest, SecureFormAbortsIfTheBufferIsTooSmall) {
    TCHAR buffer[4];
    EXPECT_DEATH(_stprintf_s(buffer, _T("%d"), 12345), "too small");
}

TEST(Tchar, SearchesAndCompares) {
    const TCHAR* path = _T("Z:\\a\\b.arx");
    EXPECT_EQ(_tcslen(path), 10U);
    EXPECT_EQ(_tcsrchr(path, _T('\\')), path + 4);
    EXPECT_EQ(_tcsrchr(path, _T('?')), nullptr);
    EXPECT_EQ(_tcschr(path, _T('\\')), path + 2);
    EXPECT_EQ(_tcschr(path, TCHAR{}), path + 10);
    EXPECT_EQ(_tcsstr(path, _T("b.")), path + 5);
    EXPECT_EQ(_tcsstr(path, _T("c.")), nullptr);
    EXPECT_LT(_tcscmp(_T("a"), _T("b")), 0);
    EXPECT_EQ(_tcsicmp(_T("COLORTHEME"), _T("colortheme")), 0);
    EXPECT_NE(_tcscmp(_T("COLORTHEME"), _T("colortheme")), 0);
    EXPECT_EQ(_tcsncmp(_T("abc"), _T("abd"), 2), 0);
    EXPECT_EQ(_ttoi(_T("-12x")), -12);
    EXPECT_EQ(_tcstol(_T("99999999999"), nullptr, 10), 0x7FFFFFFF);
    TCHAR* end = nullptr;
    const TCHAR* number = _T("1.5字");
    EXPECT_EQ(_tcstod(number, &end), 1.5);
    EXPECT_EQ(end, number + 3);
}

TEST(Tchar, CopiesAreBoundsChecked) {
    TCHAR buffer[4];
    EXPECT_EQ(_tcscpy_s(buffer, _T("ab")), 0);
    EXPECT_EQ(_tcscat_s(buffer, _T("c")), 0);
    EXPECT_EQ(std::u16string(buffer), u"abc");
    EXPECT_EQ(_tcsncpy_s(buffer, 4, _T("abcdef"), 2), 0);
    EXPECT_EQ(std::u16string(buffer), u"ab");
    EXPECT_EQ(_tcsncpy_s(buffer, 4, _T("abcdef"), _TRUNCATE), STRUNCATE);
    EXPECT_EQ(std::u16string(buffer), u"abc");
}

TEST(TcharDeathTest, CopyAbortsIfTheBufferIsTooSmall) {
    TCHAR buffer[2];
    EXPECT_DEATH(_tcscpy_s(buffer, _T("ab")), "too small");
}

TEST(Time, TimestampIsFormattedWithChineseText) {
    std::tm time{};
    time.tm_year = 124;
    time.tm_mon = 2;
    time.tm_mday = 5;
    time.tm_hour = 6;
    time.tm_min = 7;
    time.tm_sec = 8;
    TCHAR buffer[128];
    const std::size_t length = _tcsftime(buffer, 128, _T("\n[%Y年%m月%d日  %T]"), &time);
    EXPECT_EQ(std::u16string(buffer, length), u"\n[2024年03月05日  06:07:08]");
    EXPECT_EQ(_tcsftime(buffer, 5, _T("%Y年"), &time), 0U);
    EXPECT_EQ(_tcsftime(buffer, 6, _T("%Y年"), &time), 5U);
}

TEST(Time, LocalTimeIsConvertedAndRangeChecked) {
    setenv("TZ", "UTC-8", 1);
    tzset();
    std::tm time{};
    const __time64_t epoch = 0;
    EXPECT_EQ(_localtime64_s(&time, &epoch), 0);
    EXPECT_EQ(time.tm_hour, 8);
    EXPECT_EQ(_gmtime64_s(&time, &epoch), 0);
    EXPECT_EQ(time.tm_hour, 0);
    const __time64_t before = -1;
    EXPECT_EQ(_localtime64_s(&time, &before), EINVAL);
    EXPECT_EQ(time.tm_hour, -1);
    EXPECT_EQ(_localtime64_s(nullptr, &epoch), EINVAL);
    __time64_t now = 0;
    EXPECT_EQ(_time64(&now), now);
    EXPECT_GT(now, 1600000000);
}

TEST(CodePages, Utf8RoundTrips) {
    const std::u16string text = u"aé字\U0001F600";
    char utf8[32];
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, text.c_str(), -1, nullptr, 0, nullptr, nullptr), 11);
    EXPECT_EQ(WideCharToMultiByte(CP_ACP, 0, text.c_str(), -1, utf8, sizeof utf8, nullptr, nullptr), 11);
    EXPECT_STREQ(utf8, "aé字\xF0\x9F\x98\x80");
    TCHAR back[32];
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, utf8, -1, back, 32), 6);
    EXPECT_EQ(std::u16string(back), text);
    // With an explicit length no terminator is counted.
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, utf8, 1, back, 32), 1);
    EXPECT_EQ(MultiByteToWideChar(CP_UTF8, 0, utf8, -1, back, 2), 0);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
}

TEST(CodePages, MalformedTextIsReplacedOrRejected) {
    TCHAR wide[16];
    for (const char* broken : {"\xFF", "\xC0\x80", "\xED\xA0\x80", "\xE5\xAD", "\xF4\x90\x80\x80"}) {
        EXPECT_EQ(MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, broken, -1, wide, 16), 0);
        EXPECT_EQ(GetLastError(), ERROR_NO_UNICODE_TRANSLATION);
        ASSERT_GT(MultiByteToWideChar(CP_UTF8, 0, broken, -1, wide, 16), 1);
        EXPECT_EQ(wide[0], 0xFFFD);
    }
    const TCHAR lone[] = {0xD83D, u'a', 0};
    char utf8[16];
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, WC_ERR_INVALID_CHARS, lone, -1, utf8, 16, nullptr, nullptr), 0);
    EXPECT_EQ(WideCharToMultiByte(CP_UTF8, 0, lone, -1, utf8, 16, nullptr, nullptr), 5);
}

TEST(Types, LongsHave32Bits) {
    EXPECT_EQ(sizeof(LONG), 4U);
    EXPECT_EQ(sizeof(DWORD), 4U);
    EXPECT_EQ(sizeof(HRESULT), 4U);
    EXPECT_EQ(sizeof(LPARAM), sizeof(void*));
    EXPECT_EQ(sizeof(TCHAR), 2U);
}
