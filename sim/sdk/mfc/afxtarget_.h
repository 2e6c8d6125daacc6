#pragma once

// CCmdTarget. Include <afxwin.h>.
// Simplified: no automation, no command user-interface updates.

#include "afxmsg_.h"
#include "afxobject_.h"

struct AFX_CMDHANDLERINFO;

/// Base of all classes with message maps.
class CCmdTarget : public CObject {
    DECLARE_DYNAMIC(CCmdTarget)

public:
    /// Handles a command or routes it on; false if no handler was found.
    virtual BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo);

protected:
    CCmdTarget() = default;

    static const AFX_MSGMAP* PASCAL GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
};
