#pragma once

// The host's MFC objects: application, frame, view and resources.

#include <afxext.h>
#include <afxwin.h>

CMDIFrameWnd* acedGetAcadFrame();
/// The current drawing's view; null if no drawing is open.
CView* acedGetAcadDwgView();
CWinApp* acedGetAcadWinApp();
HINSTANCE acedGetAcadResourceInstance();
