#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "sim/cad/core/EditorListener.h"
#include "sim/cad/core/Geometry.h"

namespace cad {

using VariableValue = std::variant<int, double, std::string, Point>;

struct SystemVariable {
    std::string name;
    VariableValue value;
    bool readOnly = false;
    /// Inclusive bounds; integers and reals only.
    double min = 0;
    double max = 0;
    bool hasRange = false;
    /// Computes the value of a variable that follows the program's state; overrides `value`.
    std::function<VariableValue()> live;

    VariableValue current() const { return live ? live() : value; }
};

enum class SetVariable { Done, Unknown, ReadOnly, WrongType, OutOfRange };

/// The program's system variables. Names are not case-sensitive.
class SystemVariables {
public:
    SystemVariables();

    /// Notified of every attempt to set a writable variable; may be null.
    void setListener(EditorListener* listener) { m_listener = listener; }

    const SystemVariable* find(const std::string& name) const;
    const std::vector<SystemVariable>& all() const { return m_variables; }

    /// Accepts an integer for a real. A rejected value leaves the variable unchanged and is notified as a
    /// failed change. An attempt to set an unknown or read-only variable is not notified.
    SetVariable set(const std::string& name, const VariableValue& value);
    SetVariable setFromText(const std::string& name, const std::string& text);
    /// Changes a variable on the program's behalf, read-only ones included, without notification.
    void store(const std::string& name, const VariableValue& value);
    /// Makes `live` compute the variable's value; the variable becomes read-only.
    void follow(const std::string& name, std::function<VariableValue()> live);

    int integer(const std::string& name) const;
    double real(const std::string& name) const;
    Point point(const std::string& name) const;

    /// Formats a value as prompts show it; strings in quotation marks.
    std::string format(const VariableValue& value) const;

private:
    SystemVariable* findToChange(const std::string& name);
    void add(const std::string& name, VariableValue value, bool readOnly = false);
    void addRanged(const std::string& name, VariableValue value, double min, double max);
    SetVariable check(const SystemVariable& variable, const VariableValue& value) const;

    std::vector<SystemVariable> m_variables;
    EditorListener* m_listener = nullptr;
};

/// Parses "x,y" or "x,y,z", ignoring z; nullopt for any other text.
std::optional<Point> parseCoordinates(const std::string& text);

}  // namespace cad
