#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zentri::service {

/// A text cut up for the full-text search. Han text has no blanks between words, so it is indexed by
/// overlapping pairs of characters, and by single characters for questions whose words stand in another
/// order.
struct SearchTokens {
    std::vector<std::string> pairs;    ///< 画圆形 gives 画圆, 圆形; a lone character counts as a pair.
    std::vector<std::string> singles;  ///< 画, 圆, 形
    std::vector<std::string> words;    ///< Latin words and numbers, lower case.

    bool empty() const { return pairs.empty() && words.empty(); }
};

SearchTokens tokensOf(std::string_view text);

/// The question without the words that every question has (怎么, 请问, how do I …), lower case, in plain
/// ASCII forms: what is left says what it is about.
std::string contentOfQuestion(std::string_view question);

/// True when the question leans on what was said before: 那…, 还有呢, and then …
bool beginsAsFollowUp(std::string_view question);

/// True for a text with no CJK characters and some Latin letters.
bool isEnglish(std::string_view text);

}  // namespace zentri::service
