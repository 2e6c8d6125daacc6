#include "afx.h"
#include "archivemaps_.h"

namespace {

// The tag before an object. With the class bit it identifies a class, otherwise it is the number of an object
// that is already in the archive. A number that does not fit in 15 bits follows in 32 bits.
const WORD kNullTag = 0;
const WORD kNewClassTag = 0xFFFF;
const WORD kClassTag = 0x8000;
const WORD kBigObjectTag = 0x7FFF;
const DWORD kBigClassTag = 0x80000000U;
const DWORD kMaxMapCount = 0x3FFFFFFEU;

}  // namespace

CArchive::Maps& CArchive::maps() {
    if (m_maps == nullptr) {
        m_maps = std::make_unique<Maps>();
    }
    return *m_maps;
}

UINT CArchive::GetObjectSchema() {
    const UINT schema = m_objectSchema;
    m_objectSchema = 0xFFFFFFFFU;
    return schema;
}

void CArchive::MapObject(const CObject* object) {
    Maps& known = maps();
    if (known.next >= kMaxMapCount) {
        AfxThrowArchiveException(CArchiveException::badIndex, m_fileName.GetString());
    }
    if (IsStoring()) {
        known.stored[object] = known.next;
    } else {
        known.loaded.push_back({const_cast<CObject*>(object), nullptr, 0});
    }
    ++known.next;
}

void CArchive::WriteClass(const CRuntimeClass* runtimeClass) {
    requireStoring();
    if (runtimeClass->m_wSchema == 0xFFFF) {
        AfxThrowNotSupportedException();
    }
    Maps& known = maps();
    const auto found = known.stored.find(runtimeClass);
    if (found == known.stored.end()) {
        if (known.next >= kMaxMapCount) {
            AfxThrowArchiveException(CArchiveException::badIndex, m_fileName.GetString());
        }
        *this << kNewClassTag;
        runtimeClass->Store(*this);
        known.stored[runtimeClass] = known.next++;
    } else if (found->second < kBigObjectTag) {
        *this << static_cast<WORD>(kClassTag | found->second);
    } else {
        *this << kBigObjectTag << (kBigClassTag | found->second);
    }
}

void CArchive::WriteObject(const CObject* object) {
    requireStoring();
    if (object == nullptr) {
        *this << kNullTag;
        return;
    }
    Maps& known = maps();
    const auto found = known.stored.find(object);
    if (found == known.stored.end()) {
        WriteClass(object->GetRuntimeClass());
        MapObject(object);
        const_cast<CObject*>(object)->Serialize(*this);
    } else if (found->second < kBigObjectTag) {
        *this << static_cast<WORD>(found->second);
    } else {
        *this << kBigObjectTag << found->second;
    }
}

CRuntimeClass* CArchive::ReadClass(const CRuntimeClass* requestedClass, UINT* schema, DWORD* objectTag) {
    requireLoading();
    if (requestedClass != nullptr && requestedClass->m_wSchema == 0xFFFF) {
        AfxThrowNotSupportedException();
    }
    WORD tag = 0;
    *this >> tag;
    DWORD wideTag = 0;
    if (tag == kBigObjectTag) {
        *this >> wideTag;
    } else {
        wideTag = (static_cast<DWORD>(tag & kClassTag) << 16) | static_cast<DWORD>(tag & ~kClassTag);
    }
    if ((wideTag & kBigClassTag) == 0) {
        if (objectTag == nullptr) {
            AfxThrowArchiveException(CArchiveException::badIndex, m_fileName.GetString());
        }
        *objectTag = wideTag;
        return nullptr;
    }

    Maps& known = maps();
    CRuntimeClass* found = nullptr;
    UINT storedSchema = 0;
    if (tag == kNewClassTag) {
        found = CRuntimeClass::Load(*this, &storedSchema);
        if (found == nullptr) {
            AfxThrowArchiveException(CArchiveException::badClass, m_fileName.GetString());
        }
        if ((found->m_wSchema & ~VERSIONABLE_SCHEMA) != storedSchema &&
            (found->m_wSchema & VERSIONABLE_SCHEMA) == 0) {
            AfxThrowArchiveException(CArchiveException::badSchema, m_fileName.GetString());
        }
        if (known.next >= kMaxMapCount) {
            AfxThrowArchiveException(CArchiveException::badIndex, m_fileName.GetString());
        }
        known.loaded.push_back({nullptr, found, storedSchema});
        ++known.next;
    } else {
        const DWORD index = wideTag & ~kBigClassTag;
        if (index == 0 || index >= known.loaded.size() || known.loaded[index].runtimeClass == nullptr) {
            AfxThrowArchiveException(CArchiveException::badIndex, m_fileName.GetString());
        }
        found = known.loaded[index].runtimeClass;
        storedSchema = known.loaded[index].schema;
    }
    if (requestedClass != nullptr && !found->IsDerivedFrom(requestedClass)) {
        AfxThrowArchiveException(CArchiveException::badClass, m_fileName.GetString());
    }
    if (schema != nullptr) {
        *schema = storedSchema;
    } else {
        m_objectSchema = storedSchema;
    }
    return found;
}

CObject* CArchive::ReadObject(const CRuntimeClass* requestedClass) {
    UINT schema = 0;
    DWORD index = 0;
    CRuntimeClass* const found = ReadClass(requestedClass, &schema, &index);
    if (found == nullptr) {
        Maps& known = maps();
        if (index >= known.loaded.size() || (index != 0 && known.loaded[index].object == nullptr)) {
            AfxThrowArchiveException(CArchiveException::badIndex, m_fileName.GetString());
        }
        CObject* const object = known.loaded[index].object;
        if (object != nullptr && requestedClass != nullptr && !object->IsKindOf(requestedClass)) {
            AfxThrowArchiveException(CArchiveException::badClass, m_fileName.GetString());
        }
        return object;
    }
    std::unique_ptr<CObject> object(found->CreateObject());
    if (object == nullptr) {
        AfxThrowMemoryException();
    }
    // Map the object before reading it: its members may refer to it.
    MapObject(object.get());
    const size_t place = maps().loaded.size() - 1;
    const UINT outerSchema = m_objectSchema;
    m_objectSchema = schema;
    try {
        object->Serialize(*this);
    } catch (...) {
        maps().loaded[place].object = nullptr;
        throw;
    }
    m_objectSchema = outerSchema;
    return object.release();
}

void CArchive::SerializeClass(const CRuntimeClass* runtimeClass) {
    if (IsLoading()) {
        ReadClass(runtimeClass);
    } else {
        WriteClass(runtimeClass);
    }
}

CArchive& AFXAPI operator<<(CArchive& ar, const CObject* object) {
    ar.WriteObject(object);
    return ar;
}

CArchive& AFXAPI operator>>(CArchive& ar, CObject*& object) {
    object = ar.ReadObject(nullptr);
    return ar;
}
