#include <gtest/gtest.h>

#include <QApplication>
#include <QLoggingCategory>

#include "tests/support/LastingApplication.h"
#include "tests/support/ModuleFont.h"

// Takes --scale=PERCENT, which the platform reads once when it starts.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // The tests are listed where no platform is set up, maybe without any display.
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    const QByteArray scaleOption = "--scale=";
    for (int i = 1; i < argc; ++i) {
        if (QByteArray(argv[i]).startsWith(scaleOption)) {
            const int percent = QByteArray(argv[i]).mid(scaleOption.size()).toInt();
            qputenv("QT_SCALE_FACTOR", QByteArray::number(percent / 100.0));
        }
    }
    makeLastingApplication<QApplication>(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    useModuleFont();
    return RUN_ALL_TESTS();
}
