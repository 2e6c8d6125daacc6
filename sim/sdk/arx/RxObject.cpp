#include "rxobject.h"

AcRxClass::AcRxClass(const ACHAR* name, AcRxClass* parent) : m_name(name), m_parent(parent) {}

AcRxClass* AcRxClass::desc() {
    static AcRxClass description(ACRX_T("AcRxClass"), AcRxObject::desc());
    return &description;
}

AcRxClass* AcRxClass::cast(const AcRxObject* object) {
    return object != nullptr && object->isKindOf(desc())
               ? const_cast<AcRxClass*>(static_cast<const AcRxClass*>(object))
               : nullptr;
}

AcRxClass* AcRxClass::isA() const {
    return desc();
}

bool AcRxClass::isDerivedFrom(const AcRxClass* aClass) const {
    for (const AcRxClass* candidate = this; candidate != nullptr; candidate = candidate->m_parent) {
        if (candidate == aClass) {
            return true;
        }
    }
    return false;
}

AcRxClass* AcRxObject::desc() {
    static AcRxClass description(ACRX_T("AcRxObject"), nullptr);
    return &description;
}

AcRxClass* AcRxObject::isA() const {
    return desc();
}

bool AcRxObject::isKindOf(const AcRxClass* aClass) const {
    return isA()->isDerivedFrom(aClass);
}
