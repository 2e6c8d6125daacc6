#pragma once

#include <functional>
#include <string>
#include <vector>

namespace cad {

/// The command line as text: what was printed, the prompt, the text being typed with its caret, and the
/// commands that can be recalled.
class CommandLine {
public:
    /// Called with every piece of text that enters the scroll-back, line feeds included.
    void setEcho(std::function<void(const std::string&)> echo) { m_echo = std::move(echo); }

    /// Appends the text to the last printed line; each line feed starts a new line.
    void print(const std::string& text);
    /// Adds a separate line.
    void addLine(const std::string& line);
    const std::vector<std::string>& lines() const { return m_lines; }
    void clear();
    /// The scroll-back, then the prompt with the text being typed.
    std::string text() const;

    const std::string& prompt() const { return m_prompt; }
    void setPrompt(const std::string& prompt);

    std::string input() const;
    /// Characters before the caret.
    size_t caret() const { return m_caret; }
    std::string inputBeforeCaret() const;
    /// Removes and returns the typed text.
    std::string takeInput();
    void setInput(const std::string& text);

    void insert(char32_t character);
    void backspace();
    void deleteForward();
    void moveCaret(int characters);
    void caretToStart();
    void caretToEnd();

    /// The lines that Up and Down recall, oldest first. Consecutive duplicates are stored once.
    const std::vector<std::string>& recallable() const { return m_recall; }
    void remember(const std::string& line);
    void recallPrevious();
    void recallNext();

    /// Counts changes of any kind, for the window that shows this.
    unsigned revision() const { return m_revision; }
    /// Counts changes of the scroll-back.
    unsigned linesRevision() const { return m_linesRevision; }

private:
    void linesChanged();

    std::vector<std::string> m_lines;
    /// The last line may still grow.
    bool m_lineOpen = false;
    std::string m_prompt;
    std::u32string m_input;
    size_t m_caret = 0;
    std::vector<std::string> m_recall;
    size_t m_recallAt = 0;
    std::u32string m_typedBeforeRecall;
    std::function<void(const std::string&)> m_echo;
    unsigned m_revision = 0;
    unsigned m_linesRevision = 0;
};

}  // namespace cad
