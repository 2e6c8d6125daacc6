#pragma once

// CStringArray.
// Simplified: none of the other non-template collections.

#include <afxtempl.h>

/// An array of strings. Add and SetAt take a CString or an LPCTSTR. Stores its texts in CArchive's own
/// encoding.
class CStringArray : public CArray<CString, const CString&> {
    DECLARE_SERIAL(CStringArray)

public:
    void Serialize(CArchive& ar) override;
};
