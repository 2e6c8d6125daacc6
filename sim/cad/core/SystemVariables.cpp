#include "sim/cad/core/SystemVariables.h"

#include <utility>

#include "sim/cad/core/Text.h"

namespace cad {

namespace {

constexpr double kSmallestPositive = 1e-10;
constexpr double kLargest = 1e20;
constexpr int kMaxObjectSnap = 32767;

}  // namespace

SystemVariables::SystemVariables() {
    addRanged("CIRCLERAD", 0.0, 0, kLargest);
    add("CLAYER", std::string("0"));
    add("CMDACTIVE", 0, true);
    addRanged("CMDECHO", 1, 0, 1);
    add("CMDNAMES", std::string(), true);
    addRanged("COLORTHEME", 0, 0, 1);
    addRanged("CURSORSIZE", 5, 1, 100);
    add("DWGNAME", std::string("Drawing1.dwg"), true);
    add("DWGTITLED", 0, true);
    addRanged("GRIDMODE", 1, 0, 1);
    add("LASTPOINT", Point{});
    add("LIMMAX", Point{420, 297});
    add("LIMMIN", Point{0, 0});
    add("LOCALE", std::string("CHS"), true);
    addRanged("LTSCALE", 1.0, kSmallestPositive, kLargest);
    addRanged("LUPREC", 4, 0, 8);
    addRanged("ORTHOMODE", 0, 0, 1);
    addRanged("OSMODE", 4133, 0, kMaxObjectSnap);
    addRanged("PICKBOX", 5, 0, 50);
    addRanged("SNAPMODE", 0, 0, 1);
    addRanged("TEXTSIZE", 2.5, kSmallestPositive, kLargest);
    add("VIEWCTR", Point{}, true);
    add("VIEWSIZE", 0.0, true);
}

void SystemVariables::add(const std::string& name, VariableValue value, bool readOnly) {
    SystemVariable variable;
    variable.name = name;
    variable.value = std::move(value);
    variable.readOnly = readOnly;
    m_variables.push_back(std::move(variable));
}

void SystemVariables::addRanged(const std::string& name, VariableValue value, double min, double max) {
    add(name, std::move(value));
    m_variables.back().hasRange = true;
    m_variables.back().min = min;
    m_variables.back().max = max;
}

const SystemVariable* SystemVariables::find(const std::string& name) const {
    for (const SystemVariable& variable : m_variables) {
        if (sameName(variable.name, name)) {
            return &variable;
        }
    }
    return nullptr;
}

SystemVariable* SystemVariables::findToChange(const std::string& name) {
    return const_cast<SystemVariable*>(find(name));
}

SetVariable SystemVariables::check(const SystemVariable& variable, const VariableValue& value) const {
    if (variable.value.index() != value.index()) {
        return SetVariable::WrongType;
    }
    if (variable.hasRange) {
        const double number =
            std::holds_alternative<int>(value) ? std::get<int>(value) : std::get<double>(value);
        if (!(number >= variable.min && number <= variable.max)) {
            return SetVariable::OutOfRange;
        }
    }
    // CLAYER is the only writable string, and a layer name cannot be empty.
    if (const auto* text = std::get_if<std::string>(&value); text != nullptr && text->empty()) {
        return SetVariable::OutOfRange;
    }
    return SetVariable::Done;
}

SetVariable SystemVariables::set(const std::string& name, const VariableValue& value) {
    SystemVariable* const variable = findToChange(name);
    if (variable == nullptr) {
        return SetVariable::Unknown;
    }
    if (variable->readOnly) {
        return SetVariable::ReadOnly;
    }
    VariableValue wanted = value;
    if (std::holds_alternative<int>(value) && std::holds_alternative<double>(variable->value)) {
        wanted = static_cast<double>(std::get<int>(value));
    }
    // Copied, because a listener may set variables itself while it is being notified.
    const std::string ownName = variable->name;
    if (m_listener != nullptr) {
        m_listener->sysVarWillChange(ownName);
    }
    const SetVariable result = check(*variable, wanted);
    if (result == SetVariable::Done) {
        variable->value = std::move(wanted);
    }
    if (m_listener != nullptr) {
        m_listener->sysVarChanged(ownName, result == SetVariable::Done);
    }
    return result;
}

SetVariable SystemVariables::setFromText(const std::string& name, const std::string& text) {
    const SystemVariable* const variable = find(name);
    if (variable == nullptr) {
        return SetVariable::Unknown;
    }
    VariableValue value = text;
    if (std::holds_alternative<int>(variable->value)) {
        const auto number = parseInteger(text);
        value = number ? VariableValue(*number) : VariableValue(text);
    } else if (std::holds_alternative<double>(variable->value)) {
        const auto number = parseNumber(text);
        value = number ? VariableValue(*number) : VariableValue(text);
    } else if (std::holds_alternative<Point>(variable->value)) {
        const auto point = parseCoordinates(text);
        value = point ? VariableValue(*point) : VariableValue(text);
    }
    return set(name, value);
}

void SystemVariables::store(const std::string& name, const VariableValue& value) {
    if (SystemVariable* const variable = findToChange(name)) {
        variable->value = value;
    }
}

void SystemVariables::follow(const std::string& name, std::function<VariableValue()> live) {
    if (SystemVariable* const variable = findToChange(name)) {
        variable->live = std::move(live);
        variable->readOnly = true;
    }
}

int SystemVariables::integer(const std::string& name) const {
    return std::get<int>(find(name)->current());
}

double SystemVariables::real(const std::string& name) const {
    return std::get<double>(find(name)->current());
}

Point SystemVariables::point(const std::string& name) const {
    return std::get<Point>(find(name)->current());
}

std::string SystemVariables::format(const VariableValue& value) const {
    const int decimals = integer("LUPREC");
    if (const auto* number = std::get_if<int>(&value)) {
        return std::to_string(*number);
    }
    if (const auto* number = std::get_if<double>(&value)) {
        return formatNumber(*number, decimals);
    }
    if (const auto* point = std::get_if<Point>(&value)) {
        return formatNumber(point->x, decimals) + "," + formatNumber(point->y, decimals);
    }
    return "\"" + std::get<std::string>(value) + "\"";
}

std::optional<Point> parseCoordinates(const std::string& text) {
    const size_t comma = text.find(',');
    if (comma == std::string::npos) {
        return std::nullopt;
    }
    std::string second = text.substr(comma + 1);
    const size_t comma2 = second.find(',');
    if (comma2 != std::string::npos) {
        if (!parseNumber(trimmed(second.substr(comma2 + 1)))) {
            return std::nullopt;
        }
        second.resize(comma2);
    }
    const auto x = parseNumber(trimmed(text.substr(0, comma)));
    const auto y = parseNumber(trimmed(second));
    if (!x || !y) {
        return std::nullopt;
    }
    return Point{*x, *y};
}

}  // namespace cad
