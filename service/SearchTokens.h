#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zentri::service {

/// A text split into tokens for the full-text search. Han text has no spaces between words, so it is indexed
/// by overlapping pairs of characters, and also by single characters for questions with a different word
/// order.
struct SearchTokens {
    std::vector<std::string> pairs;  ///< 画圆形 gives 画圆, 圆形; an isolated character counts as a pair.
    std::vector<std::string> singles;  ///< 画, 圆, 形
    std::vector<std::string> words;    ///< Latin words and numbers, in lower case.

    bool empty() const { return pairs.empty() && words.empty(); }
};

/// Splits a text, after folding it with foldForSearch().
SearchTokens tokensOf(std::string_view text);

/// The question without the words that any question may contain (怎么, 请问, how do I …), folded with
/// foldForSearch(), with single spaces between the remaining words. Empty when no content is left.
std::string contentOfQuestion(std::string_view question);

/// True when the question begins like a follow-up to an earlier one: 那…, 还有呢, and then …
bool beginsAsFollowUp(std::string_view question);

/// True for a text with Latin letters and no CJK characters.
bool isEnglish(std::string_view text);

}  // namespace zentri::service
