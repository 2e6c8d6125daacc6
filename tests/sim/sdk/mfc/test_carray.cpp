#include <afxcoll.h>
#include <afxtempl.h>

#include <new>
#include <type_traits>

#include "mfc_text.h"

namespace {

typedef CArray<int, int> IntArray;

std::string listed(const IntArray& array) {
    std::string text;
    for (INT_PTR i = 0; i < array.GetSize(); ++i) {
        text += (i == 0 ? "" : " ") + std::to_string(array[i]);
    }
    return text;
}

/// Counts its live instances.
struct Counted {
    static int alive;
    explicit Counted(int v = 0) : value(v) { ++alive; }
    Counted(const Counted& other) : value(other.value) { ++alive; }
    Counted& operator=(const Counted& other) = default;
    ~Counted() { --alive; }
    int value;
};
int Counted::alive = 0;

/// Keeps a pointer to itself, as a class with a small buffer of its own does.
struct SelfPointing {
    SelfPointing() = default;
    SelfPointing(const SelfPointing& other) : value(other.value) {}
    SelfPointing& operator=(const SelfPointing& other) {
        value = other.value;
        return *this;
    }
    bool pointsToItself() const { return self == this; }

    int value = 0;
    const SelfPointing* self = this;
};

typedef CArray<CString, const CString&> TextArray;

/// An array without room for a fifth element.
void fillUp(TextArray& array) {
    for (const LPCTSTR text : {_T("zero"), _T("one"), _T("two"), _T("three")}) {
        array.Add(text);
    }
    array.FreeExtra();
}

}  // namespace

static_assert(!std::is_copy_constructible<IntArray>::value, "MFC's arrays are not copyable");
static_assert(!std::is_copy_assignable<IntArray>::value, "MFC's arrays are not copyable");

TEST(CArray, StartsEmpty) {
    const IntArray array;
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_EQ(array.GetSize(), 0);
    EXPECT_EQ(array.GetUpperBound(), -1);
    EXPECT_EQ(array.GetData(), nullptr);
}

TEST(CArray, AddReturnsTheNewIndex) {
    IntArray array;
    EXPECT_EQ(array.Add(5), 0);
    EXPECT_EQ(array.Add(6), 1);
    EXPECT_EQ(array.GetCount(), 2);
    EXPECT_EQ(listed(array), "5 6");
    EXPECT_EQ(array.GetData()[1], 6);
}

TEST(CArray, SetSizeValueInitializesAndTruncates) {
    IntArray array;
    array.Add(1);
    array.SetSize(3);
    EXPECT_EQ(listed(array), "1 0 0");
    array.SetSize(1);
    EXPECT_EQ(listed(array), "1");
    array.SetAtGrow(3, 9);
    EXPECT_EQ(listed(array), "1 0 0 9");
    array.FreeExtra();
    EXPECT_EQ(listed(array), "1 0 0 9");
    array.RemoveAll();
    EXPECT_TRUE(array.IsEmpty());
    EXPECT_MFC_THROW(array.SetSize(-1), CInvalidArgException);
}

TEST(CArray, IndexOutOfRangeThrows) {
    IntArray array;
    array.Add(1);
    const IntArray& constant = array;
    EXPECT_MFC_THROW(array.GetAt(1), CInvalidArgException);
    EXPECT_MFC_THROW(array[-1], CInvalidArgException);
    EXPECT_MFC_THROW(constant[1], CInvalidArgException);
    EXPECT_MFC_THROW(array.ElementAt(2), CInvalidArgException);
    EXPECT_MFC_THROW(array.SetAt(1, 2), CInvalidArgException);
    EXPECT_MFC_THROW(array.SetAtGrow(-1, 2), CInvalidArgException);
    EXPECT_MFC_THROW(array.RemoveAt(0, 2), CInvalidArgException);
    EXPECT_MFC_THROW(array.RemoveAt(-1), CInvalidArgException);
    EXPECT_MFC_THROW(array.InsertAt(-1, 2), CInvalidArgException);
    EXPECT_EQ(listed(array), "1");
}

TEST(CArray, InsertsAndRemovesInTheMiddle) {
    IntArray array;
    array.Add(1);
    array.Add(4);
    array.InsertAt(1, 2);
    array.InsertAt(2, 3);
    EXPECT_EQ(listed(array), "1 2 3 4");
    array.InsertAt(1, 7, 2);
    EXPECT_EQ(listed(array), "1 7 7 2 3 4");
    array.RemoveAt(1, 2);
    EXPECT_EQ(listed(array), "1 2 3 4");
    array.RemoveAt(3);
    EXPECT_EQ(listed(array), "1 2 3");
    array.InsertAt(5, 9);
    EXPECT_EQ(listed(array), "1 2 3 0 0 9");
    IntArray other;
    other.Add(10);
    other.Add(11);
    array.InsertAt(0, &other);
    EXPECT_EQ(listed(array), "10 11 1 2 3 0 0 9");
}

TEST(CArray, CopyReplacesAndAppendAdds) {
    IntArray source;
    source.Add(1);
    source.Add(2);
    IntArray target;
    target.Add(9);
    EXPECT_EQ(target.Append(source), 1);
    EXPECT_EQ(listed(target), "9 1 2");
    target.Copy(source);
    EXPECT_EQ(listed(target), "1 2");
    target[0] = 5;
    EXPECT_EQ(listed(source), "1 2");
    EXPECT_MFC_THROW(target.Copy(target), CInvalidArgException);
    EXPECT_MFC_THROW(target.Append(target), CInvalidArgException);
}

TEST(CArray, AddingAnOwnElementWhileGrowingAborts) {
    TextArray array;
    fillUp(array);
    EXPECT_DEATH(array.Add(array[0]), "CArray::Add.*element of the array itself");
    EXPECT_DEATH(array.SetAtGrow(9, array[3]), "CArray::.*SetAtGrow.*element of the array itself");
    // A copy of it may be added.
    array.Add(CString(array[0]));
    EXPECT_EQ(utf8(array[4]), "zero");
}

TEST(CArray, AddingPartOfAnOwnElementWhileGrowingAborts) {
    struct Named {
        Named() = default;
        Named(const CString& name)
            : m_name(name) {}  // NOLINT(google-explicit-constructor): what Add converts
        int m_number = 0;
        CString m_name;
    };
    CArray<Named, const CString&> array;
    array.Add(_T("zero"));
    array.FreeExtra();
    EXPECT_DEATH(array.Add(array[0].m_name), "element of the array itself");
}

TEST(CArray, AnOwnElementMayBeAddedWhereThereIsRoom) {
    TextArray array;
    fillUp(array);
    array.SetSize(5, 16);
    array.Add(array[0]);
    array.SetAtGrow(7, array[1]);
    array.SetAt(4, array[2]);
    EXPECT_EQ(utf8(array[4]), "two");
    EXPECT_EQ(utf8(array[5]), "zero");
    EXPECT_EQ(utf8(array[6]), "");
    EXPECT_EQ(utf8(array[7]), "one");
}

TEST(CArray, InsertingAnOwnElementAborts) {
    TextArray array;
    fillUp(array);
    EXPECT_DEATH(array.InsertAt(0, array[3]), "CArray::InsertAt.*element of the array itself");
}

TEST(CArray, AValueOfItsOwnMayBeAddedByValue) {
    IntArray array;
    for (int i = 0; i < 100; ++i) {
        array.Add(i == 0 ? 7 : array[0]);
    }
    EXPECT_EQ(array[99], 7);
}

TEST(CArray, MovesItsElementsAsBytes) {
    CArray<SelfPointing, const SelfPointing&> array;
    array.SetSize(2);
    EXPECT_TRUE(array[0].pointsToItself());
    array[1].value = 5;
    array.SetSize(100);
    EXPECT_FALSE(array[0].pointsToItself());
    EXPECT_EQ(array[1].value, 5);
    EXPECT_TRUE(array[99].pointsToItself());
    array.RemoveAt(0, 98);
    EXPECT_FALSE(array[1].pointsToItself());
    array.InsertAt(0, SelfPointing());
    EXPECT_TRUE(array[0].pointsToItself());
    EXPECT_FALSE(array[1].pointsToItself());
}

TEST(CArray, EveryElementIsDestroyedOnce) {
    {
        CArray<Counted, const Counted&> array;
        for (int i = 0; i < 50; ++i) {
            array.Add(Counted(i));
        }
        EXPECT_EQ(Counted::alive, 50);
        array.RemoveAt(10, 20);
        EXPECT_EQ(Counted::alive, 30);
        EXPECT_EQ(array[10].value, 30);
        array.SetSize(5);
        EXPECT_EQ(Counted::alive, 5);
        array.InsertAt(2, Counted(7), 3);
        EXPECT_EQ(Counted::alive, 8);
        array.SetSize(40, 16);
        EXPECT_EQ(Counted::alive, 40);
    }
    EXPECT_EQ(Counted::alive, 0);
}

TEST(CArray, GrowsInStepsAndNotAtEveryElement) {
    IntArray array;
    int moves = 0;
    const int* last = nullptr;
    for (int i = 0; i < 20000; ++i) {
        array.Add(i);
        moves += array.GetData() != last ? 1 : 0;
        last = array.GetData();
    }
    EXPECT_LT(moves, 150);
    EXPECT_EQ(array[19999], 19999);
}

TEST(CArray, SerializesTrivialElementsAsRawBytes) {
    CMemFile file;
    {
        CArchive store(&file, CArchive::store);
        IntArray array;
        array.Add(1);
        array.Add(0x01020304);
        array.Serialize(store);
    }
    EXPECT_EQ(file.GetLength(), 2U + 8U);
    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    IntArray back;
    back.Add(77);
    back.Serialize(load);
    EXPECT_EQ(listed(back), "1 16909060");
}

TEST(CArray, ATextLoadedFromRawBytesIsTheFormerTextsPointer) {
    TextArray array;
    array.Add(_T("text"));
    CMemFile file;
    {
        CArchive store(&file, CArchive::store);
        array.Serialize(store);
    }
    EXPECT_EQ(file.GetLength(), sizeof(WORD) + sizeof(CString));
    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    TextArray back;
    back.Serialize(load);
    ASSERT_EQ(back.GetSize(), 1);
    EXPECT_EQ(back[0].GetString(), array[0].GetString());
    // It would be freed once more than it was made.
    ::new (static_cast<void*>(back.GetData())) CString;
}

TEST(CStringArray, StoresAndSerializesStrings) {
    CStringArray array;
    array.Add(_T("一"));
    array.Add(CString(_T("two")));
    array.SetAtGrow(3, _T("four"));
    EXPECT_TRUE(array.IsKindOf(RUNTIME_CLASS(CStringArray)));
    EXPECT_TRUE(array.IsSerializable());

    CMemFile file;
    {
        CArchive store(&file, CArchive::store);
        array.Serialize(store);
    }
    file.SeekToBegin();
    CArchive load(&file, CArchive::load);
    CStringArray back;
    back.Serialize(load);
    ASSERT_EQ(back.GetSize(), 4);
    EXPECT_EQ(utf8(back[0]), "一");
    EXPECT_EQ(utf8(back[1]), "two");
    EXPECT_EQ(utf8(back[2]), "");
    EXPECT_EQ(utf8(back[3]), "four");
}
