#pragma once

#include <unordered_map>
#include <vector>

#include "afxarchive_.h"

/// The objects and classes that an archive has stored or loaded so far. They share one numbering; 0 is the
/// null pointer.
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
