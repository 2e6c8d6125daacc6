#include <windows.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

namespace fs = std::filesystem;

namespace {

class Files : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "zr_files_XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        m_folder = pattern;
    }
    void TearDown() override {
        fs::permissions(m_folder, fs::perms::owner_all);
        fs::remove_all(m_folder);
    }

    std::u16string path(const std::u16string& name) const {
        std::u16string folder = u"Z:";
        for (const char unit : m_folder.string()) {
            folder.push_back(unit == '/' ? u'\\' : static_cast<TCHAR>(unit));
        }
        return folder + u'\\' + name;
    }
    void write(const std::string& name, const std::string& text) const {
        std::ofstream(m_folder / name) << text;
    }
    std::string read(const std::string& name) const {
        std::ifstream file(m_folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
    }
    HANDLE open(const std::u16string& name, DWORD creation, DWORD access = GENERIC_READ | GENERIC_WRITE,
                DWORD share = FILE_SHARE_READ) const {
        SetLastError(0xABC);
        return CreateFileW(path(name).c_str(), access, share, nullptr, creation, FILE_ATTRIBUTE_NORMAL,
                           nullptr);
    }

    fs::path m_folder;
};

LARGE_INTEGER distance(LONGLONG value) {
    LARGE_INTEGER result;
    result.QuadPart = value;
    return result;
}

}  // namespace

TEST_F(Files, WrittenBytesAreReadBack) {
    const HANDLE file = open(u"a.txt", CREATE_NEW);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
    DWORD count = 0;
    EXPECT_TRUE(WriteFile(file, "hello", 5, &count, nullptr));
    EXPECT_EQ(count, 5U);
    LARGE_INTEGER position;
    EXPECT_TRUE(SetFilePointerEx(file, distance(-4), &position, FILE_END));
    EXPECT_EQ(position.QuadPart, 1);
    char buffer[16] = {};
    EXPECT_TRUE(ReadFile(file, buffer, sizeof buffer, &count, nullptr));
    EXPECT_EQ(count, 4U);
    EXPECT_STREQ(buffer, "ello");
    // Reading at the end of the file succeeds with 0 bytes.
    EXPECT_TRUE(ReadFile(file, buffer, sizeof buffer, &count, nullptr));
    EXPECT_EQ(count, 0U);
    LARGE_INTEGER size;
    EXPECT_TRUE(GetFileSizeEx(file, &size));
    EXPECT_EQ(size.QuadPart, 5);
    SetFilePointerEx(file, distance(2), nullptr, FILE_BEGIN);
    EXPECT_TRUE(SetEndOfFile(file));
    EXPECT_TRUE(FlushFileBuffers(file));
    EXPECT_TRUE(CloseHandle(file));
    EXPECT_EQ(read("a.txt"), "he");
}

TEST_F(Files, MissingFileAndMissingFolderGiveDifferentErrors) {
    EXPECT_EQ(open(u"none.txt", OPEN_EXISTING), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(open(u"none\\none.txt", OPEN_EXISTING), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(open(u"none\\none.txt", CREATE_ALWAYS), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(CreateFileW(u"C:\\a.txt", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(CreateFileW(u"", GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(open(u"a?.txt", CREATE_ALWAYS), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_NAME);
}

TEST_F(Files, CreationDispositionsHandleAnExistingFile) {
    write("a.txt", "old");
    EXPECT_EQ(open(u"a.txt", CREATE_NEW), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_FILE_EXISTS);
    HANDLE file = open(u"a.txt", OPEN_ALWAYS);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    CloseHandle(file);
    EXPECT_EQ(read("a.txt"), "old");
    file = open(u"a.txt", CREATE_ALWAYS);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    CloseHandle(file);
    EXPECT_EQ(read("a.txt"), "");
    file = open(u"new.txt", OPEN_ALWAYS);
    EXPECT_EQ(GetLastError(), ERROR_SUCCESS);
    CloseHandle(file);
    EXPECT_EQ(open(u"a.txt", TRUNCATE_EXISTING, GENERIC_READ), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
}

TEST_F(Files, OpeningAFolderOrWritingAReadOnlyFileIsDenied) {
    fs::create_directory(m_folder / "sub");
    EXPECT_EQ(open(u"sub", OPEN_EXISTING), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    write("locked.txt", "x");
    fs::permissions(m_folder / "locked.txt", fs::perms::owner_read);
    EXPECT_EQ(open(u"locked.txt", OPEN_EXISTING), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    const HANDLE file = open(u"locked.txt", OPEN_EXISTING, GENERIC_READ);
    EXPECT_NE(file, INVALID_HANDLE_VALUE);
    CloseHandle(file);
    EXPECT_EQ(GetFileAttributesW(path(u"locked.txt").c_str()), FILE_ATTRIBUTE_READONLY);
    EXPECT_EQ(GetFileAttributesW(path(u"sub").c_str()), FILE_ATTRIBUTE_DIRECTORY);
}

TEST_F(Files, ShareModesOfBothHandlesAreChecked) {
    const HANDLE exclusive = open(u"a.txt", CREATE_ALWAYS, GENERIC_WRITE, 0);
    ASSERT_NE(exclusive, INVALID_HANDLE_VALUE);
    EXPECT_EQ(open(u"a.txt", OPEN_EXISTING, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE),
              INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
    CloseHandle(exclusive);
    const HANDLE reader = open(u"a.txt", OPEN_EXISTING, GENERIC_READ, FILE_SHARE_READ);
    EXPECT_EQ(open(u"a.txt", OPEN_EXISTING, GENERIC_WRITE, FILE_SHARE_READ), INVALID_HANDLE_VALUE);
    EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
    const HANDLE second = open(u"a.txt", OPEN_EXISTING, GENERIC_READ, FILE_SHARE_READ);
    EXPECT_NE(second, INVALID_HANDLE_VALUE);
    EXPECT_FALSE(DeleteFileW(path(u"a.txt").c_str()));
    EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
    CloseHandle(reader);
    CloseHandle(second);
    EXPECT_TRUE(DeleteFileW(path(u"a.txt").c_str()));
    EXPECT_FALSE(DeleteFileW(path(u"a.txt").c_str()));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

TEST_F(Files, SharingViolationDoesNotTruncateTheFile) {
    write("a.txt", "kept");
    const HANDLE reader = open(u"a.txt", OPEN_EXISTING, GENERIC_READ, FILE_SHARE_READ);
    EXPECT_EQ(open(u"a.txt", CREATE_ALWAYS, GENERIC_WRITE, FILE_SHARE_READ), INVALID_HANDLE_VALUE);
    EXPECT_EQ(read("a.txt"), "kept");
    CloseHandle(reader);
}

TEST_F(Files, AccessRightsOfTheHandleAreChecked) {
    write("a.txt", "x");
    const HANDLE reader = open(u"a.txt", OPEN_EXISTING, GENERIC_READ);
    DWORD count = 9;
    EXPECT_FALSE(WriteFile(reader, "y", 1, &count, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_EQ(count, 0U);
    CloseHandle(reader);
    const HANDLE writer = open(u"a.txt", OPEN_EXISTING, GENERIC_WRITE);
    char byte = 0;
    EXPECT_FALSE(ReadFile(writer, &byte, 1, &count, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(SetFilePointerEx(writer, distance(-1), nullptr, FILE_BEGIN));
    EXPECT_EQ(GetLastError(), ERROR_NEGATIVE_SEEK);
    CloseHandle(writer);
}

TEST_F(Files, ClosedHandleIsInvalid) {
    const HANDLE file = open(u"a.txt", CREATE_ALWAYS);
    CloseHandle(file);
    SetLastError(0);
    EXPECT_FALSE(CloseHandle(file));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    DWORD count = 0;
    EXPECT_FALSE(WriteFile(file, "x", 1, &count, nullptr));
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_FALSE(CloseHandle(INVALID_HANDLE_VALUE));
}

TEST_F(Files, PathsAreCaseInsensitiveInBothSyntaxes) {
    fs::create_directory(m_folder / "Sub");
    write("Sub/File.TXT", "found");
    const HANDLE file = open(u"SUB\\file.txt", OPEN_EXISTING, GENERIC_READ);
    ASSERT_NE(file, INVALID_HANDLE_VALUE);
    CloseHandle(file);
    const std::string plain = (m_folder / "Sub/File.TXT").string();
    EXPECT_NE(GetFileAttributesW(std::u16string(plain.begin(), plain.end()).c_str()),
              INVALID_FILE_ATTRIBUTES);
    // A new file is created in the existing folder, whatever the case of its name.
    const HANDLE made = open(u"sub\\new.txt", CREATE_NEW);
    ASSERT_NE(made, INVALID_HANDLE_VALUE);
    CloseHandle(made);
    EXPECT_TRUE(fs::exists(m_folder / "Sub/new.txt"));
}

TEST_F(Files, FullPathsAreResolved) {
    TCHAR buffer[MAX_PATH];
    LPWSTR part = nullptr;
    EXPECT_GT(GetFullPathNameW(u"Z:\\a\\.\\b\\..\\c.txt", MAX_PATH, buffer, &part), 0U);
    EXPECT_EQ(std::u16string(buffer), u"Z:\\a\\c.txt");
    EXPECT_EQ(std::u16string(part), u"c.txt");
    EXPECT_GT(GetFullPathNameW(u"/tmp/x", MAX_PATH, buffer, nullptr), 0U);
    EXPECT_EQ(std::u16string(buffer), u"Z:\\tmp\\x");
    // Too small a buffer: the size needed is returned.
    EXPECT_EQ(GetFullPathNameW(u"Z:\\a", 2, buffer, nullptr), 5U);
}

TEST_F(Files, CreateDirectoryCreatesAFolder) {
    EXPECT_TRUE(CreateDirectoryW(path(u"made").c_str(), nullptr));
    EXPECT_FALSE(CreateDirectoryW(path(u"made").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    EXPECT_FALSE(CreateDirectoryW(path(u"no\\made").c_str(), nullptr));
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
}

TEST(Errors, EachThreadHasItsOwnLastError) {
    SetLastError(11);
    std::thread([] {
        EXPECT_EQ(GetLastError(), 0U);
        SetLastError(22);
    }).join();
    EXPECT_EQ(GetLastError(), 11U);
}

TEST(Environment, VariableIsCopiedOrTheSizeNeededIsReturned) {
    setenv("ZR_TEST_VARIABLE", "变量", 1);
    TCHAR buffer[8];
    EXPECT_EQ(GetEnvironmentVariableW(u"ZR_TEST_VARIABLE", buffer, 8), 2U);
    EXPECT_EQ(std::u16string(buffer), u"变量");
    EXPECT_EQ(GetEnvironmentVariableW(u"ZR_TEST_VARIABLE", buffer, 2), 3U);
    EXPECT_EQ(GetEnvironmentVariableW(u"ZR_TEST_NO_VARIABLE", buffer, 8), 0U);
    EXPECT_EQ(GetLastError(), ERROR_ENVVAR_NOT_FOUND);
}

TEST(Environment, CommandLineContainsTheProgramName) {
    const std::u16string line = GetCommandLineW();
    EXPECT_NE(line.find(u"test_win32_files"), std::u16string::npos);
}
