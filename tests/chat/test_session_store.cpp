#include <gtest/gtest.h>

#include <QVector>
#include <random>

#include "chat/ZR_AiChatSessionStore.h"
#include "host/core/ZR_ZentriText.h"

namespace {

ZR_AiChatSingleChatRecord record(int id, int mark) {
    ZR_AiChatSingleChatRecord result;
    result.SetSessionId(toCString(QString::number(id)));
    result.AddUnit(kChatRoleUser, toCString(QString::number(mark)));
    return result;
}

QString markOf(const ZR_AiChatSingleChatRecord& session) {
    return toQString(session.GetLastUserInput());
}

/// Each session as id and mark, looked up by a linear search.
using PlainList = QVector<QPair<int, int>>;

int indexIn(const PlainList& list, int id) {
    for (int i = 0; i < list.size(); ++i) {
        if (list[i].first == id) {
            return i;
        }
    }
    return -1;
}

void expectEqual(const ZR_AiChatSessionStore& store, const PlainList& plain, int idCount) {
    ASSERT_EQ(store.list().GetCount(), plain.size());
    for (int i = 0; i < plain.size(); ++i) {
        EXPECT_EQ(markOf(store.list()[i]), QString::number(plain[i].second));
    }
    for (int id = 0; id < idCount; ++id) {
        const ZR_AiChatSingleChatRecord* const found = store.find(toCString(QString::number(id)));
        const int index = indexIn(plain, id);
        ASSERT_EQ(found != nullptr, index >= 0);
        if (found != nullptr) {
            EXPECT_EQ(markOf(*found), QString::number(plain[index].second));
        }
    }
}

}  // namespace

TEST(SessionStore, FindsTheSameAsALinearSearch) {
    constexpr int kIds = 12;
    std::mt19937 random(5);
    std::uniform_int_distribution<int> anyId(0, kIds - 1);
    std::uniform_int_distribution<int> anyChoice(0, 9);
    ZR_AiChatSessionStore store;
    PlainList plain;
    for (int step = 0; step < 1000; ++step) {
        if (anyChoice(random) == 0) {
            // A list from the service may contain an id several times.
            ZR_AiChatSessionList sessions;
            plain.clear();
            for (int i = anyChoice(random); i > 0; --i) {
                plain.append({anyId(random), 100 * step + i});
                sessions.Add(record(plain.last().first, plain.last().second));
            }
            store.replaceAll(sessions);
        } else {
            const int id = anyId(random);
            store.put(record(id, step));
            const int index = indexIn(plain, id);
            if (index >= 0) {
                plain[index].second = step;
            } else {
                plain.append({id, step});
            }
        }
        expectEqual(store, plain, kIds);
        if (testing::Test::HasFailure()) {
            FAIL() << "step " << step;
        }
    }
}

TEST(SessionStore, DistinguishesIdsThatDifferAfterAnEmbeddedNull) {
    const CString first(_T("id\0a"), 4);
    const CString second(_T("id\0b"), 4);
    ZR_AiChatSessionStore store;
    for (const CString& id : {first, second, CString(_T("id"))}) {
        ZR_AiChatSingleChatRecord session;
        session.SetSessionId(id);
        session.AddUnit(kChatRoleUser, id);
        store.put(session);
    }
    ASSERT_EQ(store.list().GetCount(), 3);
    for (const CString& id : {first, second, CString(_T("id"))}) {
        ASSERT_NE(store.find(id), nullptr);
        EXPECT_TRUE(store.find(id)->IsSession(id));
        EXPECT_EQ(markOf(*store.find(id)), toQString(id));
    }
    EXPECT_FALSE(store.find(first)->IsSession(second));
}

TEST(SessionStore, AcceptsARecordOfItsOwnList) {
    ZR_AiChatSessionStore store;
    for (int id = 0; id < 5; ++id) {
        store.put(record(id, id));
    }
    for (int id = 0; id < 5; ++id) {
        store.put(*store.find(toCString(QString::number(id))));
    }
    ASSERT_EQ(store.list().GetCount(), 5);
    EXPECT_EQ(markOf(store.list()[4]), QStringLiteral("4"));
}

TEST(SessionStore, StoresCopies) {
    ZR_AiChatSessionStore store;
    ZR_AiChatSingleChatRecord session = record(1, 1);
    store.put(session);
    session.AddUnit(kChatRoleUser, _T("later"));
    EXPECT_EQ(markOf(*store.find(_T("1"))), QStringLiteral("1"));
}
