// Separate objects are independent: several threads drive objects that sit
// side by side in one array, through every public operation at once, and each
// gets exactly the results of a run alone. Under ThreadSanitizer any shared
// state between objects (a static cache, a global) shows up as a race.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdint>
#include <thread>
#include <vector>

#include "operation_table.hpp"
#include "typical_driver.hpp"

namespace {

using namespace mivora_test;

std::uint64_t runEverything(IirProcess& f) {
    TypicalDriver driver;
    for (int round = 0; round < 200; ++round)
        for (const Operation<TypicalDriver>& op : kOperations<TypicalDriver>) op.run(f, driver);
    return driver.digest();
}

TEST(Threads, IndependentObjectsRunConcurrently) {
    constexpr int kThreads = 4;
    IirProcess alone;
    const std::uint64_t expected = runEverything(alone);

    IirProcess objects[kThreads];
    std::uint64_t digests[kThreads] = {};
    std::atomic<int> waiting{kThreads};
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([&, t] {
            // Start together, so the runs overlap.
            waiting.fetch_sub(1);
            while (waiting.load() > 0) std::this_thread::yield();
            digests[t] = runEverything(objects[t]);
        });
    for (std::thread& t : threads) t.join();

    for (int t = 0; t < kThreads; ++t) EXPECT_EQ(digests[t], expected) << "thread " << t;
}

}  // namespace
