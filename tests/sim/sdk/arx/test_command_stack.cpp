#include <aced.h>
#include <afx.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "sim/sdk/arx/ArxHost.h"

namespace {

int g_runs = 0;
void countRun() {
    ++g_runs;
}
void doNothing() {}

class CommandStack : public testing::Test {
protected:
    CommandStack() : stack(acedRegCmds) {}
    ~CommandStack() override {
        stack->removeGroup(_T("ONE"));
        stack->removeGroup(_T("TWO"));
    }

    Acad::ErrorStatus add(const ACHAR* group, const ACHAR* global, const ACHAR* local, Adesk::Int32 flags = 0,
                          AcRxFunctionPtr function = &doNothing) {
        return stack->addCommand(group, global, local, flags, function);
    }

    AcEdCommandStack* stack;
};

/// The stack of each kind of host.
class CommandStackUnderscore : public CommandStack, public testing::WithParamInterface<bool> {
protected:
    CommandStackUnderscore() { arxVariant().underscoreIsStripped = GetParam(); }
};

INSTANTIATE_TEST_SUITE_P(EveryHost, CommandStackUnderscore, testing::Bool(), [](const auto& test) {
    return test.param ? std::string("Stripped") : std::string("LookedUpAsTyped");
});

}  // namespace

TEST_F(CommandStack, StoresTheAttributesOfACommand) {
    AcEdCommand* added = nullptr;
    ASSERT_EQ(stack->addCommand(_T("ONE"), _T("GLOBAL"), _T("LOCAL"), ACRX_CMD_NOHISTORY, &countRun, nullptr,
                                -1, AcRxResourceInstance::empty(), &added),
              Acad::eOk);
    ASSERT_NE(added, nullptr);
    EXPECT_TRUE(CString(added->groupName()) == _T("ONE"));
    EXPECT_TRUE(CString(added->globalName()) == _T("GLOBAL"));
    EXPECT_TRUE(CString(added->localName()) == _T("LOCAL"));
    EXPECT_EQ(added->commandFlags(), 0x00800000);
    EXPECT_EQ(added->UIContext(), nullptr);
    EXPECT_EQ(added->fcode(), -1);
    added->functionAddr()();
    EXPECT_EQ(g_runs, 1);
}

TEST_F(CommandStack, FindsNamesIgnoringCase) {
    add(_T("ONE"), _T("GLOBAL"), _T("LOCAL"));
    EXPECT_NE(stack->lookupCmd(_T("local"), false), nullptr);
    EXPECT_EQ(stack->lookupCmd(_T("GLOBAL"), false), nullptr);
    EXPECT_NE(stack->lookupCmd(_T("global"), true), nullptr);
    EXPECT_EQ(stack->lookupCmd(_T("LOCAL"), true), nullptr);
}

TEST_P(CommandStackUnderscore, ANameThatItselfBeginsWithOneIsFoundAsItWasRegistered) {
    add(_T("ONE"), _T("_refreshChatView"), _T("_refreshChatView"), ACRX_CMD_NOHISTORY);
    ASSERT_NE(stack->lookupCmd(_T("_refreshChatView"), false), nullptr);
    EXPECT_NE(stack->lookupCmd(_T("_REFRESHCHATVIEW"), true), nullptr);
    EXPECT_TRUE(CString(stack->lookupCmd(_T("_refreshChatView"), false)->globalName()) ==
                _T("_refreshChatView"));
    EXPECT_EQ(stack->lookupCmd(_T("_"), false), nullptr);
}

TEST_P(CommandStackUnderscore, AGlobalNameThatBeginsWithOneIsFoundBesideAnotherLocalName) {
    add(_T("ONE"), _T("_hidden"), _T("LOCAL"));
    EXPECT_NE(stack->lookupCmd(_T("_hidden"), false), nullptr);
    EXPECT_NE(stack->lookupCmd(_T("local"), false), nullptr);
}

TEST_P(CommandStackUnderscore, BeforeAGlobalNameItIsNoPartOfTheName) {
    add(_T("ONE"), _T("GLOBAL"), _T("LOCAL"));
    EXPECT_NE(stack->lookupCmd(_T("_GLOBAL"), false), nullptr);
    EXPECT_NE(stack->lookupCmd(_T("_GLOBAL"), true), nullptr);
    EXPECT_EQ(stack->lookupCmd(_T("_LOCAL"), false), nullptr);
}

TEST_F(CommandStack, StrippingTheUnderscoreMakesANameOfBoth) {
    arxVariant().underscoreIsStripped = true;
    add(_T("ONE"), _T("_refreshChatView"), _T("_refreshChatView"));
    EXPECT_NE(stack->lookupCmd(_T("refreshChatView"), false), nullptr);
    EXPECT_EQ(add(_T("ONE"), _T("refreshChatView"), _T("other")), Acad::eDuplicateKey);
    EXPECT_EQ(stack->removeCmd(_T("ONE"), _T("refreshChatView")), Acad::eOk);
}

TEST_F(CommandStack, WhatWasTypedIsLookedUpBeforeTheNameWithoutItsUnderscore) {
    arxVariant().underscoreIsStripped = false;
    add(_T("ONE"), _T("_HIDDEN"), _T("_HIDDEN"));
    add(_T("TWO"), _T("HIDDEN"), _T("HIDDEN"));
    EXPECT_TRUE(CString(stack->lookupCmd(_T("_HIDDEN"), false)->groupName()) == _T("ONE"));
    EXPECT_TRUE(CString(stack->lookupCmd(_T("HIDDEN"), false)->groupName()) == _T("TWO"));
    stack->removeGroup(_T("TWO"));
    EXPECT_EQ(stack->lookupCmd(_T("HIDDEN"), false), nullptr);
}

TEST_F(CommandStack, RejectsADuplicateNameInAGroup) {
    EXPECT_EQ(add(_T("ONE"), _T("A"), _T("A")), Acad::eOk);
    EXPECT_EQ(add(_T("ONE"), _T("a"), _T("B")), Acad::eDuplicateKey);
    EXPECT_EQ(add(_T("TWO"), _T("A"), _T("A")), Acad::eOk);
}

TEST_F(CommandStack, RejectsEmptyNamesAndANullFunction) {
    EXPECT_EQ(add(_T(""), _T("A"), _T("A")), Acad::eInvalidInput);
    EXPECT_EQ(add(_T("ONE"), _T(""), _T("A")), Acad::eInvalidInput);
    EXPECT_EQ(add(_T("ONE"), _T("A"), _T("A"), 0, nullptr), Acad::eInvalidInput);
    EXPECT_EQ(stack->lookupCmd(_T("A"), false), nullptr);
}

TEST_F(CommandStack, TheTopGroupIsSearchedFirst) {
    add(_T("ONE"), _T("A"), _T("A"));
    add(_T("TWO"), _T("A"), _T("A"));
    EXPECT_TRUE(CString(stack->lookupCmd(_T("A"), false)->groupName()) == _T("TWO"));
    EXPECT_EQ(stack->popGroupToTop(_T("ONE")), Acad::eOk);
    EXPECT_TRUE(CString(stack->lookupCmd(_T("A"), false)->groupName()) == _T("ONE"));
    EXPECT_EQ(stack->popGroupToTop(_T("NONE")), Acad::eKeyNotFound);
}

TEST_F(CommandStack, RemovingAGroupRemovesItsCommands) {
    add(_T("ONE"), _T("A"), _T("A"));
    add(_T("ONE"), _T("B"), _T("B"));
    add(_T("TWO"), _T("C"), _T("C"));
    EXPECT_EQ(stack->removeGroup(_T("one")), Acad::eOk);
    EXPECT_EQ(stack->lookupCmd(_T("A"), false), nullptr);
    EXPECT_EQ(stack->lookupCmd(_T("B"), false), nullptr);
    EXPECT_NE(stack->lookupCmd(_T("C"), false), nullptr);
    EXPECT_EQ(stack->removeGroup(_T("ONE")), Acad::eKeyNotFound);
}

TEST_F(CommandStack, RemovesOneCommand) {
    add(_T("ONE"), _T("A"), _T("A"));
    add(_T("ONE"), _T("B"), _T("B"));
    EXPECT_EQ(stack->removeCmd(_T("ONE"), _T("A")), Acad::eOk);
    EXPECT_EQ(stack->lookupCmd(_T("A"), false), nullptr);
    EXPECT_NE(stack->lookupCmd(_T("B"), false), nullptr);
    EXPECT_EQ(stack->removeCmd(_T("ONE"), _T("A")), Acad::eKeyNotFound);
}

TEST_F(CommandStack, IteratesGroupByGroup) {
    add(_T("ONE"), _T("A"), _T("A"));
    add(_T("ONE"), _T("B"), _T("B"));
    add(_T("TWO"), _T("C"), _T("C"));
    CString names;
    const std::unique_ptr<AcEdCommandIterator> commands(stack->iterator());
    for (; !commands->done(); commands->next()) {
        names += CString(commands->commandGroup()) + _T("/") + commands->command()->globalName() + _T(" ");
    }
    EXPECT_TRUE(names == _T("TWO/C ONE/A ONE/B "));
    EXPECT_EQ(commands->command(), nullptr);
    EXPECT_FALSE(commands->next());
}
