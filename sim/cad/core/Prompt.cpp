#include "sim/cad/core/Prompt.h"

#include "sim/cad/core/SystemVariables.h"
#include "sim/cad/core/Text.h"

namespace cad {

namespace {

Point polar(double reach, double degrees) {
    const double angle = degrees * kPi / 180;
    return {reach * std::cos(angle), reach * std::sin(angle)};
}

// "x,y" or "distance<angle", relative to the last point with a leading @; "@" alone is the last point.
std::optional<Point> parsePoint(const std::string& answer, const InputSituation& situation) {
    const bool relative = startsWith(answer, "@");
    const std::string rest = relative ? answer.substr(1) : answer;
    const Point origin = relative ? situation.lastPoint : Point{};
    if (relative && rest.empty()) {
        return origin;
    }
    if (const size_t angle = rest.find('<'); angle != std::string::npos) {
        const auto reach = parseNumber(rest.substr(0, angle));
        const auto degrees = parseNumber(rest.substr(angle + 1));
        if (!reach || !degrees) {
            return std::nullopt;
        }
        return origin + polar(*reach, *degrees);
    }
    if (const auto point = parseCoordinates(rest)) {
        return origin + *point;
    }
    return std::nullopt;
}

std::string expectation(const Prompt& prompt) {
    std::string what;
    if (prompt.takes(Prompt::Points)) {
        what = prompt.takes(Prompt::Numbers) ? "需要点或数值" : "需要点";
    } else if (prompt.takes(Prompt::Numbers)) {
        what = prompt.base ? "需要数值距离或第二点" : "需要数值";
    } else if (prompt.takes(Prompt::Integers)) {
        what = "需要整数值";
    } else {
        return "选项关键字无效。";
    }
    return what + (prompt.text.find('[') == std::string::npos ? "。" : "，或选项关键字。");
}

Input pointInput(Point point) {
    Input input;
    input.kind = Input::PointGiven;
    input.point = point;
    return input;
}

Input numberInput(double number) {
    Input input;
    input.kind = Input::Number;
    input.number = number;
    return input;
}

std::optional<Input> parseValue(const Prompt& prompt, const std::string& answer,
                                const InputSituation& situation) {
    if (prompt.takes(Prompt::Integers)) {
        if (const auto number = parseInteger(answer)) {
            return numberInput(*number);
        }
    }
    const auto number = parseNumber(answer);
    if (prompt.takes(Prompt::Numbers) && number) {
        return numberInput(*number);
    }
    const auto point = parsePoint(answer, situation);
    if (prompt.takes(Prompt::Numbers) && prompt.base && point) {
        return numberInput(distance(*prompt.base, *point));
    }
    if (!prompt.takes(Prompt::Points)) {
        return std::nullopt;
    }
    if (point) {
        return pointInput(*point);
    }
    if (number && prompt.base && situation.cursor != *prompt.base) {
        const Point way = situation.cursor - *prompt.base;
        return pointInput(*prompt.base + way * (*number / length(way)));
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::string> Prompt::keyword(const std::string& answer) const {
    const size_t open = text.find('[');
    const size_t close = text.find(']', open);
    if (open == std::string::npos || close == std::string::npos) {
        return std::nullopt;
    }
    size_t from = open + 1;
    while (from < close) {
        const size_t slash = std::min(text.find('/', from), close);
        const std::string option = text.substr(from, slash - from);
        const size_t bracket = option.find('(');
        const std::string word = option.substr(0, bracket);
        const std::string letters =
            bracket == std::string::npos ? word : option.substr(bracket + 1, option.find(')') - bracket - 1);
        if (sameName(answer, letters) || answer == word) {
            return letters;
        }
        from = slash + 1;
    }
    return std::nullopt;
}

std::optional<Input> parseInput(const Prompt& prompt, const std::string& answer,
                                const InputSituation& situation, std::string& error) {
    Input input;
    if (answer.empty()) {
        if (prompt.takes(Prompt::Enters)) {
            return input;
        }
        error = expectation(prompt);
        return std::nullopt;
    }
    if (const auto keyword = prompt.keyword(answer)) {
        input.kind = Input::Keyword;
        input.text = *keyword;
        return input;
    }
    if (const auto value = parseValue(prompt, answer, situation)) {
        return value;
    }
    if (prompt.takes(Prompt::Words) || prompt.takes(Prompt::Lines)) {
        input.kind = Input::Text;
        input.text = answer;
        return input;
    }
    error = expectation(prompt);
    return std::nullopt;
}

}  // namespace cad
