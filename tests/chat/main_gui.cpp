#include <gtest/gtest.h>

#include <QGuiApplication>

#include "tests/chat/LogFile.h"
#include "tests/support/LastingApplication.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // The tests are listed where no platform is set up, maybe without any display.
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    makeLastingApplication<QGuiApplication>(argc, argv);
    LogFile::install();
    return RUN_ALL_TESTS();
}
