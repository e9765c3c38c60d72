// Runs the benchmarks that --benchmark_filter leaves, and prints a table of ratios.
#include "comparison.h"
#include "subsystems.h"

#include <string_view>

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
    // What the chart of costs by sizes is made of, and nothing else.
    const bool chart = argc > 1 && std::string_view(argv[1]) == "--chart";
    if (chart)
        argv[1] = argv[0];
    argc -= chart ? 1 : 0;
    argv += chart ? 1 : 0;
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    if (chart) {
        addChartComparisons();
    } else {
        addSpanComparisons();
        addLineComparisons();
        addAreaComparisons();
        addFormatComparisons();
        addOverlayComparisons();
        addPictureComparisons();
        addScriptComparisons();
        addTransitionComparisons();
    }
    TableReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();
}
