#pragma once

// CObject and run-time classes. Include <afx.h>.
//
// Simplified: no diagnostics (AssertValid, Dump); one class list for the whole process instead of one for
// each module. A module's classes are removed from it when the module is unloaded.

#include "afxdefs_.h"

class CArchive;
class CObject;

/// Run-time information about a class.
struct CRuntimeClass {
    LPCSTR m_lpszClassName;
    int m_nObjectSize;
    UINT m_wSchema;  ///< The schema number of serializable classes, else 0xFFFF.
    CObject*(PASCAL* m_pfnCreateObject)();
    CRuntimeClass*(PASCAL* m_pfnGetBaseClass)();
    CRuntimeClass* m_pNextClass;

    /// A new object, or null when the class cannot be created dynamically.
    CObject* CreateObject();
    BOOL IsDerivedFrom(const CRuntimeClass* baseClass) const;

    /// The serializable class (IMPLEMENT_SERIAL) of that name, or null.
    static CRuntimeClass* PASCAL FromName(LPCSTR className);
    static CObject* PASCAL CreateObject(LPCSTR className);

    /// Writes or reads the class in an archive: schema, length of the name, name.
    void Store(CArchive& ar) const;
    static CRuntimeClass* PASCAL Load(CArchive& ar, UINT* schema);
};

/// Registers a serializable class for FromName; the destructor unregisters it.
struct AFX_CLASSINIT {
    explicit AFX_CLASSINIT(CRuntimeClass* newClass);
    ~AFX_CLASSINIT();
    AFX_CLASSINIT(const AFX_CLASSINIT&) = delete;
    AFX_CLASSINIT& operator=(const AFX_CLASSINIT&) = delete;

private:
    CRuntimeClass* m_class;
};

class CObject {
public:
    virtual CRuntimeClass* GetRuntimeClass() const;
    virtual ~CObject();
    /// Loads or stores the object, depending on the archive's direction.
    virtual void Serialize(CArchive& ar);

    CObject(const CObject&) = delete;
    CObject& operator=(const CObject&) = delete;

    BOOL IsKindOf(const CRuntimeClass* runtimeClass) const;
    BOOL IsSerializable() const;

    static CRuntimeClass* PASCAL GetThisClass();
    static CRuntimeClass* PASCAL _GetBaseClass();
    static CRuntimeClass classCObject;

protected:
    CObject() = default;
};

#define RUNTIME_CLASS(class_name) (class_name::GetThisClass())
#define ASSERT_KINDOF(class_name, object) ASSERT((object)->IsKindOf(RUNTIME_CLASS(class_name)))

/// With this bit in its schema number a class also loads objects of other schemas; its Serialize calls
/// CArchive::GetObjectSchema to find out which.
#define VERSIONABLE_SCHEMA (0x80000000U)

// NOLINTBEGIN(bugprone-macro-parentheses): the arguments are class names.

#define DECLARE_DYNAMIC(class_name)               \
public:                                           \
    static CRuntimeClass class##class_name;       \
    static CRuntimeClass* PASCAL GetThisClass();  \
    static CRuntimeClass* PASCAL _GetBaseClass(); \
    CRuntimeClass* GetRuntimeClass() const override;

#define DECLARE_DYNCREATE(class_name) \
    DECLARE_DYNAMIC(class_name)       \
    static CObject* PASCAL CreateObject();

#define DECLARE_SERIAL(class_name) \
    DECLARE_DYNCREATE(class_name)  \
    friend CArchive& AFXAPI operator>>(CArchive& ar, class_name*& pOb);

#define IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, wSchema, pfnNew) \
    CRuntimeClass* PASCAL class_name::_GetBaseClass() {                      \
        return RUNTIME_CLASS(base_class_name);                               \
    }                                                                        \
    CRuntimeClass class_name::class##class_name = {                          \
        #class_name, static_cast<int>(sizeof(class_name)), wSchema,          \
        pfnNew,      &class_name::_GetBaseClass,           nullptr};         \
    CRuntimeClass* PASCAL class_name::GetThisClass() {                       \
        return &class_name::class##class_name;                               \
    }                                                                        \
    CRuntimeClass* class_name::GetRuntimeClass() const {                     \
        return &class_name::class##class_name;                               \
    }

#define IMPLEMENT_DYNAMIC(class_name, base_class_name) \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, nullptr)

#define IMPLEMENT_DYNCREATE(class_name, base_class_name) \
    CObject* PASCAL class_name::CreateObject() {         \
        return new class_name;                           \
    }                                                    \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, 0xFFFF, &class_name::CreateObject)

#define IMPLEMENT_SERIAL(class_name, base_class_name, wSchema)                              \
    CObject* PASCAL class_name::CreateObject() {                                            \
        return new class_name;                                                              \
    }                                                                                       \
    IMPLEMENT_RUNTIMECLASS(class_name, base_class_name, wSchema, &class_name::CreateObject) \
    static AFX_CLASSINIT g_init##class_name(RUNTIME_CLASS(class_name));                     \
    CArchive& AFXAPI operator>>(CArchive& ar, class_name*& pOb) {                           \
        pOb = static_cast<class_name*>(ar.ReadObject(RUNTIME_CLASS(class_name)));           \
        return ar;                                                                          \
    }

/// DYNAMIC_DOWNCAST checks the run-time class and returns null for another one; STATIC_DOWNCAST does not
/// check.
CObject* AFXAPI AfxDynamicDownCast(CRuntimeClass* runtimeClass, CObject* object);
#define DYNAMIC_DOWNCAST(class_name, object) \
    (static_cast<class_name*>(AfxDynamicDownCast(RUNTIME_CLASS(class_name), object)))
#define STATIC_DOWNCAST(class_name, object) (static_cast<class_name*>(object))

// NOLINTEND(bugprone-macro-parentheses)
