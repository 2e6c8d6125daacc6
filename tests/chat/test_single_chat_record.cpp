#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <vector>

#include "chat/ZR_AiChatSingleChatRecord.h"

namespace {

std::int64_t now() {
    return std::chrono::duration_cast<std::chrono::seconds>(
               std::chrono::system_clock::now().time_since_epoch())
        .count();
}

ZR_AiChatSingleChatRecord recordWithTimes(const std::vector<std::int64_t>& times) {
    ZR_AiChatSingleChatRecord record;
    for (const std::int64_t time : times) {
        record.AddUnit(kChatRoleUser, _T("text"), time);
    }
    return record;
}

/// The bytes that the object stores.
std::vector<BYTE> stored(CObject& object) {
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        object.Serialize(archive);
    }
    std::vector<BYTE> bytes(static_cast<std::size_t>(file.GetLength()));
    file.SeekToBegin();
    file.Read(bytes.data(), static_cast<UINT>(bytes.size()));
    return bytes;
}

/// Reads the bytes into the record; false when the archive ends too early.
bool load(std::vector<BYTE> bytes, ZR_AiChatSingleChatRecord& record) {
    CMemFile file(bytes.data(), static_cast<UINT>(bytes.size()));
    try {
        CArchive archive(&file, CArchive::load);
        record.Serialize(archive);
    } catch (CArchiveException* exception) {
        exception->Delete();
        return false;
    }
    return true;
}

void append(std::vector<BYTE>& bytes, std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes.push_back(static_cast<BYTE>(value >> (8 * i)));
    }
}

/// Appends a short wide string in CArchive's encoding.
void append(std::vector<BYTE>& bytes, const CString& text) {
    append(bytes, 0xFF, 1);
    append(bytes, 0xFFFE, 2);
    append(bytes, static_cast<std::uint64_t>(text.GetLength()), 1);
    for (int i = 0; i < text.GetLength(); ++i) {
        append(bytes, static_cast<std::uint64_t>(text[i]), 2);
    }
}

}  // namespace

TEST(SingleChatRecord, IsInitiallyEmpty) {
    const ZR_AiChatSingleChatRecord record;
    SingleChatUnit unit;
    unit.message = _T("untouched");
    SingleChatUnitList units;
    units.Add(unit);

    EXPECT_EQ(record.GetUnitCount(), 0);
    EXPECT_EQ(record.GetCreateTime(), 0);
    EXPECT_EQ(record.GetUseTime(), 0);
    EXPECT_TRUE(record.GetLastUserInput().IsEmpty());
    EXPECT_FALSE(record.GetLastUnit(unit));
    EXPECT_EQ(unit.message, _T("untouched"));
    EXPECT_FALSE(record.ContainsText(_T("")));
    EXPECT_FALSE(record.ContainsText(_T("a")));
    EXPECT_TRUE(record.GetUnits(units));
    EXPECT_EQ(units.GetCount(), 0);
}

TEST(SingleChatRecord, MatchesTheEmptyIdUntilItHasOne) {
    ZR_AiChatSingleChatRecord record;
    EXPECT_TRUE(record.IsSession(_T("")));
    record.SetSessionId(_T("Ab"));
    EXPECT_FALSE(record.IsSession(_T("")));
    EXPECT_TRUE(record.IsSession(_T("Ab")));
    EXPECT_FALSE(record.IsSession(_T("ab")));
    EXPECT_FALSE(record.IsSession(_T("Abc")));
}

TEST(SingleChatRecord, TakesTheFirstUnitAsTitleEvenIfItIsAnAnswer) {
    ZR_AiChatSingleChatRecord record;
    record.AddUnit(kChatRoleAssistant, _T("answer"));
    record.AddUnit(kChatRoleUser, _T("question"));
    EXPECT_EQ(record.GetTitle(), _T("answer"));

    SingleChatUnit unit;
    unit.role = kChatRoleUser;
    unit.message = _T("whole unit");
    ZR_AiChatSingleChatRecord other;
    other.AddUnit(unit);
    EXPECT_EQ(other.GetTitle(), _T("whole unit"));
}

TEST(SingleChatRecord, KeepsAnEmptyFirstTextAsTitle) {
    ZR_AiChatSingleChatRecord record;
    record.AddUnit(kChatRoleUser, _T(""));
    record.AddUnit(kChatRoleUser, _T("second"));
    EXPECT_TRUE(record.GetTitle().IsEmpty());
}

TEST(SingleChatRecord, StampsAUnitWithTheCurrentSecond) {
    ZR_AiChatSingleChatRecord record;
    const std::int64_t before = now();
    record.AddUnit(kChatRoleUser, _T("text"));
    SingleChatUnit unit;
    ASSERT_TRUE(record.GetLastUnit(unit));
    EXPECT_GE(unit.time, before);
    EXPECT_LE(unit.time, now());
}

TEST(SingleChatRecord, FindsTheNewestQuestionBeforeAnAnswer) {
    ZR_AiChatSingleChatRecord record;
    record.AddUnit(kChatRoleUser, _T("first"), 1);
    record.AddUnit(kChatRoleUser, _T("second"), 2);
    record.AddUnit(kChatRoleAssistant, _T("answer"), 3);
    EXPECT_EQ(record.GetLastUserInput(), _T("second"));
    SingleChatUnit last;
    ASSERT_TRUE(record.GetLastUnit(last));
    EXPECT_EQ(last.message, _T("answer"));
    EXPECT_EQ(last.role, kChatRoleAssistant);
    EXPECT_EQ(last.time, 3);
}

TEST(SingleChatRecord, HasNoUserInputWithAnswersOnly) {
    ZR_AiChatSingleChatRecord record;
    record.AddUnit(kChatRoleAssistant, _T("answer"));
    EXPECT_TRUE(record.GetLastUserInput().IsEmpty());
}

TEST(SingleChatRecord, FindsTextInAnyMessageCaseSensitively) {
    ZR_AiChatSingleChatRecord record;
    record.AddUnit(kChatRoleUser, _T("怎样画圆"));
    record.AddUnit(kChatRoleAssistant, _T("Type CIRCLE"));
    EXPECT_TRUE(record.ContainsText(_T("画圆")));
    EXPECT_TRUE(record.ContainsText(_T("CIRC")));
    EXPECT_FALSE(record.ContainsText(_T("circ")));
    EXPECT_TRUE(record.ContainsText(_T("")));
}

TEST(SingleChatRecord, FindsTextAfterAnEmbeddedNull) {
    ZR_AiChatSingleChatRecord record;
    record.AddUnit(kChatRoleUser, CString(_T("before\0after"), 12));
    EXPECT_TRUE(record.ContainsText(_T("after")));
    EXPECT_TRUE(record.ContainsText(CString(_T("e\0a"), 3)));
    EXPECT_FALSE(record.ContainsText(CString(_T("e\0x"), 3)));
    EXPECT_EQ(record.GetTitle().GetLength(), 12);
}

TEST(SingleChatRecord, ComparesItsIdAfterAnEmbeddedNull) {
    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(CString(_T("id\0a"), 4));
    EXPECT_TRUE(record.IsSession(CString(_T("id\0a"), 4)));
    EXPECT_FALSE(record.IsSession(CString(_T("id\0b"), 4)));
    EXPECT_FALSE(record.IsSession(_T("id")));
}

TEST(SingleChatRecord, DoesNotFindTextInTheSessionId) {
    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(_T("needle"));
    record.AddUnit(kChatRoleUser, _T("hay"));
    EXPECT_FALSE(record.ContainsText(_T("needle")));
}

TEST(SingleChatRecord, DerivesItsTimesFromTheUnits) {
    const ZR_AiChatSingleChatRecord record = recordWithTimes({30, 10, 20});
    EXPECT_EQ(record.GetCreateTime(), 10);
    EXPECT_EQ(record.GetUseTime(), 30);
}

TEST(SingleChatRecord, ReplacesAZeroTimeWithTheNextUnitsTime) {
    EXPECT_EQ(recordWithTimes({0, 20}).GetCreateTime(), 20);
    EXPECT_EQ(recordWithTimes({20, 0}).GetCreateTime(), 0);
    EXPECT_EQ(recordWithTimes({20, 0, 30}).GetCreateTime(), 30);
    EXPECT_EQ(recordWithTimes({0, -5}).GetUseTime(), -5);
    EXPECT_EQ(recordWithTimes({-5, 0, -7}).GetUseTime(), -7);
}

TEST(SingleChatRecord, ClearsTheIdToo) {
    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(_T("id"));
    record.AddUnit(kChatRoleUser, _T("text"));
    record.Clear();
    EXPECT_TRUE(record.GetSessionId().IsEmpty());
    EXPECT_TRUE(record.GetTitle().IsEmpty());
    EXPECT_EQ(record.GetUnitCount(), 0);
    record.AddUnit(kChatRoleUser, _T("again"));
    EXPECT_EQ(record.GetTitle(), _T("again"));
}

TEST(SingleChatRecord, CopiesItsUnits) {
    ZR_AiChatSingleChatRecord source;
    source.SetSessionId(_T("id"));
    source.AddUnit(kChatRoleUser, _T("question"), 5);

    ZR_AiChatSingleChatRecord copy(source);
    copy.AddUnit(kChatRoleAssistant, _T("answer"), 6);
    copy.SetSessionId(_T("other"));
    EXPECT_EQ(copy.GetUnitCount(), 2);
    EXPECT_EQ(copy.GetTitle(), _T("question"));
    EXPECT_EQ(source.GetUnitCount(), 1);
    EXPECT_EQ(source.GetSessionId(), _T("id"));

    SingleChatUnitList units;
    ASSERT_TRUE(source.GetUnits(units));
    units[0].message = _T("changed");
    EXPECT_EQ(source.GetLastUserInput(), _T("question"));
}

TEST(SingleChatRecord, AssignmentReplacesItsContent) {
    ZR_AiChatSingleChatRecord source;
    source.AddUnit(kChatRoleUser, _T("question"), 5);
    ZR_AiChatSingleChatRecord target = recordWithTimes({1, 2, 3});
    target.SetSessionId(_T("old"));
    target = source;
    EXPECT_EQ(target.GetUnitCount(), 1);
    EXPECT_TRUE(target.GetSessionId().IsEmpty());
    EXPECT_EQ(target.GetTitle(), _T("question"));
}

TEST(SingleChatRecord, SurvivesSelfAssignment) {
    ZR_AiChatSingleChatRecord record = recordWithTimes({1, 2});
    const ZR_AiChatSingleChatRecord& same = record;
    record = same;
    EXPECT_EQ(record.GetUnitCount(), 2);
}

TEST(SingleChatRecord, CanBeCreatedFromItsRuntimeClass) {
    CRuntimeClass* const runtimeClass = RUNTIME_CLASS(ZR_AiChatSingleChatRecord);
    EXPECT_STREQ(runtimeClass->m_lpszClassName, "ZR_AiChatSingleChatRecord");
    const std::unique_ptr<CObject> object(runtimeClass->CreateObject());
    ASSERT_NE(object, nullptr);
    EXPECT_TRUE(object->IsKindOf(runtimeClass));
    EXPECT_TRUE(object->IsSerializable());
}

TEST(SingleChatRecord, StoresTheUnitCountWithEightBytes) {
    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(_T("s1"));
    record.AddUnit(kChatRoleUser, _T("问"), 1700000000);
    record.AddUnit(kChatRoleAssistant, _T("ok"), -1);

    std::vector<BYTE> expected;
    append(expected, 1, 4);
    append(expected, _T("s1"));
    append(expected, _T("问"));
    append(expected, 2, 8);
    append(expected, 0, 4);
    append(expected, _T("问"));
    append(expected, 1700000000, 8);
    append(expected, 1, 4);
    append(expected, _T("ok"));
    append(expected, ~std::uint64_t{0}, 8);
    EXPECT_EQ(stored(record), expected);
}

TEST(SingleChatRecord, LoadsAUnitCountOfFourBytes) {
    std::vector<BYTE> bytes;
    append(bytes, 77, 4);  // any version
    append(bytes, _T("s1"));
    append(bytes, _T("a title of its own"));
    append(bytes, 2, 4);
    append(bytes, 0, 4);
    append(bytes, _T("question"));
    append(bytes, 5, 8);
    append(bytes, 1, 4);
    append(bytes, _T("answer"));
    append(bytes, 6, 8);

    ZR_AiChatSingleChatRecord record = recordWithTimes({1, 2, 3});
    ASSERT_TRUE(load(bytes, record));
    EXPECT_EQ(record.GetSessionId(), _T("s1"));
    EXPECT_EQ(record.GetTitle(), _T("a title of its own"));
    EXPECT_EQ(record.GetUnitCount(), 2);
    EXPECT_EQ(record.GetLastUserInput(), _T("question"));
    EXPECT_EQ(record.GetCreateTime(), 5);
    EXPECT_EQ(record.GetUseTime(), 6);
}

TEST(SingleChatRecord, DoesNotLoadBackWhatItStored) {
    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(_T("s1"));
    record.AddUnit(kChatRoleAssistant, _T(""), 5);
    // The upper half of the count is read as the role, so everything after it is read four bytes too early.
    std::vector<BYTE> bytes = stored(record);
    ZR_AiChatSingleChatRecord loaded;
    load(bytes, loaded);
    EXPECT_EQ(loaded.GetSessionId(), _T("s1"));
    SingleChatUnit unit;
    const bool same = loaded.GetLastUnit(unit) && unit.role == kChatRoleAssistant && unit.time == 5;
    EXPECT_FALSE(same);
}

TEST(SingleChatRecord, LoadsBackARecordWithoutUnits) {
    ZR_AiChatSingleChatRecord record;
    record.SetSessionId(_T("s1"));
    ZR_AiChatSingleChatRecord loaded = recordWithTimes({1});
    ASSERT_TRUE(load(stored(record), loaded));
    EXPECT_EQ(loaded.GetUnitCount(), 0);
    EXPECT_EQ(loaded.GetSessionId(), _T("s1"));
}

TEST(SingleChatRecord, ThrowsAnArchiveExceptionOnATruncatedArchive) {
    std::vector<BYTE> bytes;
    append(bytes, 1, 4);
    append(bytes, _T("s1"));
    append(bytes, _T("title"));
    append(bytes, 0xFFFFFFFF, 4);  // a count without any units
    ZR_AiChatSingleChatRecord record;
    EXPECT_FALSE(load(bytes, record));
    EXPECT_EQ(record.GetUnitCount(), 0);
}

TEST(SingleChatRecord, RemovesItsUnitsBeforeLoading) {
    ZR_AiChatSingleChatRecord record = recordWithTimes({1, 2});
    record.SetSessionId(_T("s1"));
    EXPECT_FALSE(load({}, record));
    EXPECT_EQ(record.GetUnitCount(), 0);
    EXPECT_EQ(record.GetSessionId(), _T("s1"));
}

TEST(SessionList, IsCopiedRecordByRecord) {
    ZR_AiChatSessionList source;
    source.Add(recordWithTimes({1}));
    source.Add(recordWithTimes({2, 3}));
    ZR_AiChatSessionList target;
    target.Add(recordWithTimes({9}));
    copySessionList(source, target);
    target[1].AddUnit(kChatRoleUser, _T("more"));
    ASSERT_EQ(target.GetCount(), 2);
    EXPECT_EQ(target[0].GetUseTime(), 1);
    EXPECT_EQ(source[1].GetUnitCount(), 2);

    copySessionList(target, target);
    EXPECT_EQ(target.GetCount(), 2);
}

TEST(SessionList, StoresItsCountAndElementsAsMfcDoesByDefault) {
    ZR_AiChatSessionList sessions;
    sessions.Add(recordWithTimes({1}));
    sessions.Add(recordWithTimes({2}));
    const std::vector<BYTE> bytes = stored(sessions);
    ASSERT_EQ(bytes.size(), sizeof(WORD) + 2 * sizeof(ZR_AiChatSingleChatRecord));
    EXPECT_EQ(bytes[0], 2);
    EXPECT_EQ(bytes[1], 0);
}
