#pragma once

// The run-time type system: AcRxObject, its class objects, and the macros that declare and define them.
//
// Simplified: the first call of desc() creates a class object, so rxInit() is empty and there is no
// acrxBuildClassHierarchy; no protocol extensions, no deletion of classes.

#include "acadstrc.h"
#include "adesk.h"
#include "rxdefs.h"

class AcRxClass;

class AcRxObject {
public:
    virtual ~AcRxObject() = default;

    static AcRxClass* desc();
    static AcRxObject* cast(const AcRxObject* object) { return const_cast<AcRxObject*>(object); }
    virtual AcRxClass* isA() const;
    /// Whether the object's class is the given one or derived from it.
    bool isKindOf(const AcRxClass* aClass) const;

protected:
    AcRxObject() = default;
    AcRxObject(const AcRxObject&) = default;
    AcRxObject& operator=(const AcRxObject&) = default;
};

class AcRxClass : public AcRxObject {
public:
    AcRxClass(const ACHAR* name, AcRxClass* parent);

    static AcRxClass* desc();
    static AcRxClass* cast(const AcRxObject* object);
    AcRxClass* isA() const override;

    const ACHAR* name() const { return m_name; }
    AcRxClass* myParent() const { return m_parent; }
    /// Also true for the class itself.
    bool isDerivedFrom(const AcRxClass* aClass) const;

private:
    const ACHAR* m_name;
    AcRxClass* m_parent;
};

// NOLINTBEGIN(bugprone-macro-parentheses): the arguments are class names.

/// Declares the type members of a class derived from AcRxObject.
#define ACRX_DECLARE_MEMBERS(CLASS_NAME)                                             \
    static AcRxClass* desc();                                                        \
    static CLASS_NAME* cast(const AcRxObject* object) {                              \
        return object != nullptr && object->isKindOf(CLASS_NAME::desc())             \
                   ? const_cast<CLASS_NAME*>(static_cast<const CLASS_NAME*>(object)) \
                   : nullptr;                                                        \
    }                                                                                \
    AcRxClass* isA() const override;                                                 \
    static void rxInit() {}

/// Defines the type members of a class that cannot be instantiated by name.
#define ACRX_NO_CONS_DEFINE_MEMBERS(CLASS_NAME, PARENT_CLASS)                    \
    AcRxClass* CLASS_NAME::desc() {                                              \
        static AcRxClass description(ACRX_T(#CLASS_NAME), PARENT_CLASS::desc()); \
        return &description;                                                     \
    }                                                                            \
    AcRxClass* CLASS_NAME::isA() const {                                         \
        return CLASS_NAME::desc();                                               \
    }

// NOLINTEND(bugprone-macro-parentheses)
