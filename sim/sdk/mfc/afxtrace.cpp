#include <cstdio>
#include <cstdlib>

#include "afx.h"

void AFXAPI AfxAssertFailedLine(const char* file, int line, const char* expression) {
    CString text;
    text.Format(_T("%hs(%d): assertion failed: %hs\n"), file, line, expression);
    OutputDebugStringW(text.GetString());
    std::fprintf(stderr, "%s(%d): assertion failed: %s\n", file, line, expression);
    std::abort();
}

void AFX_CDECL AfxTrace(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    CString text;
    AfxFormatV(text, CString(format).GetString(), arguments);
    va_end(arguments);
    OutputDebugStringW(text.GetString());
}

void AFX_CDECL AfxTrace(LPCTSTR format, ...) {
    va_list arguments;
    va_start(arguments, format);
    CString text;
    AfxFormatV(text, format, arguments);
    va_end(arguments);
    OutputDebugStringW(text.GetString());
}
