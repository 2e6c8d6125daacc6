#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QLoggingCategory>

#include "tests/support/LastingApplication.h"
#include "tests/support/ModuleFont.h"

/// Runs the tests of a widget test program with the font of the module and without debug output. `argc` and
/// `argv` must be those of main(), already seen by InitGoogleTest().
inline int runWidgetTests(int& argc, char** argv) {
    // Tests may be listed where no display is available, so no QApplication must be created then.
    if (!testing::GTEST_FLAG(list_tests)) {
        makeLastingApplication<QApplication>(argc, argv);
        QLoggingCategory::setFilterRules(QStringLiteral("default.debug=false"));
        useModuleFont();
    }
    return RUN_ALL_TESTS();
}
