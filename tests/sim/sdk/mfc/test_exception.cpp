#include "mfc_text.h"

namespace {

CString messageOf(const CException& e) {
    TCHAR buffer[256];
    return e.GetErrorMessage(buffer, 256) ? CString(buffer) : CString(_T("(none)"));
}

}  // namespace

TEST(CException, IsCaughtAsItsBaseClasses) {
    bool caught = false;
    try {
        AfxThrowFileException(CFileException::diskFull, 112, _T("a.txt"));
    } catch (CException* e) {
        caught = true;
        EXPECT_TRUE(e->IsKindOf(RUNTIME_CLASS(CFileException)));
        EXPECT_EQ(static_cast<CFileException*>(e)->m_cause, CFileException::diskFull);
        EXPECT_EQ(static_cast<CFileException*>(e)->m_lOsError, 112);
        e->Delete();
    }
    EXPECT_TRUE(caught);
    EXPECT_MFC_THROW(AfxThrowMemoryException(), CMemoryException);
    EXPECT_MFC_THROW(AfxThrowNotSupportedException(), CNotSupportedException);
    EXPECT_MFC_THROW(AfxThrowInvalidArgException(), CSimpleException);
    EXPECT_MFC_THROW(AfxThrowResourceException(), CException);
    EXPECT_MFC_THROW(AfxThrowUserException(), CUserException);
    EXPECT_MFC_THROW(AfxThrowArchiveException(CArchiveException::badClass), CArchiveException);
}

TEST(CException, MessageNamesTheFile) {
    EXPECT_EQ(utf8(messageOf(CFileException(CFileException::fileNotFound, 2, _T("图.dwg")))),
              "图.dwg was not found.");
    EXPECT_EQ(utf8(messageOf(CFileException(CFileException::accessDenied))),
              "Access to an unnamed file was denied.");
    EXPECT_EQ(utf8(messageOf(CArchiveException(CArchiveException::badSchema, _T("a")))),
              "a contains an incorrect schema.");
    EXPECT_EQ(utf8(messageOf(CFileException(99, -1, _T("a")))),
              "An unknown error occurred while accessing a.");
    EXPECT_EQ(utf8(messageOf(CInvalidArgException())), "Encountered an improper argument.");
    EXPECT_EQ(utf8(messageOf(CUserException())), "(none)");
}

TEST(CException, MessageIsTruncatedToTheBuffer) {
    TCHAR small[8] = {};
    EXPECT_TRUE(CMemoryException().GetErrorMessage(small, 8));
    EXPECT_EQ(utf8(CString(small)), "Out of ");
    EXPECT_FALSE(CMemoryException().GetErrorMessage(nullptr, 0));
}

TEST(CFileException, SystemErrorsMapToCauses) {
    const auto cause = [](DWORD error) {
        return CFileException::OsErrorToException(static_cast<LONG>(error));
    };
    EXPECT_EQ(cause(NO_ERROR), CFileException::none);
    EXPECT_EQ(cause(ERROR_FILE_NOT_FOUND), CFileException::fileNotFound);
    EXPECT_EQ(cause(ERROR_PATH_NOT_FOUND), CFileException::badPath);
    EXPECT_EQ(cause(ERROR_ACCESS_DENIED), CFileException::accessDenied);
    EXPECT_EQ(cause(ERROR_SHARING_VIOLATION), CFileException::sharingViolation);
    EXPECT_EQ(cause(ERROR_DISK_FULL), CFileException::diskFull);
    EXPECT_EQ(cause(0xFFFF), CFileException::genericException);
    EXPECT_MFC_THROW(CFileException::ThrowOsError(5, _T("x")), CFileException);
    CFileException::ThrowOsError(0);
}
