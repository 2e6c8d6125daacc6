#pragma once

// Message queues, one for each thread, and the main thread's message loop.

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

/// The filter arguments of GetMessage and PeekMessage.
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
    /// The text of a real key event, for TranslateMessage; empty when it has none.
    std::u16string keyText;
};

struct Hook {
    int kind;
    HOOKPROC procedure;
    DWORD threadId;
    /// Increases with every hook installed.
    unsigned order;
};

/// A function that another thread has the queue's thread call, as it does for a sent message.
using Errand = std::function<void()>;

class Queue {
public:
    explicit Queue(DWORD threadId) : m_threadId(threadId) {}

    /// The calling thread's queue, created on first use.
    static Queue& current();
    static Queue& main();
    /// The queue of a thread that has one; the main thread always has.
    static std::shared_ptr<Queue> ofThread(DWORD threadId);

    DWORD threadId() const { return m_threadId; }

    // Any thread.
    void post(const MSG& message);
    /// Has the queue's thread call the function when it next checks for messages, before it retrieves any.
    void send(Errand errand);
    void quit(int exitCode);
    bool quitPending();

    // The queue's own thread.
    void addInput(InputMessage input);
    /// The last queued input message if it has this window and message number, for coalescing; else null.
    MSG* lastInput(HWND window, UINT message);
    bool runErrands();
    /// Retrieves the first message that matches the filter, in the documented order; false for none.
    bool take(MSG& message, const MessageFilter& filter, bool remove);
    /// Milliseconds until the next timer that matches the filter is due: 0 for now, -1 without such timers.
    int untilDue(const MessageFilter& filter);
    bool hasMessage();
    void forgetWindow(HWND window);
    /// The number of messages posted and sent so far.
    unsigned arrivals();
    /// Blocks until there are more arrivals than `seen`, or a timer that matches the filter is due. A message
    /// that is queued but does not match thus wakes the thread only once. For threads other than the main
    /// thread.
    void waitAlone(unsigned seen, const MessageFilter& filter);

    std::vector<Timer>& timers() { return m_timers; }
    std::vector<std::shared_ptr<Hook>>& hooks() { return m_hooks; }
    std::array<BYTE, 256>& keyState() { return m_keyState; }
    const InputMessage& lastKey() const { return m_lastKey; }
    DWORD lastTime() const { return m_lastTime; }
    POINT lastPosition() const { return m_lastPosition; }
    void noteRetrieved(const MSG& message);

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
    unsigned m_arrivals = 0;
    bool m_quit = false;
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

// The main thread's message loop.
/// Wakes the main thread from its wait. Any thread.
void wakeMainLoop();
/// Attaches the slice to GLib's default main context; main thread.
void ensureMainLoop();
/// Adds the X connection to what the loop polls.
void watchDisplay(int fileDescriptor);
/// Runs one iteration of the main context: waits until a source is ready or a timer that matches the filter
/// is due.
void waitInMainContext(const MessageFilter& filter);
/// Runs one iteration of the main context that only dispatches what is ready.
void pollMainContext();
/// As pollMainContext(), but at most every few milliseconds: a steady stream of messages must not starve
/// the main context's other sources.
void yieldToMainContext();

/// Buffers the events received from the X server without handling them; whether any are buffered.
bool bufferXEvents();
/// Handles all events received from the X server: turns them into messages.
void readXEvents();
/// To be called with each message that is about to be returned to the program: updates the key state,
/// activates a window that was clicked, runs the WH_GETMESSAGE hooks. False if the message must be discarded:
/// a click that the answer to WM_MOUSEACTIVATE eats.
bool retrieved(MSG& message, UINT remove);
/// The part of retrieved() that updates the state of keys and buttons.
void followKeyState(const MSG& message);
/// The part of retrieved() that activates the window of a button press. False if the click is eaten.
bool activateClicked(const MSG& message);
/// The part of retrieved() that has the cursor set.
void pointerMoved(const MSG& message);

/// Runs the function on the main thread and waits until it has returned; the main thread must be running a
/// message loop. On the main thread itself it is a plain call.
void callOnMainThread(const Errand& errand);

}  // namespace win32
