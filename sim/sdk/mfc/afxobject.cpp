#include <cstring>
#include <mutex>

#include "afx.h"

namespace {

struct ClassList {
    std::mutex mutex;
    CRuntimeClass* first = nullptr;
};

// Never destroyed: at exit modules unregister their classes in an unspecified order.
ClassList& classList() {
    static auto* const list = new ClassList;
    return *list;
}

const WORD kMaxClassName = 64;  // a longer name in an archive is corrupt data

}  // namespace

CObject* CRuntimeClass::CreateObject() {
    return m_pfnCreateObject == nullptr ? nullptr : (*m_pfnCreateObject)();
}

CObject* PASCAL CRuntimeClass::CreateObject(LPCSTR className) {
    CRuntimeClass* found = FromName(className);
    return found == nullptr ? nullptr : found->CreateObject();
}

BOOL CRuntimeClass::IsDerivedFrom(const CRuntimeClass* baseClass) const {
    for (const CRuntimeClass* c = this; c != nullptr;
         c = c->m_pfnGetBaseClass == nullptr ? nullptr : (*c->m_pfnGetBaseClass)()) {
        if (c == baseClass) {
            return TRUE;
        }
    }
    return FALSE;
}

CRuntimeClass* PASCAL CRuntimeClass::FromName(LPCSTR className) {
    if (className == nullptr) {
        return nullptr;
    }
    ClassList& list = classList();
    const std::lock_guard<std::mutex> lock(list.mutex);
    for (CRuntimeClass* c = list.first; c != nullptr; c = c->m_pNextClass) {
        if (std::strcmp(c->m_lpszClassName, className) == 0) {
            return c;
        }
    }
    return nullptr;
}

void CRuntimeClass::Store(CArchive& ar) const {
    const auto length = static_cast<WORD>(std::strlen(m_lpszClassName));
    ar << static_cast<WORD>(m_wSchema & 0xFFFFU) << length;
    ar.Write(m_lpszClassName, length);
}

CRuntimeClass* PASCAL CRuntimeClass::Load(CArchive& ar, UINT* schema) {
    WORD storedSchema = 0;
    WORD length = 0;
    ar >> storedSchema >> length;
    *schema = storedSchema;
    char name[kMaxClassName];
    if (length >= kMaxClassName || ar.Read(name, length) != length) {
        return nullptr;
    }
    name[length] = 0;
    CRuntimeClass* found = FromName(name);
    if (found == nullptr) {
        TRACE("Cannot load %hs from archive: class not defined.\n", name);
    }
    return found;
}

AFX_CLASSINIT::AFX_CLASSINIT(CRuntimeClass* newClass) : m_class(newClass) {
    ClassList& list = classList();
    const std::lock_guard<std::mutex> lock(list.mutex);
    newClass->m_pNextClass = list.first;
    list.first = newClass;
}

AFX_CLASSINIT::~AFX_CLASSINIT() {
    ClassList& list = classList();
    const std::lock_guard<std::mutex> lock(list.mutex);
    for (CRuntimeClass** at = &list.first; *at != nullptr; at = &(*at)->m_pNextClass) {
        if (*at == m_class) {
            *at = m_class->m_pNextClass;
            return;
        }
    }
}

CRuntimeClass CObject::classCObject = {"CObject", static_cast<int>(sizeof(CObject)), 0xFFFF, nullptr, nullptr,
                                       nullptr};

CRuntimeClass* PASCAL CObject::GetThisClass() {
    return &classCObject;
}
CRuntimeClass* PASCAL CObject::_GetBaseClass() {
    return nullptr;
}
CRuntimeClass* CObject::GetRuntimeClass() const {
    return &classCObject;
}

CObject::~CObject() = default;

void CObject::Serialize(CArchive& /*ar*/) {}

BOOL CObject::IsKindOf(const CRuntimeClass* runtimeClass) const {
    return GetRuntimeClass()->IsDerivedFrom(runtimeClass);
}

BOOL CObject::IsSerializable() const {
    return GetRuntimeClass()->m_wSchema != 0xFFFF;
}

CObject* AFXAPI AfxDynamicDownCast(CRuntimeClass* runtimeClass, CObject* object) {
    return object != nullptr && object->IsKindOf(runtimeClass) ? object : nullptr;
}
