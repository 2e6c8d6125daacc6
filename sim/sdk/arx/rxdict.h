#pragma once

// Dictionaries of AcRxObjects by name.
// Simplified: keys are case-sensitive, a dictionary does not own its entries, and there is no access by id.

#include "rxobject.h"

class AcRxDictionary : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcRxDictionary)

    virtual AcRxObject* at(const ACHAR* key) const = 0;
    /// Stores the object under the key and returns the previous entry, or null.
    virtual AcRxObject* atPut(const ACHAR* key, AcRxObject* object) = 0;
    /// Removes the entry and returns it; null if there is none.
    virtual AcRxObject* remove(const ACHAR* key) = 0;
    virtual bool has(const ACHAR* key) const = 0;
    virtual Adesk::UInt32 numEntries() const = 0;
};

/// The host's registry of well-known objects: "AcEditor", "ACAD_REGISTERED_COMMANDS", "DynamicLinker".
AcRxDictionary* acrxSysRegistry();
