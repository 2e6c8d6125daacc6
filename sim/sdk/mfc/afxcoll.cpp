#include "afxcoll.h"

IMPLEMENT_SERIAL(CStringArray, CObject, 0)

template <>
void AFXAPI SerializeElements<CString>(CArchive& ar, CString* elements, INT_PTR count) {
    for (INT_PTR i = 0; i < count; ++i) {
        if (ar.IsStoring()) {
            ar << elements[i];
        } else {
            ar >> elements[i];
        }
    }
}
