#pragma once

// CStringArray.
// Simplified: none of the other non-template collections.

#include <afxtempl.h>

/// An array of strings. Add and SetAt take a CString or an LPCTSTR.
class CStringArray : public CArray<CString, const CString&> {
    DECLARE_SERIAL(CStringArray)
};
