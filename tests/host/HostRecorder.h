#pragma once

#include <aced.h>
#include <afx.h>

#include <QString>
#include <functional>
#include <memory>
#include <vector>

/// Replaces the host's command stack and editor in the registry while it exists, records the module's calls
/// and passes them on.
class HostRecorder {
public:
    struct AddedCommand {
        CString group;
        CString globalName;
        CString localName;
        Adesk::Int32 flags;
        AcEdUIContext* uiContext;
        int functionCode;
        bool hasResources;
    };

    HostRecorder();
    ~HostRecorder();
    HostRecorder(const HostRecorder&) = delete;
    HostRecorder& operator=(const HostRecorder&) = delete;

    /// Called with each call's name and its argument ("addCommand LINE"), before it is passed on.
    std::function<void(const QString& call)> onCall;

    std::vector<AddedCommand> commands;
    std::vector<AcEditorReactor*> addedReactors;
    std::vector<AcEditorReactor*> removedReactors;

private:
    class Stack;
    class Editor;

    void note(const QString& call) const;

    std::unique_ptr<Stack> m_stack;
    std::unique_ptr<Editor> m_editor;
};
