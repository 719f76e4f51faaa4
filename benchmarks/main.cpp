// Runs the benchmarks within the toolkit, without a display unless one is asked for.
#include <benchmark/benchmark.h>

#include <cstdlib>

#include "services/toolkit.h"

int main(int argumentCount, char** arguments) {
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    benchmark::Initialize(&argumentCount, arguments);
    if (benchmark::ReportUnrecognizedArguments(argumentCount, arguments)) return 1;
    services::startToolkit(arguments[0]);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    services::stopToolkit();
    return 0;
}
