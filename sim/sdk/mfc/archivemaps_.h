#pragma once

#include <unordered_map>
#include <vector>

#include "afxarchive_.h"

/// What an archive has met so far. Objects and classes share one numbering; 0 stands for no object.
struct CArchive::Maps {
    DWORD next = 1;
    std::unordered_map<const void*, DWORD> stored;

    struct Loaded {
        CObject* object;
        CRuntimeClass* runtimeClass;
        UINT schema;
    };
    std::vector<Loaded> loaded{{nullptr, nullptr, 0}};
};
