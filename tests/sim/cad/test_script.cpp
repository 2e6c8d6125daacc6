#include "sim/cad/core/Script.h"

#include <filesystem>
#include <fstream>

#include "tests/sim/cad/EditorFixture.h"

using Lines = std::vector<std::string>;

TEST(Script, BlankLinesAreEnterAndSemicolonsStartComments) {
    EXPECT_EQ(cad::parseScript("; a circle\nCIRCLE\r\n0,0\n\n;x\nU"),
              (Lines{"CIRCLE\n", "0,0\n", "\n", "U\n"}));
}

TEST(Script, MissingFileGivesNullopt) {
    EXPECT_EQ(cad::readScript("/no/such/file.scr"), std::nullopt);
}

TEST(Script, ByteOrderMarkIsDropped) {
    const std::string path = testing::TempDir() + "zentri_host_bom.scr";
    std::ofstream(path) << "\xEF\xBB\xBFREDRAW\n";
    EXPECT_EQ(cad::readScript(path), Lines{"REDRAW\n"});
    std::filesystem::remove(path);
}

class ScriptPlayback : public EditorFixture {};

TEST_F(ScriptPlayback, LinesAreProcessedAsIfTyped) {
    for (const std::string& line : cad::parseScript("LINE\n0,0\n10,0\n\n; remark\nCOLORTHEME 1\nC 5,5 2\n")) {
        editor.sendString(line);
    }
    editor.processInput();
    EXPECT_EQ(entities().size(), 2u);
    EXPECT_EQ(editor.variables().integer("COLORTHEME"), 1);
    EXPECT_EQ(lines().front(), "命令: LINE");
}
