#include "afxwin.h"

IMPLEMENT_DYNAMIC(CCmdTarget, CObject)

const AFX_MSGMAP* PASCAL CCmdTarget::GetThisMessageMap() {
    static const AFX_MSGMAP_ENTRY entries[] = {{0, 0, 0, 0, nullptr, nullptr}};
    static const AFX_MSGMAP map = {nullptr, &entries[0]};
    return &map;
}

const AFX_MSGMAP* CCmdTarget::GetMessageMap() const {
    return GetThisMessageMap();
}

BOOL CCmdTarget::OnCmdMsg(UINT id, int code, void* /*extra*/, AFX_CMDHANDLERINFO* /*handlerInfo*/) {
    for (const AFX_MSGMAP* map = GetMessageMap(); map != nullptr;
         map = map->pfnGetBaseMap == nullptr ? nullptr : (*map->pfnGetBaseMap)()) {
        for (const AFX_MSGMAP_ENTRY* entry = map->lpEntries; entry->pfn != nullptr; ++entry) {
            if (entry->nMessage == WM_COMMAND && entry->nCode == static_cast<UINT>(code) &&
                id >= entry->nID && id <= entry->nLastID) {
                entry->pfn(this, id, 0);
                return TRUE;
            }
        }
    }
    return FALSE;
}
