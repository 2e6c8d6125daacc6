#include "win32_queue.h"

#include "win32_support.h"
#include "win32_window.h"

#include <algorithm>
#include <chrono>
#include <limits>
#include <map>
#include <utility>

namespace win32 {

namespace {

std::mutex g_queuesMutex;
std::map<DWORD, std::weak_ptr<Queue>>& queues() {
    static std::map<DWORD, std::weak_ptr<Queue>> all;
    return all;
}

std::shared_ptr<Queue> makeQueue(DWORD threadId) {
    auto queue = std::make_shared<Queue>(threadId);
    const std::lock_guard<std::mutex> lock(g_queuesMutex);
    queues()[threadId] = queue;
    return queue;
}

const std::shared_ptr<Queue>& mainQueue() {
    // Never destroyed: another thread may post while the process exits.
    static const auto* const queue = new std::shared_ptr<Queue>(makeQueue(mainThreadId()));
    return *queue;
}

}  // namespace

bool MessageFilter::takes(HWND target, UINT message) const {
    if ((first != 0 || last != 0) && (message < first || message > last)) {
        return false;
    }
    if (window == nullptr) {
        return true;
    }
    if (window == reinterpret_cast<HWND>(static_cast<LONG_PTR>(-1))) {
        return target == nullptr;
    }
    return target == window || (target != nullptr && IsChild(window, target) != FALSE);
}

ULONGLONG ticks() {
    return static_cast<ULONGLONG>(std::chrono::duration_cast<std::chrono::milliseconds>(
                                      std::chrono::steady_clock::now().time_since_epoch())
                                      .count());
}

Queue& Queue::main() {
    return *mainQueue();
}

Queue& Queue::current() {
    if (onMainThread()) {
        return main();
    }
    static thread_local const std::shared_ptr<Queue> queue = makeQueue(GetCurrentThreadId());
    return *queue;
}

std::shared_ptr<Queue> Queue::ofThread(DWORD threadId) {
    if (threadId == mainThreadId()) {
        return mainQueue();
    }
    const std::lock_guard<std::mutex> lock(g_queuesMutex);
    const auto found = queues().find(threadId);
    return found != queues().end() ? found->second.lock() : nullptr;
}

void Queue::wake() {
    m_wake.notify_all();
    if (m_threadId == mainThreadId()) {
        wakeMainLoop();
    }
}

void Queue::post(const MSG& message) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_posted.push_back(message);
        ++m_arrivals;
    }
    wake();
}

void Queue::send(Errand errand) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_errands.push_back(std::move(errand));
        ++m_arrivals;
    }
    wake();
}

void Queue::quit(int exitCode) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_quit = true;
        m_exitCode = exitCode;
        ++m_arrivals;
    }
    wake();
}

bool Queue::quitPending() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_quit;
}

void Queue::addInput(InputMessage input) {
    m_input.push_back(std::move(input));
}

MSG* Queue::lastInput(HWND window, UINT message) {
    if (m_input.empty() || m_input.back().message.hwnd != window ||
        m_input.back().message.message != message) {
        return nullptr;
    }
    return &m_input.back().message;
}

bool Queue::runErrands() {
    bool any = false;
    for (;;) {
        Errand errand;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (m_errands.empty()) {
                return any;
            }
            errand = std::move(m_errands.front());
            m_errands.pop_front();
        }
        errand();
        any = true;
    }
}

bool Queue::take(MSG& message, const MessageFilter& filter, bool remove) {
    if (takePosted(message, filter, remove) || takeInput(message, filter, remove) ||
        takePaint(message, filter) || takeTimer(message, filter, remove)) {
        return true;
    }
    // WM_QUIT ignores the filter, but comes only when no other message matches it.
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!m_quit) {
        return false;
    }
    message = {};
    message.message = WM_QUIT;
    message.wParam = static_cast<WPARAM>(m_exitCode);
    message.time = static_cast<DWORD>(ticks());
    if (remove) {
        m_quit = false;
    }
    return true;
}

bool Queue::takePosted(MSG& message, const MessageFilter& filter, bool remove) {
    // Copy each candidate and match it without the lock: IsChild may query the X server, and every thread
    // that posts needs the lock.
    std::size_t position = 0;
    for (;; ++position) {
        MSG candidate;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            if (position >= m_posted.size()) {
                return false;
            }
            candidate = m_posted[position];
        }
        if (filter.takes(candidate.hwnd, candidate.message)) {
            message = candidate;
            break;
        }
    }
    if (remove) {
        // The position is still valid: other threads only append.
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_posted.erase(m_posted.begin() + static_cast<std::ptrdiff_t>(position));
    }
    return true;
}

bool Queue::takeInput(MSG& message, const MessageFilter& filter, bool remove) {
    const auto found = std::find_if(m_input.begin(), m_input.end(), [&filter](const InputMessage& input) {
        return filter.takes(input.message.hwnd, input.message.message);
    });
    if (found == m_input.end()) {
        return false;
    }
    message = found->message;
    if (remove) {
        if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST) {
            m_lastKey = std::move(*found);
        }
        m_input.erase(found);
    }
    return true;
}

bool Queue::takePaint(MSG& message, const MessageFilter& filter) {
    if (m_threadId != mainThreadId()) {
        return false;
    }
    for (const auto& window : allWindows()) {
        if (window->needsPaint() && filter.takes(window->handle, WM_PAINT) && isViewable(*window)) {
            message = {};
            message.hwnd = window->handle;
            message.message = WM_PAINT;
            message.time = static_cast<DWORD>(ticks());
            message.pt = m_lastPosition;
            return true;
        }
    }
    return false;
}

bool Queue::takeTimer(MSG& message, const MessageFilter& filter, bool remove) {
    const ULONGLONG now = ticks();
    Timer* due = nullptr;
    for (Timer& timer : m_timers) {
        if (timer.due <= now && filter.takes(timer.window, WM_TIMER) &&
            (due == nullptr || timer.due < due->due)) {
            due = &timer;
        }
    }
    if (due == nullptr) {
        return false;
    }
    message = {};
    message.hwnd = due->window;
    message.message = WM_TIMER;
    message.wParam = due->id;
    message.lParam = reinterpret_cast<LPARAM>(due->procedure);
    message.time = static_cast<DWORD>(now);
    message.pt = m_lastPosition;
    if (remove) {
        // Periods that have been missed coalesce into one message.
        due->due = now + due->period;
    }
    return true;
}

int Queue::untilDue(const MessageFilter& filter) {
    ULONGLONG next = std::numeric_limits<ULONGLONG>::max();
    for (const Timer& timer : m_timers) {
        if (filter.takes(timer.window, WM_TIMER)) {
            next = std::min(next, timer.due);
        }
    }
    if (next == std::numeric_limits<ULONGLONG>::max()) {
        return -1;
    }
    const ULONGLONG now = ticks();
    return next <= now ? 0
                       : static_cast<int>(std::min<ULONGLONG>(next - now, std::numeric_limits<int>::max()));
}

bool Queue::hasMessage() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!m_errands.empty() || !m_posted.empty() || m_quit) {
            return true;
        }
    }
    MSG ignored;
    return !m_input.empty() || untilDue({}) == 0 || takePaint(ignored, {});
}

void Queue::forgetWindow(HWND window) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_posted.erase(std::remove_if(m_posted.begin(), m_posted.end(),
                                      [window](const MSG& message) { return message.hwnd == window; }),
                       m_posted.end());
    }
    for (auto input = m_input.begin(); input != m_input.end();) {
        if (input->message.hwnd == window) {
            // Keep the key state right although the message is discarded.
            followKeyState(input->message);
            input = m_input.erase(input);
        } else {
            ++input;
        }
    }
    m_timers.erase(std::remove_if(m_timers.begin(), m_timers.end(),
                                  [window](const Timer& timer) { return timer.window == window; }),
                   m_timers.end());
}

unsigned Queue::arrivals() {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_arrivals;
}

void Queue::waitAlone(unsigned seen, const MessageFilter& filter) {
    const int timeout = untilDue(filter);
    std::unique_lock<std::mutex> lock(m_mutex);
    const auto arrived = [this, seen] { return m_arrivals != seen; };
    if (timeout < 0) {
        m_wake.wait(lock, arrived);
    } else {
        m_wake.wait_for(lock, std::chrono::milliseconds(timeout), arrived);
    }
}

void Queue::noteRetrieved(const MSG& message) {
    m_lastTime = message.time;
    m_lastPosition = message.pt;
}

void callOnMainThread(const Errand& errand) {
    if (onMainThread()) {
        errand();
        return;
    }
    std::mutex mutex;
    std::condition_variable finished;
    bool done = false;
    Queue::main().send([&] {
        errand();
        // Notify under the lock: as soon as the waiting thread continues, it destroys the mutex and the
        // condition variable.
        const std::lock_guard<std::mutex> lock(mutex);
        done = true;
        finished.notify_all();
    });
    std::unique_lock<std::mutex> lock(mutex);
    finished.wait(lock, [&done] { return done; });
}

}  // namespace win32
