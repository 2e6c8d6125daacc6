#pragma once

// Commands and the command stack.
// Simplified: a UI context is stored but never called.

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

/// The module that has a command's resources; may be empty.
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

/// Iterates over the commands of all groups: the newest group first, the commands of a group in order of
/// registration. Commands must not be added or removed during the iteration.
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

    /// Registers a command and creates its group if necessary. Names are case-insensitive. eDuplicateKey if
    /// the group already has a command with that global or local name.
    virtual Acad::ErrorStatus addCommand(
        const ACHAR* groupName, const ACHAR* globalName, const ACHAR* localName, Adesk::Int32 flags,
        AcRxFunctionPtr function, AcEdUIContext* uiContext = nullptr, int fcode = -1,
        const AcRxResourceInstance& resources = AcRxResourceInstance::empty(),
        AcEdCommand** added = nullptr) = 0;

    virtual Acad::ErrorStatus removeCmd(const ACHAR* groupName, const ACHAR* globalName) = 0;
    virtual Acad::ErrorStatus removeGroup(const ACHAR* groupName) = 0;
    /// Moves the group to the top of the stack, so that its commands are found first.
    virtual Acad::ErrorStatus popGroupToTop(const ACHAR* groupName) = 0;

    /// Finds a command by its local name, or by its global name if `globalLookup` is set or the name begins
    /// with an underscore. That is a prefix and no part of the name; what becomes of one in a registered name
    /// depends on ArxVariant. Null if there is none.
    virtual AcEdCommand* lookupCmd(const ACHAR* name, bool globalLookup, bool allGroups = true) = 0;

    /// The caller owns the iterator.
    virtual AcEdCommandIterator* iterator() = 0;
};

#define ACED_REGCMDS_OBJ ACRX_T("ACAD_REGISTERED_COMMANDS")
#define acedRegCmds AcEdCommandStack::cast(acrxSysRegistry()->at(ACED_REGCMDS_OBJ))
