#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zentri::service {

/// One thing a drafter may ask about, as the knowledge files hold it.
struct Topic {
    std::string area;                    ///< Chapter, as a heading for people: 绘图, 图层 …
    std::string title;                   ///< A phrase that goes after 怎么: 画圆
    std::string english;                 ///< The gist in English, for questions in English.
    std::vector<std::string> questions;  ///< How people ask, in Chinese and English.
    std::vector<std::string> keywords;   ///< Words that point here, in Chinese and English.
    std::vector<std::string> commands;   ///< Command names without brackets.
    std::string introduction;
    std::vector<std::string> steps;
    std::vector<std::string> tips;

    /// Greetings and the like: found by keywords only when nothing else fits.
    bool isSmallTalk() const { return steps.empty(); }
};

/// A knowledge file that cannot be read; the text names file and line.
class TopicError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Reads one knowledge file:
///
///     area: 绘图
///     # 画圆
///     ask: 怎么画圆 | how do I draw a circle
///     keys: 圆, 圆形, circle
///     cmd: CIRCLE
///     en: 【CIRCLE】 draws a circle from a centre and a radius.
///     One or more lines of introduction.
///     1. a step
///     - a tip
///
/// `name` is the file's name for messages. Throws TopicError.
std::vector<Topic> parseTopics(std::string_view text, const std::string& name);

}  // namespace zentri::service
