#include "win32_support.h"
#include "win32_window.h"

#include <algorithm>
#include <mutex>
#include <unordered_map>

namespace win32 {

namespace {

// For isOwnWindow, which any thread may call; only the main thread modifies the table, under the lock.
std::mutex g_tableMutex;
std::vector<std::unique_ptr<Window>>& table() {
    static std::vector<std::unique_ptr<Window>> windows;
    return windows;
}
std::unordered_map<HWND, Window*>& index() {
    static std::unordered_map<HWND, Window*> windows;
    return windows;
}

}  // namespace

Window* findWindow(HWND handle) {
    const auto found = index().find(handle);
    return found != index().end() ? found->second : nullptr;
}

Window* requireWindow(HWND handle) {
    Window* window = findWindow(handle);
    if (window == nullptr) {
        setError(ERROR_INVALID_WINDOW_HANDLE);
    }
    return window;
}

bool isOwnWindow(HWND handle) {
    const std::lock_guard<std::mutex> lock(g_tableMutex);
    return index().count(handle) != 0;
}

const std::vector<std::unique_ptr<Window>>& allWindows() {
    return table();
}

Window& addWindow(std::unique_ptr<Window> window) {
    const std::lock_guard<std::mutex> lock(g_tableMutex);
    Window& added = *window;
    index()[added.handle] = &added;
    table().push_back(std::move(window));
    return added;
}

void removeWindow(HWND handle) {
    const std::lock_guard<std::mutex> lock(g_tableMutex);
    index().erase(handle);
    auto& windows = table();
    windows.erase(std::remove_if(windows.begin(), windows.end(),
                                 [handle](const auto& window) { return window->handle == handle; }),
                  windows.end());
}

Window* topLevelOf(HWND handle) {
    while (handle != nullptr) {
        Window* window = findWindow(handle);
        if (window != nullptr && window->isTopLevel()) {
            return window;
        }
        handle = window != nullptr ? window->parent : foreignParent(handle);
    }
    return nullptr;
}

POINT clientOrigin(const Window& window) {
    POINT origin = {window.rectangle.left, window.rectangle.top + window.topInset};
    for (const Window* current = &window; current->isChild();) {
        current = findWindow(current->parent);
        if (current == nullptr) {
            break;
        }
        origin.x += current->rectangle.left;
        origin.y += current->rectangle.top + current->topInset;
    }
    return origin;
}

RECT screenRectangle(const Window& window) {
    const POINT origin = clientOrigin(window);
    const int top = origin.y - window.topInset;
    return {origin.x, top, origin.x + window.width(), top + window.height()};
}

RECT clientRectangle(const Window& window) {
    return {0, 0, window.width(), window.clientHeight()};
}

bool isViewable(const Window& window) {
    for (const Window* current = &window; current != nullptr;
         current = current->isChild() ? findWindow(current->parent) : nullptr) {
        if (!current->isShown() || (current->style & WS_MINIMIZE) != 0) {
            return false;
        }
    }
    return true;
}

bool acceptsInput(HWND handle) {
    while (handle != nullptr) {
        const Window* window = findWindow(handle);
        if (window == nullptr) {
            handle = foreignParent(handle);
            continue;
        }
        if (!window->isEnabled()) {
            return false;
        }
        handle = window->isChild() ? window->parent : nullptr;
    }
    return true;
}

}  // namespace win32
