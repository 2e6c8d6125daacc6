#include "tests/view/support/WidgetTestMain.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    return runWidgetTests(argc, argv);
}
