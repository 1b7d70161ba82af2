// Handles on different threads share nothing mutable. The ThreadSanitizer
// build runs this with 100 captures per handle (SENTIVO_THREAD_CAPTURES).
#include <array>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "sentivo/sentivo.h"
#include "support/ConformanceCapture.h"

namespace
{
using Capture = std::array<SentivoTool::BmpFile, 3>;
using Outcome = std::pair<int32_t, uint64_t>; // the code and the score's bits: NaN equals NaN

// One handle judges captures[i % size] for i below nCount, at level 2 every
// third time, on copies of the blocks: the library rewrites their palettes.
std::vector<Outcome> Judge(const std::vector<Capture>& captures, int nCount)
{
    std::vector<Capture> blocks = captures;
    SentivoHandle h = nullptr;
    EXPECT_EQ(SentivoCreateHandle(&h), 0);
    std::vector<Outcome> outcomes;
    for (int i = 0; i < nCount; ++i)
    {
        Capture& capture = blocks[static_cast<size_t>(i) % blocks.size()];
        for (int32_t k = 0; k < 3; ++k)
            SentivoSetImage(h, k, capture[k].Block(), capture[k].BlockSize());
        SentivoSetPropertyA(h, "nSecurityLevel", i % 3 == 2 ? "2" : "1");
        double dScore = 0.0;
        const int32_t nCode = SentivoEvaluateLiveliness(h, &dScore);
        uint64_t nBits = 0;
        std::memcpy(&nBits, &dScore, sizeof(nBits));
        outcomes.emplace_back(nCode, nBits);
    }
    EXPECT_EQ(SentivoDestroyHandle(&h), 0);
    return outcomes;
}

} // namespace

TEST(Concurrency, EightHandlesOnEightThreadsJudgeAsOneDoesAlone)
{
    ASSERT_EQ(SentivoInitialize(nullptr), 0);
    std::vector<Capture> captures;
    for (const char* szName : {"live_a", "smooth_c", "no_finger", "skewed", "moving_1", "moving_2",
                               "no_falloff", "overexposed", "lower_empty", "smooth_d"})
        captures.push_back(TestSupport::ReadCapture(szName));
    const char* szCount = std::getenv("SENTIVO_THREAD_CAPTURES");
    const int nCount = szCount != nullptr ? std::atoi(szCount) : 12;
    const std::vector<Outcome> alone = Judge(captures, nCount);

    std::vector<std::vector<Outcome>> results(8);
    std::vector<std::thread> threads;
    for (std::vector<Outcome>& result : results)
        threads.emplace_back([&] { result = Judge(captures, nCount); });
    for (std::thread& thread : threads)
        thread.join();
    for (const std::vector<Outcome>& result : results)
        EXPECT_EQ(result, alone);
    EXPECT_EQ(SentivoUninitialize(), 0);
}

TEST(Concurrency, HandlesAndInitialisationsComeAndGoOnManyThreads)
{
    // One initialisation holds the library while others come and go.
    ASSERT_EQ(SentivoInitialize(nullptr), 0);
    std::atomic<int> nFailures{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < 8; ++t)
        threads.emplace_back(
            [&, t]
            {
                for (int i = 0; i < 200; ++i)
                {
                    if (t % 2 == 0) // an own initialisation, released again
                        nFailures += SentivoInitialize(nullptr) != 0 || SentivoUninitialize() != 0;
                    SentivoHandle h = nullptr;
                    nFailures += SentivoCreateHandle(&h) != 0;
                    nFailures += SentivoSetPropertyA(h, "dQueryFAR", "0.01") != 0;
                    nFailures += SentivoDestroyHandle(&h) != 0;
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(nFailures.load(), 0);
    EXPECT_EQ(SentivoUninitialize(), 0);
    SentivoHandle h = nullptr;
    EXPECT_EQ(SentivoCreateHandle(&h), ZRC_ERROR_NOT_INITIALIZED);
}
