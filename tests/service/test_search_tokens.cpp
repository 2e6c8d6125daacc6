#include <gtest/gtest.h>

#include "service/SearchTokens.h"

namespace zentri::service {
namespace {

using Tokens = std::vector<std::string>;

TEST(SearchTokens, SplitsHanTextIntoPairs) {
    const SearchTokens tokens = tokensOf("画圆形");
    EXPECT_EQ(tokens.pairs, (Tokens{"画圆", "圆形"}));
    EXPECT_EQ(tokens.singles, (Tokens{"画", "圆", "形"}));
    EXPECT_TRUE(tokens.words.empty());
}

TEST(SearchTokens, IsolatedCharacterCountsAsAPair) {
    EXPECT_EQ(tokensOf("圆").pairs, Tokens{"圆"});
    EXPECT_EQ(tokensOf("圆 LINE 弧线").pairs, (Tokens{"圆", "弧线"}));
}

TEST(SearchTokens, ConvertsWordsToLowerCaseAndKeepsNumbers) {
    const SearchTokens tokens = tokensOf("用ＣＩＲＣＬＥ画R50的Circle-2");
    EXPECT_EQ(tokens.words, (Tokens{"circle", "r50", "circle", "2"}));
    EXPECT_EQ(tokens.pairs, (Tokens{"用", "画", "的"}));
}

TEST(SearchTokens, PunctuationSeparatesRuns) {
    EXPECT_EQ(tokensOf("画圆，画线").pairs, (Tokens{"画圆", "画线"}));
    EXPECT_TRUE(tokensOf("？！").empty());
}

TEST(SearchTokens, RemovesWordsWithoutContentFromAQuestion) {
    EXPECT_EQ(contentOfQuestion("请问怎么画圆呢？"), "画圆");
    EXPECT_EQ(contentOfQuestion("How do I draw a circle?"), "draw circle");
    EXPECT_EQ(contentOfQuestion("怎么办"), "");
    EXPECT_EQ(contentOfQuestion("delete  a   layer"), "delete layer");
    EXPECT_EQ(contentOfQuestion("LINE怎么用"), "line 用");
}

TEST(SearchTokens, RecognisesFollowUpQuestions) {
    for (const char* text : {"那怎么删除?", "还有呢", "然后？", "And how do I undo it", " what else?"}) {
        EXPECT_TRUE(beginsAsFollowUp(text)) << text;
    }
    for (const char* text : {"怎么画圆", "andy draws", "how do I undo", ""}) {
        EXPECT_FALSE(beginsAsFollowUp(text)) << text;
    }
}

TEST(SearchTokens, DistinguishesEnglishFromChinese) {
    EXPECT_TRUE(isEnglish("circle?"));
    EXPECT_FALSE(isEnglish("circle 怎么用"));
    EXPECT_FALSE(isEnglish("123"));
    EXPECT_FALSE(isEnglish(""));
}

}  // namespace
}  // namespace zentri::service
