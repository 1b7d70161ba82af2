#include <gtest/gtest.h>

#include "operators/IpHistogramEqualization.h"
#include "support/SampleReference.h"

using namespace TestImages;

TEST(IpHistogramEqualization, SamplesBecomeTheirShareOfTheRange)
{
    // Random odd-sized images against the counts taken here; the same object
    // is reused, and in and out may be one image.
    ClIpHistogramEqualization equalise;
    ClImage out;
    for (uint32_t nSeed : {151u, 152u})
    {
        const ClImage source = RandomImage(ClImage::eUInt8, 13, 11, 1, nSeed);
        uint32_t nBelow[256] = {};
        for (int32_t y = 0; y < 11; ++y)
            for (int32_t x = 0; x < 13; ++x)
                for (int32_t i = At<uint8_t>(source, x, y); i < 256; ++i)
                    ++nBelow[i];
        ClImage image;
        image.Assign(source);
        ASSERT_EQ(equalise.Run(&image), 0);
        EXPECT_EQ(CountWrong(source, image,
                             [&](auto s, int32_t, int32_t, auto) {
                                 return static_cast<uint8_t>(
                                     255.0 * nBelow[static_cast<uint8_t>(s)] / (13 * 11));
                             }),
                  0);
    }

    // The lower bound is not added back: on [100, 200] the largest sample
    // gives 100, not 200.
    ClImage ranged = OneRow(ClImage::eUInt8, {3, 9});
    ranged.SetBounds(100, 200);
    ASSERT_EQ(equalise.Run(&ranged, &out), 0);
    EXPECT_EQ(RowOf(out), (std::vector<double>{50, 100}));
}
