#pragma once

// CStringArray. Simplified: the other ready-made collections are left out.

#include <afxtempl.h>

/// An array of texts. Add and SetAt take texts of both kinds.
class CStringArray : public CArray<CString, const CString&> {
    DECLARE_SERIAL(CStringArray)
};
