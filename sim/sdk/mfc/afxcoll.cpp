#include "afxcoll.h"

#include <cstdio>
#include <cstdlib>

IMPLEMENT_SERIAL(CStringArray, CObject, 0)

void AFXAPI AfxFailOwnElement(const char* function) {
    std::fprintf(
        stderr,
        "MFC slice: CArray::%s was given an element of the array itself, which moves meanwhile. In MFC the "
        "argument dangles: pass a copy.\n",
        function);
    std::abort();
}

void CStringArray::Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        ar.WriteCount(static_cast<DWORD_PTR>(GetSize()));
    } else {
        SetSize(static_cast<INT_PTR>(ar.ReadCount()), -1);
    }
    for (INT_PTR i = 0; i < GetSize(); ++i) {
        if (ar.IsStoring()) {
            ar << GetAt(i);
        } else {
            ar >> GetAt(i);
        }
    }
}
