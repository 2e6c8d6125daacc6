#include "sim/cad/control/ControlCommands.h"

#include <AdUiPalette.h>
#include <AdUiPaletteSet.h>

#include <map>
#include <nlohmann/json.hpp>

#include "sim/cad/app/HostApp.h"
#include "sim/cad/app/MainFrame.h"
#include "sim/cad/app/WideText.h"
#include "sim/cad/core/Text.h"
#include "sim/cad/platform/Platform.h"

namespace cad {

namespace {

using nlohmann::json;

// Returned by commands whose reply must wait until the message loop has processed the synthesized input.
const json kInput = {{"afterInput", true}};

json idOf(HWND window) {
    return reinterpret_cast<uintptr_t>(window);
}

json toJson(const RECT& rect) {
    return {{"x", rect.left},
            {"y", rect.top},
            {"width", rect.right - rect.left},
            {"height", rect.bottom - rect.top}};
}

json toJson(Point point) {
    return json::array({point.x, point.y});
}

std::string kindOf(HWND window) {
    CWnd* const object = CWnd::FromHandlePermanent(window);
    if (object == nullptr) {
        return "other";
    }
    if (object->IsKindOf(RUNTIME_CLASS(CAdUiPaletteSet))) {
        return "paletteSet";
    }
    if (object->IsKindOf(RUNTIME_CLASS(CAdUiPalette))) {
        return "palette";
    }
    if (dynamic_cast<MainFrame*>(object) != nullptr) {
        return "frame";
    }
    if (dynamic_cast<DrawingView*>(object) != nullptr) {
        return "view";
    }
    if (dynamic_cast<CommandWindow*>(object) != nullptr) {
        return "commandLine";
    }
    return dynamic_cast<HostStatusBar*>(object) != nullptr ? "statusBar" : "other";
}

std::string titleOf(HWND window) {
    if (CWnd* const object = CWnd::FromHandlePermanent(window)) {
        if (const auto* set = dynamic_cast<CAdUiPaletteSet*>(object)) {
            return fromWide(set->GetName());
        }
        if (const auto* palette = dynamic_cast<CAdUiPalette*>(object)) {
            return fromWide(palette->GetName());
        }
    }
    TCHAR buffer[256];
    return fromWide(buffer, ::GetWindowText(window, buffer, 256));
}

json describe(HWND window) {
    RECT rect{};
    ::GetWindowRect(window, &rect);
    return {{"id", idOf(window)},
            {"kind", kindOf(window)},
            {"title", titleOf(window)},
            {"rect", toJson(rect)},
            {"visible", ::IsWindowVisible(window) != FALSE},
            {"enabled", ::IsWindowEnabled(window) != FALSE}};
}

BOOL CALLBACK collect(HWND window, LPARAM list) {
    reinterpret_cast<std::vector<HWND>*>(list)->push_back(window);
    return TRUE;
}

std::vector<HWND> allWindows(HostApp& app) {
    std::vector<HWND> windows;
    ::EnumThreadWindows(::GetCurrentThreadId(), collect, reinterpret_cast<LPARAM>(&windows));
    ::EnumChildWindows(app.frame()->GetSafeHwnd(), collect, reinterpret_cast<LPARAM>(&windows));
    return windows;
}

/// The window that a request names by id, kind or title; null if it names none. Throws if there is no such
/// window.
HWND windowOf(HostApp& app, const json& arguments) {
    const auto wanted = arguments.find("window");
    if (wanted == arguments.end()) {
        return nullptr;
    }
    for (HWND window : allWindows(app)) {
        const bool found = wanted->is_string() ? *wanted == kindOf(window) || *wanted == titleOf(window)
                                               : *wanted == idOf(window);
        if (found) {
            return window;
        }
    }
    if (wanted->is_number_unsigned()) {
        // Windows created by other code, such as an embedded Qt view.
        const auto window = reinterpret_cast<HWND>(wanted->get<uintptr_t>());
        if (::IsWindow(window) != FALSE) {
            return window;
        }
    }
    throw ControlError("no such window: " + wanted->dump());
}

json windows(HostApp& app, const json&) {
    json list = json::array();
    for (HWND window : allWindows(app)) {
        list.push_back(describe(window));
    }
    return {{"windows", list}};
}

json focus(HostApp&, const json&) {
    const HWND window = ::GetFocus();
    return window == nullptr ? json{{"kind", "none"}} : describe(window);
}

int buttonOf(const json& arguments) {
    static const std::map<std::string, int> buttons = {{"left", 1}, {"middle", 2}, {"right", 3}};
    const auto found = buttons.find(arguments.value("button", std::string("left")));
    if (found == buttons.end()) {
        throw ControlError("unknown button");
    }
    return found->second;
}

void require(bool done) {
    if (!done) {
        throw ControlError("the system rejected the input");
    }
}

json click(HostApp&, const json& arguments) {
    const int x = arguments.at("x").get<int>();
    const int y = arguments.at("y").get<int>();
    for (int i = 0; i < (arguments.value("double", false) ? 2 : 1); ++i) {
        require(platform::clickPointer(x, y, buttonOf(arguments)));
    }
    return kInput;
}

json clickWindow(HostApp& app, const json& arguments) {
    const HWND window = windowOf(app, arguments);
    if (window == nullptr) {
        throw ControlError("\"window\" is missing");
    }
    RECT rect{};
    ::GetWindowRect(window, &rect);
    const int x = rect.left + arguments.value("x", static_cast<int>(rect.right - rect.left) / 2);
    const int y = rect.top + arguments.value("y", static_cast<int>(rect.bottom - rect.top) / 2);
    require(platform::clickPointer(x, y, buttonOf(arguments)));
    return kInput;
}

json movePointer(HostApp&, const json& arguments) {
    require(platform::movePointer(arguments.at("x").get<int>(), arguments.at("y").get<int>()));
    return kInput;
}

json drag(HostApp&, const json& arguments) {
    const json& from = arguments.at("from");
    const json& to = arguments.at("to");
    const int button = buttonOf(arguments);
    constexpr int kSteps = 4;
    require(platform::movePointer(from.at(0).get<int>(), from.at(1).get<int>()));
    require(platform::pressPointer(button, true));
    for (int i = 1; i <= kSteps; ++i) {
        const auto at = [&](size_t axis) {
            return from.at(axis).get<int>() +
                   (to.at(axis).get<int>() - from.at(axis).get<int>()) * i / kSteps;
        };
        require(platform::movePointer(at(0), at(1)));
    }
    require(platform::pressPointer(button, false));
    return kInput;
}

json wheel(HostApp&, const json& arguments) {
    constexpr int kUp = 4;
    constexpr int kDown = 5;
    const int notches = arguments.at("notches").get<int>();
    require(platform::movePointer(arguments.at("x").get<int>(), arguments.at("y").get<int>()));
    for (int i = 0; i < std::abs(notches); ++i) {
        require(platform::pressPointer(notches > 0 ? kUp : kDown, true));
        require(platform::pressPointer(notches > 0 ? kUp : kDown, false));
    }
    return kInput;
}

json commandLine(HostApp& app, const json&) {
    const CommandLine& line = app.editor().commandLine();
    return {{"text", line.text()},
            {"lines", line.lines()},
            {"prompt", line.prompt()},
            {"input", line.input()},
            {"recall", line.recallable()},
            {"active", app.editor().activeCommandNames()},
            {"quiescent", app.editor().isQuiescent()}};
}

json clearHistory(HostApp& app, const json&) {
    app.editor().commandLine().clear();
    app.frame()->refresh();
    return json::object();
}

json valueOf(const SystemVariable& variable) {
    const VariableValue value = variable.current();
    if (const auto* point = std::get_if<Point>(&value)) {
        return toJson(*point);
    }
    if (const auto* number = std::get_if<int>(&value)) {
        return *number;
    }
    if (const auto* real = std::get_if<double>(&value)) {
        return *real;
    }
    return std::get<std::string>(value);
}

const char* refusal(SetVariable result) {
    switch (result) {
        case SetVariable::Done:
            break;
        case SetVariable::Unknown:
            return "unknown variable";
        case SetVariable::ReadOnly:
            return "the variable is read-only";
        case SetVariable::WrongType:
            return "the value has the wrong type";
        case SetVariable::OutOfRange:
            return "the value is out of range";
    }
    return "";
}

json vars(HostApp& app, const json& arguments) {
    SystemVariables& variables = app.editor().variables();
    const bool sets = arguments.contains("set");
    const auto name = arguments.at(sets ? "set" : "get").get<std::string>();
    if (sets) {
        const json& value = arguments.at("value");
        const std::string text = value.is_string() ? value.get<std::string>() : value.dump();
        const SetVariable result = variables.setFromText(name, text);
        if (result != SetVariable::Done) {
            throw ControlError(refusal(result));
        }
    }
    const SystemVariable* const variable = variables.find(name);
    if (variable == nullptr) {
        throw ControlError(refusal(SetVariable::Unknown));
    }
    return {{"name", variable->name}, {"value", valueOf(*variable)}};
}

json drawing(HostApp& app, const json&) {
    json list = json::array();
    for (const Entity& entity : app.editor().drawing().entities()) {
        json described = {{"id", entity.id}, {"type", kindName(entity.kind)}, {"layer", entity.layer}};
        if (entity.kind == EntityKind::Circle) {
            described["center"] = toJson(entity.points[0]);
            described["radius"] = entity.radius;
        } else {
            described["points"] = json::array();
            for (const Point& point : entity.points) {
                described["points"].push_back(toJson(point));
            }
            described["closed"] = entity.closed;
        }
        list.push_back(described);
    }
    const Viewport& viewport = app.editor().viewport();
    return {{"entities", list},
            {"view", {{"center", toJson(viewport.center())}, {"unitsPerPixel", viewport.unitsPerPixel()}}}};
}

json toScreen(HostApp& app, const json& arguments) {
    const CPoint point =
        app.frame()->view().toScreen({arguments.at("x").get<double>(), arguments.at("y").get<double>()});
    return {{"x", point.x}, {"y", point.y}};
}

/// The text of a menu item as displayed, without mnemonic and shortcut.
std::string plainMenuText(HMENU menu, int position) {
    TCHAR buffer[128];
    const int length = ::GetMenuString(menu, static_cast<UINT>(position), buffer, 128, MF_BYPOSITION);
    std::string text = fromWide(buffer, length);
    text = text.substr(0, text.find('\t'));
    const size_t bracketed = text.find("(&");
    if (bracketed != std::string::npos) {
        text.erase(bracketed, text.find(')', bracketed) + 1 - bracketed);
    }
    return text;
}

json chooseMenuItem(HostApp& app, const json& arguments) {
    HMENU menu = ::GetMenu(app.frame()->GetSafeHwnd());
    const json& path = arguments.at("path");
    for (size_t depth = 0; depth < path.size(); ++depth) {
        int position = ::GetMenuItemCount(menu) - 1;
        while (position >= 0 && path[depth] != plainMenuText(menu, position)) {
            --position;
        }
        if (position < 0) {
            break;
        }
        const UINT id = ::GetMenuItemID(menu, position);
        if (depth + 1 == path.size()) {
            app.frame()->PostMessage(WM_COMMAND, id);
            return kInput;
        }
        menu = ::GetSubMenu(menu, position);
    }
    throw ControlError("no such menu item: " + path.dump());
}

const char* buttonName(int id) {
    switch (id) {
        case IDOK:
            return "ok";
        case IDCANCEL:
            return "cancel";
        case IDABORT:
            return "abort";
        case IDRETRY:
            return "retry";
        case IDIGNORE:
            return "ignore";
        case IDYES:
            return "yes";
        case IDNO:
            return "no";
        default:
            return "";
    }
}

json messageBoxes(HostApp&, const json&) {
    json list = json::array();
    for (const platform::OpenMessageBox& box : platform::messageBoxes()) {
        json buttons = json::array();
        for (const platform::MessageBoxButton& button : box.buttons) {
            buttons.push_back({{"id", button.id}, {"name", buttonName(button.id)}, {"text", button.text}});
        }
        RECT rect{};
        ::GetWindowRect(box.window, &rect);
        list.push_back({{"window", idOf(box.window)},
                        {"caption", box.caption},
                        {"text", box.text},
                        {"buttons", buttons},
                        {"rect", toJson(rect)}});
    }
    return {{"boxes", list}};
}

json answerMessageBox(HostApp&, const json& arguments) {
    const std::vector<platform::OpenMessageBox> boxes = platform::messageBoxes();
    const json& wanted = arguments.at("button");
    for (auto box = boxes.rbegin(); box != boxes.rend(); ++box) {
        if (arguments.contains("window") && arguments["window"] != idOf(box->window)) {
            continue;
        }
        for (const platform::MessageBoxButton& button : box->buttons) {
            if (wanted == buttonName(button.id) || wanted == button.id || wanted == button.text) {
                if (!platform::answerMessageBox(box->window, button.id)) {
                    throw ControlError("the message box has been closed");
                }
                return kInput;
            }
        }
        throw ControlError("the message box has no such button");
    }
    throw ControlError("no message box is open");
}

json screenshot(HostApp& app, const json& arguments) {
    app.frame()->RedrawWindow(nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    const platform::Picture picture = platform::grab(windowOf(app, arguments));
    const auto file = arguments.at("file").get<std::string>();
    if (picture.width == 0 || !platform::savePng(picture, file)) {
        throw ControlError("cannot write the screenshot " + file);
    }
    return {{"width", picture.width}, {"height", picture.height}};
}

platform::Picture cut(const platform::Picture& picture, int left, int top, int width, int height) {
    platform::Picture part{width, height, {}};
    for (int y = top; y < top + height; ++y) {
        const auto row = picture.pixels.begin() + static_cast<std::ptrdiff_t>(y) * picture.width;
        part.pixels.insert(part.pixels.end(), row + left, row + left + width);
    }
    return part;
}

/// A capture of the screen, a window, or a rectangle of either, and its position on the screen.
struct Sight {
    platform::Picture picture;
    int x = 0;
    int y = 0;
};

Sight look(HostApp& app, const json& arguments) {
    app.frame()->RedrawWindow(nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    const HWND window = windowOf(app, arguments);
    Sight sight{platform::grab(window), 0, 0};
    if (window != nullptr) {
        RECT rect{};
        ::GetWindowRect(window, &rect);
        sight.x = rect.left;
        sight.y = rect.top;
    }
    if (const auto rect = arguments.find("rect"); rect != arguments.end()) {
        const int left = std::clamp(rect->at(0).get<int>(), 0, sight.picture.width);
        const int top = std::clamp(rect->at(1).get<int>(), 0, sight.picture.height);
        const int width = std::clamp(rect->at(2).get<int>(), 0, sight.picture.width - left);
        const int height = std::clamp(rect->at(3).get<int>(), 0, sight.picture.height - top);
        sight.picture = cut(sight.picture, left, top, width, height);
        sight.x += left;
        sight.y += top;
    }
    return sight;
}

unsigned colorOf(const json& arguments) {
    const auto text = arguments.at("color").get<std::string>();
    size_t used = 0;
    const unsigned long color =
        text.size() == 7 && text[0] == '#' ? std::stoul(text.substr(1), &used, 16) : 0;
    if (used != 6) {
        throw ControlError("a colour must be #RRGGBB");
    }
    return static_cast<unsigned>(color);
}

json findColor(HostApp& app, const json& arguments) {
    const Sight sight = look(app, arguments);
    json list = json::array();
    for (const RECT& cluster :
         platform::findColor(sight.picture, colorOf(arguments), arguments.value("tolerance", 0),
                             arguments.value("minPixels", 1), arguments.value("join", 1))) {
        list.push_back({{"x", cluster.left + sight.x},
                        {"y", cluster.top + sight.y},
                        {"width", cluster.right - cluster.left},
                        {"height", cluster.bottom - cluster.top}});
    }
    return {{"clusters", list}};
}

json pixel(HostApp& app, const json& arguments) {
    json area = arguments;
    area["rect"] = {arguments.at("x"), arguments.at("y"), 1, 1};
    const Sight sight = look(app, area);
    if (sight.picture.pixels.empty()) {
        throw ControlError("the pixel is outside the captured area");
    }
    char text[8];
    std::snprintf(text, sizeof text, "#%06X", sight.picture.pixels[0] & 0xFFFFFFu);
    return {{"color", text}};
}

}  // namespace

json runControlCommand(HostApp& app, const std::string& command, const json& arguments) {
    static const std::map<std::string, json (*)(HostApp&, const json&)> commands = {
        {"windows", windows},
        {"focus", focus},
        {"click", click},
        {"clickWindow", clickWindow},
        {"move", movePointer},
        {"drag", drag},
        {"wheel", wheel},
        {"commandLine", commandLine},
        {"clearHistory", clearHistory},
        {"vars", vars},
        {"drawing", drawing},
        {"toScreen", toScreen},
        {"menu", chooseMenuItem},
        {"messageBoxes", messageBoxes},
        {"answerMessageBox", answerMessageBox},
        {"screenshot", screenshot},
        {"findColor", findColor},
        {"pixel", pixel},
    };
    const auto found = commands.find(command);
    return found == commands.end() ? json() : found->second(app, arguments);
}

}  // namespace cad
