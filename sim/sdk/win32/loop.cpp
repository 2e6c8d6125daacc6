// The main thread's side of GLib's default main context.
//
// One source stands for the slice: it is ready when the X server or another thread has something. Two
// situations are told apart by the depth of dispatching. While the slice itself waits (GetMessage), the
// source only collects: GetMessage then finds the messages. While somebody else's loop runs (Qt's, for a
// dialog), nobody calls GetMessage, so the source takes messages from the queue and dispatches them, as that
// toolkit's own loop does with the real thing.

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

// Messages dispatched in one turn of a foreign loop before its other sources get theirs.
constexpr int kMessagesPerTurn = 16;
// How long a stream of messages may keep the other sources waiting.
constexpr ULONGLONG kYieldMilliseconds = 8;

struct SliceSource {
    GSource base;
    gpointer wakeTag;
    gpointer displayTag;
};

SliceSource* g_source = nullptr;
// Made when the library is loaded, so that any thread may use it at any time.
const int g_wakeFd = eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
int g_displayFd = -1;
Win32ForeignToolkit* g_toolkit = nullptr;
ULONGLONG g_lastTurn = 0;

bool g_waiting = false;
// Whether the wait is for messages, or only a turn for the other sources, which a due timer must not keep
// back.
bool g_blocks = false;
int g_waitDepth = 0;

// Within a source's dispatch the depth is one more than around the iteration that dispatches it.
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
        // Events may have come from the socket together with a reply, and then nothing is left to poll for.
        if (bufferXEvents()) {
            *timeout = 0;
            return TRUE;
        }
    }
    Queue& queue = Queue::main();
    if (sliceWaitsAround()) {
        *timeout = g_blocks ? queue.untilDue() : -1;
        return *timeout == 0 ? TRUE : FALSE;
    }
    if (queue.hasMessage()) {
        *timeout = 0;
        return TRUE;
    }
    *timeout = queue.untilDue();
    return FALSE;
}

gboolean check(GSource* base) {
    const auto* source = reinterpret_cast<const SliceSource*>(base);
    if (g_source_query_unix_fd(base, source->wakeTag) != 0 ||
        (source->displayTag != nullptr && g_source_query_unix_fd(base, source->displayTag) != 0)) {
        return TRUE;
    }
    Queue& queue = Queue::main();
    return (sliceWaitsAround() ? g_blocks && queue.untilDue() == 0 : queue.hasMessage()) ? TRUE : FALSE;
}

void pumpForForeignLoop() {
    Queue& queue = Queue::main();
    for (int i = 0; i < kMessagesPerTurn; ++i) {
        queue.runErrands();
        readXEvents();
        MSG message;
        if (!queue.take(message, {}, false)) {
            return;
        }
        if (message.message == WM_QUIT) {
            if (queue.takeQuitNews() && g_toolkit != nullptr) {
                g_toolkit->quitForeignLoop();
            }
            return;
        }
        queue.take(message, {}, true);
        retrieved(message, PM_REMOVE);
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
    while (read(g_wakeFd, &count, sizeof count) > 0) {
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

}  // namespace

void ensureMainLoop() {
    if (g_source != nullptr) {
        return;
    }
    if (!onMainThread()) {
        unsupported("main loop", "set up by another thread than the main thread");
    }
    g_source = reinterpret_cast<SliceSource*>(g_source_new(&g_functions, sizeof(SliceSource)));
    g_source->wakeTag = g_source_add_unix_fd(&g_source->base, g_wakeFd, G_IO_IN);
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
    // A full counter means that the loop is already woken.
    const auto written = write(g_wakeFd, &one, sizeof one);
    static_cast<void>(written);
}

void runMainContext(bool block) {
    ensureMainLoop();
    if (g_toolkit != nullptr) {
        g_toolkit->aboutToWait();
    }
    if (!block) {
        // The queue is looked at afterwards anyway; and a source that is ready keeps those of lower priority
        // back.
        takeWakeUps();
    }
    const bool waitedBefore = g_waiting;
    const bool blockedBefore = g_blocks;
    const int depthBefore = g_waitDepth;
    g_waiting = true;
    g_blocks = block;
    g_waitDepth = g_main_depth();
    g_main_context_iteration(nullptr, block ? TRUE : FALSE);
    g_waiting = waitedBefore;
    g_blocks = blockedBefore;
    g_waitDepth = depthBefore;
    g_lastTurn = ticks();
}

void yieldToMainContext() {
    if (ticks() - g_lastTurn >= kYieldMilliseconds) {
        runMainContext(false);
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
