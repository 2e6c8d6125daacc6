#pragma once

#include <string>

namespace cad {

/// Receives an editor's notifications. Command names are global names as registered. UI thread.
class EditorListener {
public:
    virtual ~EditorListener() = default;

    virtual void commandWillStart(const std::string& globalName) { (void)globalName; }
    virtual void commandEnded(const std::string& globalName) { (void)globalName; }
    virtual void commandCancelled(const std::string& globalName) { (void)globalName; }
    virtual void commandFailed(const std::string& globalName) { (void)globalName; }
    virtual void sysVarWillChange(const std::string& name) { (void)name; }
    /// `success` is false if the new value was rejected; the variable then keeps its old value.
    virtual void sysVarChanged(const std::string& name, bool success) { (void)name, (void)success; }
};

}  // namespace cad
