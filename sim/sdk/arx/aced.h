#pragma once

// The editor, its reactors and the command stack.

#include "accmd.h"
#include "acedads.h"
#include "acutads.h"
#include "rxdict.h"

/// Told of what happens in the editor. Simplified to the notifications that the slice fires; all do nothing
/// unless overridden. UI thread.
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

    /// The reactor stays the caller's. Adding one that is attached changes nothing.
    virtual void addReactor(AcEditorReactor* reactor) = 0;
    virtual void removeReactor(AcEditorReactor* reactor) = 0;
};

#define ACED_EDITOR_OBJ ACRX_T("AcEditor")
#define acedEditor AcEditor::cast(acrxSysRegistry()->at(ACED_EDITOR_OBJ))
