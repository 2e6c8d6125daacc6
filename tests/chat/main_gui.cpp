#include <gtest/gtest.h>

#include <QGuiApplication>

#include "tests/chat/LogFile.h"
#include "tests/support/LastingApplication.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // Tests are listed during the build, where there may be no platform plugin and no display.
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    makeLastingApplication<QGuiApplication>(argc, argv);
    LogFile::install();
    return RUN_ALL_TESTS();
}
