#include "service/Topic.h"

#include <algorithm>

#include "service/Text.h"

namespace zentri::service {

namespace {

/// Sets `rest` to the text after the prefix when the line begins with it.
bool takePrefix(std::string_view line, std::string_view prefix, std::string_view& rest) {
    if (line.substr(0, prefix.size()) != prefix) {
        return false;
    }
    rest = trimmed(line.substr(prefix.size()));
    return true;
}

/// Sets `rest` to the text of a numbered line ("3. text").
bool takeStep(std::string_view line, std::string_view& rest) {
    const std::size_t dot = line.find_first_not_of("0123456789");
    if (dot == 0 || dot == std::string_view::npos || line.substr(dot, 2) != ". ") {
        return false;
    }
    rest = trimmed(line.substr(dot + 2));
    return true;
}

class TopicReader {
public:
    explicit TopicReader(const std::string& name) : m_name(name) {}

    void readLine(std::string_view line) {
        ++m_line;
        std::string_view rest;
        if (line.empty()) {
            return;
        } else if (takePrefix(line, "area:", rest)) {
            m_area = rest;
        } else if (takePrefix(line, "# ", rest)) {
            finishTopic();
            m_topics.push_back({});
            m_topics.back().area = m_area;
            m_topics.back().title = rest;
            m_topicLine = m_line;
        } else if (m_topics.empty()) {
            fail(m_line, "text before the first topic");
        } else {
            readContent(line, m_topics.back());
        }
    }

    std::vector<Topic> take() {
        finishTopic();
        return std::move(m_topics);
    }

private:
    void readContent(std::string_view line, Topic& topic) {
        std::string_view rest;
        if (takePrefix(line, "ask:", rest)) {
            topic.questions = splitTrimmed(rest, "|");
        } else if (takePrefix(line, "keys:", rest)) {
            topic.keywords = splitTrimmed(rest, ",");
        } else if (takePrefix(line, "cmd:", rest)) {
            topic.commands = splitTrimmed(rest, ",");
        } else if (takePrefix(line, "en:", rest)) {
            topic.english = rest;
        } else if (takeStep(line, rest)) {
            topic.steps.emplace_back(rest);
        } else if (takePrefix(line, "- ", rest)) {
            topic.tips.emplace_back(rest);
        } else {
            if (!topic.introduction.empty()) {
                topic.introduction += '\n';
            }
            topic.introduction += line;
        }
    }

    void finishTopic() {
        if (m_topics.empty()) {
            return;
        }
        const Topic& topic = m_topics.back();
        const auto need = [&](bool present, const char* what) {
            if (!present) {
                fail(m_topicLine, "the topic '" + topic.title + "' has no " + what);
            }
        };
        need(!topic.title.empty(), "title");
        need(!topic.area.empty(), "area");
        need(!topic.keywords.empty(), "keys");
        need(!topic.english.empty(), "English line");
        need(!topic.introduction.empty(), "introduction");
    }

    [[noreturn]] void fail(int line, const std::string& what) const {
        throw TopicError(m_name + ":" + std::to_string(line) + ": " + what);
    }

    const std::string& m_name;
    std::string m_area;
    std::vector<Topic> m_topics;
    int m_line = 0;
    int m_topicLine = 0;
};

}  // namespace

std::vector<Topic> parseTopics(std::string_view text, const std::string& name) {
    if (!isValidUtf8(text)) {
        throw TopicError(name + ": not UTF-8");
    }
    TopicReader reader(name);
    for (std::size_t start = 0; start < text.size();) {
        const std::size_t end = std::min(text.find('\n', start), text.size());
        reader.readLine(trimmed(text.substr(start, end - start)));
        start = end + 1;
    }
    return reader.take();
}

}  // namespace zentri::service
