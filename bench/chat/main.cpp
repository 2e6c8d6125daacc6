#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include "tests/support/FakeArxHost.h"

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    // The manager prints on the host's command line.
    const FakeArxHost host;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 1;
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
