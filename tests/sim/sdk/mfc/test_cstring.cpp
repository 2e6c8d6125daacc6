#include <utility>

#include "mfc_text.h"

TEST(CString, IsASinglePointerToItsCharacters) {
    const CString text(_T("abc"));
    static_assert(sizeof(CString) == sizeof(void*),
                  "MFC code passes a CString through a variable argument list");
    EXPECT_EQ(reinterpret_cast<const LPCTSTR&>(text), text.GetString());
}

TEST(CString, IsConstructedFromEveryKindOfText) {
    EXPECT_EQ(utf8(CString()), "");
    EXPECT_EQ(utf8(CString(_T("朔禾CAD"))), "朔禾CAD");
    EXPECT_EQ(utf8(CString(_T("abcdef"), 3)), "abc");
    EXPECT_EQ(utf8(CString(_T('x'), 4)), "xxxx");
    EXPECT_EQ(utf8(CString(_T('x'), 0)), "");
    EXPECT_EQ(utf8(CString("narrow")), "narrow");
    EXPECT_EQ(utf8(CString("narrow", 3)), "nar");
    EXPECT_EQ(utf8(CString(static_cast<LPCTSTR>(nullptr))), "");
    EXPECT_EQ(utf8(CString(static_cast<const char*>(nullptr))), "");
}

TEST(CString, KeepsEmbeddedZeros) {
    const CString text(_T("a\0b"), 3);
    EXPECT_EQ(text.GetLength(), 3);
    EXPECT_EQ(text[1], 0);
    EXPECT_EQ(text[2], _T('b'));
}

TEST(CString, CopiesShareTheBufferUntilOneIsModified) {
    CString first(_T("shared"));
    CString second(first);
    EXPECT_EQ(first.GetString(), second.GetString());
    second.SetAt(0, _T('S'));
    EXPECT_EQ(utf8(first), "shared");
    EXPECT_EQ(utf8(second), "Shared");
}

TEST(CString, MovedFromIsEmpty) {
    CString from(_T("text"));
    const CString to(std::move(from));
    EXPECT_EQ(utf8(to), "text");
    EXPECT_TRUE(from.IsEmpty());  // NOLINT(bugprone-use-after-move): that is what is tested
}

TEST(CString, AssignsItselfAndPartsOfItself) {
    CString text(_T("0123456789"));
    const CString& self = text;
    text = self;
    EXPECT_EQ(utf8(text), "0123456789");
    text = text.GetString() + 4;
    EXPECT_EQ(utf8(text), "456789");
    text += text;
    EXPECT_EQ(utf8(text), "456789456789");
    text.Append(text.GetString() + 10, 2);
    EXPECT_EQ(utf8(text), "45678945678989");
    text = static_cast<LPCTSTR>(nullptr);
    EXPECT_EQ(utf8(text), "");
}

TEST(CString, IndexOutOfRangeThrows) {
    CString text(_T("abc"));
    EXPECT_EQ(text.GetAt(3), 0);
    EXPECT_MFC_THROW(text.GetAt(4), CInvalidArgException);
    EXPECT_MFC_THROW(text.GetAt(-1), CInvalidArgException);
    EXPECT_MFC_THROW(text.SetAt(3, _T('x')), CInvalidArgException);
    EXPECT_MFC_THROW(text.SetAt(-1, _T('x')), CInvalidArgException);
}

TEST(CString, ComparesCodeUnits) {
    const CString text(_T("abc"));
    EXPECT_EQ(text.Compare(_T("abc")), 0);
    EXPECT_LT(text.Compare(_T("abd")), 0);
    EXPECT_GT(text.Compare(_T("ab")), 0);
    EXPECT_GT(text.Compare(_T("ABC")), 0);
    EXPECT_EQ(text.CompareNoCase(_T("aBC")), 0);
    EXPECT_LT(text.CompareNoCase(_T("ABD")), 0);
    EXPECT_TRUE(text == _T("abc"));
    EXPECT_TRUE(_T("abc") == text);
    EXPECT_TRUE(text == CString(_T("abc")));
    EXPECT_TRUE(text != CString(_T("Abc")));
    EXPECT_TRUE(text < _T("b"));
    EXPECT_TRUE(text >= CString(_T("abc")));
    EXPECT_TRUE(CString() == _T(""));
    EXPECT_EQ(CString().Compare(nullptr), 0);
}

TEST(CString, FindsFromTheGivenPosition) {
    const CString text(_T("one two one"));
    EXPECT_EQ(text.Find(_T("one")), 0);
    EXPECT_EQ(text.Find(_T("one"), 1), 8);
    EXPECT_EQ(text.Find(_T("three")), -1);
    EXPECT_EQ(text.Find(_T("")), 0);
    EXPECT_EQ(text.Find(_T("one"), 99), -1);
    EXPECT_EQ(text.Find(_T("one"), -1), -1);
    EXPECT_EQ(text.Find(_T('t')), 4);
    EXPECT_EQ(text.Find(_T('o'), 7), 8);
    EXPECT_EQ(text.ReverseFind(_T('o')), 8);
    EXPECT_EQ(text.ReverseFind(_T('x')), -1);
    EXPECT_EQ(text.FindOneOf(_T("xw")), 5);
    EXPECT_EQ(CString().ReverseFind(_T('x')), -1);
}

TEST(CString, SearchingStopsAtAnEmbeddedZero) {
    const CString text(_T("ab\0cab"), 6);
    ASSERT_EQ(text.GetLength(), 6);
    EXPECT_EQ(text.Find(_T("ab"), 1), -1);
    EXPECT_EQ(text.Find(_T("c")), -1);
    EXPECT_EQ(text.Find(_T('c')), -1);
    EXPECT_EQ(text.ReverseFind(_T('b')), 1);
    EXPECT_EQ(text.ReverseFind(_T('c')), -1);
    EXPECT_EQ(text.FindOneOf(_T("xc")), -1);
    // From behind the zero it goes on to the next.
    EXPECT_EQ(text.Find(_T("ab"), 3), 4);
    EXPECT_EQ(text.Find(_T('c'), 3), 3);
    EXPECT_EQ(text.Find(_T('\0')), 2);
    EXPECT_EQ(text.Find(_T('\0'), 3), 6);
}

TEST(CString, ComparingStopsAtAnEmbeddedZero) {
    const CString text(_T("ab\0c"), 4);
    EXPECT_TRUE(text == CString(_T("ab")));
    EXPECT_TRUE(text == _T("ab"));
    EXPECT_EQ(text.CompareNoCase(_T("AB")), 0);
}

TEST(CString, ReplacingGoesOnBehindAnEmbeddedZero) {
    CString text(_T("X\0X"), 3);
    EXPECT_EQ(text.Replace(_T("X"), _T("yz")), 2);
    EXPECT_EQ(text.GetLength(), 5);
    EXPECT_EQ(text[4], _T('z'));
}

TEST(CString, SubstringsAreClampedToTheText) {
    const CString text(_T("abcdef"));
    EXPECT_EQ(utf8(text.Left(2)), "ab");
    EXPECT_EQ(utf8(text.Left(99)), "abcdef");
    EXPECT_EQ(utf8(text.Left(-1)), "");
    EXPECT_EQ(utf8(text.Right(2)), "ef");
    EXPECT_EQ(utf8(text.Right(99)), "abcdef");
    EXPECT_EQ(utf8(text.Mid(2)), "cdef");
    EXPECT_EQ(utf8(text.Mid(2, 2)), "cd");
    EXPECT_EQ(utf8(text.Mid(2, 99)), "cdef");
    EXPECT_EQ(utf8(text.Mid(99, 1)), "");
    EXPECT_EQ(utf8(text.Mid(-5, 2)), "ab");
    EXPECT_EQ(utf8(CString(_T("aab")).SpanIncluding(_T("a"))), "aa");
    EXPECT_EQ(utf8(CString(_T("aab")).SpanExcluding(_T("b"))), "aa");
}

TEST(CString, TokenizeSkipsEmptyTokens) {
    const CString text(_T(" a  bc "));
    int at = 0;
    EXPECT_EQ(utf8(text.Tokenize(_T(" "), at)), "a");
    EXPECT_EQ(utf8(text.Tokenize(_T(" "), at)), "bc");
    EXPECT_EQ(utf8(text.Tokenize(_T(" "), at)), "");
    EXPECT_EQ(at, -1);
}

TEST(CString, ConcatenatesStrings) {
    CString text(_T("a"));
    text += _T("b");
    text += _T('c');
    text += CString(_T("d"));
    EXPECT_EQ(utf8(text), "abcd");
    EXPECT_EQ(utf8(text + text), "abcdabcd");
    EXPECT_EQ(utf8(_T("x") + text), "xabcd");
    EXPECT_EQ(utf8(text + _T("x")), "abcdx");
    EXPECT_EQ(utf8(text + _T('x')), "abcdx");
    EXPECT_EQ(utf8(_T('x') + text), "xabcd");
}

TEST(CString, ReplacesEveryOccurrence) {
    CString text(_T("aXbXc"));
    EXPECT_EQ(text.Replace(_T("X"), _T("<>")), 2);
    EXPECT_EQ(utf8(text), "a<>b<>c");
    EXPECT_EQ(text.Replace(_T("<>"), nullptr), 2);
    EXPECT_EQ(utf8(text), "abc");
    EXPECT_EQ(text.Replace(_T(""), _T("y")), 0);
    EXPECT_EQ(text.Replace(_T('b'), _T('B')), 1);
    EXPECT_EQ(utf8(text), "aBc");
    CString repeated(_T("aaa"));
    EXPECT_EQ(repeated.Replace(_T("aa"), _T("a")), 1);
    EXPECT_EQ(utf8(repeated), "aa");
    EXPECT_EQ(repeated.Remove(_T('a')), 2);
    EXPECT_TRUE(repeated.IsEmpty());
}

TEST(CString, InsertsAndDeletes) {
    CString text(_T("ad"));
    EXPECT_EQ(text.Insert(1, _T("bc")), 4);
    EXPECT_EQ(utf8(text), "abcd");
    EXPECT_EQ(text.Insert(99, _T('e')), 5);
    EXPECT_EQ(text.Delete(0), 4);
    EXPECT_EQ(text.Delete(1, 2), 2);
    EXPECT_EQ(utf8(text), "be");
    EXPECT_EQ(text.Delete(5, 2), 2);
    EXPECT_EQ(text.Delete(1, 0x7FFFFFFF), 1);
}

TEST(CString, TrimsWhiteSpaceAndCharacters) {
    CString text(_T(" \t\r\n　text　 \n"));
    EXPECT_EQ(utf8(text.Trim()), "text");
    EXPECT_EQ(utf8(CString(_T("xxtxx")).Trim(_T('x'))), "t");
    EXPECT_EQ(utf8(CString(_T("xytyx")).Trim(_T("xy"))), "t");
    EXPECT_EQ(utf8(CString(_T(" a ")).TrimLeft()), "a ");
    EXPECT_EQ(utf8(CString(_T(" a ")).TrimRight()), " a");
    EXPECT_EQ(utf8(CString(_T("   ")).Trim()), "");
}

TEST(CString, MapsCaseOfAsciiOnly) {
    EXPECT_EQ(utf8(CString(_T("AbÄ朔")).MakeLower()), "abÄ朔");
    EXPECT_EQ(utf8(CString(_T("aBä")).MakeUpper()), "ABä");
    EXPECT_EQ(utf8(CString(_T("abc")).MakeReverse()), "cba");
}

TEST(CString, GetBufferUnsharesAndReleaseStopsAtTheTerminator) {
    CString first(_T("shared"));
    CString second(first);
    LPTSTR buffer = second.GetBuffer(32);
    EXPECT_NE(static_cast<LPCTSTR>(buffer), first.GetString());
    EXPECT_GE(second.GetAllocLength(), 32);
    buffer[0] = _T('S');
    buffer[3] = 0;
    second.ReleaseBuffer();
    EXPECT_EQ(utf8(second), "Sha");
    EXPECT_EQ(utf8(first), "shared");

    LPTSTR exact = second.GetBufferSetLength(2);
    exact[0] = _T('x');
    exact[1] = _T('y');
    second.ReleaseBuffer(1);
    EXPECT_EQ(utf8(second), "x");
    EXPECT_MFC_THROW(second.ReleaseBuffer(1000), CInvalidArgException);
}

TEST(CString, BufferFilledToItsEndKeepsItsLength) {
    CString text;
    LPTSTR buffer = text.GetBuffer(4);
    const int room = text.GetAllocLength();
    for (int i = 0; i <= room; ++i) {
        buffer[i] = i < room ? _T('x') : _T('\0');
    }
    text.ReleaseBuffer();
    EXPECT_EQ(text.GetLength(), room);
}

TEST(CString, AppendingDoesNotReallocateEveryTime) {
    CString text;
    int moves = 0;
    LPCTSTR last = text.GetString();
    const int count = 100000;
    for (int i = 0; i < count; ++i) {
        text += _T('x');
        moves += text.GetString() != last ? 1 : 0;
        last = text.GetString();
    }
    EXPECT_EQ(text.GetLength(), count);
    EXPECT_LT(moves, 100);
}
