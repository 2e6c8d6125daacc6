#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

/// What a Windows program or DLL tells of itself. Reads the file alone and loads nothing; the same on every
/// platform. All that does not fit into the file is an error, a std::runtime_error that names the file.
class PeFile {
public:
    /// Names in the order of the file; a function imported by its number is "#" and the number.
    using Functions = std::vector<std::string>;

    /// Throws when there is no such file or it is none for Windows x64.
    explicit PeFile(const std::string& path);

    bool isDll() const;
    /// The name that a DLL with exports gives itself; empty without exports.
    const std::string& exportedName() const { return m_exportedName; }
    const Functions& exports() const { return m_exports; }
    /// By the DLL they come from, in lower case. Those that are only looked for at their first call count
    /// too.
    const std::map<std::string, Functions>& imports() const { return m_imports; }

    /// The bytes at an offset from where the image begins when it is mapped; throws unless all of them stand
    /// in the file.
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
    /// Where in the file what is mapped at `rva` stands.
    std::size_t offsetOf(std::uint32_t rva, std::size_t count) const;
    std::string textAt(std::uint32_t rva) const;
    void readHeaders();
    void readExports(std::uint32_t rva);
    /// A list of descriptors of `stride` bytes, with the DLL's name and the list of its functions where told.
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
