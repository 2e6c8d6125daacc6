// Menus and their items.

#include "win32_menu.h"
#include "win32_queue.h"
#include "win32_support.h"

#include <algorithm>
#include <memory>

namespace win32 {

namespace {

std::vector<std::unique_ptr<Menu>>& menus() {
    static std::vector<std::unique_ptr<Menu>> all;
    return all;
}

struct FoundItem {
    Menu* menu = nullptr;
    std::size_t position = 0;

    MenuItem& item() const { return menu->items[position]; }
};

/// By position in the menu itself; by command id also in its submenus.
FoundItem findItem(HMENU handle, UINT item, UINT flags) {
    Menu* menu = findMenu(handle);
    if (menu == nullptr) {
        return {};
    }
    if ((flags & MF_BYPOSITION) != 0) {
        return item < menu->items.size() ? FoundItem{menu, item} : FoundItem{};
    }
    for (std::size_t i = 0; i < menu->items.size(); ++i) {
        if (menu->items[i].popup != nullptr) {
            const FoundItem found = findItem(menu->items[i].popup, item, flags);
            if (found.menu != nullptr) {
                return found;
            }
        } else if (!menu->items[i].isSeparator() && menu->items[i].id == item) {
            return {menu, i};
        }
    }
    return {};
}

HMENU makeMenu() {
    menus().push_back(std::make_unique<Menu>());
    return reinterpret_cast<HMENU>(menus().back().get());
}

}  // namespace

Menu* findMenu(HMENU handle) {
    for (const auto& menu : menus()) {
        if (reinterpret_cast<HMENU>(menu.get()) == handle) {
            return menu.get();
        }
    }
    return failWith<Menu*>(ERROR_INVALID_MENU_HANDLE, nullptr);
}

std::u16string menuLabel(const std::u16string& text, std::u16string* shortcut) {
    const std::size_t tab = text.find(u'\t');
    if (shortcut != nullptr) {
        *shortcut = tab != std::u16string::npos ? text.substr(tab + 1) : std::u16string();
    }
    std::u16string label;
    for (std::size_t i = 0; i < std::min(tab, text.size()); ++i) {
        if (text[i] == u'&' && i + 1 < text.size()) {
            ++i;
        }
        label.push_back(text[i]);
    }
    return label;
}

TCHAR menuAccessKey(const std::u16string& text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] == u'&') {
            if (text[i + 1] != u'&') {
                return foldCase(text[i + 1]);
            }
            ++i;
        }
    }
    return 0;
}

}  // namespace win32

using namespace win32;

HMENU CreateMenu() {
    return makeMenu();
}

HMENU CreatePopupMenu() {
    return makeMenu();
}

BOOL IsMenu(HMENU menu) {
    return findMenu(menu) != nullptr ? TRUE : FALSE;
}

BOOL DestroyMenu(HMENU handle) {
    const Menu* menu = findMenu(handle);
    if (menu == nullptr) {
        return FALSE;
    }
    std::vector<HMENU> popups;
    for (const MenuItem& item : menu->items) {
        if (item.popup != nullptr) {
            popups.push_back(item.popup);
        }
    }
    auto& all = menus();
    all.erase(std::remove_if(all.begin(), all.end(), [menu](const auto& kept) { return kept.get() == menu; }),
              all.end());
    for (HMENU popup : popups) {
        DestroyMenu(popup);
    }
    return TRUE;
}

BOOL AppendMenuW(HMENU handle, UINT flags, UINT_PTR idOrPopup, LPCWSTR text) {
    Menu* menu = findMenu(handle);
    if (menu == nullptr) {
        return FALSE;
    }
    MenuItem item;
    item.flags = flags;
    item.id = idOrPopup;
    if ((flags & MF_POPUP) != 0) {
        item.popup = reinterpret_cast<HMENU>(idOrPopup);
        if (findMenu(item.popup) == nullptr) {
            return FALSE;
        }
    }
    if (!item.isSeparator() && text != nullptr) {
        item.text = text;
    }
    menu->items.push_back(std::move(item));
    return TRUE;
}

BOOL DeleteMenu(HMENU handle, UINT item, UINT flags) {
    const FoundItem found = findItem(handle, item, flags);
    if (found.menu == nullptr) {
        return FALSE;
    }
    const HMENU popup = found.item().popup;
    found.menu->items.erase(found.menu->items.begin() + static_cast<std::ptrdiff_t>(found.position));
    if (popup != nullptr) {
        DestroyMenu(popup);
    }
    return TRUE;
}

int GetMenuItemCount(HMENU handle) {
    const Menu* menu = findMenu(handle);
    return menu != nullptr ? static_cast<int>(menu->items.size()) : -1;
}

HMENU GetSubMenu(HMENU handle, int position) {
    const FoundItem found = findItem(handle, static_cast<UINT>(position), MF_BYPOSITION);
    return found.menu != nullptr ? found.item().popup : nullptr;
}

UINT GetMenuItemID(HMENU handle, int position) {
    constexpr UINT kNone = 0xFFFFFFFFU;
    const FoundItem found = findItem(handle, static_cast<UINT>(position), MF_BYPOSITION);
    if (found.menu == nullptr || found.item().popup != nullptr) {
        return kNone;
    }
    return static_cast<UINT>(found.item().id);
}

int GetMenuStringW(HMENU handle, UINT item, LPWSTR buffer, int size, UINT flags) {
    const FoundItem found = findItem(handle, item, flags);
    if (found.menu == nullptr) {
        return 0;
    }
    const std::u16string& text = found.item().text;
    if (buffer == nullptr || size <= 0) {
        return static_cast<int>(text.size());
    }
    const std::size_t copied = text.copy(buffer, static_cast<std::size_t>(size - 1));
    buffer[copied] = 0;
    return static_cast<int>(copied);
}

UINT GetMenuState(HMENU handle, UINT item, UINT flags) {
    const FoundItem found = findItem(handle, item, flags);
    if (found.menu == nullptr) {
        return 0xFFFFFFFFU;
    }
    UINT state = found.item().flags;
    if (found.item().popup != nullptr) {
        state = (state & 0xFFU) | static_cast<UINT>(GetMenuItemCount(found.item().popup)) << 8;
    }
    return state;
}

BOOL EnableMenuItem(HMENU handle, UINT item, UINT flags) {
    const FoundItem found = findItem(handle, item, flags);
    if (found.menu == nullptr) {
        return -1;
    }
    constexpr UINT kStates = MF_GRAYED | MF_DISABLED;
    const UINT old = found.item().flags & kStates;
    found.item().flags = (found.item().flags & ~kStates) | (flags & kStates);
    return static_cast<BOOL>(old);
}

DWORD CheckMenuItem(HMENU handle, UINT item, UINT flags) {
    const FoundItem found = findItem(handle, item, flags);
    if (found.menu == nullptr) {
        return 0xFFFFFFFFU;
    }
    const UINT old = found.item().flags & MF_CHECKED;
    found.item().flags = (found.item().flags & ~MF_CHECKED) | (flags & MF_CHECKED);
    return old;
}

BOOL SetMenu(HWND handle, HMENU menu) {
    Window* window = requireWindow(handle);
    if (window == nullptr || window->isChild() || (menu != nullptr && findMenu(menu) == nullptr)) {
        return FALSE;
    }
    window->menu = menu;
    updateInset(*window);
    return DrawMenuBar(handle);
}

HMENU GetMenu(HWND handle) {
    const Window* window = findWindow(handle);
    return window != nullptr && window->isTopLevel() ? window->menu : nullptr;
}

BOOL DrawMenuBar(HWND handle) {
    Window* window = requireWindow(handle);
    if (window == nullptr) {
        return FALSE;
    }
    paintFrame(*window);
    return TRUE;
}

BOOL TrackPopupMenu(HMENU menu, UINT flags, int x, int y, int, HWND window, const RECT*) {
    if (requireWindow(window) == nullptr || findMenu(menu) == nullptr) {
        return FALSE;
    }
    const PopupChoice choice = trackPopup(menu, {x, y}, window);
    if ((flags & TPM_RETURNCMD) != 0) {
        return static_cast<BOOL>(choice.id);
    }
    if (choice.id != 0 && (flags & TPM_NONOTIFY) == 0) {
        PostMessageW(window, WM_COMMAND, choice.id, 0);
    }
    return TRUE;
}
