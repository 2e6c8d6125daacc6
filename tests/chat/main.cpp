#include <gtest/gtest.h>

#include <QCoreApplication>

#include "tests/chat/LogFile.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QCoreApplication application(argc, argv);
    LogFile::install();
    return RUN_ALL_TESTS();
}
