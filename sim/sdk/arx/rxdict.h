#pragma once

// Dictionaries of AcRxObjects by name. Simplified: keys compare exactly, entries are not owned, and there is
// no access by number.

#include "rxobject.h"

class AcRxDictionary : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(AcRxDictionary)

    virtual AcRxObject* at(const ACHAR* key) const = 0;
    /// Puts the object under the key and returns what stood there before.
    virtual AcRxObject* atPut(const ACHAR* key, AcRxObject* object) = 0;
    /// Takes the entry out and returns it.
    virtual AcRxObject* remove(const ACHAR* key) = 0;
    virtual bool has(const ACHAR* key) const = 0;
    virtual Adesk::UInt32 numEntries() const = 0;
};

/// The host's registry of well-known objects: "AcEditor", "ACAD_REGISTERED_COMMANDS", "DynamicLinker".
AcRxDictionary* acrxSysRegistry();
