#pragma once

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace zentri::service {

/// One topic of the knowledge base, as read from a *.topics file.
struct Topic {
    std::string area;                    ///< Chapter heading: 绘图, 图层 …
    std::string title;                   ///< A phrase that can follow 怎么: 画圆
    std::string english;                 ///< Summary in English, for questions in English.
    std::vector<std::string> questions;  ///< Typical questions, in Chinese and English.
    std::vector<std::string> keywords;   ///< Search keywords, in Chinese and English.
    std::vector<std::string> commands;   ///< Command names without brackets, the main one first.
    std::string introduction;
    std::vector<std::string> steps;
    std::vector<std::string> tips;

    /// True for greetings and the like, which answer only when no drafting topic fits.
    bool isSmallTalk() const { return steps.empty(); }
};

/// Unusable topics; what() is one line for the user, with the file and line of a syntax error.
class TopicError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Parses one knowledge file:
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
/// An area applies to all topics that follow it. `name` is the file name for error messages. Throws
/// TopicError.
std::vector<Topic> parseTopics(std::string_view text, const std::string& name);

}  // namespace zentri::service
