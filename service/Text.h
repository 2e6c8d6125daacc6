#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Small helpers over UTF-8 text, shared by the search, the event writer and the session titles.
namespace zentri::service {

/// Decodes the code point that starts at `at` and moves `at` past it. A byte that starts no valid sequence
/// gives U+FFFD and is skipped alone, so that a walk over any bytes ends.
char32_t nextCodePoint(std::string_view utf8, std::size_t& at);

/// Appends one code point as UTF-8; a value that is no Unicode scalar is written as U+FFFD.
void appendUtf8(std::string& text, char32_t codePoint);

bool isValidUtf8(std::string_view bytes);

std::size_t codePointCount(std::string_view utf8);

/// The first `count` code points of the text (the whole text when it has fewer).
std::string_view firstCodePoints(std::string_view utf8, std::size_t count);

/// True for the characters that are written without blanks between words: Han, kana, Hangul.
bool isCjk(char32_t codePoint);

/// Lower-cases ASCII letters and turns full-width ASCII into its plain form; everything else stays.
std::string foldForSearch(std::string_view utf8);

/// Without white space (ASCII blanks, tabs, line ends) at both ends.
std::string_view trimmed(std::string_view text);

/// The parts between the separators, trimmed; empty parts are left out.
std::vector<std::string> splitTrimmed(std::string_view text, std::string_view separator);

/// The text in one line for a message: line ends become blanks.
std::string oneLine(std::string_view text);

/// Turns CR LF and lone CR into LF over a text that arrives in pieces; a CR at the end of a piece waits for
/// the next one.
class LineEndNormalizer {
public:
    std::string feed(std::string_view piece);
    /// What still waits at the end of the text: a line feed or nothing.
    std::string finish();

private:
    bool m_pendingCr = false;
};

}  // namespace zentri::service
