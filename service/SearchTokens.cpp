#include "service/SearchTokens.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>

#include "service/Text.h"

namespace zentri::service {

namespace {

/// Phrases without content. The first match counts, so a longer phrase precedes its own prefixes.
constexpr std::array<std::string_view, 83> kEmptyPhrases{
    "为什么", "怎么样",   "怎么办", "怎么回事", "怎么",   "如何",   "怎样",   "请问", "请教", "什么",
    "能不能", "可不可以", "可以",   "是不是",   "有没有", "有什么", "一下子", "一下", "我想", "我要",
    "我的",   "帮我",     "帮忙",   "麻烦",     "告诉",   "谢谢",   "你好",   "您好", "大家", "老师",
    "知道",   "应该",     "需要",   "方法",     "办法",   "命令",   "步骤",   "教程", "操作", "软件",
    "图纸里", "图里",     "图上",   "哪里",     "在哪",   "哪个",   "哪些",   "这个", "那个", "这些",
    "那些",   "这样",     "那么",   "然后",     "还有",   "另外",   "最好",   "比较", "就是", "已经",
    "现在",   "突然",     "总是",   "一个",     "几个",   "个",     "吗",     "呢",   "吧",   "啊",
    "呀",     "的",       "了",     "把",       "被",     "给",     "在",     "我",   "你",   "您",
    "它",     "那",       "想"};

const std::set<std::string, std::less<>>& emptyWords() {
    static const std::set<std::string, std::less<>> words{
        "a",      "an",    "the",   "i",    "me",    "my",    "you",    "your",   "we",    "it",   "its",
        "is",     "are",   "was",   "be",   "am",    "do",    "does",   "did",    "done",  "can",  "could",
        "should", "would", "will",  "how",  "what",  "which", "why",    "when",   "where", "who",  "to",
        "of",     "in",    "on",    "at",   "for",   "with",  "from",   "by",     "and",   "or",   "then",
        "so",     "if",    "this",  "that", "these", "those", "there",  "please", "tell",  "help", "want",
        "need",   "get",   "way",   "cad",  "use",   "using", "make",   "some",   "any",   "s",    "t",
        "m",      "don",   "doesn", "won",  "as",    "about", "command"};
    return words;
}

constexpr std::array<std::string_view, 19> kFollowUps{
    "那",   "然后", "还有", "它",    "这个",       "这样",      "再",  "接着",      "另外", "如果",
    "具体", "继续", "and ", "then ", "what about", "what else", "it ", "how about", "more"};

bool isAsciiWord(char32_t c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

SearchTokens tokensOf(std::string_view text) {
    SearchTokens tokens;
    const std::string folded = foldForSearch(text);
    std::string previous;
    std::string word;
    bool paired = false;
    const auto endOfRun = [&] {
        if (!previous.empty() && !paired) {
            tokens.pairs.push_back(previous);
        }
        previous.clear();
        paired = false;
    };
    const auto endOfWord = [&] {
        if (!word.empty()) {
            tokens.words.push_back(word);
        }
        word.clear();
    };
    for (std::size_t at = 0; at < folded.size();) {
        const std::size_t start = at;
        const char32_t c = nextCodePoint(folded, at);
        const std::string character = folded.substr(start, at - start);
        if (isCjk(c)) {
            endOfWord();
            tokens.singles.push_back(character);
            if (!previous.empty()) {
                tokens.pairs.push_back(previous + character);
                paired = true;
            }
            previous = character;
            continue;
        }
        endOfRun();
        if (isAsciiWord(c)) {
            word += character;
        } else {
            endOfWord();
        }
    }
    endOfRun();
    endOfWord();
    return tokens;
}

std::string contentOfQuestion(std::string_view question) {
    const std::string folded = foldForSearch(question);
    std::string content;
    for (std::size_t at = 0; at < folded.size();) {
        const std::string_view rest = std::string_view(folded).substr(at);
        const auto phrase = std::find_if(kEmptyPhrases.begin(), kEmptyPhrases.end(),
                                         [&](std::string_view p) { return rest.substr(0, p.size()) == p; });
        if (phrase != kEmptyPhrases.end()) {
            content += ' ';
            at += phrase->size();
            continue;
        }
        const std::size_t start = at;
        const char32_t c = nextCodePoint(folded, at);
        if (!isAsciiWord(c)) {
            content += isCjk(c) ? folded.substr(start, at - start) : " ";
            continue;
        }
        while (at < folded.size() && isAsciiWord(static_cast<unsigned char>(folded[at]))) {
            ++at;
        }
        const std::string word = folded.substr(start, at - start);
        content += ' ';
        if (emptyWords().count(word) == 0) {
            content += word + ' ';
        }
    }
    // Collapse runs of spaces, so that a multi-word keyword still matches after a word inside it was removed.
    content.erase(
        std::unique(content.begin(), content.end(), [](char a, char b) { return a == ' ' && b == ' '; }),
        content.end());
    return std::string(trimmed(content));
}

bool beginsAsFollowUp(std::string_view question) {
    const std::string folded = foldForSearch(trimmed(question));
    return std::any_of(kFollowUps.begin(), kFollowUps.end(),
                       [&](std::string_view start) { return folded.compare(0, start.size(), start) == 0; });
}

bool isEnglish(std::string_view text) {
    bool letters = false;
    for (std::size_t at = 0; at < text.size();) {
        const char32_t c = nextCodePoint(text, at);
        if (isCjk(c)) {
            return false;
        }
        letters = letters || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    }
    return letters;
}

}  // namespace zentri::service
