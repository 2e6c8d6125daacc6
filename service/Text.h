#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Helpers for UTF-8 text, shared by the search, the chat stream and the session titles.
namespace zentri::service {

/// Decodes the code point at byte offset `at`, which must be within the text, and advances `at` past it. A
/// byte that begins no valid sequence yields U+FFFD and advances `at` by one.
char32_t nextCodePoint(std::string_view utf8, std::size_t& at);

/// Appends one code point as UTF-8; a value that is not a Unicode scalar value becomes U+FFFD.
void appendUtf8(std::string& text, char32_t codePoint);

bool isValidUtf8(std::string_view bytes);

/// The number of code points; each invalid byte counts as one.
std::size_t codePointCount(std::string_view utf8);

/// A view of the first `count` code points (of the whole text when it has fewer).
std::string_view firstCodePoints(std::string_view utf8, std::size_t count);

/// True for Han, kana and Hangul, which the search indexes by pairs of characters instead of by words.
bool isCjk(char32_t codePoint);

/// Converts full-width ASCII to ASCII and ASCII letters to lower case; invalid bytes become U+FFFD,
/// everything else is kept.
std::string foldForSearch(std::string_view utf8);

/// A view of the text without leading and trailing white space (ASCII spaces, tabs, line ends).
std::string_view trimmed(std::string_view text);

/// The trimmed parts between the separators; empty parts are dropped.
std::vector<std::string> splitTrimmed(std::string_view text, std::string_view separator);

/// The trimmed text on one line, for messages: line ends and tabs become spaces.
std::string oneLine(std::string_view text);

/// Converts CR LF and lone CR to LF in a text that arrives in pieces; a CR at the end of a piece is held
/// until the next piece.
class LineEndNormalizer {
public:
    /// The converted piece.
    std::string feed(std::string_view piece);
    /// What is still held at the end of the text: a line feed or nothing.
    std::string finish();

private:
    bool m_pendingCr = false;
};

}  // namespace zentri::service
