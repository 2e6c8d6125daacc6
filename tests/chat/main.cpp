#include <gtest/gtest.h>

#include <QCoreApplication>

#include "tests/chat/LogFile.h"
#include "tests/support/LastingApplication.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    makeLastingApplication<QCoreApplication>(argc, argv);
    LogFile::install();
    return RUN_ALL_TESTS();
}
