#include <gtest/gtest.h>

#include "tests/support/TestProgram.h"

// Qt's application is made by the code under test or by the fixtures, as in the real host.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    CString commandLine(_T("-first  \"second\""));
    AfxWinInit(GetModuleHandleW(nullptr), nullptr, commandLine.GetBuffer(), SW_SHOW);
    return RUN_ALL_TESTS();
}
