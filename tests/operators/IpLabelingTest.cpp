// Labels against a flood fill of 4-connected zero regions in row-major order.
#include <functional>
#include <random>
#include <vector>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/IpLabeling.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

TEST(IpLabeling, MatchesAFloodFillOnRandomMasks)
{
    ClImage mask, out, expected, empty;
    auto floodFill = [&]
    {
        const int32_t w = mask.Width(), h = mask.Height();
        expected.Create(ClImage::eInt32, w, h);
        expected.Fill(int32_t(0));
        int32_t nCount = 0;
        std::function<void(int32_t, int32_t)> fill = [&](int32_t x, int32_t y)
        {
            if (x < 0 || y < 0 || x >= w || y >= h || At<uint8_t>(mask, x, y) != 0 ||
                At<int32_t>(expected, x, y) != 0)
                return;
            At<int32_t>(expected, x, y) = nCount;
            fill(x + 1, y), fill(x - 1, y), fill(x, y + 1), fill(x, y - 1);
        };
        for (int32_t i = 0; i < w * h; ++i)
            if (At<uint8_t>(mask, i % w, i / w) == 0 && At<int32_t>(expected, i % w, i / w) == 0)
                ++nCount, fill(i % w, i / w);
        return nCount;
    };
    std::mt19937 rng(12);
    ClIpLabeling labeling; // one object throughout: the count restarts
    // Rows of many widths, and zero runs long and short.
    std::vector<std::pair<int32_t, int32_t>> sizes = {{1, 9}, {9, 1}, {17, 5}, {64, 48}};
    for (int32_t w = 1; w <= 31; ++w)
        sizes.push_back({w, 4});
    for (auto [w, h] : sizes)
        for (double dZeros : {0.2, 0.6, 0.95, 1.0})
        {
            SCOPED_TRACE(testing::Message() << w << "x" << h << " " << dZeros);
            mask.Create(ClImage::eUInt8, w, h);
            std::bernoulli_distribution zero(dZeros);
            for (int32_t i = 0; i < w * h; ++i)
                At<uint8_t>(mask, i % w, i / w) = zero(rng) ? 0 : uint8_t(1 + rng() % 255);
            const int32_t nCount = floodFill();
            ASSERT_EQ(0, labeling.Run(&mask, &out));
            EXPECT_EQ(nCount, labeling.m_nRegionCount);
            EXPECT_TRUE(SameSamples(expected, out));
        }
    EXPECT_EQ(mask.UpperBound(), out.UpperBound()); // the bounds are the input's
    floodFill();
    ASSERT_EQ(0, labeling.Run(&mask, &mask)); // the labels get a buffer of their own
    EXPECT_TRUE(SameSamples(expected, mask));
    EXPECT_THROW(labeling.Run(&empty, &out), ClException); // an output of no area
    ExpectThrows([&] { labeling.Run(nullptr, &out); }, -37, "Inputimage is missing");
}
