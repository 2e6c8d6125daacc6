#include <afxtempl.h>

#include <memory>
#include <vector>

#include "mfc_text.h"

// Not in an unnamed namespace: each class defines its own operator>>, and unused ones would cause warnings.
namespace mfc_test {

class Shape : public CObject {
    DECLARE_SERIAL(Shape)

public:
    void Serialize(CArchive& ar) override;
    int m_sides = 0;
    CString m_name;
};

class Square : public Shape {
    DECLARE_SERIAL(Square)

public:
    void Serialize(CArchive& ar) override;
    double m_side = 0;
};

/// Refers to other objects, itself included.
class Group : public CObject {
    DECLARE_SERIAL(Group)

public:
    ~Group() override;
    void Serialize(CArchive& ar) override;
    CArray<CObject*, CObject*> m_members;
    Group* m_self = nullptr;
    bool m_owner = false;
};

class Versioned : public CObject {
    DECLARE_SERIAL(Versioned)

public:
    void Serialize(CArchive& ar) override;
    UINT m_loadedSchema = 0;
    UINT m_secondAnswer = 0;
};

class Dynamic : public CObject {
    DECLARE_DYNAMIC(Dynamic)
};

class Creatable : public Dynamic {
    DECLARE_DYNCREATE(Creatable)
};

IMPLEMENT_SERIAL(Shape, CObject, 1)
IMPLEMENT_SERIAL(Square, Shape, 2)
IMPLEMENT_SERIAL(Group, CObject, 1)
IMPLEMENT_SERIAL(Versioned, CObject, VERSIONABLE_SCHEMA | 5)
IMPLEMENT_DYNAMIC(Dynamic, CObject)
IMPLEMENT_DYNCREATE(Creatable, Dynamic)

void Shape::Serialize(CArchive& ar) {
    CObject::Serialize(ar);
    if (ar.IsStoring()) {
        ar << m_sides << m_name;
    } else {
        ar >> m_sides >> m_name;
    }
}

void Square::Serialize(CArchive& ar) {
    Shape::Serialize(ar);
    if (ar.IsStoring()) {
        ar << m_side;
    } else {
        ar >> m_side;
    }
}

Group::~Group() {
    if (m_owner) {
        for (INT_PTR i = 0; i < m_members.GetSize(); ++i) {
            delete m_members[i];
        }
    }
}

void Group::Serialize(CArchive& ar) {
    if (ar.IsStoring()) {
        ar.WriteCount(static_cast<DWORD_PTR>(m_members.GetSize()));
        for (INT_PTR i = 0; i < m_members.GetSize(); ++i) {
            ar << m_members[i];
        }
        ar << m_self;
    } else {
        m_members.SetSize(static_cast<INT_PTR>(ar.ReadCount()));
        for (INT_PTR i = 0; i < m_members.GetSize(); ++i) {
            ar >> m_members[i];
        }
        ar >> m_self;
    }
}

void Versioned::Serialize(CArchive& ar) {
    if (ar.IsLoading()) {
        m_loadedSchema = ar.GetObjectSchema();
        m_secondAnswer = ar.GetObjectSchema();
    }
}

}  // namespace mfc_test

using namespace mfc_test;

namespace {

std::vector<int> bytesOf(CMemFile& file) {
    std::vector<int> bytes(static_cast<size_t>(file.GetLength()));
    file.SeekToBegin();
    for (int& byte : bytes) {
        BYTE value = 0;
        file.Read(&value, 1);
        byte = value;
    }
    file.SeekToBegin();
    return bytes;
}

void writeBytes(CMemFile& file, const std::vector<int>& bytes) {
    for (int byte : bytes) {
        const auto value = static_cast<BYTE>(byte);
        file.Write(&value, 1);
    }
    file.SeekToBegin();
}

int causeOfLoading(const std::vector<int>& bytes, const CRuntimeClass* requested) {
    CMemFile file;
    writeBytes(file, bytes);
    CArchive archive(&file, CArchive::load);
    try {
        delete archive.ReadObject(requested);
    } catch (CArchiveException* e) {
        const int cause = e->m_cause;
        e->Delete();
        return cause;
    }
    return CArchiveException::none;
}

}  // namespace

TEST(RuntimeClass, KnowsNameSizeSchemaAndBase) {
    const CRuntimeClass* c = RUNTIME_CLASS(Square);
    EXPECT_STREQ(c->m_lpszClassName, "Square");
    EXPECT_EQ(c->m_nObjectSize, static_cast<int>(sizeof(Square)));
    EXPECT_EQ(c->m_wSchema, 2U);
    EXPECT_TRUE(c->IsDerivedFrom(RUNTIME_CLASS(Shape)));
    EXPECT_TRUE(c->IsDerivedFrom(RUNTIME_CLASS(CObject)));
    EXPECT_FALSE(c->IsDerivedFrom(RUNTIME_CLASS(Group)));
    EXPECT_FALSE(RUNTIME_CLASS(Shape)->IsDerivedFrom(c));
}

TEST(RuntimeClass, ObjectsKnowTheirClass) {
    Square square;
    CObject* const object = &square;
    EXPECT_EQ(object->GetRuntimeClass(), RUNTIME_CLASS(Square));
    EXPECT_TRUE(object->IsKindOf(RUNTIME_CLASS(Shape)));
    EXPECT_TRUE(object->IsSerializable());
    EXPECT_EQ(DYNAMIC_DOWNCAST(Shape, object), &square);
    EXPECT_EQ(DYNAMIC_DOWNCAST(Group, object), nullptr);
    Dynamic dynamic;
    EXPECT_FALSE(dynamic.IsSerializable());
}

TEST(RuntimeClass, CreatesObjectsOfDynamicallyCreatableClasses) {
    const std::unique_ptr<CObject> square(RUNTIME_CLASS(Square)->CreateObject());
    ASSERT_NE(square, nullptr);
    EXPECT_TRUE(square->IsKindOf(RUNTIME_CLASS(Square)));
    const std::unique_ptr<CObject> creatable(RUNTIME_CLASS(Creatable)->CreateObject());
    ASSERT_NE(creatable, nullptr);
    EXPECT_EQ(RUNTIME_CLASS(Dynamic)->CreateObject(), nullptr);
}

TEST(RuntimeClass, SerializableClassesAreFoundByName) {
    EXPECT_EQ(CRuntimeClass::FromName("Square"), RUNTIME_CLASS(Square));
    EXPECT_EQ(CRuntimeClass::FromName("Nobody"), nullptr);
    const std::unique_ptr<CObject> shape(CRuntimeClass::CreateObject("Shape"));
    ASSERT_NE(shape, nullptr);
    EXPECT_TRUE(shape->IsKindOf(RUNTIME_CLASS(Shape)));
}

TEST(RuntimeClass, AClassIsUnregisteredWithItsModule) {
    static CRuntimeClass passing = {"Passing", 1, 1, nullptr, nullptr, nullptr};
    {
        const AFX_CLASSINIT registration(&passing);
        EXPECT_EQ(CRuntimeClass::FromName("Passing"), &passing);
    }
    EXPECT_EQ(CRuntimeClass::FromName("Passing"), nullptr);
    EXPECT_EQ(CRuntimeClass::FromName("Square"), RUNTIME_CLASS(Square));
}

TEST(ArchiveObject, FirstObjectStoresTheClassNameLaterOnesItsNumber) {
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        Shape first;
        Shape second;
        first.m_sides = 3;
        archive << &first << &second << &first << static_cast<CObject*>(nullptr);
    }
    EXPECT_EQ(
        bytesOf(file),
        (std::vector<int>{0xFF, 0xFF, 1, 0, 5,    0,    'S',  'h',  'a',  'p', 'e',  // new class, number 1
                          3,    0,    0, 0, 0xFF, 0xFE, 0xFF, 0,                     // the object, number 2
                          0x01, 0x80, 0, 0, 0,    0,    0xFF, 0xFE, 0xFF, 0,  // class 1 again, number 3
                          2,    0,                                            // object 2 again
                          0,    0}));                                         // no object
}

TEST(ArchiveObject, IsLoadedAsItsOriginalClass) {
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        Square square;
        square.m_sides = 4;
        square.m_name = _T("方");
        square.m_side = 2.5;
        archive << &square;
    }
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    Shape* loaded = nullptr;
    archive >> loaded;
    ASSERT_NE(loaded, nullptr);
    const std::unique_ptr<Shape> owner(loaded);
    ASSERT_TRUE(loaded->IsKindOf(RUNTIME_CLASS(Square)));
    EXPECT_EQ(loaded->m_sides, 4);
    EXPECT_EQ(utf8(loaded->m_name), "方");
    EXPECT_EQ(static_cast<Square*>(loaded)->m_side, 2.5);
}

TEST(ArchiveObject, SharedReferencesAreRestored) {
    CMemFile file;
    {
        CArchive archive(&file, CArchive::store);
        Group group;
        Shape shape;
        shape.m_sides = 6;
        group.m_members.Add(&shape);
        group.m_members.Add(nullptr);
        group.m_members.Add(&shape);
        group.m_self = &group;
        archive << &group;
    }
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    Group* loaded = nullptr;
    archive >> loaded;
    ASSERT_NE(loaded, nullptr);
    const std::unique_ptr<Group> owner(loaded);
    ASSERT_EQ(loaded->m_members.GetSize(), 3);
    EXPECT_NE(loaded->m_members[0], nullptr);
    EXPECT_EQ(loaded->m_members[1], nullptr);
    EXPECT_EQ(loaded->m_members[0], loaded->m_members[2]);
    EXPECT_EQ(loaded->m_self, loaded);
    delete loaded->m_members[0];
}

TEST(ArchiveObject, NumbersBeyondFifteenBitsLoadBack) {
    const int count = 0x8010;
    CMemFile file;
    Group group;
    group.m_owner = true;
    for (int i = 0; i < count; ++i) {
        auto shape = std::make_unique<Shape>();
        shape->m_sides = i;
        group.m_members.Add(shape.release());
    }
    group.m_members.Add(nullptr);
    {
        CArchive archive(&file, CArchive::store);
        archive << &group << group.m_members[count - 1];
    }
    file.SeekToBegin();
    CArchive archive(&file, CArchive::load);
    Group* loaded = nullptr;
    CObject* last = nullptr;
    archive >> loaded >> last;
    ASSERT_NE(loaded, nullptr);
    const std::unique_ptr<Group> owner(loaded);
    loaded->m_owner = true;
    ASSERT_EQ(loaded->m_members.GetSize(), count + 1);
    EXPECT_EQ(static_cast<Shape*>(loaded->m_members[count - 1])->m_sides, count - 1);
    EXPECT_EQ(last, loaded->m_members[count - 1]);
}

TEST(ArchiveObject, SchemaIsCheckedUnlessTheClassIsVersionable) {
    EXPECT_EQ(causeOfLoading({0xFF, 0xFF, 9, 0, 5, 0, 'S', 'h', 'a', 'p', 'e'}, RUNTIME_CLASS(Shape)),
              CArchiveException::badSchema);

    CMemFile file;
    writeBytes(file, {0xFF, 0xFF, 3, 0, 9, 0, 'V', 'e', 'r', 's', 'i', 'o', 'n', 'e', 'd'});
    CArchive archive(&file, CArchive::load);
    Versioned* loaded = nullptr;
    archive >> loaded;
    ASSERT_NE(loaded, nullptr);
    const std::unique_ptr<Versioned> owner(loaded);
    EXPECT_EQ(loaded->m_loadedSchema, 3U);
    EXPECT_EQ(loaded->m_secondAnswer, 0xFFFFFFFFU);
}

TEST(ArchiveObject, CorruptDataThrowsTheDocumentedCause) {
    const CRuntimeClass* const shape = RUNTIME_CLASS(Shape);
    EXPECT_EQ(causeOfLoading({0xFF, 0xFF, 1, 0, 6, 0, 'N', 'o', 'b', 'o', 'd', 'y'}, shape),
              CArchiveException::badClass);
    EXPECT_EQ(causeOfLoading({0xFF, 0xFF, 1, 0, 0xFF, 0xFF, 'x'}, shape), CArchiveException::badClass);
    EXPECT_EQ(causeOfLoading({0xFF, 0xFF, 1, 0, 5, 0, 'S', 'h'}, shape), CArchiveException::badClass);
    EXPECT_EQ(causeOfLoading({7, 0}, shape), CArchiveException::badIndex);
    EXPECT_EQ(causeOfLoading({7, 0x80}, shape), CArchiveException::badIndex);
    EXPECT_EQ(causeOfLoading({0xFF, 0x7F, 7, 0, 0, 0}, shape), CArchiveException::badIndex);
    EXPECT_EQ(causeOfLoading({0xFF, 0xFF, 1, 0, 5, 0, 'G', 'r', 'o', 'u', 'p'}, shape),
              CArchiveException::badClass);
    EXPECT_EQ(causeOfLoading({0xFF, 0xFF, 1, 0, 5, 0, 'S', 'h', 'a', 'p', 'e', 3, 0}, shape),
              CArchiveException::endOfFile);
    EXPECT_EQ(causeOfLoading({0xFF}, shape), CArchiveException::endOfFile);
    EXPECT_EQ(causeOfLoading({0, 0}, shape), CArchiveException::none);
}

TEST(ArchiveObject, AClassWithoutSchemaCannotBeStored) {
    CMemFile file;
    CArchive archive(&file, CArchive::store);
    Dynamic dynamic;
    EXPECT_MFC_THROW(archive.WriteObject(&dynamic), CNotSupportedException);
}
