#pragma once

// Decorations of MFC's declarations (calling conventions, afx_msg), all empty here. Include <afx.h>.

#include <windows.h>

#include <tchar.h>

#ifndef PASCAL
#define PASCAL
#endif
#define AFXAPI
#define AFX_CDECL
#define AFX_MSG_CALL
#define afx_msg
#define AFX_EXT_CLASS
