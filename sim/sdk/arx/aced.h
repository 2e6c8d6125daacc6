#pragma once

// The editor, its reactors and the command stack.
// Simplified: only the notifications that the slice sends; no input or selection functions.

#include "accmd.h"
#include "acedads.h"
#include "acutads.h"
#include "rxdict.h"

/// Receives the editor's notifications, on the UI thread. The default implementations do nothing.
class AcEditorReactor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEditorReactor)

    virtual void commandWillStart(const ACHAR* commandName);
    virtual void commandEnded(const ACHAR* commandName);
    virtual void commandCancelled(const ACHAR* commandName);
    virtual void commandFailed(const ACHAR* commandName);

    virtual void sysVarWillChange(const ACHAR* variableName);
    virtual void sysVarChanged(const ACHAR* variableName, bool success);
};

class AcEditor : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEditor)

    /// The caller keeps ownership of the reactor. Adding an attached one again has no effect.
    virtual void addReactor(AcEditorReactor* reactor) = 0;
    virtual void removeReactor(AcEditorReactor* reactor) = 0;
};

#define ACED_EDITOR_OBJ ACRX_T("AcEditor")
#define acedEditor AcEditor::cast(acrxSysRegistry()->at(ACED_EDITOR_OBJ))
