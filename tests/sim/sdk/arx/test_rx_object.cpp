#include <aced.h>
#include <afx.h>
#include <gtest/gtest.h>
#include <rxdict.h>
#include <rxobject.h>

namespace {

class Base : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(Base)
};
class Derived : public Base {
public:
    ACRX_DECLARE_MEMBERS(Derived)
};
class Other : public AcRxObject {
public:
    ACRX_DECLARE_MEMBERS(Other)
};

ACRX_NO_CONS_DEFINE_MEMBERS(Base, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(Derived, Base)
ACRX_NO_CONS_DEFINE_MEMBERS(Other, AcRxObject)

}  // namespace

TEST(RxObject, IsKindOfItsClassAndItsParents) {
    const Derived object;
    EXPECT_EQ(object.isA(), Derived::desc());
    EXPECT_TRUE(object.isKindOf(Derived::desc()));
    EXPECT_TRUE(object.isKindOf(Base::desc()));
    EXPECT_TRUE(object.isKindOf(AcRxObject::desc()));
    EXPECT_FALSE(object.isKindOf(Other::desc()));
}

TEST(RxObject, ParentIsNotKindOfTheDerivedClass) {
    const Base object;
    EXPECT_FALSE(object.isKindOf(Derived::desc()));
}

TEST(RxObject, CastReturnsNullForAnotherClassAndForNull) {
    Derived object;
    AcRxObject* const plain = &object;
    EXPECT_EQ(Base::cast(plain), &object);
    EXPECT_EQ(Derived::cast(plain), &object);
    EXPECT_EQ(Other::cast(plain), nullptr);
    EXPECT_EQ(Other().isA(), Other::desc());
    EXPECT_EQ(Derived::cast(nullptr), nullptr);
}

TEST(RxClass, KnowsItsNameAndParent) {
    EXPECT_TRUE(CString(Derived::desc()->name()) == _T("Derived"));
    EXPECT_EQ(Derived::desc()->myParent(), Base::desc());
    EXPECT_TRUE(Derived::desc()->isDerivedFrom(Derived::desc()));
    EXPECT_TRUE(Derived::desc()->isDerivedFrom(AcRxObject::desc()));
    EXPECT_FALSE(Base::desc()->isDerivedFrom(Derived::desc()));
    EXPECT_EQ(AcRxClass::cast(Derived::desc()), Derived::desc());
}

TEST(SystemRegistry, ContainsTheEditorTheCommandStackAndTheLinker) {
    AcRxObject* const editor = acrxSysRegistry()->at(_T("AcEditor"));
    ASSERT_NE(editor, nullptr);
    EXPECT_TRUE(editor->isA()->isDerivedFrom(AcEditor::desc()));
    AcRxObject* const stack = acrxSysRegistry()->at(_T("ACAD_REGISTERED_COMMANDS"));
    EXPECT_NE(AcEdCommandStack::cast(stack), nullptr);
    EXPECT_EQ(AcEdCommandStack::cast(editor), nullptr);
    EXPECT_TRUE(acrxSysRegistry()->has(_T("DynamicLinker")));
    EXPECT_EQ(acrxSysRegistry()->at(_T("NoSuchThing")), nullptr);
}

TEST(SystemRegistry, EntriesCanBeAddedAndRemoved) {
    Base object;
    Base other;
    AcRxDictionary* const registry = acrxSysRegistry();
    const Adesk::UInt32 before = registry->numEntries();
    EXPECT_EQ(registry->atPut(_T("ZR_TEST"), &object), nullptr);
    EXPECT_EQ(registry->numEntries(), before + 1);
    EXPECT_EQ(registry->at(_T("ZR_TEST")), &object);
    EXPECT_EQ(registry->atPut(_T("ZR_TEST"), &other), &object);
    EXPECT_EQ(registry->remove(_T("ZR_TEST")), &other);
    EXPECT_FALSE(registry->has(_T("ZR_TEST")));
}
