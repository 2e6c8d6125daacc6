#pragma once

// The part of MFC with windows: message maps, windows, frames, the application, written over documented Win32
// functions only. Each of the headers below says what it simplifies.

#include <afx.h>

#include <afxcoll.h>

#include "afxres.h"

#include "afxstat_.h"

#include "afxmsg_.h"

#include "afxtarget_.h"

#include "afxgdi_.h"

#include "afxwnd_.h"

#include "afxframe_.h"

#include "afxapp_.h"

class CDockState;
