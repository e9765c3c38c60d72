// Runs the benchmarks that --benchmark_filter leaves, and prints a table of ratios.
#include "comparison.h"
#include "subsystems.h"

namespace {

// The comparisons print themselves, as a row of theirs has more than one time.
class TableReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override {
        printTableHead();
        return true;
    }
    void ReportRuns(const std::vector<Run>&) override {}
};

} // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    addSpanComparisons();
    addLineComparisons();
    addAreaComparisons();
    addFormatComparisons();
    addOverlayComparisons();
    addTransitionComparisons();
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
}
