#include "sim/cad/core/CommandLine.h"

#include <algorithm>

#include "sim/cad/core/Text.h"

namespace cad {

namespace {

constexpr size_t kKeptLines = 4000;
constexpr size_t kKeptRecalls = 200;

}  // namespace

void CommandLine::print(const std::string& text) {
    size_t from = 0;
    while (from <= text.size()) {
        const size_t feed = text.find('\n', from);
        const size_t end = feed == std::string::npos ? text.size() : feed;
        if (end > from) {
            if (!m_lineOpen) {
                m_lines.emplace_back();
                m_lineOpen = true;
            }
            m_lines.back().append(text, from, end - from);
        }
        if (feed == std::string::npos) {
            break;
        }
        // A line feed starts a new line; by convention, printed text begins with one.
        m_lines.emplace_back();
        m_lineOpen = true;
        from = feed + 1;
    }
    if (m_echo) {
        m_echo(text);
    }
    linesChanged();
}

void CommandLine::addLine(const std::string& line) {
    if (m_lineOpen && !m_lines.empty() && m_lines.back().empty()) {
        m_lines.pop_back();
    }
    m_lines.push_back(line);
    m_lineOpen = false;
    if (m_echo) {
        m_echo("\n" + line);
    }
    linesChanged();
}

void CommandLine::linesChanged() {
    if (m_lines.size() > kKeptLines) {
        m_lines.erase(m_lines.begin(), m_lines.end() - static_cast<std::ptrdiff_t>(kKeptLines));
    }
    ++m_linesRevision;
    ++m_revision;
}

void CommandLine::clear() {
    m_lines.clear();
    m_lineOpen = false;
    linesChanged();
}

std::string CommandLine::text() const {
    std::string all;
    for (const std::string& line : m_lines) {
        all += line + "\n";
    }
    return all + m_prompt + input();
}

void CommandLine::setPrompt(const std::string& prompt) {
    if (m_lineOpen && !m_lines.empty() && m_lines.back().empty()) {
        m_lines.pop_back();
        linesChanged();
    }
    m_lineOpen = false;
    m_prompt = prompt;
    ++m_revision;
}

std::string CommandLine::input() const {
    return toUtf8(m_input);
}

std::string CommandLine::inputBeforeCaret() const {
    return toUtf8(m_input.substr(0, m_caret));
}

std::string CommandLine::takeInput() {
    const std::string text = input();
    m_input.clear();
    m_caret = 0;
    m_recallAt = m_recall.size();
    m_typedBeforeRecall.clear();
    ++m_revision;
    return text;
}

void CommandLine::setInput(const std::string& text) {
    m_input = fromUtf8(text);
    m_caret = m_input.size();
    ++m_revision;
}

void CommandLine::insert(char32_t character) {
    m_input.insert(m_input.begin() + static_cast<std::ptrdiff_t>(m_caret), character);
    ++m_caret;
    ++m_revision;
}

void CommandLine::backspace() {
    if (m_caret > 0) {
        m_input.erase(--m_caret, 1);
        ++m_revision;
    }
}

void CommandLine::deleteForward() {
    if (m_caret < m_input.size()) {
        m_input.erase(m_caret, 1);
        ++m_revision;
    }
}

void CommandLine::moveCaret(int characters) {
    const auto wanted = static_cast<std::ptrdiff_t>(m_caret) + characters;
    m_caret = static_cast<size_t>(
        std::clamp<std::ptrdiff_t>(wanted, 0, static_cast<std::ptrdiff_t>(m_input.size())));
    ++m_revision;
}

void CommandLine::caretToStart() {
    m_caret = 0;
    ++m_revision;
}

void CommandLine::caretToEnd() {
    m_caret = m_input.size();
    ++m_revision;
}

void CommandLine::remember(const std::string& line) {
    if (!line.empty() && (m_recall.empty() || m_recall.back() != line)) {
        m_recall.push_back(line);
        if (m_recall.size() > kKeptRecalls) {
            m_recall.erase(m_recall.begin());
        }
    }
    m_recallAt = m_recall.size();
}

void CommandLine::recallPrevious() {
    if (m_recallAt == 0) {
        return;
    }
    if (m_recallAt == m_recall.size()) {
        m_typedBeforeRecall = m_input;
    }
    setInput(m_recall[--m_recallAt]);
}

void CommandLine::recallNext() {
    if (m_recallAt >= m_recall.size()) {
        return;
    }
    ++m_recallAt;
    setInput(m_recallAt == m_recall.size() ? toUtf8(m_typedBeforeRecall) : m_recall[m_recallAt]);
}

}  // namespace cad
