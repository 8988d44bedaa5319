// Runs every benchmark, then prints a summary in which each processing figure
// is set against the latency bound measured in the same run, so the ratios
// hold even when the machine is busy. With repetitions the medians are used:
//   build/release/bench/mivora_bench --benchmark_repetitions=9
//       --benchmark_report_aggregates_only=true   (one command line)
#include <benchmark/benchmark.h>

#include <cstdio>
#include <unistd.h>
#include <map>
#include <set>
#include <string>

#include "bench_registry.hpp"

namespace mivora_bench {

namespace {

// Console output as usual, plus one figure per benchmark for the summary:
// the median when there are repetitions, else the single run.
class SummaryReporter : public benchmark::ConsoleReporter {
public:
    // Colours only on a terminal, as the library's own reporter does.
    SummaryReporter() : ConsoleReporter(isatty(fileno(stdout)) ? OO_Defaults : OO_Tabular) {}

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& r : runs) {
            if (r.error_occurred) continue;
            const bool median = r.run_type == Run::RT_Aggregate && r.aggregate_name == "median";
            if (r.run_type == Run::RT_Aggregate && !median) continue;
            const std::string name = r.run_name.str();
            if (!median && medians_.count(name)) continue;
            if (median) medians_.insert(name);
            figures_[name] = perItem(r);
        }
        ConsoleReporter::ReportRuns(runs);
    }

    // ns per sample, per call or per operation; negative when not measured.
    double get(const std::string& name) const {
        const auto it = figures_.find(name);
        return it == figures_.end() ? -1.0 : it->second;
    }

    const std::map<std::string, double>& all() const { return figures_; }

private:
    static double perItem(const Run& r) {
        for (const char* counter : {"ns/sample", "ns/call"}) {
            const auto it = r.counters.find(counter);
            if (it != r.counters.end()) return it->second.value * 1e9;  // counters hold seconds
        }
        return r.GetAdjustedRealTime();  // ns per iteration: one operation
    }

    std::map<std::string, double> figures_;
    std::set<std::string> medians_;
};

std::string blockName(const char* kind, int order, int block) {
    return std::string(kind) + "/order:" + std::to_string(order) + "/block:" + std::to_string(block);
}

// A bound: the faster of its two measurements (at the start and the end).
double boundOf(const SummaryReporter& rep, const char* fmas) {
    const double first = rep.get(std::string(kBound) + fmas);
    const double again = rep.get(std::string(kBoundAgain) + fmas);
    if (first <= 0) return again;
    return again > 0 && again < first ? again : first;
}

// The bound that applies to an order: one FMA latency per sample when only the
// first-order section runs, two when a second-order section does.
double boundFor(const SummaryReporter& rep, int order) {
    if (order == 0) return -1.0;
    return boundOf(rep, order == 1 ? "/fma:1" : "/fma:2");
}

void printRatio(double value, double reference) {
    if (value > 0 && reference > 0) std::printf("  %5.2fx", value / reference);
    else std::printf("  %6s", "-");
}

std::string channelName(const char* kind, int channels, int order, int block) {
    return std::string(kind) + "/channels:" + std::to_string(channels) + "/order:" + std::to_string(order) +
           "/block:" + std::to_string(block);
}

// Per channel-sample, as a ratio to the single-channel bound of the order.
void printChannels(const SummaryReporter& rep) {
    const int blocks[] = {64, 256, 4096};
    const struct {
        const char* kind;
        const char* title;
    } kinds[] = {{kChannelsPlanar, "IirChannels, planar"},
                 {kChannelsInterleaved, "IirChannels, interleaved"},
                 {kChannelsSeparate, "one IirProcess per channel"}};
    for (const auto& k : kinds) {
        if (rep.get(channelName(k.kind, 2, 2, 256)) < 0) continue;
        std::printf("\n%s, out of place: ns per channel-sample and x the single-channel bound\n", k.title);
        std::printf("chan order");
        for (int b : blocks) std::printf("   block %4d     ", b);
        std::printf("\n");
        for (int channels : {1, 2, 4, 8, 16})
            for (int order = 1; order <= 5; ++order) {
                std::printf("%4d %5d", channels, order);
                for (int b : blocks) {
                    const double v = rep.get(channelName(k.kind, channels, order, b));
                    std::printf("  %7.3f", v);
                    printRatio(v, boundFor(rep, order));
                }
                std::printf("\n");
            }
    }
}

void printSummary(const SummaryReporter& rep) {
    const int blocks[] = {64, 256, 4096};
    const double b1 = boundOf(rep, "/fma:1");
    const double b2 = boundOf(rep, "/fma:2");
    std::printf("\n== Summary (ns; ratios to the bound measured in this run) ==\n");
    std::printf("bound: one FMA latency %.3f ns/sample, two %.3f ns/sample"
                " (at the start %.3f and %.3f, at the end %.3f and %.3f)\n",
                b1, b2, rep.get(std::string(kBound) + "/fma:1"), rep.get(std::string(kBound) + "/fma:2"),
                rep.get(std::string(kBoundAgain) + "/fma:1"), rep.get(std::string(kBoundAgain) + "/fma:2"));

    std::printf("\ndoProcess, in place: ns/sample and x bound; speed-up over the straightforward loop\n");
    std::printf("order");
    for (int b : blocks) std::printf("   block %4d          ", b);
    std::printf("\n");
    for (int order = 0; order <= 5; ++order) {
        std::printf("%5d", order);
        for (int b : blocks) {
            const double v = rep.get(blockName(kProcess, order, b));
            const double plain = rep.get(blockName(kStraightforward, order, b));
            std::printf("  %7.3f", v);
            printRatio(v, boundFor(rep, order));
            if (plain > 0 && v > 0) std::printf(" %5.1fx", plain / v);
            else std::printf(" %6s", "-");
        }
        std::printf("\n");
    }

    std::printf("\nstraightforward loop: ns/sample and x bound\n");
    for (int order = 1; order <= 5; ++order) {
        std::printf("%5d", order);
        for (int b : blocks) {
            const double v = rep.get(blockName(kStraightforward, order, b));
            std::printf("  %7.3f", v);
            printRatio(v, boundFor(rep, order));
        }
        std::printf("\n");
    }

    const double floor = rep.get(kCallFloor);
    std::printf("\ncal(double): ns/call, x two-FMA bound, x the order's bound; an empty out-of-line call: %.3f ns\n",
                floor);
    for (int order = 0; order <= 5; ++order) {
        const double v = rep.get(std::string(kCal) + "/order:" + std::to_string(order));
        std::printf("%5d  %7.3f", order, v);
        printRatio(v, b2);
        printRatio(v, boundFor(rep, order));
        std::printf("\n");
    }

    std::printf("\nstate decayed into subnormals (block 256): ns/sample, x normal signal, x bound;\n"
                "straightforward loop from the same state: ns/sample, x its normal signal\n");
    for (int order = 1; order <= 5; ++order) {
        const double v = rep.get(blockName(kDecayed, order, 256));
        const double plain = rep.get(blockName(kDecayedStraightforward, order, 256));
        std::printf("%5d  %7.3f", order, v);
        printRatio(v, rep.get(blockName(kProcess, order, 256)));
        printRatio(v, boundFor(rep, order));
        std::printf("   %7.3f", plain);
        printRatio(plain, rep.get(blockName(kStraightforward, order, 256)));
        std::printf("\n");
    }

    printChannels(rep);

    std::printf("\ndesign operations and queries: ns/call\n");
    const std::string prefix = kDesign;
    for (const auto& [name, v] : rep.all())
        if (name.compare(0, prefix.size(), prefix) == 0)
            std::printf("  %-28s %8.1f%s\n", name.c_str() + prefix.size(), v, v < 1000.0 ? "" : "  (over 1 us)");
}

}  // namespace

}  // namespace mivora_bench

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    mivora_bench::registerProcessingBenchmarks();
    mivora_bench::registerDesignBenchmarks();
    mivora_bench::registerChannelBenchmarks();
    mivora_bench::SummaryReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    mivora_bench::printSummary(reporter);
    benchmark::Shutdown();
    return 0;
}
