// Integration of the main thread's queue with GLib's default main context.
//
// One GSource represents the slice: it is ready when the X server or another thread has something for us.
// g_main_depth() tells two situations apart. While the slice itself waits (in GetMessage), the source only
// collects X events into the queue, where GetMessage finds them. While a foreign event loop runs (Qt's, for a
// dialog), nobody calls GetMessage, so the source retrieves messages from the queue and dispatches them, as
// that toolkit's event loop does on Windows.

#include "win32_display.h"
#include "win32_queue.h"
#include "win32_support.h"

#include <glib.h>

#include <sys/eventfd.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>

namespace win32 {

namespace {

// Messages dispatched in one iteration of a foreign loop before its other sources get their turn.
constexpr int kMessagesPerTurn = 16;
// How long a steady stream of messages may starve the other sources.
constexpr ULONGLONG kYieldMilliseconds = 8;

struct SliceSource {
    GSource base;
    gpointer wakeTag;
    gpointer displayTag;
};

SliceSource* g_source = nullptr;
// Created when the library is loaded, so that any thread may use it at any time.
const int kWakeFd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
int g_displayFd = -1;
Win32ForeignToolkit* g_toolkit = nullptr;
ULONGLONG g_lastTurn = 0;

bool g_waiting = false;
// What the wait is for. Null for an iteration that is for the other sources, which a due timer of ours must
// not starve.
const MessageFilter* g_awaited = nullptr;
int g_waitDepth = 0;

// Within dispatch() the depth is one more than around the iteration that calls it.
bool sliceWaitsAround() {
    return g_waiting && g_main_depth() == g_waitDepth;
}
bool sliceWaitsInDispatch() {
    return g_waiting && g_main_depth() == g_waitDepth + 1;
}

gboolean prepare(GSource*, gint* timeout) {
    *timeout = -1;
    if (Display::isOpen()) {
        Display::instance().flush();
        // xcb may have read events from the socket together with a reply; then the socket has nothing to poll
        // for.
        if (bufferXEvents()) {
            *timeout = 0;
            return TRUE;
        }
    }
    Queue& queue = Queue::main();
    if (sliceWaitsAround()) {
        *timeout = g_awaited != nullptr ? queue.untilDue(*g_awaited) : -1;
        return *timeout == 0 ? TRUE : FALSE;
    }
    if (queue.hasMessage()) {
        *timeout = 0;
        return TRUE;
    }
    *timeout = queue.untilDue({});
    return FALSE;
}

gboolean check(GSource* base) {
    const auto* source = reinterpret_cast<const SliceSource*>(base);
    if (g_source_query_unix_fd(base, source->wakeTag) != 0 ||
        (source->displayTag != nullptr && g_source_query_unix_fd(base, source->displayTag) != 0)) {
        return TRUE;
    }
    Queue& queue = Queue::main();
    if (sliceWaitsAround()) {
        return g_awaited != nullptr && queue.untilDue(*g_awaited) == 0 ? TRUE : FALSE;
    }
    return queue.hasMessage() ? TRUE : FALSE;
}

void pumpForForeignLoop() {
    Queue& queue = Queue::main();
    for (int i = 0; i < kMessagesPerTurn; ++i) {
        queue.runErrands();
        readXEvents();
        MSG message;
        if (!queue.take(message, {}, true)) {
            return;
        }
        if (!retrieved(message, PM_REMOVE)) {
            continue;
        }
        if (message.message == WM_QUIT) {
            if (g_toolkit != nullptr) {
                g_toolkit->quitForeignLoop();
            }
            return;
        }
        if (g_toolkit != nullptr) {
            g_toolkit->dispatchInForeignLoop(message);
        } else {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

void takeWakeUps() {
    std::uint64_t count = 0;
    while (read(kWakeFd, &count, sizeof count) > 0) {
    }
}

gboolean dispatch(GSource*, GSourceFunc, gpointer) {
    takeWakeUps();
    if (sliceWaitsInDispatch()) {
        readXEvents();
    } else {
        pumpForForeignLoop();
    }
    return G_SOURCE_CONTINUE;
}

GSourceFuncs g_functions = {prepare, check, dispatch, nullptr, nullptr, nullptr};

/// One iteration of the main context; waits if there is something to wait for.
void runMainContext(const MessageFilter* awaited) {
    ensureMainLoop();
    if (g_toolkit != nullptr) {
        g_toolkit->aboutToWait();
    }
    if (awaited == nullptr) {
        // The caller checks the queue afterwards anyway; and if our source were ready, GLib would not
        // dispatch those of lower priority.
        takeWakeUps();
    }
    const bool waitedBefore = g_waiting;
    const MessageFilter* const awaitedBefore = g_awaited;
    const int depthBefore = g_waitDepth;
    g_waiting = true;
    g_awaited = awaited;
    g_waitDepth = g_main_depth();
    g_main_context_iteration(nullptr, awaited != nullptr ? TRUE : FALSE);
    g_waiting = waitedBefore;
    g_awaited = awaitedBefore;
    g_waitDepth = depthBefore;
    g_lastTurn = ticks();
}

}  // namespace

void ensureMainLoop() {
    if (g_source != nullptr) {
        return;
    }
    if (!onMainThread()) {
        unsupported("main loop", "set up by a thread other than the main thread");
    }
    g_source = reinterpret_cast<SliceSource*>(g_source_new(&g_functions, sizeof(SliceSource)));
    g_source->wakeTag = g_source_add_unix_fd(&g_source->base, kWakeFd, G_IO_IN);
    g_source->displayTag = nullptr;
    g_source_set_can_recurse(&g_source->base, TRUE);
    g_source_set_name(&g_source->base, "win32");
    g_source_attach(&g_source->base, nullptr);
    if (g_displayFd >= 0) {
        watchDisplay(g_displayFd);
    }
}

void watchDisplay(int fileDescriptor) {
    g_displayFd = fileDescriptor;
    ensureMainLoop();
    if (g_source->displayTag == nullptr) {
        g_source->displayTag = g_source_add_unix_fd(&g_source->base, fileDescriptor,
                                                    static_cast<GIOCondition>(G_IO_IN | G_IO_ERR | G_IO_HUP));
    }
}

void wakeMainLoop() {
    const std::uint64_t one = 1;
    // If the counter is full, a wake-up is pending anyway.
    const auto written = write(kWakeFd, &one, sizeof one);
    static_cast<void>(written);
}

void waitInMainContext(const MessageFilter& filter) {
    runMainContext(&filter);
}

void pollMainContext() {
    runMainContext(nullptr);
}

void yieldToMainContext() {
    if (ticks() - g_lastTurn >= kYieldMilliseconds) {
        pollMainContext();
    }
}

Win32ForeignToolkit* foreignToolkit() {
    return g_toolkit;
}

}  // namespace win32

void win32SetForeignToolkit(Win32ForeignToolkit* toolkit) {
    win32::g_toolkit = toolkit;
    if (toolkit != nullptr && win32::onMainThread()) {
        win32::ensureMainLoop();
    }
}
