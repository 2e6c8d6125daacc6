#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <string>

namespace cad {

/// Types by posting key messages to the window that has the focus at that moment. A character is posted only
/// after the previous one has been processed, so that one that moves the focus redirects those after it. UI
/// thread.
class KeyTyper {
public:
    /// `onTurn` must cause one call of turn() after the messages posted so far have been processed.
    explicit KeyTyper(std::function<void()> onTurn) : m_onTurn(std::move(onTurn)) {}

    /// Characters of a US keyboard are posted as key messages, others as WM_CHAR, as an input method does.
    /// `done` receives whether a window had the focus throughout.
    void typeText(const std::string& text, std::function<void(bool)> done);
    void typeKey(int virtualKey, bool shift, bool control, bool alt, std::function<void(bool)> done);

    /// Performs the next step, in response to `onTurn`.
    void turn();

    /// The virtual-key code for a name such as "Return" or "a"; 0 if the name is unknown.
    static int keyOf(const std::string& name);

private:
    struct Stroke {
        /// 0 if `units` are posted as WM_CHAR instead.
        int virtualKey = 0;
        bool shift = false;
        bool control = false;
        bool alt = false;
        std::u16string units;
    };
    struct Job {
        std::deque<Stroke> strokes;
        std::function<void(bool)> done;
        /// Turns to wait before the next stroke, or before the job is done.
        int turnsToWait;
    };

    void start(Job job);
    static Stroke strokeOf(char32_t character);
    static bool post(const Stroke& stroke);

    std::function<void()> m_onTurn;
    std::deque<Job> m_jobs;
};

}  // namespace cad
