#pragma once

// Message queues, one for each thread, and the main thread's loop.

#include "win32_foreign.h"
#include "winuser.h"

#include <array>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace win32 {

/// Which messages GetMessage and PeekMessage want.
struct MessageFilter {
    HWND window = nullptr;
    UINT first = 0;
    UINT last = 0;

    bool everything() const { return window == nullptr && first == 0 && last == 0; }
    bool takes(HWND target, UINT message) const;
};

struct Timer {
    HWND window;
    UINT_PTR id;
    UINT period;
    TIMERPROC procedure;
    ULONGLONG due;
};

/// A message made from an event of the X server.
struct InputMessage {
    MSG message{};
    /// The text of a real key, for TranslateMessage; empty when it has none.
    std::u16string keyText;
};

struct Hook {
    int kind;
    HOOKPROC procedure;
    DWORD threadId;
    /// Rises with every hook installed.
    unsigned order;
};

/// Something that another thread has the main thread do, while it waits or not.
using Errand = std::function<void()>;

class Queue {
public:
    explicit Queue(DWORD threadId) : m_threadId(threadId) {}

    /// The calling thread's queue, made on first use.
    static Queue& current();
    static Queue& main();
    /// The queue of a thread that has one; the main thread always has.
    static std::shared_ptr<Queue> ofThread(DWORD threadId);

    DWORD threadId() const { return m_threadId; }

    // Any thread.
    void post(const MSG& message);
    /// Has the queue's thread do something the next time it looks for messages, before any of them.
    void send(Errand errand);
    void quit(int exitCode);
    bool quitPending();

    // The queue's own thread.
    void addInput(InputMessage input);
    /// The last queued input message when it has that window and number, for merging; else null.
    MSG* lastInput(HWND window, UINT message);
    bool runErrands();
    /// The first message that the filter takes, in the documented order.
    bool take(MSG& message, const MessageFilter& filter, bool remove);
    /// Milliseconds until a message may turn up by itself: 0 now, -1 never.
    int untilDue();
    bool hasMessage();
    void forgetWindow(HWND window);
    /// Blocks a thread other than the main thread until something comes in or a timer is due.
    void waitAlone();

    std::vector<Timer>& timers() { return m_timers; }
    std::vector<std::shared_ptr<Hook>>& hooks() { return m_hooks; }
    std::array<BYTE, 256>& keyState() { return m_keyState; }
    const InputMessage& lastKey() const { return m_lastKey; }
    DWORD lastTime() const { return m_lastTime; }
    POINT lastPosition() const { return m_lastPosition; }
    void noteRetrieved(const MSG& message);
    bool takeQuitNews();

private:
    bool takePosted(MSG& message, const MessageFilter& filter, bool remove);
    bool takeInput(MSG& message, const MessageFilter& filter, bool remove);
    bool takePaint(MSG& message, const MessageFilter& filter);
    bool takeTimer(MSG& message, const MessageFilter& filter, bool remove);
    void wake();

    const DWORD m_threadId;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<Errand> m_errands;
    std::deque<MSG> m_posted;
    bool m_quit = false;
    bool m_quitNews = false;
    int m_exitCode = 0;

    std::deque<InputMessage> m_input;
    std::vector<Timer> m_timers;
    std::vector<std::shared_ptr<Hook>> m_hooks;
    std::array<BYTE, 256> m_keyState{};
    InputMessage m_lastKey;
    DWORD m_lastTime = 0;
    POINT m_lastPosition{};
};

ULONGLONG ticks();
POINT pointerPosition();

/// Runs the thread's WH_GETMESSAGE hooks, newest first.
void callGetMessageHooks(MSG& message, UINT remove);
void callWndProcHooks(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
/// Runs the WH_CBT hooks; true when one forbids it.
bool callCbtHooks(int code, HWND window, LPARAM lParam);

Win32ForeignToolkit* foreignToolkit();

// The main thread's loop.
/// Wakes the main thread's loop. Any thread.
void wakeMainLoop();
/// Attaches the slice to GLib's default main context; main thread.
void ensureMainLoop();
/// Watches the X connection too, once there is one.
void watchDisplay(int fileDescriptor);
/// Lets the main context run: blocking until something happened, or one turn of what is ready.
void runMainContext(bool block);
/// As runMainContext(false), but at most once in a few milliseconds: a stream of messages must not keep the
/// other sources of the main context from running.
void yieldToMainContext();

/// Takes over what the X server has sent, without acting on it; whether anything is there.
bool bufferXEvents();
/// Reads what the X server has sent and turns it into messages.
void readXEvents();
/// A message is about to be given to the program: follows key and pointer state, activates the window that
/// was clicked, runs the WH_GETMESSAGE hooks.
void retrieved(MSG& message, UINT remove);
/// The part of it that follows the state of keys and buttons.
void followKeyState(const MSG& message);
/// The part of it that acts on windows, for a button press.
void activateClicked(const MSG& message);
/// The part of it that sets the pointer's shape.
void pointerMoved(const MSG& message);

/// Has the main thread run something while the caller waits; on the main thread itself, just runs it.
void callOnMainThread(const Errand& errand);

}  // namespace win32
