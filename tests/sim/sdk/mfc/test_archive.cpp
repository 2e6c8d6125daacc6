#include <cfloat>
#include <functional>
#include <limits>
#include <memory>
#include <vector>

#include "mfc_text.h"

namespace {

typedef std::vector<int> Bytes;

/// The bytes that an archive writes.
Bytes stored(const std::function<void(CArchive&)>& store, int bufferSize = 4096) {
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store, bufferSize);
        store(archive);
    }
    Bytes bytes(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    for (int& byte : bytes) {
        BYTE value = 0;
        file.Read(&value, 1);
        byte = value;
    }
    return bytes;
}

/// A memory file with these bytes, positioned at its beginning.
std::unique_ptr<CMemFile> fileOf(const Bytes& bytes) {
    auto file = std::make_unique<CMemFile>();
    for (int byte : bytes) {
        const BYTE value = static_cast<BYTE>(byte);
        file->Write(&value, 1);
    }
    file->SeekToBegin();
    return file;
}

/// The first bytes of an archived string of `length` letters x, and the number of bytes after them.
struct Head {
    Bytes bytes;
    size_t rest;
};
Head textHead(int length, size_t headSize) {
    const Bytes all = stored([length](CArchive& ar) { ar << CString(_T('x'), length); });
    return {Bytes(all.begin(), all.begin() + static_cast<std::ptrdiff_t>(headSize)), all.size() - headSize};
}

CString loadedText(const Bytes& bytes) {
    const auto file = fileOf(bytes);
    CArchive archive(file.get(), CArchive::load);
    CString text(_T("before"));
    archive >> text;
    return text;
}

template <typename T>
T roundTrip(T value) {
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        archive << value;
    }
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    T back = T();
    archive >> back;
    return back;
}

}  // namespace

TEST(CArchiveText, ShortStringIsMarkerLengthAndUnits) {
    EXPECT_EQ(stored([](CArchive& ar) { ar << CString(_T("a朔")); }),
              (Bytes{0xFF, 0xFE, 0xFF, 2, 'a', 0, 0x14, 0x67}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << CString(); }), (Bytes{0xFF, 0xFE, 0xFF, 0}));
}

TEST(CArchiveText, LengthPrefixGrowsAtItsBoundaries) {
    Head head = textHead(254, 4);
    EXPECT_EQ(head.bytes, (Bytes{0xFF, 0xFE, 0xFF, 0xFE}));
    EXPECT_EQ(head.rest, 254U * 2);

    head = textHead(255, 6);
    EXPECT_EQ(head.bytes, (Bytes{0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0x00}));
    EXPECT_EQ(head.rest, 255U * 2);

    head = textHead(256, 6);
    EXPECT_EQ(head.bytes, (Bytes{0xFF, 0xFE, 0xFF, 0xFF, 0x00, 0x01}));

    head = textHead(0xFFFD, 6);
    EXPECT_EQ(head.bytes, (Bytes{0xFF, 0xFE, 0xFF, 0xFF, 0xFD, 0xFF}));
    EXPECT_EQ(head.rest, 0xFFFDU * 2);

    head = textHead(0xFFFE, 10);
    EXPECT_EQ(head.bytes, (Bytes{0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFE, 0xFF, 0x00, 0x00}));
    EXPECT_EQ(head.rest, 0xFFFEU * 2);

    head = textHead(0x10000, 10);
    EXPECT_EQ(head.bytes, (Bytes{0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0x00, 0x00, 0x01, 0x00}));
}

TEST(CArchiveText, EveryLengthLoadsBack) {
    for (int length :
         {0, 1, 254, 255, 256, 0x7FFF, 0x8000, 0x8001, 0xFFFD, 0xFFFE, 0xFFFF, 0x10000, 0x10001}) {
        const CString text(_T('朔'), length);
        EXPECT_TRUE(roundTrip(text) == text) << length;
        EXPECT_EQ(roundTrip(text).GetLength(), length);
    }
}

TEST(CArchiveText, LoneSurrogatesAndZerosArePreserved) {
    const TCHAR units[] = {0xD800, 0, 0xDC00, 0xFFFF};
    const CString text(units, 4);
    const CString back = roundTrip(text);
    ASSERT_EQ(back.GetLength(), 4);
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(back[i], units[i]);
    }
}

TEST(CArchiveText, NarrowStringsOfOlderArchivesAreRead) {
    EXPECT_EQ(utf8(loadedText({3, 'a', 'b', 'c'})), "abc");
    EXPECT_EQ(utf8(loadedText({0})), "");
    Bytes longer{0xFF, 0x2C, 0x01};  // 300
    longer.insert(longer.end(), 300, 'x');
    EXPECT_EQ(loadedText(longer).GetLength(), 300);
}

TEST(CArchiveText, TruncatedStringThrowsEndOfFile) {
    for (const Bytes& bytes :
         {Bytes{}, Bytes{0xFF}, Bytes{0xFF, 0xFE}, Bytes{0xFF, 0xFE, 0xFF},
          Bytes{0xFF, 0xFE, 0xFF, 2, 'a', 0, 'b'}, Bytes{0xFF, 0xFE, 0xFF, 0xFF, 0x10},
          Bytes{0xFF, 0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x7F, 'x', 0}, Bytes{5, 'a'}}) {
        try {
            loadedText(bytes);
            ADD_FAILURE() << bytes.size() << " bytes were loaded";
        } catch (CArchiveException* e) {
            EXPECT_EQ(e->m_cause, CArchiveException::endOfFile);
            e->Delete();
        }
    }
}

TEST(CArchiveCount, BoundariesAreAsDocumented) {
    EXPECT_EQ(stored([](CArchive& ar) { ar.WriteCount(0); }), (Bytes{0, 0}));
    EXPECT_EQ(stored([](CArchive& ar) { ar.WriteCount(0xFFFE); }), (Bytes{0xFE, 0xFF}));
    EXPECT_EQ(stored([](CArchive& ar) { ar.WriteCount(0xFFFF); }), (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0, 0}));
    EXPECT_EQ(stored([](CArchive& ar) { ar.WriteCount(0x10000); }), (Bytes{0xFF, 0xFF, 0, 0, 1, 0}));
    EXPECT_EQ(stored([](CArchive& ar) { ar.WriteCount(0xFFFFFFFEU); }),
              (Bytes{0xFF, 0xFF, 0xFE, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(stored([](CArchive& ar) { ar.WriteCount(0xFFFFFFFFU); }),
              (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0, 0, 0}));
    EXPECT_EQ(stored([](CArchive& ar) { ar.WriteCount(0x123456789AULL); }),
              (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x9A, 0x78, 0x56, 0x34, 0x12, 0, 0, 0}));
}

TEST(CArchiveCount, EveryCountLoadsBack) {
    for (DWORD_PTR count : {DWORD_PTR(0), DWORD_PTR(0xFFFE), DWORD_PTR(0xFFFF), DWORD_PTR(0x10000),
                            DWORD_PTR(0xFFFFFFFE), DWORD_PTR(0xFFFFFFFF), DWORD_PTR(0x123456789A)}) {
        const auto file = fileOf(stored([count](CArchive& ar) { ar.WriteCount(count); }));
        CArchive archive(file.get(), CArchive::load);
        EXPECT_EQ(archive.ReadCount(), count);
    }
}

TEST(CArchiveValue, ValuesAreLittleEndianWithTheirWindowsSizes) {
    EXPECT_EQ(stored([](CArchive& ar) { ar << BYTE(0x12); }), (Bytes{0x12}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << WORD(0x1234); }), (Bytes{0x34, 0x12}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << DWORD(0x12345678); }), (Bytes{0x78, 0x56, 0x34, 0x12}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << LONG(-2); }), (Bytes{0xFE, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << 1; }), (Bytes{1, 0, 0, 0}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << 1U; }), (Bytes{1, 0, 0, 0}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << short(-2); }), (Bytes{0xFE, 0xFF}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << 'A'; }), (Bytes{'A'}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << _T('朔'); }), (Bytes{0x14, 0x67}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << true << false; }), (Bytes{1, 0}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << 1.0F; }), (Bytes{0, 0, 0x80, 0x3F}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << 1.0; }), (Bytes{0, 0, 0, 0, 0, 0, 0xF0, 0x3F}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << LONGLONG(-2); }),
              (Bytes{0xFE, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << ULONGLONG(1); }), (Bytes{1, 0, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(stored([](CArchive& ar) { ar << 1LL << 2ULL; }).size(), 16U);
}

TEST(CArchiveValue, EveryValueLoadsBack) {
    EXPECT_EQ(roundTrip<BYTE>(0xFF), 0xFF);
    EXPECT_EQ(roundTrip<WORD>(0xFFEE), 0xFFEE);
    EXPECT_EQ(roundTrip<LONG>(std::numeric_limits<LONG>::min()), std::numeric_limits<LONG>::min());
    EXPECT_EQ(roundTrip<DWORD>(0xFEDCBA98U), 0xFEDCBA98U);
    EXPECT_EQ(roundTrip<short>(-12345), -12345);
    EXPECT_EQ(roundTrip<char>('\xF0'), '\xF0');
    EXPECT_EQ(roundTrip<TCHAR>(0xD812), 0xD812);
    EXPECT_EQ(roundTrip<bool>(true), true);
    EXPECT_EQ(roundTrip<float>(-FLT_MIN), -FLT_MIN);
    EXPECT_EQ(roundTrip<double>(DBL_MAX), DBL_MAX);
    EXPECT_EQ(roundTrip<LONGLONG>(std::numeric_limits<LONGLONG>::min()),
              std::numeric_limits<LONGLONG>::min());
    EXPECT_EQ(roundTrip<ULONGLONG>(0xFEDCBA9876543210ULL), 0xFEDCBA9876543210ULL);
    EXPECT_EQ(roundTrip<int>(-1), -1);
    EXPECT_EQ(roundTrip<unsigned>(5), 5U);
}

TEST(CArchive, ResultsDoNotDependOnTheBufferSize) {
    const auto store = [](CArchive& ar) {
        for (int i = 0; i < 200; ++i) {
            ar << i << CString(_T('y'), i) << BYTE(i);
        }
    };
    const Bytes expected = stored(store, 1 << 20);
    for (int bufferSize : {1, 128, 129, 4096}) {
        EXPECT_EQ(stored(store, bufferSize), expected) << bufferSize;
        const auto file = fileOf(expected);
        CArchive load(file.get(), CArchive::load, bufferSize);
        for (int i = 0; i < 200; ++i) {
            int number = -1;
            CString text;
            BYTE last = 0;
            load >> number >> text >> last;
            ASSERT_EQ(number, i);
            ASSERT_EQ(text.GetLength(), i);
            ASSERT_EQ(last, i);
        }
    }
}

TEST(CArchive, EndOfFileThrowsAndRawReadsAreShort) {
    const auto file = fileOf({1, 2, 3});
    CArchive archive(file.get(), CArchive::load);
    BYTE bytes[8] = {};
    EXPECT_EQ(archive.Read(bytes, 2), 2U);
    DWORD value = 0;
    try {
        archive >> value;
        ADD_FAILURE() << "read a 4-byte value from one byte";
    } catch (CArchiveException* e) {
        EXPECT_EQ(e->m_cause, CArchiveException::endOfFile);
        e->Delete();
    }
    EXPECT_EQ(archive.Read(bytes, 8), 0U);
}

TEST(CArchive, TheWrongDirectionThrows) {
    CMemFile file;
    CArchive store(&file, CArchive::store);
    BYTE value = 0;
    try {
        store >> value;
        ADD_FAILURE() << "a storing archive was read";
    } catch (CArchiveException* e) {
        EXPECT_EQ(e->m_cause, CArchiveException::writeOnly);
        e->Delete();
    }
    CArchive load(&file, CArchive::load);
    try {
        load << value;
        ADD_FAILURE() << "a loading archive was written";
    } catch (CArchiveException* e) {
        EXPECT_EQ(e->m_cause, CArchiveException::readOnly);
        e->Delete();
    }
}

TEST(CArchive, ClosingALoadingArchiveLeavesTheFileWhereReadingStopped) {
    const auto file = fileOf({1, 2, 3, 4, 5});
    {
        CArchive archive(file.get(), CArchive::load);
        WORD value = 0;
        archive >> value;
        archive.Close();
    }
    EXPECT_EQ(file->GetPosition(), 2U);
}

TEST(CArchive, NothingIsWrittenAfterAbort) {
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        archive << 5;
        archive.Abort();
    }
    EXPECT_EQ(file.GetLength(), 0U);
    {
        CArchive archive(&file, CArchive::store | CArchive::bNoFlushOnDelete);
        archive << 5;
    }
    EXPECT_EQ(file.GetLength(), 0U);
}

TEST(CArchive, LinesEndAtCarriageReturnAndLineFeed) {
    const auto file = fileOf(stored([](CArchive& ar) { ar.WriteString(_T("one\r\n\ntwo")); }));
    CArchive archive(file.get(), CArchive::load);
    CString line;
    EXPECT_TRUE(archive.ReadString(line));
    EXPECT_EQ(utf8(line), "one");
    EXPECT_TRUE(archive.ReadString(line));
    EXPECT_EQ(utf8(line), "");
    EXPECT_TRUE(archive.ReadString(line));
    EXPECT_EQ(utf8(line), "two");
    EXPECT_FALSE(archive.ReadString(line));
}
