#include <gtest/gtest.h>

#include "sim/cad/core/Text.h"

TEST(HostText, Utf8RoundTripsAllPlanes) {
    const std::string text = "Aé圆😀";
    EXPECT_EQ(cad::fromUtf8(text), U"Aé圆😀");
    EXPECT_EQ(cad::toUtf8(cad::fromUtf8(text)), text);
}

TEST(HostText, MalformedUtf8BecomesReplacementCharacters) {
    EXPECT_EQ(cad::fromUtf8("a\xFF"
                            "b"),
              U"a\uFFFDb");
    EXPECT_EQ(cad::fromUtf8("\xE5\x9C"), U"\uFFFD");
    // Surrogates are not valid in UTF-8.
    EXPECT_EQ(cad::fromUtf8("\xED\xA0\x80"), U"\uFFFD");
    EXPECT_EQ(cad::toUtf8(char32_t{0xD800}), "\xEF\xBF\xBD");
}

TEST(HostText, NumbersMustSpanTheWholeText) {
    EXPECT_EQ(cad::parseNumber("+2.5"), 2.5);
    EXPECT_EQ(cad::parseNumber("-.5"), -0.5);
    EXPECT_EQ(cad::parseNumber("2.5x"), std::nullopt);
    EXPECT_EQ(cad::parseNumber(""), std::nullopt);
    EXPECT_EQ(cad::parseNumber("+"), std::nullopt);
    EXPECT_EQ(cad::parseNumber("inf"), std::nullopt);
    EXPECT_EQ(cad::parseNumber("nan"), std::nullopt);
    EXPECT_EQ(cad::parseInteger("12"), 12);
    EXPECT_EQ(cad::parseInteger("1.5"), std::nullopt);
    EXPECT_EQ(cad::parseInteger("99999999999"), std::nullopt);
}

TEST(HostText, PatternsIgnoreCase) {
    EXPECT_TRUE(cad::matches("COLORTHEME", "color*"));
    EXPECT_TRUE(cad::matches("OSMODE", "?SM*E"));
    EXPECT_FALSE(cad::matches("OSMODE", "OS"));
    EXPECT_TRUE(cad::matches("", "*"));
}

TEST(HostText, SplitsLinesAtLfAndCrLf) {
    EXPECT_EQ(cad::splitLines("a\r\n\nb"), (std::vector<std::string>{"a", "", "b"}));
    EXPECT_TRUE(cad::splitLines("").empty());
}
