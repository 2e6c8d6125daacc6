#pragma once

// The part of MFC without windows: strings, run-time classes, exceptions, files and archives.
//
// The slice declares what the module and the simulated CAD host use, with the documented names, and is
// written over documented Win32 functions only.
//
// Simplified: no ANSI builds, memory diagnostics, CTime, CStdioFile or TRY/CATCH macros (use C++ try and
// catch, and call Delete() on the caught exception).

#include "afxdefs_.h"

#include <cstddef>
#include <cstdint>

class CArchive;
class CFile;
class CObject;

/// Reports a failed ASSERT (debug output and standard error) and aborts.
[[noreturn]] void AFXAPI AfxAssertFailedLine(const char* file, int line, const char* expression);
/// Writes a formatted line to the debug output. Formats as CString::Format does.
void AFX_CDECL AfxTrace(const char* format, ...);
void AFX_CDECL AfxTrace(LPCTSTR format, ...);

#ifdef NDEBUG
#define ASSERT(f) ((void)0)
#define VERIFY(f) ((void)(f))
#define TRACE(...) ((void)0)
#define DEBUG_ONLY(f) ((void)0)
#else
#define ASSERT(f) ((f) ? (void)0 : AfxAssertFailedLine(__FILE__, __LINE__, #f))
#define VERIFY(f) ASSERT(f)
#define TRACE(...) AfxTrace(__VA_ARGS__)
#define DEBUG_ONLY(f) (f)
#endif
#define ASSERT_VALID(pOb) ASSERT((pOb) != nullptr)
#define ASSERT_POINTER(p, type) ASSERT((p) != nullptr)
#define ENSURE_THROW(condition, exception) \
    do {                                   \
        if (!(condition)) {                \
            exception;                     \
        }                                  \
    } while (false)
#define ENSURE(condition) ENSURE_THROW(condition, AfxThrowInvalidArgException())
#define ENSURE_ARG(condition) ENSURE_THROW(condition, AfxThrowInvalidArgException())

#include "cstringt.h"

#include "afxobject_.h"

#include "afxexcept_.h"

#include "afxfile_.h"

#include "afxarchive_.h"

#include "atltypes.h"

/// An opaque position in a collection.
struct __POSITION;
typedef __POSITION* POSITION;
