#include "sim/cad/core/CommandTable.h"

#include <algorithm>

#include "sim/cad/core/DrawCommands.h"
#include "sim/cad/core/ModifyCommands.h"
#include "sim/cad/core/SystemCommands.h"
#include "sim/cad/core/Text.h"
#include "sim/cad/core/ViewCommands.h"

namespace cad {

const std::vector<BuiltInCommand>& builtInCommands() {
    static const std::vector<BuiltInCommand> commands = {
        {"LINE", {"L"}, "绘制直线段", false, makeLineCommand},
        {"PLINE", {"PL"}, "绘制多段线", false, makePolylineCommand},
        {"CIRCLE", {"C"}, "绘制圆", false, makeCircleCommand},
        {"RECTANG", {"REC", "RECTANGLE"}, "绘制矩形", false, makeRectangleCommand},
        {"ERASE", {"E"}, "删除对象", false, makeEraseCommand},
        {"LIST", {"LI"}, "列出对象的数据", false, makeListCommand},
        {"U", {}, "放弃上一次操作", false, makeUCommand},
        {"UNDO", {}, "放弃若干次操作", false, makeUndoCommand},
        {"REDO", {}, "重做放弃的操作", false, makeRedoCommand},
        {"ZOOM", {"Z"}, "缩放视图", true, makeZoomCommand},
        {"PAN", {"P"}, "平移视图", true, makePanCommand},
        {"REDRAW", {"R"}, "重画视图", true, makeRedrawCommand},
        {"SETVAR", {"SET"}, "查看或设置系统变量", true, makeSetvarCommand},
        {"ARX", {}, "加载或卸载 ARX 应用程序", false, makeArxCommand},
        {"SCRIPT", {"SCR"}, "播放脚本文件", false, makeScriptCommand},
        {"DELAY", {}, "在脚本中等待", false, makeDelayCommand},
        {"HELP", {"?"}, "列出命令", true, makeHelpCommand},
        {"QUIT", {"EXIT"}, "退出程序", false, makeQuitCommand},
    };
    return commands;
}

const BuiltInCommand* findBuiltIn(const std::string& typedName) {
    const std::string name = startsWith(typedName, "_") ? typedName.substr(1) : typedName;
    for (const BuiltInCommand& command : builtInCommands()) {
        const bool isAlias = std::any_of(command.aliases.begin(), command.aliases.end(),
                                         [&](const std::string& alias) { return sameName(alias, name); });
        if (sameName(command.name, name) || isAlias) {
            return &command;
        }
    }
    return nullptr;
}

}  // namespace cad
