// Many channels: IirChannels in both layouts against one IirProcess per
// channel, per channel-sample, for 1-16 channels, orders 1-5 and the block
// sizes of the single-channel figures. Every channel holds the benchmark
// filter of that order (bench_support.hpp).
#include <benchmark/benchmark.h>
#include <mivora/IirChannels.h>

#include <algorithm>
#include <string>
#include <vector>

#include "bench_registry.hpp"
#include "bench_support.hpp"

namespace mivora_bench {

namespace {

using Mivora::IirChannels;

int channelsArg(const benchmark::State& st) { return static_cast<int>(st.range(0)); }
int orderArg(const benchmark::State& st) { return static_cast<int>(st.range(1)); }
unsigned blockArg(const benchmark::State& st) { return static_cast<unsigned>(st.range(2)); }

void perChannelSample(benchmark::State& st, double items) {
    st.counters["ns/sample"] =
        benchmark::Counter(items, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

// Out of place: the same input every turn, the output to a buffer of its
// own. (In place needs fresh input each turn, and with eight channels the
// copy would be about a fifth of the time measured: as many bytes per
// channel-sample as for one channel, against an eighth of the work.) Both
// buffers start on a cache line, as audio buffers usually do: where they
// start otherwise varies from run to run and moves the planar figures by
// up to a fifth.
struct Buffers {
    LineBuffer sourceStore, workStore;
    float *source, *work;
    std::vector<const float*> in;
    std::vector<float*> out;

    Buffers(int channels, unsigned block)
        : sourceStore(static_cast<std::size_t>(channels) * block),
          workStore(static_cast<std::size_t>(channels) * block),
          source(sourceStore.data()),
          work(workStore.data()) {
        const std::size_t n = static_cast<std::size_t>(channels) * block;
        const std::vector<float> samples = noise(n, 5);
        std::copy(samples.begin(), samples.end(), source);
        for (int c = 0; c < channels; ++c) {
            in.push_back(source + static_cast<std::size_t>(c) * block);
            out.push_back(work + static_cast<std::size_t>(c) * block);
        }
    }
};

IirChannels channelsOf(int channels, int order) {
    IirChannels ch(channels);
    const IirProcess f = busyFilter(order);
    ch.forEachChannel([&f](IirProcess& c) { c = f; });
    return ch;
}

void planar(benchmark::State& st) {
    IirChannels ch = channelsOf(channelsArg(st), orderArg(st));
    Buffers b(channelsArg(st), blockArg(st));
    for (auto _ : st) {
        ch.processPlanar(b.in.data(), b.out.data(), blockArg(st));
        benchmark::DoNotOptimize(b.work);
        benchmark::ClobberMemory();
    }
    perChannelSample(st, static_cast<double>(channelsArg(st)) * blockArg(st));
}

void interleaved(benchmark::State& st) {
    IirChannels ch = channelsOf(channelsArg(st), orderArg(st));
    Buffers b(channelsArg(st), blockArg(st));
    for (auto _ : st) {
        ch.processInterleaved(b.source, b.work, blockArg(st));
        benchmark::DoNotOptimize(b.work);
        benchmark::ClobberMemory();
    }
    perChannelSample(st, static_cast<double>(channelsArg(st)) * blockArg(st));
}

// What a user does without the class: one object per channel, one after
// the other.
void separate(benchmark::State& st) {
    std::vector<IirProcess> filters(static_cast<std::size_t>(channelsArg(st)), busyFilter(orderArg(st)));
    Buffers b(channelsArg(st), blockArg(st));
    for (auto _ : st) {
        for (std::size_t c = 0; c < filters.size(); ++c)
            filters[c].doProcess(const_cast<float*>(b.in[c]), b.out[c], blockArg(st));  // (reads only)
        benchmark::DoNotOptimize(b.work);
        benchmark::ClobberMemory();
    }
    perChannelSample(st, static_cast<double>(channelsArg(st)) * blockArg(st));
}

}  // namespace

void registerChannelBenchmarks() {
    const std::vector<int64_t> channels = {1, 2, 4, 8, 16};
    const std::vector<int64_t> orders = {1, 2, 3, 4, 5};
    const std::vector<int64_t> blocks = {64, 256, 4096};
    const std::vector<std::string> args = {"channels", "order", "block"};
    benchmark::RegisterBenchmark(kChannelsPlanar, planar)->ArgsProduct({channels, orders, blocks})->ArgNames(args);
    benchmark::RegisterBenchmark(kChannelsInterleaved, interleaved)
        ->ArgsProduct({channels, orders, blocks})
        ->ArgNames(args);
    benchmark::RegisterBenchmark(kChannelsSeparate, separate)->ArgsProduct({channels, orders, blocks})->ArgNames(args);
}

}  // namespace mivora_bench
