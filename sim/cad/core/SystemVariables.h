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
    /// Both ends belong to the range; integers and reals only.
    double min = 0;
    double max = 0;
    bool hasRange = false;
    /// Variables that follow the program's state have no value of their own.
    std::function<VariableValue()> live;

    VariableValue current() const { return live ? live() : value; }
};

enum class SetVariable { Done, Unknown, ReadOnly, WrongType, OutOfRange };

/// The named settings of the program. Names are found without regard to case.
class SystemVariables {
public:
    SystemVariables();

    /// Told of every attempt to set a variable that could be set by its kind; null for nobody.
    void setListener(EditorListener* listener) { m_listener = listener; }

    const SystemVariable* find(const std::string& name) const;
    const std::vector<SystemVariable>& all() const { return m_variables; }

    /// An integer is taken for a real. A refusal leaves the value and is reported as a failed change, but for
    /// a variable that is unknown or read-only, where no change begins.
    SetVariable set(const std::string& name, const VariableValue& value);
    SetVariable setFromText(const std::string& name, const std::string& text);
    /// The program's own change, also of read-only variables; nobody is told.
    void store(const std::string& name, const VariableValue& value);
    /// Makes a variable follow the program's state; it becomes read-only.
    void follow(const std::string& name, std::function<VariableValue()> live);

    int integer(const std::string& name) const;
    double real(const std::string& name) const;
    Point point(const std::string& name) const;

    /// As prompts show it; texts in quotation marks.
    std::string format(const VariableValue& value) const;

private:
    SystemVariable* findToChange(const std::string& name);
    void add(const std::string& name, VariableValue value, bool readOnly = false);
    void addRanged(const std::string& name, VariableValue value, double min, double max);
    SetVariable check(const SystemVariable& variable, const VariableValue& value) const;

    std::vector<SystemVariable> m_variables;
    EditorListener* m_listener = nullptr;
};

/// "x,y" or "x,y,z", the last without effect; nothing when it is no such text.
std::optional<Point> parseCoordinates(const std::string& text);

}  // namespace cad
