#include "service/Text.h"

#include <algorithm>

namespace zentri::service {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kFullWidthFirst = 0xFF01;
constexpr char32_t kFullWidthLast = 0xFF5E;
constexpr char32_t kFullWidthOffset = 0xFEE0;
constexpr char32_t kIdeographicSpace = 0x3000;

/// Length in bytes of the sequence at `at`, and its code point; 0 when the bytes there are not valid UTF-8.
std::size_t decodeAt(std::string_view utf8, std::size_t at, char32_t& codePoint) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(utf8[i]); };
    const unsigned char lead = byte(at);
    if (lead < 0x80) {
        codePoint = lead;
        return 1;
    }
    std::size_t length = 0;
    char32_t smallest = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
        smallest = 0x80;
        codePoint = lead & 0x1FU;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        smallest = 0x800;
        codePoint = lead & 0x0FU;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        smallest = 0x10000;
        codePoint = lead & 0x07U;
    } else {
        return 0;
    }
    if (at + length > utf8.size()) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0U) != 0x80U) {
            return 0;
        }
        codePoint = (codePoint << 6U) | (byte(at + i) & 0x3FU);
    }
    const bool surrogate = codePoint >= 0xD800 && codePoint <= 0xDFFF;
    if (codePoint < smallest || codePoint > 0x10FFFF || surrogate) {
        return 0;
    }
    return length;
}

}  // namespace

char32_t nextCodePoint(std::string_view utf8, std::size_t& at) {
    char32_t codePoint = kReplacement;
    const std::size_t length = decodeAt(utf8, at, codePoint);
    if (length == 0) {
        ++at;
        return kReplacement;
    }
    at += length;
    return codePoint;
}

void appendUtf8(std::string& text, char32_t codePoint) {
    if (codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
        codePoint = kReplacement;
    }
    const auto put = [&](char32_t bits) {
        text.push_back(static_cast<char>(static_cast<unsigned char>(bits)));
    };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0U | (codePoint >> 6U));
        put(0x80U | (codePoint & 0x3FU));
    } else if (codePoint < 0x10000) {
        put(0xE0U | (codePoint >> 12U));
        put(0x80U | ((codePoint >> 6U) & 0x3FU));
        put(0x80U | (codePoint & 0x3FU));
    } else {
        put(0xF0U | (codePoint >> 18U));
        put(0x80U | ((codePoint >> 12U) & 0x3FU));
        put(0x80U | ((codePoint >> 6U) & 0x3FU));
        put(0x80U | (codePoint & 0x3FU));
    }
}

bool isValidUtf8(std::string_view bytes) {
    std::size_t at = 0;
    while (at < bytes.size()) {
        char32_t codePoint = 0;
        const std::size_t length = decodeAt(bytes, at, codePoint);
        if (length == 0) {
            return false;
        }
        at += length;
    }
    return true;
}

std::size_t codePointCount(std::string_view utf8) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < utf8.size(); ++count) {
        nextCodePoint(utf8, at);
    }
    return count;
}

std::string_view firstCodePoints(std::string_view utf8, std::size_t count) {
    std::size_t at = 0;
    while (at < utf8.size() && count > 0) {
        nextCodePoint(utf8, at);
        --count;
    }
    return utf8.substr(0, at);
}

bool isCjk(char32_t codePoint) {
    return (codePoint >= 0x4E00 && codePoint <= 0x9FFF) || (codePoint >= 0x3400 && codePoint <= 0x4DBF) ||
           (codePoint >= 0x20000 && codePoint <= 0x3134F) || (codePoint >= 0xF900 && codePoint <= 0xFAFF) ||
           (codePoint >= 0x3040 && codePoint <= 0x30FF) || (codePoint >= 0xAC00 && codePoint <= 0xD7AF);
}

std::string foldForSearch(std::string_view utf8) {
    std::string folded;
    folded.reserve(utf8.size());
    for (std::size_t at = 0; at < utf8.size();) {
        char32_t c = nextCodePoint(utf8, at);
        if (c >= kFullWidthFirst && c <= kFullWidthLast) {
            c -= kFullWidthOffset;
        } else if (c == kIdeographicSpace) {
            c = ' ';
        }
        if (c >= 'A' && c <= 'Z') {
            c += 'a' - 'A';
        }
        appendUtf8(folded, c);
    }
    return folded;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlank = " \t\r\n";
    const std::size_t first = text.find_first_not_of(kBlank);
    if (first == std::string_view::npos) {
        return {};
    }
    return text.substr(first, text.find_last_not_of(kBlank) - first + 1);
}

std::vector<std::string> splitTrimmed(std::string_view text, std::string_view separator) {
    std::vector<std::string> parts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(separator, start), text.size());
        const std::string_view part = trimmed(text.substr(start, end - start));
        if (!part.empty()) {
            parts.emplace_back(part);
        }
        start = end + separator.size();
    }
    return parts;
}

std::string oneLine(std::string_view text) {
    std::string line{trimmed(text)};
    for (char& c : line) {
        if (c == '\n' || c == '\r' || c == '\t') {
            c = ' ';
        }
    }
    return line;
}

std::string LineEndNormalizer::feed(std::string_view piece) {
    std::string out;
    out.reserve(piece.size() + 1);
    for (const char c : piece) {
        if (m_pendingCr) {
            out.push_back('\n');
            m_pendingCr = false;
            if (c == '\n') {
                continue;
            }
        }
        if (c == '\r') {
            m_pendingCr = true;
        } else {
            out.push_back(c);
        }
    }
    return out;
}

std::string LineEndNormalizer::finish() {
    const bool pending = m_pendingCr;
    m_pendingCr = false;
    return pending ? "\n" : "";
}

}  // namespace zentri::service
