#include <gtest/gtest.h>

#include "service/Text.h"

namespace zentri::service {
namespace {

TEST(Text, CountsAndTruncatesByCodePoint) {
    EXPECT_EQ(codePointCount("a圆😀"), 3U);
    EXPECT_EQ(firstCodePoints("a圆😀b", 3), "a圆😀");
    EXPECT_EQ(firstCodePoints("ab", 9), "ab");
    EXPECT_EQ(firstCodePoints("ab", 0), "");
}

TEST(Text, ReplacesInvalidBytesOneByOne) {
    const std::string broken =
        "\xE5\x9C\xFF\xC0\xAF"
        "a";
    std::size_t at = 0;
    std::u32string decoded;
    while (at < broken.size()) {
        decoded += nextCodePoint(broken, at);
    }
    EXPECT_EQ(decoded, U"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFDa");
}

TEST(Text, ValidatesUtf8) {
    EXPECT_TRUE(isValidUtf8(""));
    EXPECT_TRUE(isValidUtf8("圆😀"));
    EXPECT_FALSE(isValidUtf8("\xE5\x9C"));
    EXPECT_FALSE(isValidUtf8("\xC0\x80"));
    EXPECT_FALSE(isValidUtf8("\xED\xA0\x80"));
    EXPECT_FALSE(isValidUtf8("\xF5\x80\x80\x80"));
}

TEST(Text, EncodesEveryLengthAndReplacesSurrogates) {
    std::string text;
    for (const char32_t c : {U'a', U'é', U'圆', U'😀', char32_t{0xD800}, char32_t{0x110000}}) {
        appendUtf8(text, c);
    }
    EXPECT_EQ(text, "aé圆😀\uFFFD\uFFFD");
}

TEST(Text, FoldsCaseAndFullWidthForms) {
    EXPECT_EQ(foldForSearch("ＣＩＲＣＬＥ　Line（１）圆"), "circle line(1)圆");
}

TEST(Text, TrimsAndSplits) {
    EXPECT_EQ(trimmed(" \t圆\r\n"), "圆");
    EXPECT_EQ(trimmed(" \n"), "");
    EXPECT_EQ(splitTrimmed(" a , ,b,", ","), (std::vector<std::string>{"a", "b"}));
    EXPECT_TRUE(splitTrimmed("", ",").empty());
    EXPECT_EQ(oneLine("\n a\nb\tc \n"), "a b c");
}

TEST(LineEndNormalizer, ConvertsEveryLineEndToLfAcrossPieceBoundaries) {
    const std::string text = "a\r\nb\rc\n\r\n\r\r\nd\r";
    const std::string wanted = "a\nb\nc\n\n\n\nd\n";
    for (std::size_t first = 0; first <= text.size(); ++first) {
        for (std::size_t second = first; second <= text.size(); ++second) {
            LineEndNormalizer lineEnds;
            std::string got = lineEnds.feed(text.substr(0, first));
            got += lineEnds.feed(text.substr(first, second - first));
            got += lineEnds.feed(text.substr(second));
            got += lineEnds.finish();
            ASSERT_EQ(got, wanted) << first << ", " << second;
        }
    }
}

}  // namespace
}  // namespace zentri::service
