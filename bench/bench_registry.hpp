// Names under which the benchmarks report, shared by the summary.
#ifndef MIVORA_BENCH_REGISTRY_HPP
#define MIVORA_BENCH_REGISTRY_HPP

namespace mivora_bench {

inline constexpr const char* kProcess = "doProcess";              // /order:N/block:B
inline constexpr const char* kStraightforward = "straightforward";  // /order:N/block:B
inline constexpr const char* kCal = "cal";                        // /order:N
inline constexpr const char* kCallFloor = "emptyCall";
inline constexpr const char* kDecayed = "decayed";                // /order:N/block:B
inline constexpr const char* kDecayedStraightforward = "decayedStraightforward";  // /order:N/block:B
inline constexpr const char* kBound = "bound";                    // /fma:1 or /fma:2
inline constexpr const char* kBoundAgain = "boundAgain";          // the same, at the end
inline constexpr const char* kDesign = "design/";                 // + operation
// Per channel-sample, /channels:C/order:N/block:B.
inline constexpr const char* kChannelsPlanar = "IirChannels/planar";
inline constexpr const char* kChannelsInterleaved = "IirChannels/interleaved";
inline constexpr const char* kChannelsSeparate = "separateObjects";  // one IirProcess per channel

void registerProcessingBenchmarks();
void registerDesignBenchmarks();
void registerChannelBenchmarks();

}  // namespace mivora_bench

#endif
