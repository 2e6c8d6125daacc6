#include "sim/cad/core/SystemCommands.h"

#include "sim/cad/core/Editor.h"
#include "sim/cad/core/Script.h"
#include "sim/cad/core/Text.h"

namespace cad {

namespace {

class SetvarCommand : public Command {
public:
    void start() override {
        ask({"输入变量名或 [?]: ", Prompt::Words}, [this](const Input& input) {
            if (input.kind == Input::Keyword) {
                askPattern();
            } else {
                name(input.text);
            }
        });
    }

private:
    void name(const std::string& typed) {
        const SystemVariable* const variable = editor().variables().find(typed);
        if (variable == nullptr) {
            askAgain("未知变量名。输入 SETVAR ? 列出变量。");
            return;
        }
        m_name = variable->name;
        const std::string shown = editor().variables().format(variable->current());
        if (variable->readOnly) {
            editor().commandLine().addLine(m_name + " = " + shown + " (只读)");
            finish();
            return;
        }
        // Strings may contain spaces; a space ends other values.
        const bool isText = std::holds_alternative<std::string>(variable->value);
        ask({"输入 " + m_name + " 的新值 <" + shown + ">: ",
             (isText ? Prompt::Lines : Prompt::Words) | Prompt::Enters},
            [this](const Input& input) { value(input); });
    }

    void value(const Input& input) {
        if (input.kind == Input::Enter) {
            finish();
            return;
        }
        const SystemVariable& variable = *editor().variables().find(m_name);
        switch (editor().variables().setFromText(m_name, input.text)) {
            case SetVariable::Done:
                finish();
                break;
            case SetVariable::OutOfRange:
                askAgain(range(variable));
                break;
            case SetVariable::WrongType:
                askAgain(expectation(variable));
                break;
            case SetVariable::Unknown:
            case SetVariable::ReadOnly:
                editor().commandLine().addLine("无法设置 " + m_name + "。");
                finish();
                break;
        }
    }

    std::string range(const SystemVariable& variable) const {
        if (!variable.hasRange) {
            return "值无效。";
        }
        if (std::holds_alternative<int>(variable.value)) {
            return "需要 " + formatNumber(variable.min, 0) + " 和 " + formatNumber(variable.max, 0) +
                   " 之间的整数。";
        }
        return variable.min > 0 ? "值必须为正且非零。" : "值不能为负。";
    }

    static std::string expectation(const SystemVariable& variable) {
        if (std::holds_alternative<int>(variable.value)) {
            return "需要整数值。";
        }
        return std::holds_alternative<double>(variable.value) ? "需要数值。" : "需要点。";
    }

    void askPattern() {
        ask({"输入要列出的变量 <*>: ", Prompt::Words | Prompt::Enters}, [this](const Input& input) {
            const std::string pattern = input.kind == Input::Enter ? "*" : input.text;
            for (const SystemVariable& variable : editor().variables().all()) {
                if (matches(variable.name, pattern)) {
                    std::string line = variable.name;
                    line.resize(std::max<size_t>(line.size() + 1, 16), ' ');
                    line += editor().variables().format(variable.current());
                    editor().commandLine().addLine(line + (variable.readOnly ? "  (只读)" : ""));
                }
            }
            finish();
        });
    }

    std::string m_name;
};

class ArxCommand : public Command {
public:
    void start() override {
        ask({"输入 ARX 选项 [?/加载(L)/卸载(U)]: ", 0}, [this](const Input& input) {
            if (input.isKeyword("L")) {
                ask({"输入 ARX 文件名: ", Prompt::Lines}, [this](const Input& file) { load(file.text); });
            } else if (input.isKeyword("U")) {
                ask({"输入要卸载的 ARX 文件名: ", Prompt::Lines},
                    [this](const Input& file) { unload(file.text); });
            } else {
                list();
            }
        });
    }

private:
    void load(const std::string& file) {
        const bool loaded = editor().services().loadModule(file);
        editor().commandLine().addLine(loaded ? file + " 已加载。" : file + " 无法加载。");
        finish();
    }

    void unload(const std::string& file) {
        const bool unloaded = editor().services().unloadModule(file);
        editor().commandLine().addLine(unloaded ? file + " 已卸载。" : file + " 未加载或无法卸载。");
        finish();
    }

    void list() {
        const std::vector<std::string> modules = editor().services().loadedModules();
        editor().commandLine().addLine(modules.empty() ? "没有加载的 ARX 应用程序。"
                                                       : "已加载的 ARX 应用程序:");
        for (const std::string& module : modules) {
            editor().commandLine().addLine("    " + module);
        }
        finish();
    }
};

class ScriptCommand : public Command {
public:
    void start() override {
        ask({"输入脚本文件名: ", Prompt::Lines}, [this](const Input& input) {
            const auto script = readScript(input.text);
            if (script) {
                editor().sendFirst(*script);
            } else {
                editor().commandLine().addLine("找不到脚本文件“" + input.text + "”。");
            }
            finish();
        });
    }
};

class DelayCommand : public Command {
public:
    void start() override {
        ask({"输入延迟时间（毫秒）: ", Prompt::Integers}, [this](const Input& input) {
            if (input.number < 0 || input.number > kLongestDelay) {
                askAgain("需要 0 和 32767 之间的整数。");
                return;
            }
            editor().pause();
            editor().services().delay(static_cast<int>(input.number));
            finish();
        });
    }

private:
    static constexpr int kLongestDelay = 32767;
};

class HelpCommand : public Command {
public:
    void start() override {
        editor().commandLine().addLine("可用的命令:");
        for (const BuiltInCommand& command : builtInCommands()) {
            std::string line = "  " + command.name;
            line.resize(std::max<size_t>(line.size() + 1, 12), ' ');
            std::string aliases;
            for (const std::string& alias : command.aliases) {
                aliases += (aliases.empty() ? "" : ", ") + alias;
            }
            aliases.resize(std::max<size_t>(aliases.size() + 1, 10), ' ');
            editor().commandLine().addLine(line + aliases + command.help);
        }
        finish();
    }
};

class QuitCommand : public Command {
public:
    void start() override {
        editor().services().quit();
        finish();
    }
};

}  // namespace

std::unique_ptr<Command> makeSetvarCommand() {
    return std::make_unique<SetvarCommand>();
}
std::unique_ptr<Command> makeArxCommand() {
    return std::make_unique<ArxCommand>();
}
std::unique_ptr<Command> makeScriptCommand() {
    return std::make_unique<ScriptCommand>();
}
std::unique_ptr<Command> makeDelayCommand() {
    return std::make_unique<DelayCommand>();
}
std::unique_ptr<Command> makeHelpCommand() {
    return std::make_unique<HelpCommand>();
}
std::unique_ptr<Command> makeQuitCommand() {
    return std::make_unique<QuitCommand>();
}

}  // namespace cad
