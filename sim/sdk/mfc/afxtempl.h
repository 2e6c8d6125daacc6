#pragma once

// CArray.
// Simplified: no other template collections.

#include <afx.h>

#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <type_traits>

// NOLINTBEGIN(bugprone-sizeof-expression): elements may be pointers.

/// How CArray copies elements: by assignment to existing ones.
template <class TYPE>
void AFXAPI CopyElements(TYPE* destination, const TYPE* source, INT_PTR count) {
    for (INT_PTR i = 0; i < count; ++i) {
        destination[i] = source[i];
    }
}

/// How CArray stores and loads its elements: by default as raw bytes, whatever their type. A list whose
/// elements own memory or have virtual functions (CString, or a structure with one) therefore cannot be
/// loaded: its elements would be copies of former pointers. Specialize the template for such a type.
/// (CStringArray serializes its texts itself.)
template <class TYPE>
void AFXAPI SerializeElements(CArchive& ar, TYPE* elements, INT_PTR count) {
    const INT_PTR piece = 0x10000;
    while (count > 0) {
        const INT_PTR now = count < piece ? count : piece;
        const UINT bytes = static_cast<UINT>(static_cast<size_t>(now) * sizeof(TYPE));
        if (ar.IsStoring()) {
            ar.Write(elements, bytes);
        } else {
            ar.EnsureRead(static_cast<void*>(elements), bytes);
        }
        elements += now;
        count -= now;
    }
}

/// Aborts with a message: an element of the array was passed to one of its own functions that moves the
/// elements, which leaves the argument dangling.
[[noreturn]] void AFXAPI AfxFailOwnElement(const char* function);

/// A dynamic array. Like every CObject it is not copyable: use Copy. An index out of range throws
/// CInvalidArgException.
///
/// Elements are moved as bytes, without constructors and destructors, when the array grows and when elements
/// are inserted or removed: a type that holds a pointer into itself breaks. The argument of Add and SetAtGrow
/// must not be an element of the array itself, or part of one, if the array grows in that call; that of
/// InsertAt never. In MFC it dangles; here the call aborts.
template <class TYPE, class ARG_TYPE = const TYPE&>
class CArray : public CObject {
public:
    CArray() = default;
    ~CArray() override { release(); }

    INT_PTR GetSize() const { return m_size; }
    INT_PTR GetCount() const { return m_size; }
    BOOL IsEmpty() const { return m_size == 0; }
    INT_PTR GetUpperBound() const { return m_size - 1; }

    /// New elements are value-initialized. `growBy` is the step in which the capacity grows; 0 lets the array
    /// choose, -1 leaves the step as it is.
    void SetSize(INT_PTR newSize, INT_PTR growBy = -1) {
        if (newSize < 0) {
            AfxThrowInvalidArgException();
        }
        if (growBy >= 0) {
            m_growBy = growBy;
        }
        if (newSize == 0) {
            release();
            return;
        }
        if (newSize > m_capacity) {
            reallocate(m_size == 0 ? newSize : grown(newSize));
        }
        construct(m_size, newSize);
        destroy(newSize, m_size);
        m_size = newSize;
    }
    void FreeExtra() {
        if (m_capacity > m_size) {
            reallocate(m_size);
        }
    }
    void RemoveAll() { SetSize(0, -1); }

    const TYPE& GetAt(INT_PTR index) const {
        check(index);
        return m_data[index];
    }
    TYPE& GetAt(INT_PTR index) {
        check(index);
        return m_data[index];
    }
    void SetAt(INT_PTR index, ARG_TYPE newElement) {
        check(index);
        m_data[index] = newElement;
    }
    TYPE& ElementAt(INT_PTR index) { return GetAt(index); }
    const TYPE& ElementAt(INT_PTR index) const { return GetAt(index); }
    const TYPE& operator[](INT_PTR index) const { return GetAt(index); }
    TYPE& operator[](INT_PTR index) { return GetAt(index); }
    const TYPE* GetData() const { return m_data; }
    TYPE* GetData() { return m_data; }

    void SetAtGrow(INT_PTR index, ARG_TYPE newElement) {
        if (index < 0) {
            AfxThrowInvalidArgException();
        }
        if (index >= m_size) {
            if (index >= m_capacity && isOwn(newElement)) {
                AfxFailOwnElement("Add or SetAtGrow");
            }
            SetSize(index + 1, -1);
        }
        m_data[index] = newElement;
    }
    /// Returns the new element's index.
    INT_PTR Add(ARG_TYPE newElement) {
        const INT_PTR index = m_size;
        SetAtGrow(index, newElement);
        return index;
    }
    /// Returns the index of the first appended element. Append and Copy throw CInvalidArgException if the
    /// source is the array itself.
    INT_PTR Append(const CArray& source) {
        if (this == &source) {
            AfxThrowInvalidArgException();
        }
        const INT_PTR oldSize = m_size;
        if (source.m_size > 0) {
            SetSize(m_size + source.m_size);
            CopyElements<TYPE>(m_data + oldSize, source.m_data, source.m_size);
        }
        return oldSize;
    }
    void Copy(const CArray& source) {
        if (this == &source) {
            AfxThrowInvalidArgException();
        }
        SetSize(source.m_size);
        CopyElements<TYPE>(m_data, source.m_data, source.m_size);
    }

    void InsertAt(INT_PTR index, ARG_TYPE newElement, INT_PTR count = 1) {
        if (index < 0 || count <= 0) {
            AfxThrowInvalidArgException();
        }
        if (isOwn(newElement)) {
            AfxFailOwnElement("InsertAt");
        }
        open(index, count);
        for (INT_PTR i = index; i < index + count; ++i) {
            m_data[i] = newElement;
        }
    }
    void InsertAt(INT_PTR startIndex, const CArray* newArray) {
        if (newArray == nullptr || newArray == this || startIndex < 0) {
            AfxThrowInvalidArgException();
        }
        if (newArray->m_size > 0) {
            open(startIndex, newArray->m_size);
            CopyElements<TYPE>(m_data + startIndex, newArray->m_data, newArray->m_size);
        }
    }
    void RemoveAt(INT_PTR index, INT_PTR count = 1) {
        if (index < 0 || count < 0 || index > m_size || count > m_size - index) {
            AfxThrowInvalidArgException();
        }
        destroy(index, index + count);
        moveBytes(m_data + index, m_data + index + count, m_size - index - count);
        m_size -= count;
    }

    void Serialize(CArchive& ar) override {
        CObject::Serialize(ar);
        if (ar.IsStoring()) {
            ar.WriteCount(static_cast<DWORD_PTR>(m_size));
        } else {
            SetSize(static_cast<INT_PTR>(ar.ReadCount()), -1);
        }
        SerializeElements<TYPE>(ar, m_data, m_size);
    }

private:
    void check(INT_PTR index) const {
        if (index < 0 || index >= m_size) {
            AfxThrowInvalidArgException();
        }
    }
    /// The new capacity if at least `needed` is required: by default an eighth of the size more, as in MFC.
    INT_PTR grown(INT_PTR needed) const {
        INT_PTR step = m_growBy;
        if (step <= 0) {
            step = m_size / 8;
            step = step < 4 ? 4 : (step > 1024 ? 1024 : step);
        }
        const INT_PTR wanted = m_capacity + step;
        return needed < wanted ? wanted : needed;
    }
    void reallocate(INT_PTR capacity) {
        if (static_cast<size_t>(capacity) > SIZE_MAX / 2 / sizeof(TYPE)) {
            AfxThrowMemoryException();
        }
        TYPE* data = nullptr;
        if (capacity > 0) {
            void* memory = ::operator new(static_cast<size_t>(capacity) * sizeof(TYPE), std::nothrow);
            if (memory == nullptr) {
                AfxThrowMemoryException();
            }
            data = static_cast<TYPE*>(memory);
        }
        moveBytes(data, m_data, m_size);
        ::operator delete(static_cast<void*>(m_data));
        m_data = data;
        m_capacity = capacity;
    }
    /// Makes room for `count` elements at `index`, which may be past the end.
    void open(INT_PTR index, INT_PTR count) {
        const INT_PTR oldSize = m_size;
        if (index >= oldSize) {
            SetSize(index + count, -1);
            return;
        }
        SetSize(oldSize + count, -1);
        destroy(oldSize, oldSize + count);
        moveBytes(m_data + index + count, m_data + index, oldSize - index);
        construct(index, index + count);
    }
    /// Whether the element, or the object that holds it, is one of the array's own.
    template <typename T>
    bool isOwn(const T& element) const {
        const auto* const address = static_cast<const void*>(std::addressof(element));
        const std::less<const void*> less;
        return m_data != nullptr && !less(address, m_data) && less(address, m_data + m_size);
    }
    /// Moves elements, whose old and new places may overlap.
    static void moveBytes(TYPE* to, const TYPE* from, INT_PTR count) {
        if (count > 0) {
            std::memmove(static_cast<void*>(to), static_cast<const void*>(from),
                         static_cast<size_t>(count) * sizeof(TYPE));
        }
    }
    void construct(INT_PTR from, INT_PTR to) {
        for (INT_PTR i = from; i < to; ++i) {
            ::new (static_cast<void*>(m_data + i)) TYPE();
        }
    }
    void destroy(INT_PTR from, INT_PTR to) {
        for (INT_PTR i = from; i < to; ++i) {
            m_data[i].~TYPE();
        }
    }
    void release() {
        destroy(0, m_size);
        ::operator delete(static_cast<void*>(m_data));
        m_data = nullptr;
        m_size = 0;
        m_capacity = 0;
    }

    TYPE* m_data = nullptr;
    INT_PTR m_size = 0;
    INT_PTR m_capacity = 0;
    INT_PTR m_growBy = 0;
};

// NOLINTEND(bugprone-sizeof-expression)
