#include "tests/view/support/WidgetTestMain.h"

// --scale=PERCENT sets the scale factor, which Qt reads once when the application is created.
int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    const QByteArray scaleOption = "--scale=";
    for (int i = 1; i < argc; ++i) {
        if (QByteArray(argv[i]).startsWith(scaleOption)) {
            const int percent = QByteArray(argv[i]).mid(scaleOption.size()).toInt();
            qputenv("QT_SCALE_FACTOR", QByteArray::number(percent / 100.0));
        }
    }
    return runWidgetTests(argc, argv);
}
