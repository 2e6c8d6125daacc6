#include <gtest/gtest.h>

#include <QApplication>
#include <QLoggingCategory>

#include "tests/support/LastingApplication.h"
#include "tests/support/ModuleFont.h"

// The font of the resource set, as the module loads it. Traces are off unless a test wants them.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // The tests are listed where no platform is set up, maybe without any display.
    if (testing::GTEST_FLAG(list_tests)) {
        return RUN_ALL_TESTS();
    }
    makeLastingApplication<QApplication>(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
    useModuleFont();
    return RUN_ALL_TESTS();
}
