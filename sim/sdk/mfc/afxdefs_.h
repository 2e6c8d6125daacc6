#pragma once

// Words that stand in MFC's declarations and mean nothing here. Include <afx.h>.

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
