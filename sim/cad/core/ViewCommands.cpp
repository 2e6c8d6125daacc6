#include "sim/cad/core/ViewCommands.h"

#include "sim/cad/core/Editor.h"
#include "sim/cad/core/Text.h"

namespace cad {

namespace {

class ZoomCommand : public Command {
public:
    void start() override {
        ask({"指定窗口的角点，输入比例因子 (nX)，或者 [全部(A)/范围(E)/上一个(P)/窗口(W)] <范围>: ",
             Prompt::Points | Prompt::Words | Prompt::Enters},
            [this](const Input& input) { choose(input); });
    }

    std::vector<Entity> preview(Point cursor) const override {
        return m_corner ? std::vector<Entity>{Entity::rectangle(*m_corner, cursor)} : std::vector<Entity>();
    }

private:
    Box limits() const {
        return Box::of(editor().variables().point("LIMMIN"), editor().variables().point("LIMMAX"));
    }

    void show(const Box& box) {
        editor().viewport().zoomTo(box);
        finish();
    }

    void choose(const Input& input) {
        const Box extents = editor().drawing().extents();
        if (input.isKeyword("A")) {
            Box all = limits();
            all.add(extents);
            show(all);
        } else if (input.isKeyword("E") || input.kind == Input::Enter) {
            show(extents.isEmpty() ? limits() : extents);
        } else if (input.isKeyword("P")) {
            if (!editor().viewport().zoomPrevious()) {
                editor().commandLine().addLine("没有保存的上一个视图。");
            }
            finish();
        } else if (input.isKeyword("W")) {
            ask({"指定第一个角点: ", Prompt::Points},
                [this](const Input& first) { askOpposite(first.point); });
        } else if (input.kind == Input::PointGiven) {
            askOpposite(input.point);
        } else {
            scale(input.text);
        }
    }

    void askOpposite(Point corner) {
        m_corner = corner;
        ask({"指定对角点: ", Prompt::Points, corner}, [this](const Input& input) {
            const Box window = Box::of(*m_corner, input.point);
            if (window.width() == 0 && window.height() == 0) {
                askAgain("窗口没有大小。");
                return;
            }
            show(window);
        });
    }

    // "2x" is relative to the current view, "2" to a view of the drawing's limits.
    void scale(const std::string& text) {
        const bool ofPresent = !text.empty() && (text.back() == 'x' || text.back() == 'X');
        const auto factor = parseNumber(ofPresent ? text.substr(0, text.size() - 1) : text);
        if (!factor || !(*factor > 0)) {
            askAgain("需要点、比例因子或选项关键字。");
            return;
        }
        if (!ofPresent) {
            Viewport& viewport = editor().viewport();
            const double whole =
                std::max(limits().width() / viewport.width(), limits().height() / viewport.height());
            viewport.zoomBy(viewport.unitsPerPixel() / (whole / *factor));
        } else {
            editor().viewport().zoomBy(*factor);
        }
        finish();
    }

    std::optional<Point> m_corner;
};

class PanCommand : public Command {
public:
    void start() override {
        ask({"指定基点: ", Prompt::Points}, [this](const Input& from) {
            m_from = from.point;
            ask({"指定第二点: ", Prompt::Points, m_from}, [this](const Input& to) {
                editor().viewport().panBy(*m_from - to.point);
                finish();
            });
        });
    }

    std::vector<Entity> preview(Point cursor) const override {
        return m_from ? std::vector<Entity>{Entity::line(*m_from, cursor)} : std::vector<Entity>();
    }

private:
    std::optional<Point> m_from;
};

class RedrawCommand : public Command {
public:
    void start() override {
        // A pan by zero increments the viewport's revision, which makes the windows repaint.
        editor().viewport().panBy({});
        finish();
    }
};

}  // namespace

std::unique_ptr<Command> makeZoomCommand() {
    return std::make_unique<ZoomCommand>();
}
std::unique_ptr<Command> makePanCommand() {
    return std::make_unique<PanCommand>();
}
std::unique_ptr<Command> makeRedrawCommand() {
    return std::make_unique<RedrawCommand>();
}

}  // namespace cad
