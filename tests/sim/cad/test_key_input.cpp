#include "sim/cad/app/KeyInput.h"

#include "tests/sim/cad/EditorFixture.h"

class KeyInputTest : public EditorFixture {
protected:
    void characters(const std::u16string& units) {
        for (const char16_t unit : units) {
            keys.character(unit);
        }
        editor.processInput();
    }

    std::string input() { return editor.commandLine().input(); }

    cad::KeyInput keys{editor};
};

TEST_F(KeyInputTest, CharactersBecomeInput) {
    characters(u"圆a");
    EXPECT_EQ(input(), "圆a");
    characters(u"\b");
    EXPECT_EQ(input(), "圆");
}

TEST_F(KeyInputTest, SurrogatePairIsOneCharacter) {
    characters(u"😀");
    EXPECT_EQ(input(), "😀");
    characters(u"\b");
    EXPECT_EQ(input(), "");
}

TEST_F(KeyInputTest, LoneSurrogatesAreDropped) {
    keys.character(0xD83D);
    keys.character('a');
    keys.character(0xDE00);
    editor.processInput();
    EXPECT_EQ(input(), "a");
}

TEST_F(KeyInputTest, ReturnSubmitsAndEscapeAndControlCCancel) {
    characters(u"line\r");
    EXPECT_EQ(editor.activeCommandNames(), "LINE");
    characters(u"\x1B");
    EXPECT_TRUE(editor.isQuiescent());
    characters(u"line\r\x03");
    EXPECT_TRUE(editor.isQuiescent());
}

TEST_F(KeyInputTest, OtherControlCharactersAreIgnored) {
    characters(u"\x01\x16\x7F");
    EXPECT_EQ(input(), "");
}

TEST_F(KeyInputTest, EditingAndFunctionKeysAreHandled) {
    characters(u"ac");
    EXPECT_TRUE(keys.key(VK_LEFT));
    characters(u"b");
    EXPECT_EQ(input(), "abc");
    EXPECT_TRUE(keys.key(VK_HOME));
    EXPECT_TRUE(keys.key(VK_DELETE));
    editor.processInput();
    EXPECT_EQ(input(), "bc");
    EXPECT_TRUE(keys.key(VK_F7));
    EXPECT_EQ(editor.variables().integer("GRIDMODE"), 0);
    EXPECT_TRUE(keys.key(VK_F8));
    EXPECT_EQ(editor.variables().integer("ORTHOMODE"), 1);
    EXPECT_FALSE(keys.key(VK_F12));
}

TEST_F(KeyInputTest, F1RunsHelpInsideAnotherCommand) {
    characters(u"line\r0,0\r");
    keys.key(VK_F1);
    editor.processInput();
    EXPECT_EQ(editor.activeCommandNames(), "LINE");
    EXPECT_NE(editor.commandLine().text().find("可用的命令"), std::string::npos);
}
