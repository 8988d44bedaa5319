// Separate objects are independent: threads drive objects side by side in one
// array through every public operation at once. The library has no static or
// global data, so this can only fail where a race is seen: it runs in the
// ThreadSanitizer build (scripts/ci_checks.sh tsan) and is skipped elsewhere.
#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "operation_table.hpp"
#include "typical_driver.hpp"

#if defined(__SANITIZE_THREAD__)
#define MIVORA_UNDER_TSAN 1
#elif defined(__has_feature)
#if __has_feature(thread_sanitizer)
#define MIVORA_UNDER_TSAN 1
#endif
#endif

namespace {

using namespace mivora_test;

TEST(Threads, IndependentObjectsRunConcurrentlyUnderThreadSanitizer) {
#ifndef MIVORA_UNDER_TSAN
    GTEST_SKIP() << "meaningful only under ThreadSanitizer";
#endif
    IirProcess objects[4];
    std::vector<std::thread> threads;
    for (IirProcess& f : objects)
        threads.emplace_back([&f] {
            TypicalDriver driver;
            for (int round = 0; round < 50; ++round)
                for (const Operation<TypicalDriver>& op : kOperations<TypicalDriver>) op.run(f, driver);
        });
    for (std::thread& t : threads) t.join();
}

}  // namespace
