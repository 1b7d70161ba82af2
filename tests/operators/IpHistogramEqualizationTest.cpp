// Equalisation: every sample becomes its share of the range.
#include "operators/IpHistogramEqualization.h"

#include <vector>

#include <gtest/gtest.h>

#include "support/SampleReference.h"

using namespace TestImages;
using Row = std::vector<double>;

TEST(IpHistogramEqualization, SamplesBecomeTheirShareOfTheRange)
{
    ClIpHistogramEqualization equalise; // reused: the counts restart
    for (uint32_t nSeed : {151u, 152u})
    {
        const ClImage source = RandomImage(ClImage::eUInt8, 13, 11, 1, nSeed);
        uint32_t nBelow[256] = {};
        for (int32_t i = 0; i < 13 * 11; ++i)
            for (int32_t v = At<uint8_t>(source, i % 13, i / 13); v < 256; ++v)
                ++nBelow[v];
        ClImage image;
        image.Assign(source);
        ASSERT_EQ(equalise.Run(&image), 0);
        EXPECT_EQ(CountWrong(source, image,
                             [&](auto s, int32_t, int32_t, auto)
                             { return uint8_t(255.0 * nBelow[uint8_t(s)] / (13 * 11)); }),
                  0);
    }
    // The lower bound is not added back: on [100, 200] the largest gives 100.
    ClImage ranged = OneRow(ClImage::eUInt8, {3, 9}), out;
    ranged.SetBounds(100, 200);
    ASSERT_EQ(equalise.Run(&ranged, &out), 0);
    EXPECT_EQ(RowOf(out), (Row{50, 100}));
}
