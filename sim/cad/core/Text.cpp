#include "sim/cad/core/Text.h"

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <locale>
#include <sstream>

namespace cad {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

char upperLetter(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

// The length in bytes of a UTF-8 sequence, and the payload bits of its first byte; 0 if that is invalid.
int sequenceLength(unsigned char first, char32_t& bits) {
    if (first < 0x80) {
        bits = first;
        return 1;
    }
    if (first >= 0xC2 && first < 0xE0) {
        bits = first & 0x1Fu;
        return 2;
    }
    if (first >= 0xE0 && first < 0xF0) {
        bits = first & 0x0Fu;
        return 3;
    }
    if (first >= 0xF0 && first < 0xF5) {
        bits = first & 0x07u;
        return 4;
    }
    return 0;
}

bool isScalar(char32_t c, int bytes) {
    constexpr char32_t kSmallest[] = {0, 0, 0x80, 0x800, 0x10000};
    return c >= kSmallest[bytes] && c <= 0x10FFFF && (c < 0xD800 || c > 0xDFFF);
}

}  // namespace

std::u32string fromUtf8(const std::string& text) {
    std::u32string result;
    size_t at = 0;
    while (at < text.size()) {
        char32_t character = 0;
        const int bytes = sequenceLength(static_cast<unsigned char>(text[at]), character);
        int taken = 1;
        while (taken < bytes && at + static_cast<size_t>(taken) < text.size()) {
            const auto next = static_cast<unsigned char>(text[at + static_cast<size_t>(taken)]);
            if ((next & 0xC0u) != 0x80u) {
                break;
            }
            character = (character << 6) | (next & 0x3Fu);
            ++taken;
        }
        const bool whole = bytes > 0 && taken == bytes && isScalar(character, bytes);
        result += whole ? character : kReplacement;
        at += static_cast<size_t>(taken);
    }
    return result;
}

std::string toUtf8(char32_t c) {
    std::string result;
    const auto put = [&result](char32_t byte) {
        result += static_cast<char>(static_cast<unsigned char>(byte));
    };
    if (!isScalar(c, 1)) {
        c = kReplacement;
    }
    if (c < 0x80) {
        put(c);
    } else if (c < 0x800) {
        put(0xC0 | (c >> 6));
        put(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        put(0xE0 | (c >> 12));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    } else {
        put(0xF0 | (c >> 18));
        put(0x80 | ((c >> 12) & 0x3F));
        put(0x80 | ((c >> 6) & 0x3F));
        put(0x80 | (c & 0x3F));
    }
    return result;
}

std::string toUtf8(const std::u32string& text) {
    std::string result;
    for (const char32_t c : text) {
        result += toUtf8(c);
    }
    return result;
}

std::string upper(std::string text) {
    for (char& c : text) {
        c = upperLetter(c);
    }
    return text;
}

bool sameName(const std::string& a, const std::string& b) {
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return upperLetter(x) == upperLetter(y);
           });
}

std::string trimmed(const std::string& text) {
    const char* const blanks = " \t\r\n";
    const size_t from = text.find_first_not_of(blanks);
    if (from == std::string::npos) {
        return {};
    }
    return text.substr(from, text.find_last_not_of(blanks) - from + 1);
}

bool startsWith(const std::string& text, const std::string& start) {
    return text.compare(0, start.size(), start) == 0;
}

std::vector<std::string> splitLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (!line.empty() && line.back() == '\r') {
            line.pop_back();
        }
        lines.push_back(line);
    }
    return lines;
}

bool matches(const std::string& name, const std::string& pattern) {
    if (pattern.empty()) {
        return name.empty();
    }
    if (pattern[0] == '*') {
        return matches(name, pattern.substr(1)) || (!name.empty() && matches(name.substr(1), pattern));
    }
    return !name.empty() && (pattern[0] == '?' || upperLetter(pattern[0]) == upperLetter(name[0])) &&
           matches(name.substr(1), pattern.substr(1));
}

std::optional<double> parseNumber(const std::string& text) {
    const size_t from = !text.empty() && text[0] == '+' ? 1 : 0;
    if (text.size() == from || text[from] == '+') {
        return std::nullopt;
    }
    double value = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data() + from, end, value);
    if (result.ec != std::errc() || result.ptr != end || !(value - value == 0)) {
        return std::nullopt;
    }
    return value;
}

std::optional<int> parseInteger(const std::string& text) {
    const size_t from = !text.empty() && text[0] == '+' ? 1 : 0;
    int value = 0;
    const char* const end = text.data() + text.size();
    const auto result = std::from_chars(text.data() + from, end, value);
    if (text.size() == from || result.ec != std::errc() || result.ptr != end) {
        return std::nullopt;
    }
    return value;
}

std::string formatNumber(double value, int decimals) {
    std::ostringstream stream;
    stream.imbue(std::locale::classic());
    stream.setf(std::ios::fixed);
    stream.precision(decimals);
    stream << value;
    return stream.str();
}

std::optional<std::string> readTextFile(const std::string& path) {
    std::error_code error;
    const auto file = std::filesystem::u8path(path);
    if (!std::filesystem::is_regular_file(file, error)) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    if (!stream) {
        return std::nullopt;
    }
    std::string text{std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    if (startsWith(text, "\xEF\xBB\xBF")) {
        text.erase(0, 3);
    }
    return text;
}

}  // namespace cad
