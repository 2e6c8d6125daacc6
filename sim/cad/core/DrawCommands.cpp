#include "sim/cad/core/DrawCommands.h"

#include "sim/cad/core/Editor.h"

namespace cad {

namespace {

constexpr const char* kMustBePositive = "值必须为正且非零。";

// LINE: each segment is an entity; U removes the last one, C closes to the first point.
class LineCommand : public Command {
public:
    void start() override {
        ask({"指定第一个点: ", Prompt::Points}, [this](const Input& input) {
            m_points = {input.point};
            askNext();
        });
    }

    std::vector<Entity> preview(Point cursor) const override {
        return m_points.empty() ? std::vector<Entity>()
                                : std::vector<Entity>{Entity::line(m_points.back(), cursor)};
    }

private:
    void askNext() {
        const bool closable = m_lines.size() >= 2;
        ask({closable ? "指定下一点或 [闭合(C)/放弃(U)]: " : "指定下一点或 [放弃(U)]: ",
             Prompt::Points | Prompt::Enters, m_points.back()},
            [this](const Input& input) { next(input); });
    }

    void next(const Input& input) {
        if (input.kind == Input::Enter) {
            finish();
        } else if (input.isKeyword("U")) {
            undo();
        } else if (input.isKeyword("C")) {
            addTo(m_points.front());
            finish();
        } else {
            addTo(input.point);
            askNext();
        }
    }

    void addTo(Point point) {
        m_lines.push_back(editor().drawing().add(Entity::line(m_points.back(), point)));
        m_points.push_back(point);
    }

    void undo() {
        if (m_lines.empty()) {
            askAgain("所有线段都已放弃。");
            return;
        }
        editor().drawing().erase(m_lines.back());
        m_lines.pop_back();
        m_points.pop_back();
        editor().setLastPoint(m_points.back());
        askNext();
    }

    std::vector<Point> m_points;
    std::vector<int> m_lines;
};

// PLINE: all segments form one entity, which is added to the drawing when the command ends.
class PolylineCommand : public Command {
public:
    void start() override {
        ask({"指定起点: ", Prompt::Points}, [this](const Input& input) {
            m_points = {input.point};
            askNext();
        });
    }

    std::vector<Entity> preview(Point cursor) const override {
        if (m_points.empty()) {
            return {};
        }
        std::vector<Point> points = m_points;
        points.push_back(cursor);
        return {Entity::polyline(points, false)};
    }

private:
    void askNext() {
        const bool closable = m_points.size() >= 3;
        ask({closable ? "指定下一个点或 [闭合(C)/放弃(U)]: " : "指定下一个点或 [放弃(U)]: ",
             Prompt::Points | Prompt::Enters, m_points.back()},
            [this](const Input& input) { next(input); });
    }

    void next(const Input& input) {
        if (input.kind == Input::Enter || input.isKeyword("C")) {
            if (m_points.size() >= 2) {
                editor().drawing().add(Entity::polyline(m_points, input.kind == Input::Keyword));
            }
            finish();
            return;
        }
        if (input.isKeyword("U")) {
            if (m_points.size() == 1) {
                askAgain("所有线段都已放弃。");
                return;
            }
            m_points.pop_back();
            editor().setLastPoint(m_points.back());
        } else {
            m_points.push_back(input.point);
        }
        askNext();
    }

    std::vector<Point> m_points;
};

class CircleCommand : public Command {
public:
    void start() override {
        ask({"指定圆的圆心或 [三点(3P)/两点(2P)]: ", Prompt::Points}, [this](const Input& input) {
            if (input.isKeyword("3P")) {
                askThreePoints();
            } else if (input.isKeyword("2P")) {
                askDiameterEnds();
            } else {
                m_center = input.point;
                askRadius();
            }
        });
    }

    std::vector<Entity> preview(Point cursor) const override {
        if (m_center) {
            const double reach = distance(*m_center, cursor);
            return {Entity::circle(*m_center, m_byDiameter ? reach / 2 : reach),
                    Entity::line(*m_center, cursor)};
        }
        if (m_ends.size() == 1 && !m_throughThree) {
            return {Entity::circle((m_ends[0] + cursor) * 0.5, distance(m_ends[0], cursor) / 2)};
        }
        if (m_ends.size() == 2) {
            if (const auto circle = through(m_ends[0], m_ends[1], cursor)) {
                return {*circle};
            }
        }
        return {};
    }

private:
    void askRadius() {
        const double last = editor().variables().real("CIRCLERAD");
        const std::string offer = last > 0 ? " <" + editor().format(last) + ">: " : ": ";
        ask({"指定圆的半径或 [直径(D)]" + offer, Prompt::Numbers | (last > 0 ? Prompt::Enters : 0u),
             m_center},
            [this, last](const Input& input) {
                if (input.isKeyword("D")) {
                    askDiameter();
                } else {
                    create(input.kind == Input::Enter ? last : input.number);
                }
            });
    }

    void askDiameter() {
        m_byDiameter = true;
        const double last = editor().variables().real("CIRCLERAD") * 2;
        const std::string offer = last > 0 ? " <" + editor().format(last) + ">: " : ": ";
        ask({"指定圆的直径" + offer, Prompt::Numbers | (last > 0 ? Prompt::Enters : 0u), m_center},
            [this, last](const Input& input) {
                create((input.kind == Input::Enter ? last : input.number) / 2);
            });
    }

    void create(double radius) {
        if (!(radius > 0)) {
            askAgain(kMustBePositive);
            return;
        }
        editor().variables().store("CIRCLERAD", radius);
        editor().drawing().add(Entity::circle(*m_center, radius));
        finish();
    }

    void askDiameterEnds() {
        ask({"指定圆直径的第一个端点: ", Prompt::Points}, [this](const Input& first) {
            m_ends = {first.point};
            ask({"指定圆直径的第二个端点: ", Prompt::Points, first.point}, [this](const Input& second) {
                m_center = (m_ends[0] + second.point) * 0.5;
                create(distance(m_ends[0], second.point) / 2);
                if (!isFinished()) {
                    m_center.reset();
                }
            });
        });
    }

    void askThreePoints() {
        m_throughThree = true;
        ask({"指定圆上的第一个点: ", Prompt::Points}, [this](const Input& first) {
            m_ends = {first.point};
            ask({"指定圆上的第二个点: ", Prompt::Points, first.point}, [this](const Input& second) {
                m_ends.push_back(second.point);
                ask({"指定圆上的第三个点: ", Prompt::Points, second.point},
                    [this](const Input& third) { createThrough(third.point); });
            });
        });
    }

    void createThrough(Point third) {
        const auto circle = through(m_ends[0], m_ends[1], third);
        if (!circle) {
            askAgain("三点共线，不能确定圆。");
            return;
        }
        editor().variables().store("CIRCLERAD", circle->radius);
        editor().drawing().add(*circle);
        finish();
    }

    static std::optional<Entity> through(Point a, Point b, Point c) {
        const Point u = b - a;
        const Point v = c - a;
        const double cross = 2 * (u.x * v.y - u.y * v.x);
        constexpr double kCollinear = 1e-12;
        if (std::abs(cross) <= kCollinear * length(u) * length(v)) {
            return std::nullopt;
        }
        const double uu = u.x * u.x + u.y * u.y;
        const double vv = v.x * v.x + v.y * v.y;
        const Point toCenter{(v.y * uu - u.y * vv) / cross, (u.x * vv - v.x * uu) / cross};
        return Entity::circle(a + toCenter, length(toCenter));
    }

    std::optional<Point> m_center;
    std::vector<Point> m_ends;
    bool m_byDiameter = false;
    bool m_throughThree = false;
};

class RectangleCommand : public Command {
public:
    void start() override {
        ask({"指定第一个角点: ", Prompt::Points}, [this](const Input& input) {
            m_corner = input.point;
            askOpposite();
        });
    }

    std::vector<Entity> preview(Point cursor) const override {
        return m_corner ? std::vector<Entity>{Entity::rectangle(*m_corner, opposite(cursor))}
                        : std::vector<Entity>();
    }

private:
    void askOpposite() {
        ask({"指定另一个角点或 [尺寸(D)]: ", Prompt::Points, m_corner}, [this](const Input& input) {
            if (input.isKeyword("D")) {
                askSize();
            } else {
                create(input.point);
            }
        });
    }

    void askSize() {
        ask({"指定矩形的长度: ", Prompt::Numbers, m_corner}, [this](const Input& width) {
            if (!(width.number > 0)) {
                askAgain(kMustBePositive);
                return;
            }
            m_width = width.number;
            ask({"指定矩形的宽度: ", Prompt::Numbers, m_corner}, [this](const Input& height) {
                if (!(height.number > 0)) {
                    askAgain(kMustBePositive);
                    return;
                }
                m_height = height.number;
                // The size is known; the point only selects the quadrant.
                ask({"指定另一个角点: ", Prompt::Points, m_corner},
                    [this](const Input& side) { create(opposite(side.point)); });
            });
        });
    }

    Point opposite(Point toward) const {
        if (m_height == 0) {
            return toward;
        }
        return {m_corner->x + (toward.x < m_corner->x ? -m_width : m_width),
                m_corner->y + (toward.y < m_corner->y ? -m_height : m_height)};
    }

    void create(Point corner) {
        if (corner.x == m_corner->x || corner.y == m_corner->y) {
            askAgain("矩形的长度和宽度不能为零。");
            return;
        }
        editor().drawing().add(Entity::rectangle(*m_corner, corner));
        finish();
    }

    std::optional<Point> m_corner;
    double m_width = 0;
    double m_height = 0;
};

}  // namespace

std::unique_ptr<Command> makeLineCommand() {
    return std::make_unique<LineCommand>();
}
std::unique_ptr<Command> makePolylineCommand() {
    return std::make_unique<PolylineCommand>();
}
std::unique_ptr<Command> makeCircleCommand() {
    return std::make_unique<CircleCommand>();
}
std::unique_ptr<Command> makeRectangleCommand() {
    return std::make_unique<RectangleCommand>();
}

}  // namespace cad
