#pragma once

// Commands and the stack they are registered on. Simplified: a UI context is carried, never asked.

#include "acadstrc.h"
#include "rxobject.h"

typedef void (*AcRxFunctionPtr)();

#define ACRX_CMD_MODAL 0x00000000
#define ACRX_CMD_TRANSPARENT 0x00000001
#define ACRX_CMD_USEPICKSET 0x00000002
#define ACRX_CMD_REDRAW 0x00000004
#define ACRX_CMD_NOMULTIPLE 0x00000010
#define ACRX_CMD_SESSION 0x00200000
#define ACRX_CMD_INTERRUPTIBLE 0x00400000
#define ACRX_CMD_NOHISTORY 0x00800000
#define ACRX_CMD_NO_UNDO_MARKER 0x01000000

class AcEdUIContext;

/// The module whose resources belong to a command; empty when there is none.
class AcRxResourceInstance {
public:
    explicit AcRxResourceInstance(HINSTANCE instance) : m_instance(instance) {}

    static const AcRxResourceInstance& empty();

    HINSTANCE getHInstance() const { return m_instance; }
    bool isNull() const { return m_instance == nullptr; }

private:
    HINSTANCE m_instance;
};

class AcEdCommand : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEdCommand)

    virtual const ACHAR* globalName() const = 0;
    virtual const ACHAR* localName() const = 0;
    virtual const ACHAR* groupName() const = 0;
    virtual Adesk::Int32 commandFlags() const = 0;
    virtual AcRxFunctionPtr functionAddr() const = 0;
    virtual AcEdUIContext* UIContext() const = 0;
    virtual int fcode() const = 0;
};

/// Walks the commands of all groups, newest group first, each group in the order of registration. Commands
/// must not be added or removed meanwhile.
class AcEdCommandIterator : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEdCommandIterator)

    virtual bool done() const = 0;
    virtual bool next() = 0;
    virtual const AcEdCommand* command() const = 0;
    virtual const ACHAR* commandGroup() const = 0;
};

class AcEdCommandStack : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcEdCommandStack)

    /// Registers a command; its group is made when it is new. Names compare without regard to case.
    /// eDuplicateKey when the group already has a command of that global or local name.
    virtual Acad::ErrorStatus addCommand(
        const ACHAR* groupName, const ACHAR* globalName, const ACHAR* localName, Adesk::Int32 flags,
        AcRxFunctionPtr function, AcEdUIContext* uiContext = nullptr, int fcode = -1,
        const AcRxResourceInstance& resources = AcRxResourceInstance::empty(),
        AcEdCommand** added = nullptr) = 0;

    virtual Acad::ErrorStatus removeCmd(const ACHAR* groupName, const ACHAR* globalName) = 0;
    virtual Acad::ErrorStatus removeGroup(const ACHAR* groupName) = 0;
    /// Makes the group's commands the first to be found.
    virtual Acad::ErrorStatus popGroupToTop(const ACHAR* groupName) = 0;

    /// Finds a command by its local name, or by its global name: always when `globalLookup`, and when the
    /// name begins with an underscore (which stands before the global name, and may also be part of it). Null
    /// when there is none.
    virtual AcEdCommand* lookupCmd(const ACHAR* name, bool globalLookup, bool allGroups = true) = 0;

    /// The caller deletes it.
    virtual AcEdCommandIterator* iterator() = 0;
};

#define ACED_REGCMDS_OBJ ACRX_T("ACAD_REGISTERED_COMMANDS")
#define acedRegCmds AcEdCommandStack::cast(acrxSysRegistry()->at(ACED_REGCMDS_OBJ))
