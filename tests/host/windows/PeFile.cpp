#include "tests/host/windows/PeFile.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace {

constexpr std::uint16_t kMachineX64 = 0x8664;
constexpr std::uint16_t kMagicPe32Plus = 0x20B;
constexpr std::uint16_t kCharacteristicDll = 0x2000;
constexpr std::uint64_t kImportByOrdinal = std::uint64_t{1} << 63;

// Offsets in the headers.
constexpr std::size_t kPeHeaderPointer = 0x3C;
constexpr std::size_t kFileHeader = 4;
constexpr std::size_t kFileHeaderSize = 20;
constexpr std::size_t kDirectories = 112;
constexpr std::size_t kDirectorySize = 8;
constexpr std::size_t kSectionHeaderSize = 40;
enum Directory : std::uint32_t { kExports = 0, kImports = 1, kDelayedImports = 13 };

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

}  // namespace

PeFile::PeFile(const std::string& path) : m_path(path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        fail("cannot be read");
    }
    m_bytes.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    readHeaders();
}

bool PeFile::isDll() const {
    return (m_characteristics & kCharacteristicDll) != 0;
}

std::string PeFile::bytesAt(std::uint32_t rva, std::size_t count) const {
    return m_bytes.substr(offsetOf(rva, count), count);
}

void PeFile::fail(const std::string& reason) const {
    throw std::runtime_error(m_path + ": " + reason);
}

template <typename Number>
Number PeFile::at(std::size_t offset) const {
    if (offset > m_bytes.size() || m_bytes.size() - offset < sizeof(Number)) {
        fail("is truncated");
    }
    Number number{};
    std::memcpy(&number, m_bytes.data() + offset, sizeof number);
    return number;
}

std::size_t PeFile::offsetOf(std::uint32_t rva, std::size_t count) const {
    for (const Section& section : m_sections) {
        if (rva >= section.rva && rva - section.rva <= section.size &&
            count <= section.size - (rva - section.rva)) {
            const std::size_t offset = std::size_t{section.offset} + (rva - section.rva);
            if (offset > m_bytes.size() || count > m_bytes.size() - offset) {
                fail("is truncated");
            }
            return offset;
        }
    }
    fail("uses an address outside its sections");
}

std::string PeFile::textAt(std::uint32_t rva) const {
    const std::size_t start = offsetOf(rva, 1);
    const std::size_t end = m_bytes.find('\0', start);
    if (end == std::string::npos) {
        fail("is truncated");
    }
    return m_bytes.substr(start, end - start);
}

void PeFile::readHeaders() {
    const std::size_t pe = at<std::uint32_t>(kPeHeaderPointer);
    if (m_bytes.compare(0, 2, "MZ") != 0 || at<std::uint32_t>(pe) != 0x00004550) {
        fail("is not a Windows program or DLL");
    }
    const std::size_t header = pe + kFileHeader;
    const std::size_t optional = header + kFileHeaderSize;
    if (at<std::uint16_t>(header) != kMachineX64 || at<std::uint16_t>(optional) != kMagicPe32Plus) {
        fail("is not for Windows x64");
    }
    m_characteristics = at<std::uint16_t>(header + 18);

    const std::size_t table = optional + at<std::uint16_t>(header + 16);
    const std::size_t count = at<std::uint16_t>(header + 2);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t section = table + i * kSectionHeaderSize;
        m_sections.push_back({at<std::uint32_t>(section + 12), at<std::uint32_t>(section + 16),
                              at<std::uint32_t>(section + 20)});
    }

    const std::uint32_t directories = at<std::uint32_t>(optional + kDirectories - 4);
    const auto directory = [&](std::uint32_t index) {
        return index < directories ? at<std::uint32_t>(optional + kDirectories + index * kDirectorySize) : 0;
    };
    if (const std::uint32_t rva = directory(kExports)) {
        readExports(rva);
    }
    if (const std::uint32_t rva = directory(kImports)) {
        readImports(rva, 20, 12, 0);
    }
    if (const std::uint32_t rva = directory(kDelayedImports)) {
        readImports(rva, 32, 4, 16);
    }
}

void PeFile::readExports(std::uint32_t rva) {
    const std::size_t table = offsetOf(rva, 40);
    m_exportedName = textAt(at<std::uint32_t>(table + 12));
    // Exports without a name are listed by their ordinal.
    const std::uint32_t functions = at<std::uint32_t>(table + 20);
    const std::uint32_t names = at<std::uint32_t>(table + 24);
    for (std::uint32_t i = 0; i < names; ++i) {
        const std::size_t name = offsetOf(at<std::uint32_t>(table + 32) + i * 4, 4);
        m_exports.push_back(textAt(at<std::uint32_t>(name)));
    }
    for (std::uint32_t i = names; i < functions; ++i) {
        m_exports.push_back("#" + std::to_string(at<std::uint32_t>(table + 16) + i));
    }
}

void PeFile::readImports(std::uint32_t rva, std::size_t stride, std::size_t name, std::size_t functions) {
    for (std::uint32_t i = 0;; ++i) {
        const std::size_t entry = offsetOf(rva + i * static_cast<std::uint32_t>(stride), stride);
        const std::uint32_t dll = at<std::uint32_t>(entry + name);
        if (dll == 0) {
            return;
        }
        Functions& known = m_imports[lower(textAt(dll))];
        const Functions found = functionsAt(at<std::uint32_t>(entry + functions));
        known.insert(known.end(), found.begin(), found.end());
    }
}

PeFile::Functions PeFile::functionsAt(std::uint32_t rva) const {
    constexpr std::uint32_t kNameAfterHint = 2;
    Functions functions;
    for (;; rva += sizeof(std::uint64_t)) {
        const auto entry = at<std::uint64_t>(offsetOf(rva, sizeof(std::uint64_t)));
        if (entry == 0) {
            return functions;
        }
        functions.push_back((entry & kImportByOrdinal) != 0
                                ? "#" + std::to_string(entry & 0xFFFF)
                                : textAt(static_cast<std::uint32_t>(entry) + kNameAfterHint));
    }
}
