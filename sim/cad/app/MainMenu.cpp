#include "sim/cad/app/MainMenu.h"

#include "sim/cad/app/WideText.h"

namespace cad {

namespace {

struct Item {
    /// Empty for a separator.
    const char* text;
    /// The input sent to the command line; null if the item sets a variable.
    const char* command;
    /// The variable that the item sets, and the value; kToggled switches between 0 and 1.
    const char* variable;
    int value;
};

constexpr int kToggled = -1;
constexpr Item kSeparator{"", nullptr, nullptr, 0};

struct Menu {
    const char* title;
    std::vector<Item> items;
};

constexpr Item command(const char* text, const char* typed) {
    return {text, typed, nullptr, 0};
}
constexpr Item setting(const char* text, const char* variable, int value) {
    return {text, nullptr, variable, value};
}

const std::vector<Menu>& menus() {
    static const std::vector<Menu> all = {
        {"文件(&F)",
         {command("加载应用程序(&L)…", "ARX\nL\n"), command("卸载应用程序(&N)…", "ARX\nU\n"),
          command("已加载的应用程序(&A)", "ARX\n?\n"), kSeparator, command("运行脚本(&R)…", "SCRIPT\n"),
          kSeparator, command("退出(&X)", "QUIT\n")}},
        {"编辑(&E)",
         {command("放弃(&U)", "U\n"), command("重做(&R)", "REDO\n"), kSeparator,
          command("删除(&D)", "ERASE\n"), command("全部删除(&A)", "ERASE\nALL\n\n")}},
        {"视图(&V)",
         {command("重画(&R)", "REDRAW\n"), kSeparator, command("范围缩放(&E)", "ZOOM\nE\n"),
          command("全部缩放(&A)", "ZOOM\nA\n"), command("窗口缩放(&W)", "ZOOM\nW\n"),
          command("上一个视图(&P)", "ZOOM\nP\n"), command("平移(&N)", "PAN\n"), kSeparator,
          setting("浅色主题(&L)", "COLORTHEME", 1), setting("深色主题(&D)", "COLORTHEME", 0)}},
        {"绘图(&D)",
         {command("直线(&L)", "LINE\n"), command("多段线(&P)", "PLINE\n"), command("矩形(&G)", "RECTANG\n"),
          kSeparator, command("圆 圆心、半径(&C)", "CIRCLE\n"), command("圆 两点(&2)", "CIRCLE\n2P\n"),
          command("圆 三点(&3)", "CIRCLE\n3P\n")}},
        {"修改(&M)", {command("删除(&E)", "ERASE\n"), command("对象数据(&L)", "LIST\n")}},
        {"工具(&T)",
         {setting("栅格(&G)\tF7", "GRIDMODE", kToggled), setting("正交(&O)\tF8", "ORTHOMODE", kToggled),
          kSeparator, command("系统变量(&V)…", "SETVAR\n"), command("列出系统变量(&A)", "SETVAR\n?\n\n")}},
        {"帮助(&H)", {command("命令列表(&C)\tF1", "HELP\n")}},
    };
    return all;
}

const Item* itemOf(UINT id) {
    UINT next = MainMenu::kFirstId;
    for (const Menu& menu : menus()) {
        for (const Item& item : menu.items) {
            if (next++ == id) {
                return &item;
            }
        }
    }
    return nullptr;
}

}  // namespace

void MainMenu::attachTo(CFrameWnd& frame) {
    m_bar.CreateMenu();
    UINT id = kFirstId;
    for (const Menu& menu : menus()) {
        CMenu popup;
        popup.CreatePopupMenu();
        for (const Item& item : menu.items) {
            const bool separates = *item.text == '\0';
            popup.AppendMenu(separates ? MF_SEPARATOR : MF_STRING, id, toWide(item.text));
            ++id;
        }
        // Destroying the menu bar destroys its popup menus too.
        m_bar.AppendMenu(MF_POPUP, reinterpret_cast<UINT_PTR>(popup.Detach()), toWide(menu.title));
    }
    frame.SetMenu(&m_bar);
    update();
}

void MainMenu::update() {
    UINT id = kFirstId;
    for (const Menu& menu : menus()) {
        for (const Item& item : menu.items) {
            if (item.variable != nullptr) {
                const int value = m_editor.variables().integer(item.variable);
                const bool checked = item.value == kToggled ? value == 1 : value == item.value;
                m_bar.CheckMenuItem(id, MF_BYCOMMAND | (checked ? MF_CHECKED : MF_UNCHECKED));
            }
            ++id;
        }
    }
}

void MainMenu::choose(UINT id) {
    const Item* const item = itemOf(id);
    if (item == nullptr) {
        return;
    }
    if (item->command != nullptr) {
        // By CAD convention, a menu command cancels the command in progress.
        m_editor.sendString(m_editor.isQuiescent() ? item->command : std::string("\x03\x03") + item->command);
    } else if (item->variable != nullptr) {
        const int old = m_editor.variables().integer(item->variable);
        m_editor.variables().set(item->variable, item->value == kToggled ? 1 - old : item->value);
    }
}

}  // namespace cad
