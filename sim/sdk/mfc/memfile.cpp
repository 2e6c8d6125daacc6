#include <cstdlib>
#include <cstring>

#include "afx.h"

IMPLEMENT_DYNAMIC(CMemFile, CFile)

CMemFile::CMemFile(UINT growBytes) : m_growBytes(growBytes) {}

CMemFile::CMemFile(BYTE* buffer, UINT size, UINT growBytes)
    : m_buffer(buffer), m_capacity(size), m_growBytes(growBytes), m_autoDelete(false) {
    // As in MFC: a buffer that may grow is capacity for writing, one that may not is contents to be read.
    m_size = growBytes == 0 ? size : 0;
}

CMemFile::~CMemFile() {
    if (m_autoDelete) {
        std::free(m_buffer);
    }
}

BYTE* CMemFile::Detach() {
    BYTE* const buffer = m_buffer;
    m_buffer = nullptr;
    m_capacity = 0;
    m_size = 0;
    m_position = 0;
    return buffer;
}

void CMemFile::grow(size_t needed) {
    if (needed <= m_capacity) {
        return;
    }
    if (m_growBytes == 0) {
        AfxThrowMemoryException();
    }
    // A multiple of the step and at least double, so that many small writes are amortized linear.
    size_t capacity = (needed + m_growBytes - 1) / m_growBytes * m_growBytes;
    if (capacity < 2 * m_capacity) {
        capacity = 2 * m_capacity;
    }
    void* memory = m_autoDelete ? std::realloc(m_buffer, capacity) : std::malloc(capacity);
    if (memory == nullptr) {
        AfxThrowMemoryException();
    }
    if (!m_autoDelete) {
        std::memcpy(memory, m_buffer, m_size);
        m_autoDelete = true;
    }
    m_buffer = static_cast<BYTE*>(memory);
    m_capacity = capacity;
}

UINT CMemFile::Read(void* buffer, UINT count) {
    if (count == 0 || m_position >= m_size) {
        return 0;
    }
    const size_t left = m_size - m_position;
    const UINT now = count < left ? count : static_cast<UINT>(left);
    std::memcpy(buffer, m_buffer + m_position, now);
    m_position += now;
    return now;
}

void CMemFile::Write(const void* buffer, UINT count) {
    if (count == 0) {
        return;
    }
    grow(m_position + count);
    if (m_position > m_size) {
        std::memset(m_buffer + m_size, 0, m_position - m_size);
    }
    std::memcpy(m_buffer + m_position, buffer, count);
    m_position += count;
    if (m_position > m_size) {
        m_size = m_position;
    }
}

ULONGLONG CMemFile::Seek(LONGLONG offset, UINT from) {
    const size_t base = from == current ? m_position : (from == end ? m_size : 0);
    const LONGLONG target = static_cast<LONGLONG>(base) + offset;
    if (from > end || target < 0) {
        AfxThrowFileException(CFileException::badSeek);
    }
    m_position = static_cast<size_t>(target);
    return m_position;
}

void CMemFile::SetLength(ULONGLONG newLength) {
    const auto length = static_cast<size_t>(newLength);
    grow(length);
    if (length > m_size) {
        std::memset(m_buffer + m_size, 0, length - m_size);
    }
    m_size = length;
    if (m_position > m_size) {
        m_position = m_size;
    }
}

ULONGLONG CMemFile::GetLength() const {
    return m_size;
}
ULONGLONG CMemFile::GetPosition() const {
    return m_position;
}
void CMemFile::Flush() {}

void CMemFile::Close() {
    if (m_autoDelete) {
        std::free(m_buffer);
    }
    m_growBytes = 0;
    m_autoDelete = true;
    CMemFile::Detach();
}

void CMemFile::Abort() {
    CMemFile::Close();
}
