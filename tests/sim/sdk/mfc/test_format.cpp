#include "mfc_text.h"

#include <clocale>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <string>

namespace {

template <typename... Arguments>
std::string formatted(LPCTSTR format, Arguments... arguments) {
    CString text;
    text.Format(format, arguments...);
    return utf8(text);
}

#ifdef _WIN32
constexpr const char* kGermanLocale = "German";
#else
constexpr const char* kGermanLocale = "de_DE.UTF-8";
#endif

/// Sets a locale with a decimal comma for its lifetime; creates a temporary one if none is installed.
class DecimalComma {
public:
    DecimalComma() : m_before(std::setlocale(LC_NUMERIC, nullptr)) {
        if (std::setlocale(LC_NUMERIC, kGermanLocale) == nullptr) {
            makeLocale();
        }
    }
    ~DecimalComma() {
        std::setlocale(LC_NUMERIC, m_before.c_str());
        std::filesystem::remove_all(m_folder);
    }
    DecimalComma(const DecimalComma&) = delete;
    DecimalComma& operator=(const DecimalComma&) = delete;

private:
    void makeLocale() {
#ifndef _WIN32
        std::string folder = testing::TempDir() + "zentri_locale_XXXXXX";
        ASSERT_NE(mkdtemp(folder.data()), nullptr);
        m_folder = folder;
        const std::string make = "localedef -i de_DE -f UTF-8 --no-archive " + folder + "/" + kGermanLocale;
        ASSERT_EQ(std::system(make.c_str()), 0) << "localedef needs the sources in the package locales";
        setenv("LOCPATH", folder.c_str(), 1);
        ASSERT_NE(std::setlocale(LC_NUMERIC, kGermanLocale), nullptr);
#endif
    }

    std::string m_before;
    std::filesystem::path m_folder;
};

}  // namespace

TEST(Format, StringsAreWideUnlessMarkedNarrow) {
    EXPECT_EQ(formatted(_T("[%s]"), _T("朔禾")), "[朔禾]");
    EXPECT_EQ(formatted(_T("[%ls]"), _T("朔禾")), "[朔禾]");
    EXPECT_EQ(formatted(_T("[%ws]"), _T("朔禾")), "[朔禾]");
    EXPECT_EQ(formatted(_T("[%S]"), "narrow"), "[narrow]");
    EXPECT_EQ(formatted(_T("[%hs]"), "narrow"), "[narrow]");
    EXPECT_EQ(formatted(_T("[%lS]"), _T("wide")), "[wide]");
    EXPECT_EQ(formatted(_T("[%s]"), static_cast<LPCTSTR>(nullptr)), "[(null)]");
    EXPECT_EQ(formatted(_T("[%S]"), static_cast<const char*>(nullptr)), "[(null)]");
    EXPECT_EQ(formatted(_T("[%s]"), CString(_T("string")).GetString()), "[string]");
}

TEST(Format, StringsArePaddedAndTruncated) {
    EXPECT_EQ(formatted(_T("[%5s]"), _T("ab")), "[   ab]");
    EXPECT_EQ(formatted(_T("[%-5s]"), _T("ab")), "[ab   ]");
    EXPECT_EQ(formatted(_T("[%.2s]"), _T("abcdef")), "[ab]");
    EXPECT_EQ(formatted(_T("[%5.1s]"), _T("abc")), "[    a]");
    EXPECT_EQ(formatted(_T("[%*s]"), 4, _T("ab")), "[  ab]");
    EXPECT_EQ(formatted(_T("[%*s]"), -4, _T("ab")), "[ab  ]");
    EXPECT_EQ(formatted(_T("[%.*s]"), 1, _T("ab")), "[a]");
    EXPECT_EQ(formatted(_T("[%.*s]"), -1, _T("ab")), "[ab]");
    EXPECT_EQ(formatted(_T("[%.s]"), _T("ab")), "[]");
    const TCHAR unterminated[2] = {_T('a'), _T('b')};
    EXPECT_EQ(formatted(_T("[%.2s]"), static_cast<LPCTSTR>(unterminated)), "[ab]");
}

TEST(Format, CharactersAreWideUnlessMarkedNarrow) {
    EXPECT_EQ(formatted(_T("[%c]"), _T('朔')), "[朔]");
    EXPECT_EQ(formatted(_T("[%lc]"), _T('x')), "[x]");
    EXPECT_EQ(formatted(_T("[%hc]"), 'x'), "[x]");
    EXPECT_EQ(formatted(_T("[%C]"), 'x'), "[x]");
    EXPECT_EQ(formatted(_T("[%3c]"), _T('x')), "[  x]");
}

TEST(Format, DecimalNumbers) {
    EXPECT_EQ(formatted(_T("%d"), 0), "0");
    EXPECT_EQ(formatted(_T("%d"), -42), "-42");
    EXPECT_EQ(formatted(_T("%i"), 42), "42");
    EXPECT_EQ(formatted(_T("%d"), std::numeric_limits<int>::min()), "-2147483648");
    EXPECT_EQ(formatted(_T("%u"), 0xFFFFFFFFU), "4294967295");
    EXPECT_EQ(formatted(_T("%+d %+d"), 1, -1), "+1 -1");
    EXPECT_EQ(formatted(_T("% d"), 1), " 1");
    EXPECT_EQ(formatted(_T("[%5d]"), 42), "[   42]");
    EXPECT_EQ(formatted(_T("[%-5d]"), 42), "[42   ]");
    EXPECT_EQ(formatted(_T("[%05d]"), -42), "[-0042]");
    EXPECT_EQ(formatted(_T("[%-05d]"), 42), "[42   ]");
    EXPECT_EQ(formatted(_T("[%.4d]"), 42), "[0042]");
    EXPECT_EQ(formatted(_T("[%6.4d]"), -42), "[ -0042]");
    EXPECT_EQ(formatted(_T("[%06.4d]"), 42), "[  0042]");
    EXPECT_EQ(formatted(_T("[%.0d]"), 0), "[]");
}

TEST(Format, HexadecimalAndOctalNumbers) {
    EXPECT_EQ(formatted(_T("%x %X"), 0xBEEF, 0xBEEF), "beef BEEF");
    EXPECT_EQ(formatted(_T("%#x %#X %#x"), 0x1A, 0x1A, 0), "0x1a 0X1A 0");
    EXPECT_EQ(formatted(_T("[%#06x]"), 0x1A), "[0x001a]");
    EXPECT_EQ(formatted(_T("%o %#o %#o"), 8, 8, 0), "10 010 0");
    EXPECT_EQ(formatted(_T("%08X-%04X"), 0xABCDU, 0x12), "0000ABCD-0012");
}

TEST(Format, SizePrefixesHaveTheirWindowsSizes) {
    EXPECT_EQ(formatted(_T("%hhd"), 0x1FF), "-1");
    EXPECT_EQ(formatted(_T("%hd"), 0x1FFFF), "-1");
    EXPECT_EQ(formatted(_T("%hu"), 0x1FFFF), "65535");
    EXPECT_EQ(formatted(_T("%ld"), LONG(-5)), "-5");
    EXPECT_EQ(formatted(_T("%lu"), DWORD(0xFFFFFFFFU)), "4294967295");
    EXPECT_EQ(formatted(_T("%lld"), -5000000000LL), "-5000000000");
    EXPECT_EQ(formatted(_T("%I64d"), LONGLONG(-5000000000)), "-5000000000");
    EXPECT_EQ(formatted(_T("%I64u"), ULONGLONG(18446744073709551615ULL)), "18446744073709551615");
    EXPECT_EQ(formatted(_T("%I64X"), ULONGLONG(0x123456789ABCDEFULL)), "123456789ABCDEF");
    EXPECT_EQ(formatted(_T("%I32d"), -7), "-7");
    EXPECT_EQ(formatted(_T("%Iu"), SIZE_T(5000000000ULL)), "5000000000");
    EXPECT_EQ(formatted(_T("%zu"), SIZE_T(5000000000ULL)), "5000000000");
    EXPECT_EQ(formatted(_T("%jd"), LONGLONG(-5000000000)), "-5000000000");
    EXPECT_EQ(formatted(_T("%td"), INT_PTR(-9)), "-9");
}

TEST(Format, SizePrefixesConsumeExactlyTheirArgument) {
    EXPECT_EQ(formatted(_T("%lld %d %s %I64d %c"), 1LL, 2, _T("three"), LONGLONG(4), _T('5')),
              "1 2 three 4 5");
    EXPECT_EQ(formatted(_T("%f %d %f"), 1.5, 2, 3.5), "1.500000 2 3.500000");
}

TEST(Format, PointersAreSixteenUpperCaseDigits) {
    EXPECT_EQ(formatted(_T("%p"), reinterpret_cast<void*>(UINT_PTR(0xABCDEF))), "0000000000ABCDEF");
    EXPECT_EQ(formatted(_T("%p"), static_cast<void*>(nullptr)), "0000000000000000");
}

TEST(Format, FloatingNumbers) {
    EXPECT_EQ(formatted(_T("%f"), 3.14159), "3.141590");
    EXPECT_EQ(formatted(_T("%.2f"), -3.14159), "-3.14");
    EXPECT_EQ(formatted(_T("[%8.2f]"), 3.14159), "[    3.14]");
    EXPECT_EQ(formatted(_T("[%-8.2f]"), 3.14159), "[3.14    ]");
    EXPECT_EQ(formatted(_T("[%08.2f]"), -3.14159), "[-0003.14]");
    EXPECT_EQ(formatted(_T("%.0f %#.0f"), 3.0, 3.0), "3 3.");
    EXPECT_EQ(formatted(_T("%e"), 12345.678), "1.234568e+04");
    EXPECT_EQ(formatted(_T("%.1E"), 12345.678), "1.2E+04");
    EXPECT_EQ(formatted(_T("%g %g %G"), 0.0001, 1e20, 1e-20), "0.0001 1e+20 1E-20");
    EXPECT_EQ(formatted(_T("%+.1f % .1f"), 1.0, 1.0), "+1.0  1.0");
    EXPECT_EQ(formatted(_T("%f %f"), HUGE_VAL, -HUGE_VAL), "inf -inf");
    EXPECT_EQ(formatted(_T("[%05f]"), HUGE_VAL), "[  inf]");
}

TEST(Format, TheDecimalPointIsAFullStopInEveryLocale) {
    const DecimalComma comma;
    ASSERT_STREQ(std::localeconv()->decimal_point, ",");
    EXPECT_EQ(formatted(_T("%.2f"), 1.5), "1.50");
}

TEST(Format, PercentSignsAndInvalidConversionsAreCopied) {
    EXPECT_EQ(formatted(_T("100%%")), "100%");
    EXPECT_EQ(formatted(_T("%y")), "y");
    EXPECT_EQ(formatted(_T("end%")), "end");
    EXPECT_EQ(formatted(_T("end%l")), "end");
}

TEST(Format, PercentNWritesNothing) {
    int written = 77;
    EXPECT_EQ(formatted(_T("ab%ncd%d"), &written, 5), "abcd5");
    EXPECT_EQ(written, 77);
}

TEST(Format, TheStringItselfMayBeAnArgument) {
    CString text(_T("inner"));
    text.Format(_T("<%s|%s>"), text.GetString(), text.GetString());
    EXPECT_EQ(utf8(text), "<inner|inner>");
    text.AppendFormat(_T("%d"), 7);
    EXPECT_EQ(utf8(text), "<inner|inner>7");
}

TEST(Format, NullFormatThrows) {
    CString text(_T("kept"));
    EXPECT_MFC_THROW(text.Format(nullptr), CInvalidArgException);
    EXPECT_EQ(utf8(text), "kept");
}
