#include "tests/sim/sdk/win32/TestWindow.h"

#include <win32_cairo.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

/// The number of characters of a Chinese text without a glyph.
int missingGlyphs() {
    const TestWindow window(WS_POPUP, {0, 0, 50, 50});
    const HDC dc = GetDC(window);
    PangoLayout* layout = win32TextLayout(dc, u"画一个圆", -1);
    const int missing = pango_layout_get_unknown_glyphs_count(layout);
    g_object_unref(layout);
    ReleaseDC(window, dc);
    return missing;
}

/// Makes fontconfig find no installed fonts.
void takeSystemFontsAway(const std::filesystem::path& folder) {
    std::ofstream(folder / "fonts.conf")
        << "<fontconfig><cachedir>" << folder.string() << "/cache</cachedir></fontconfig>\n";
    setenv("FONTCONFIG_FILE", (folder / "fonts.conf").c_str(), 1);
}

}  // namespace

TEST(Font, FontFileFromTheEnvironmentShowsChineseWithoutSystemFonts) {
    std::string pattern = (std::filesystem::temp_directory_path() / "zr_font_XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    takeSystemFontsAway(pattern);
    setenv("ZR_SIM_FONT", ZR_TEST_FONT, 1);
    EXPECT_EQ(missingGlyphs(), 0);
    std::filesystem::remove_all(pattern);
}
