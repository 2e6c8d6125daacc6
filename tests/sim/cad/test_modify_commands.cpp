#include "tests/sim/cad/EditorFixture.h"

class ModifyCommands : public EditorFixture {
protected:
    ModifyCommands() { type("C 0,0 10 REC 50,50 60,60 "); }
};

TEST_F(ModifyCommands, EraseAllTakesEffectOnEnter) {
    type("ERASE ALL ");
    EXPECT_EQ(lastLine(), "找到 2 个");
    EXPECT_EQ(entities().size(), 2u);
    EXPECT_EQ(editor.selection().size(), 2u);
    type("\n");
    EXPECT_TRUE(entities().empty());
}

TEST_F(ModifyCommands, EraseSelectsTheEntityNearAPick) {
    type("E ");
    pick(10, 0.5);
    EXPECT_EQ(lastLine(), "找到 1 个");
    type("\n");
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_EQ(entities()[0].kind, cad::EntityKind::Polyline);
}

TEST_F(ModifyCommands, EraseLastRemovesTheNewestEntity) {
    type("E L \n");
    ASSERT_EQ(entities().size(), 1u);
    EXPECT_EQ(entities()[0].kind, cad::EntityKind::Circle);
}

TEST_F(ModifyCommands, WindowSelectsEnclosedEntitiesAndCrossingAlsoTouchedOnes) {
    type("E W 45,45 55,55 ");
    EXPECT_EQ(lastLine(), "找到 0 个");
    type("C 45,45 55,55 ");
    EXPECT_EQ(lastLine(), "找到 1 个");
}

TEST_F(ModifyCommands, PickThatHitsNothingStartsASelectionWindow) {
    type("E ");
    pick(100, 100);
    EXPECT_EQ(prompt(), "ERASE 指定对角点: ");
    pick(55, 55);
    EXPECT_EQ(lastLine(), "找到 1 个");
}

TEST_F(ModifyCommands, CancelledEraseKeepsEverything) {
    type("E ALL \x03");
    EXPECT_EQ(entities().size(), 2u);
    EXPECT_TRUE(editor.selection().empty());
}

TEST_F(ModifyCommands, UndoAndRedoGoCommandByCommand) {
    type("U\n");
    EXPECT_EQ(lastLine(), "RECTANG");
    EXPECT_EQ(entities().size(), 1u);
    type("REDO\n");
    EXPECT_EQ(entities().size(), 2u);
    type("UNDO 5 ");
    EXPECT_TRUE(entities().empty());
    EXPECT_EQ(lastLine(), "所有操作都已放弃。");
}

TEST_F(ModifyCommands, UndoRestoresErasedEntities) {
    type("E ALL \n");
    type("U ");
    EXPECT_EQ(entities().size(), 2u);
}

TEST_F(ModifyCommands, UndoRejectsACountBelowOne) {
    type("UNDO 0 ");
    EXPECT_EQ(lastLine(), "需要大于零的整数。");
    type("\n");
    EXPECT_EQ(entities().size(), 1u);
}

TEST_F(ModifyCommands, ListDescribesTheSelectedEntities) {
    type("LIST ALL \n");
    std::string all = editor.commandLine().text();
    EXPECT_NE(all.find("圆心 0.0000,0.0000  半径 10.0000"), std::string::npos);
    EXPECT_NE(all.find("LWPOLYLINE"), std::string::npos);
}
