#include <gtest/gtest.h>

#include "tests/support/TestProgram.h"

// The code under test or the fixtures create the QApplication, as in the real host.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    CString commandLine(_T("-first  \"second\""));
    AfxWinInit(GetModuleHandleW(nullptr), nullptr, commandLine.GetBuffer(), SW_SHOW);
    return RUN_ALL_TESTS();
}
