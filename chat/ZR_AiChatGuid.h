#pragma once

#include <afx.h>
#include <objbase.h>

/// The GUID in upper-case hexadecimal without braces; the last two groups are the bytes of its fourth field
/// in order.
CString zentriGuidText(const GUID& guid);
