#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// The headers, imports and exports of a Windows program or DLL (a PE file). Only reads the file and loads
/// nothing, so it works on every platform. Throws a std::runtime_error that names the file when its content
/// is inconsistent.
class PeFile {
public:
    /// Names in the order of the file; a function without a name is "#" and its ordinal.
    using Functions = std::vector<std::string>;

    /// Throws when there is no such file or it is not for Windows x64.
    explicit PeFile(const std::string& path);

    bool isDll() const;
    /// The DLL's name in its export table; empty without exports.
    const std::string& exportedName() const { return m_exportedName; }
    const Functions& exports() const { return m_exports; }
    /// By the name of the DLL in lower case. Includes delay-loaded imports.
    const std::map<std::string, Functions>& imports() const { return m_imports; }

    /// The bytes at a relative virtual address (RVA); throws unless all of them are in the file.
    std::string bytesAt(std::uint32_t rva, std::size_t count) const;

private:
    struct Section {
        std::uint32_t rva;
        std::uint32_t size;
        std::uint32_t offset;
    };

    [[noreturn]] void fail(const std::string& reason) const;
    template <typename Number>
    Number at(std::size_t offset) const;
    /// The offset in the file of `count` bytes at an RVA.
    std::size_t offsetOf(std::uint32_t rva, std::size_t count) const;
    std::string textAt(std::uint32_t rva) const;
    void readHeaders();
    void readExports(std::uint32_t rva);
    /// Reads a list of import descriptors of `stride` bytes; `name` and `functions` are the offsets of their
    /// fields for the DLL's name and the list of its functions.
    void readImports(std::uint32_t rva, std::size_t stride, std::size_t name, std::size_t functions);
    Functions functionsAt(std::uint32_t rva) const;

    std::string m_path;
    std::string m_bytes;
    std::uint16_t m_characteristics = 0;
    std::vector<Section> m_sections;
    std::string m_exportedName;
    Functions m_exports;
    std::map<std::string, Functions> m_imports;
};
