#pragma once

// The host's windows and resources, as MFC sees them.

#include <afxext.h>
#include <afxwin.h>

CMDIFrameWnd* acedGetAcadFrame();
/// The view of the current drawing; null when none is open.
CView* acedGetAcadDwgView();
CWinApp* acedGetAcadWinApp();
HINSTANCE acedGetAcadResourceInstance();
