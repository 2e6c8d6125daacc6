#pragma once

// CCmdTarget. Include <afxwin.h>. Simplified: no automation, no command user-interface updates.

#include "afxmsg_.h"
#include "afxobject_.h"

struct AFX_CMDHANDLERINFO;

/// Anything that a message map can route to.
class CCmdTarget : public CObject {
    DECLARE_DYNAMIC(CCmdTarget)

public:
    /// Handles a command, or passes it on; false when nobody has.
    virtual BOOL OnCmdMsg(UINT id, int code, void* extra, AFX_CMDHANDLERINFO* handlerInfo);

protected:
    CCmdTarget() = default;

    static const AFX_MSGMAP* PASCAL GetThisMessageMap();
    virtual const AFX_MSGMAP* GetMessageMap() const;
};
