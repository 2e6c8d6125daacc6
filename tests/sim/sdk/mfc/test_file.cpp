#ifndef _WIN32
#include <sys/fsuid.h>
#include <unistd.h>
#endif

#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "mfc_text.h"

namespace fs = std::filesystem;

namespace {

/// Creates a temporary folder and removes it after the test.
class CFileTest : public ::testing::Test {
protected:
    void SetUp() override {
        std::random_device random;
        do {
            m_folder = fs::temp_directory_path() / ("zentri-mfc-" + std::to_string(random()));
        } while (!fs::create_directory(m_folder));
    }
    void TearDown() override {
        fs::permissions(m_folder, fs::perms::owner_all);
        fs::remove_all(m_folder);
    }

    fs::path path(const char* name) const { return m_folder / fs::u8path(name); }
    CString named(const char* name) const { return CString(path(name).c_str()); }
    void write(const char* name, const std::string& contents) const { std::ofstream(path(name)) << contents; }
    std::string contents(const char* name) const {
        std::ifstream stream(path(name));
        return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
    }

    fs::path m_folder;
};

const UINT kLogMode = 0x3402;  // modeCreate | modeNoTruncate | modeReadWrite | typeUnicode

}  // namespace

TEST(CFileModes, HaveTheirDocumentedValues) {
    EXPECT_EQ(CFile::modeRead, 0x0000U);
    EXPECT_EQ(CFile::modeWrite, 0x0001U);
    EXPECT_EQ(CFile::modeReadWrite, 0x0002U);
    EXPECT_EQ(CFile::shareExclusive, 0x0010U);
    EXPECT_EQ(CFile::shareDenyWrite, 0x0020U);
    EXPECT_EQ(CFile::shareDenyRead, 0x0030U);
    EXPECT_EQ(CFile::shareDenyNone, 0x0040U);
    EXPECT_EQ(CFile::modeCreate, 0x1000U);
    EXPECT_EQ(CFile::modeNoTruncate, 0x2000U);
    EXPECT_EQ(CFile::typeUnicode | CFile::modeCreate | CFile::modeNoTruncate | CFile::modeReadWrite,
              kLogMode);
}

TEST_F(CFileTest, CreateCreatesOrTruncatesTheFile) {
    {
        CFile file(named("a.txt").GetString(), CFile::modeCreate | CFile::modeWrite);
        file.Write("hello", 5);
    }
    EXPECT_EQ(contents("a.txt"), "hello");
    { CFile file(named("a.txt").GetString(), CFile::modeCreate | CFile::modeWrite); }
    EXPECT_EQ(contents("a.txt"), "");
}

TEST_F(CFileTest, CreateWithoutTruncatingKeepsTheContents) {
    {
        CFile file;
        ASSERT_TRUE(file.Open(named("log.txt").GetString(), kLogMode));
        EXPECT_EQ(file.GetLength(), 0U);
        const BYTE mark[] = {0xFF, 0xFE};
        file.Write(mark, sizeof mark);
        file.Close();
    }
    CFile again;
    ASSERT_TRUE(again.Open(named("log.txt").GetString(), kLogMode));
    EXPECT_EQ(again.GetLength(), 2U);
    EXPECT_EQ(again.GetPosition(), 0U);
    again.Close();
    EXPECT_EQ(contents("log.txt"), "\xFF\xFE");
}

TEST_F(CFileTest, WritingAppendsAfterSeekingToTheEnd) {
    write("log.txt", "one");
    CFile file;
    ASSERT_TRUE(file.Open(named("log.txt").GetString(), CFile::modeWrite));
    EXPECT_EQ(file.SeekToEnd(), 3U);
    file.Write(" two", 4);
    file.Close();
    EXPECT_EQ(contents("log.txt"), "one two");
}

TEST_F(CFileTest, ReadsAndSeeks) {
    write("a.txt", "0123456789");
    CFile file(named("a.txt").GetString(), CFile::modeRead | CFile::shareDenyWrite);
    char buffer[16] = {};
    EXPECT_EQ(file.Read(buffer, 4), 4U);
    EXPECT_EQ(file.GetPosition(), 4U);
    EXPECT_EQ(file.Seek(-2, CFile::current), 2U);
    EXPECT_EQ(file.Read(buffer, 16), 8U);
    EXPECT_EQ(std::string(buffer, 8), "23456789");
    EXPECT_EQ(file.Read(buffer, 16), 0U);
    EXPECT_EQ(file.Seek(-1, CFile::end), 9U);
    file.SeekToBegin();
    EXPECT_EQ(file.GetPosition(), 0U);
    EXPECT_MFC_THROW(file.Seek(-5, CFile::begin), CFileException);
}

TEST_F(CFileTest, LengthCanBeSet) {
    write("a.txt", "0123456789");
    CFile file(named("a.txt").GetString(), CFile::modeReadWrite);
    file.SetLength(4);
    EXPECT_EQ(file.GetLength(), 4U);
    file.SetLength(6);
    file.Close();
    EXPECT_EQ(contents("a.txt"), std::string("0123\0\0", 6));
}

TEST_F(CFileTest, FileNameIsTheLastPartOfTheFilePath) {
    CFile file(named("图.txt").GetString(), CFile::modeCreate | CFile::modeWrite);
    EXPECT_EQ(utf8(file.GetFileName()), "图.txt");
    EXPECT_EQ(utf8(file.GetFilePath().Right(6)), "\\图.txt");
    file.Close();
    EXPECT_EQ(utf8(file.GetFilePath()), "");
    file.Close();  // closing twice is harmless
}

TEST_F(CFileTest, MissingFileIsReported) {
    CFile file;
    CFileException error;
    EXPECT_FALSE(file.Open(named("none.txt").GetString(), CFile::modeWrite, &error));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(error.m_cause, CFileException::fileNotFound);
    EXPECT_EQ(error.m_lOsError, static_cast<LONG>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(utf8(error.m_strFileName), path("none.txt").string());
    EXPECT_EQ(static_cast<HANDLE>(file), INVALID_HANDLE_VALUE);
    EXPECT_FALSE(fs::exists(path("none.txt")));
    EXPECT_MFC_THROW(CFile(named("none.txt").GetString(), CFile::modeRead), CFileException);
}

TEST_F(CFileTest, MissingFolderIsReported) {
    CFile file;
    CFileException error;
    EXPECT_FALSE(file.Open(named("none/a.txt").GetString(), kLogMode, &error));
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
    EXPECT_EQ(error.m_cause, CFileException::badPath);
}

TEST_F(CFileTest, OpeningAFolderIsDenied) {
    CFile file;
    CFileException error;
    EXPECT_FALSE(file.Open(CString(m_folder.c_str()).GetString(), CFile::modeWrite, &error));
    EXPECT_EQ(error.m_cause, CFileException::accessDenied);
}

TEST_F(CFileTest, AFileOpenForReadingCannotBeWritten) {
    write("a.txt", "text");
    CFile file(named("a.txt").GetString(), CFile::modeRead);
    EXPECT_MFC_THROW(file.Write("x", 1), CFileException);
    file.Close();
    EXPECT_EQ(contents("a.txt"), "text");
}

TEST_F(CFileTest, AClosedFileThrows) {
    CFile file;
    char unit = 0;
    EXPECT_MFC_THROW(file.Read(&unit, 1), CFileException);
    EXPECT_MFC_THROW(file.Seek(0, CFile::begin), CFileException);
    EXPECT_MFC_THROW(file.Open(nullptr, CFile::modeRead), CInvalidArgException);
}

TEST_F(CFileTest, OpeningAnExclusiveFileAgainIsASharingViolation) {
    write("a.txt", "text");
    const CFile first(named("a.txt").GetString(), CFile::modeReadWrite | CFile::shareExclusive);
    CFile second;
    CFileException error;
    EXPECT_FALSE(second.Open(named("a.txt").GetString(), CFile::modeRead | CFile::shareDenyNone, &error));
    EXPECT_EQ(error.m_cause, CFileException::sharingViolation);
}

TEST_F(CFileTest, RemoveDeletesOrThrows) {
    write("a.txt", "text");
    CFile::Remove(named("a.txt").GetString());
    EXPECT_FALSE(fs::exists(path("a.txt")));
    EXPECT_MFC_THROW(CFile::Remove(named("a.txt").GetString()), CFileException);
}

TEST_F(CFileTest, StoresAndLoadsAnArchive) {
    {
        CFile file(named("a.bin").GetString(), CFile::modeCreate | CFile::modeWrite);
        CArchive archive(&file, CArchive::store);
        archive << DWORD(7) << CString(_T("朔"));
        archive.Close();
    }
    EXPECT_EQ(contents("a.bin"), std::string("\x07\0\0\0\xFF\xFE\xFF\x01\x14\x67", 10));
    CFile file(named("a.bin").GetString(), CFile::modeRead);
    CArchive archive(&file, CArchive::load);
    DWORD number = 0;
    CString text;
    archive >> number >> text;
    EXPECT_EQ(number, 7U);
    EXPECT_EQ(utf8(text), "朔");
}

TEST(CMemFile, GrowsReadsAndSeeks) {
    CMemFile file(4);
    file.Write("0123456789", 10);
    EXPECT_EQ(file.GetLength(), 10U);
    EXPECT_EQ(file.GetPosition(), 10U);
    file.Seek(12, CFile::begin);
    file.Write("x", 1);
    file.SeekToBegin();
    char buffer[32] = {};
    EXPECT_EQ(file.Read(buffer, 32), 13U);
    EXPECT_EQ(std::string(buffer, 13), std::string("0123456789\0\0x", 13));
    file.SetLength(3);
    EXPECT_EQ(file.GetPosition(), 3U);
    EXPECT_MFC_THROW(file.Seek(-4, CFile::end), CFileException);
}

TEST(CMemFile, ReadsTheCallersBufferAndCannotGrow) {
    BYTE buffer[4] = {1, 2, 3, 4};
    CMemFile file(buffer, 4);
    EXPECT_EQ(file.GetLength(), 4U);
    BYTE last = 0;
    file.Seek(3, CFile::begin);
    EXPECT_EQ(file.Read(&last, 1), 1U);
    EXPECT_EQ(last, 4);
    EXPECT_MFC_THROW(file.Write("x", 1), CMemoryException);
}

TEST(CMemFile, DetachTransfersTheBuffer) {
    CMemFile file;
    file.Write("abc", 3);
    BYTE* const bytes = file.Detach();
    EXPECT_EQ(std::memcmp(bytes, "abc", 3), 0);
    EXPECT_EQ(file.GetLength(), 0U);
    std::free(bytes);
}

#ifndef _WIN32

// A folder has no write permission of this kind on Windows.

namespace {

/// If the test runs as root, accesses files as "nobody", whose permissions are checked.
class OrdinaryUser {
public:
    OrdinaryUser() : m_previous(setfsuid(geteuid() == 0 ? kNobody : geteuid())) {}
    ~OrdinaryUser() { setfsuid(static_cast<uid_t>(m_previous)); }
    OrdinaryUser(const OrdinaryUser&) = delete;
    OrdinaryUser& operator=(const OrdinaryUser&) = delete;

private:
    static const uid_t kNobody = 65534;
    int m_previous;
};

}  // namespace

TEST_F(CFileTest, ReadOnlyFolderDeniesAccess) {
    write("a.txt", "text");
    const fs::perms everyoneReads = fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read;
    const fs::perms everyoneEnters = fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;
    fs::permissions(path("a.txt"), everyoneReads);
    fs::permissions(m_folder, everyoneReads | everyoneEnters);
    const OrdinaryUser user;
    CFile file;
    CFileException error;
    EXPECT_FALSE(file.Open(named("b.txt").GetString(), kLogMode, &error));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_EQ(error.m_cause, CFileException::accessDenied);
    EXPECT_FALSE(file.Open(named("a.txt").GetString(), CFile::modeWrite, &error));
    EXPECT_EQ(error.m_cause, CFileException::accessDenied);
    EXPECT_TRUE(file.Open(named("a.txt").GetString(), CFile::modeRead, &error));
}

#endif
