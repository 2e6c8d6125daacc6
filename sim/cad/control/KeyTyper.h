#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <string>

namespace cad {

/// Types by posting key messages to whatever window has the focus at the time, one character in each turn of
/// the message loop, so that a character that moves the focus has done so before the next one comes. UI
/// thread.
class KeyTyper {
public:
    /// `onTurn` must bring about one call of turn() when the messages posted so far have been worked off.
    explicit KeyTyper(std::function<void()> onTurn) : m_onTurn(std::move(onTurn)) {}

    /// Characters of a US keyboard come as keys, others as an input method gives them. `done` is told whether
    /// a window had the focus throughout.
    void typeText(const std::string& text, std::function<void(bool)> done);
    void typeKey(int virtualKey, bool shift, bool control, bool alt, std::function<void(bool)> done);

    void turn();

    /// The virtual key of a name such as "Return" or "a"; 0 for none.
    static int keyOf(const std::string& name);

private:
    struct Stroke {
        /// 0: the units come as characters.
        int virtualKey = 0;
        bool shift = false;
        bool control = false;
        bool alt = false;
        std::u16string units;
    };
    struct Job {
        std::deque<Stroke> strokes;
        std::function<void(bool)> done;
        /// The turns to let pass before the next stroke, or before the job is done.
        int turnsToWait;
    };

    void start(Job job);
    static Stroke strokeOf(char32_t character);
    static bool post(const Stroke& stroke);

    std::function<void()> m_onTurn;
    std::deque<Job> m_jobs;
};

}  // namespace cad
