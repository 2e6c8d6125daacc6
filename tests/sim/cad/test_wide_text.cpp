#include "sim/cad/app/WideText.h"

#include <gtest/gtest.h>

TEST(WideText, RoundTripsAllPlanes) {
    const std::string text = "Aé圆😀";
    const CString wide = cad::toWide(text);
    EXPECT_EQ(wide.GetLength(), 5);
    EXPECT_EQ(cad::fromWide(wide), text);
}

TEST(WideText, LoneSurrogatesBecomeReplacementCharacters) {
    CString wide;
    wide += static_cast<TCHAR>(0xDE00);
    wide += _T('a');
    wide += static_cast<TCHAR>(0xD83D);
    EXPECT_EQ(cad::fromWide(wide),
              "\xEF\xBF\xBD"
              "a\xEF\xBF\xBD");
}
