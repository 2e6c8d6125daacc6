#include "sim/cad/core/ModifyCommands.h"

#include "sim/cad/core/Editor.h"

namespace cad {

namespace {

// Asks for entities until an empty answer; a pick that hits nothing starts a selection window.
class SelectingCommand : public Command {
public:
    void start() override { askObjects(); }

    const std::set<int>& selection() const override { return m_selected; }

    std::vector<Entity> preview(Point cursor) const override {
        return m_corner ? std::vector<Entity>{Entity::rectangle(*m_corner, cursor)} : std::vector<Entity>();
    }

protected:
    virtual void apply(const std::set<int>& selected) = 0;

private:
    void askObjects() {
        m_corner.reset();
        ask({"选择对象或 [全部(ALL)/上一个(L)/窗口(W)/窗交(C)]: ", Prompt::Points | Prompt::Enters},
            [this](const Input& input) { choose(input); });
    }

    void choose(const Input& input) {
        const Drawing& drawing = editor().drawing();
        if (input.kind == Input::Enter) {
            apply(m_selected);
            finish();
        } else if (input.isKeyword("ALL")) {
            std::vector<int> all;
            for (const Entity& entity : drawing.entities()) {
                all.push_back(entity.id);
            }
            select(all);
        } else if (input.isKeyword("L")) {
            select(drawing.entities().empty() ? std::vector<int>()
                                              : std::vector<int>{drawing.entities().back().id});
        } else if (input.kind == Input::Keyword) {
            askFirstCorner(input.isKeyword("C"));
        } else {
            pickAt(input.point);
        }
    }

    void pickAt(Point point) {
        const double reach =
            (editor().variables().integer("PICKBOX") + 1) * editor().viewport().unitsPerPixel();
        if (const Entity* const hit = editor().drawing().pick(point, reach)) {
            select({hit->id});
            return;
        }
        m_corner = point;
        // By CAD convention a window drawn from right to left is a crossing window.
        ask({"指定对角点: ", Prompt::Points, point},
            [this](const Input& input) { selectBox(input.point, input.point.x < m_corner->x); });
    }

    void askFirstCorner(bool crossing) {
        ask({"指定第一个角点: ", Prompt::Points}, [this, crossing](const Input& first) {
            m_corner = first.point;
            ask({"指定对角点: ", Prompt::Points, first.point},
                [this, crossing](const Input& second) { selectBox(second.point, crossing); });
        });
    }

    void selectBox(Point opposite, bool crossing) {
        const Box box = Box::of(*m_corner, opposite);
        std::vector<int> found;
        for (const Entity& entity : editor().drawing().entities()) {
            if (box.contains(entity.bounds()) || (crossing && entity.crosses(box))) {
                found.push_back(entity.id);
            }
        }
        select(found);
    }

    void select(const std::vector<int>& found) {
        m_selected.insert(found.begin(), found.end());
        std::string line = "找到 " + std::to_string(found.size()) + " 个";
        if (m_selected.size() != found.size()) {
            line += "，总计 " + std::to_string(m_selected.size()) + " 个";
        }
        editor().commandLine().addLine(line);
        askObjects();
    }

    std::set<int> m_selected;
    std::optional<Point> m_corner;
};

class EraseCommand : public SelectingCommand {
    void apply(const std::set<int>& selected) override {
        for (const int id : selected) {
            editor().drawing().erase(id);
        }
    }
};

class ListCommand : public SelectingCommand {
    void apply(const std::set<int>& selected) override {
        for (const int id : selected) {
            describe(*editor().drawing().find(id));
        }
    }

    void describe(const Entity& entity) {
        CommandLine& out = editor().commandLine();
        out.addLine(std::string(kindName(entity.kind)) + "    图层: \"" + entity.layer + "\"");
        if (entity.kind == EntityKind::Circle) {
            out.addLine("    圆心 " + editor().format(entity.points[0]) + "  半径 " +
                        editor().format(entity.radius));
            return;
        }
        for (const Point& point : entity.points) {
            out.addLine("    于 " + editor().format(point));
        }
        if (entity.closed) {
            out.addLine("    闭合");
        }
    }
};

// U, UNDO and REDO. Multiple steps stop early when nothing is left.
class JournalCommand : public Command {
public:
    JournalCommand(bool undo, bool askCount) : m_undo(undo), m_askCount(askCount) {}

    void start() override {
        if (!m_askCount) {
            run(1);
            finish();
            return;
        }
        ask({"输入要放弃的操作数目 <1>: ", Prompt::Integers | Prompt::Enters}, [this](const Input& input) {
            const int count = input.kind == Input::Enter ? 1 : static_cast<int>(input.number);
            if (count < 1) {
                askAgain("需要大于零的整数。");
                return;
            }
            run(count);
            finish();
        });
    }

private:
    void run(int count) {
        for (int i = 0; i < count; ++i) {
            const auto name = m_undo ? editor().drawing().undo() : editor().drawing().redo();
            if (!name) {
                editor().commandLine().addLine(m_undo ? "所有操作都已放弃。" : "没有操作可以重做。");
                return;
            }
            editor().commandLine().addLine(*name);
        }
    }

    bool m_undo;
    bool m_askCount;
};

}  // namespace

std::unique_ptr<Command> makeEraseCommand() {
    return std::make_unique<EraseCommand>();
}
std::unique_ptr<Command> makeUCommand() {
    return std::make_unique<JournalCommand>(true, false);
}
std::unique_ptr<Command> makeUndoCommand() {
    return std::make_unique<JournalCommand>(true, true);
}
std::unique_ptr<Command> makeRedoCommand() {
    return std::make_unique<JournalCommand>(false, false);
}
std::unique_ptr<Command> makeListCommand() {
    return std::make_unique<ListCommand>();
}

}  // namespace cad
