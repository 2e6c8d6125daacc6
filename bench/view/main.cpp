#include <benchmark/benchmark.h>

#include <QApplication>
#include <QLoggingCategory>

#include "tests/support/FakeArxHost.h"
#include "tests/support/ModuleFont.h"

// Runs the benchmarks of widgets.
int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    useModuleFont();
    // The chat manager prints on the host's command line.
    const FakeArxHost host;
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
