#include <windows.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace {

std::string narrow(const std::u16string& text) {
    std::string result(
        static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()),
                                                     nullptr, 0, nullptr, nullptr)),
        '\0');
    WideCharToMultiByte(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), result.data(),
                        static_cast<int>(result.size()), nullptr, nullptr);
    return result;
}

std::u16string wide(const std::string& text) {
    std::u16string result(static_cast<std::size_t>(MultiByteToWideChar(
                              CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), nullptr, 0)),
                          u'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.c_str(), static_cast<int>(text.size()), result.data(),
                        static_cast<int>(result.size()));
    return result;
}

std::u16string windowsPath(const std::string& path) {
    std::u16string result = u"Z:" + wide(path);
    for (TCHAR& unit : result) {
        unit = unit == u'/' ? u'\\' : unit;
    }
    return result;
}

std::string value(const char* variable) {
    const char* found = std::getenv(variable);
    return found != nullptr ? found : "";
}

class Modules : public testing::Test {
protected:
    void SetUp() override {
        unsetenv("ZR_TEST_MAPPED");
        unsetenv("ZR_TEST_UNMAPPED");
    }

    const std::u16string m_path = windowsPath(ZR_TEST_MODULE);
};

}  // namespace

TEST_F(Modules, LoadedModuleIsMappedOnceAndUnmappedWithItsLastReference) {
    const HMODULE first = LoadLibraryW(m_path.c_str());
    ASSERT_NE(first, nullptr);
    const HMODULE second = LoadLibraryW(m_path.c_str());
    EXPECT_EQ(first, second);
    EXPECT_EQ(value("ZR_TEST_MAPPED"), "x");
    EXPECT_TRUE(FreeLibrary(first));
    EXPECT_EQ(value("ZR_TEST_UNMAPPED"), "");
    EXPECT_NE(GetModuleHandleW(u"ZR_Test.arx"), nullptr);
    EXPECT_TRUE(FreeLibrary(first));
    EXPECT_EQ(value("ZR_TEST_UNMAPPED"), "x");
    EXPECT_EQ(GetModuleHandleW(u"ZR_Test.arx"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
    EXPECT_FALSE(FreeLibrary(first));
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
}

TEST_F(Modules, UnloadedModuleCanBeLoadedAgain) {
    for (const char* count : {"x", "xx"}) {
        const HMODULE module = LoadLibraryW(m_path.c_str());
        ASSERT_NE(module, nullptr);
        EXPECT_EQ(value("ZR_TEST_MAPPED"), count);
        FreeLibrary(module);
    }
}

TEST_F(Modules, HandleIsFoundByBaseNameInAnyCase) {
    EXPECT_EQ(GetModuleHandleW(u"ZR_Test.arx"), nullptr);
    const HMODULE module = LoadLibraryW(m_path.c_str());
    EXPECT_EQ(GetModuleHandleW(u"ZR_Test.arx"), module);
    EXPECT_EQ(GetModuleHandleW(u"zr_test.ARX"), module);
    EXPECT_EQ(GetModuleHandleA("ZR_TEST.arx"), module);
    EXPECT_EQ(GetModuleHandleW(m_path.c_str()), module);
    // Without an extension ".dll" is added.
    EXPECT_EQ(GetModuleHandleW(u"ZR_Test"), nullptr);
    EXPECT_TRUE(FreeLibrary(module));
}

TEST_F(Modules, GetModuleHandleAddsNoReference) {
    const HMODULE module = LoadLibraryW(m_path.c_str());
    GetModuleHandleW(u"ZR_Test.arx");
    FreeLibrary(module);
    EXPECT_EQ(value("ZR_TEST_UNMAPPED"), "x");
}

TEST_F(Modules, LoadLibraryByBaseNameAddsAReference) {
    const HMODULE module = LoadLibraryW(m_path.c_str());
    EXPECT_EQ(LoadLibraryA("zr_test.arx"), module);
    FreeLibrary(module);
    EXPECT_EQ(value("ZR_TEST_UNMAPPED"), "");
    FreeLibrary(module);
    EXPECT_EQ(value("ZR_TEST_UNMAPPED"), "x");
}

TEST_F(Modules, ModuleThatLoadsItselfStaysLoaded) {
    const HMODULE module = LoadLibraryW(m_path.c_str());
    char name[MAX_PATH];
    ASSERT_NE(GetModuleFileNameA(module, name, MAX_PATH), 0U);
    EXPECT_EQ(LoadLibraryA(name), module);
    FreeLibrary(module);
    EXPECT_EQ(value("ZR_TEST_UNMAPPED"), "");
    FreeLibrary(module);
}

TEST_F(Modules, UnixPathsAreAccepted) {
    const HMODULE module = LoadLibraryA(ZR_TEST_MODULE);
    ASSERT_NE(module, nullptr);
    FreeLibrary(module);
}

TEST_F(Modules, LoadLibraryExAcceptsTheAlteredSearchPath) {
    const HMODULE module = LoadLibraryExW(m_path.c_str(), nullptr, LOAD_WITH_ALTERED_SEARCH_PATH);
    ASSERT_NE(module, nullptr);
    EXPECT_EQ(LoadLibraryW(m_path.c_str()), module);
    FreeLibrary(module);
    EXPECT_EQ(value("ZR_TEST_UNMAPPED"), "");
    FreeLibrary(module);
    EXPECT_EQ(value("ZR_TEST_UNMAPPED"), "x");
    EXPECT_EQ(LoadLibraryExW(u"Z:\\no\\such\\module.arx", nullptr, LOAD_WITH_ALTERED_SEARCH_PATH), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
}

TEST_F(Modules, GetProcAddressFindsOnlyTheModulesOwnExports) {
    const HMODULE module = LoadLibraryW(m_path.c_str());
    const auto answer =
        reinterpret_cast<int (*)()>(reinterpret_cast<void (*)()>(GetProcAddress(module, "zrTestAnswer")));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    SetLastError(0);
    EXPECT_EQ(GetProcAddress(module, "noSuchFunction"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND);
    // A function of a library that the module depends on.
    EXPECT_EQ(GetProcAddress(module, "setenv"), nullptr);
    FreeLibrary(module);
}

TEST_F(Modules, LoadingErrorsSetTheLastError) {
    SetLastError(0);
    EXPECT_EQ(LoadLibraryW(u"Z:\\no\\such\\module.arx"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
    EXPECT_EQ(LoadLibraryW(u"zr_no_such_module"), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
    const std::string text = std::string(ZR_TEST_MODULE) + ".txt.arx";
    std::ofstream(text) << "not a module, but text that is long enough to be read as an ELF header\n";
    EXPECT_EQ(LoadLibraryA(text.c_str()), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_BAD_EXE_FORMAT);
    std::filesystem::remove(text);
    EXPECT_EQ(LoadLibraryA(ZR_TEST_NEEDY_MODULE), nullptr);
    EXPECT_EQ(GetLastError(), ERROR_PROC_NOT_FOUND);
}

TEST_F(Modules, TruncatedFileIsNotLoaded) {
    const std::string cut = std::string(ZR_TEST_MODULE) + ".cut.arx";
    for (const std::uintmax_t kept :
         {std::uintmax_t{0}, std::uintmax_t{4}, std::uintmax_t{100}, std::uintmax_t{5000}}) {
        std::filesystem::copy_file(ZR_TEST_MODULE, cut, std::filesystem::copy_options::overwrite_existing);
        std::filesystem::resize_file(cut, kept);
        SetLastError(0);
        EXPECT_EQ(LoadLibraryA(cut.c_str()), nullptr) << kept;
        EXPECT_EQ(GetLastError(), ERROR_BAD_EXE_FORMAT) << kept;
    }
    std::filesystem::remove(cut);
}

TEST_F(Modules, FileNameIsAWindowsPath) {
    const HMODULE module = LoadLibraryW(m_path.c_str());
    TCHAR buffer[MAX_PATH];
    const DWORD length = GetModuleFileNameW(module, buffer, MAX_PATH);
    EXPECT_EQ(std::u16string(buffer, length), m_path);
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
    const TCHAR* slash = _tcsrchr(buffer, _T('\\'));
    ASSERT_NE(slash, nullptr);
    EXPECT_EQ(std::u16string(slash + 1), u"ZR_Test.arx");
    FreeLibrary(module);
}

TEST_F(Modules, FileNameThatDoesNotFitIsTruncated) {
    const HMODULE module = LoadLibraryW(m_path.c_str());
    TCHAR buffer[8];
    EXPECT_EQ(GetModuleFileNameW(module, buffer, 8), 8U);
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    EXPECT_EQ(std::u16string(buffer), m_path.substr(0, 7));
    // One character too small for the terminator.
    std::u16string exact(m_path.size(), u'?');
    EXPECT_EQ(GetModuleFileNameW(module, exact.data(), static_cast<DWORD>(exact.size())), m_path.size());
    EXPECT_EQ(GetLastError(), ERROR_INSUFFICIENT_BUFFER);
    exact.resize(m_path.size() + 1);
    EXPECT_EQ(GetModuleFileNameW(module, exact.data(), static_cast<DWORD>(exact.size())), m_path.size());
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
    char narrowBuffer[4];
    EXPECT_EQ(GetModuleFileNameA(module, narrowBuffer, 4), 4U);
    EXPECT_STREQ(narrowBuffer, "Z:\\");
    FreeLibrary(module);
}

TEST_F(Modules, NullHandleMeansTheProgram) {
    TCHAR buffer[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, buffer, MAX_PATH);
    EXPECT_EQ(narrow(std::u16string(buffer, length)),
              narrow(windowsPath(std::filesystem::read_symlink("/proc/self/exe").string())));
    const HMODULE program = GetModuleHandleW(nullptr);
    ASSERT_NE(program, nullptr);
    TCHAR again[MAX_PATH];
    GetModuleFileNameW(program, again, MAX_PATH);
    EXPECT_EQ(std::u16string(again), std::u16string(buffer));
}

TEST_F(Modules, UnknownHandleHasNoFileName) {
    TCHAR buffer[MAX_PATH];
    SetLastError(0);
    EXPECT_EQ(GetModuleFileNameW(reinterpret_cast<HMODULE>(std::uintptr_t{16}), buffer, MAX_PATH), 0U);
    EXPECT_EQ(GetLastError(), ERROR_MOD_NOT_FOUND);
}

TEST_F(Modules, ModuleIsFoundByAnAddressInIt) {
    const HMODULE module = LoadLibraryW(m_path.c_str());
    const FARPROC procedure = GetProcAddress(module, "zrTestAnswer");
    HMODULE found = nullptr;
    ASSERT_TRUE(GetModuleHandleExW(
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
        reinterpret_cast<LPCWSTR>(procedure), &found));
    EXPECT_EQ(found, module);
    FreeLibrary(module);
    EXPECT_EQ(value("ZR_TEST_UNMAPPED"), "x");
}
