#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/IpHistogramEqualization.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

TEST(IpHistogramEqualization, SamplesBecomeTheirShareOfTheRange)
{
    ClImage constant, out;
    constant.Create(ClImage::eUInt8, 9, 7);
    constant.Fill<uint8_t>(100);
    ClIpHistogramEqualization equalise;
    ASSERT_EQ(equalise.Run(&constant, &out), 0);
    for (int32_t y = 0; y < 7; ++y)
        for (int32_t x = 0; x < 9; ++x)
            EXPECT_EQ(At<uint8_t>(out, x, y), 255);

    // Random odd-sized images against the counts taken here; the same object
    // is reused, and in and out may be one image.
    for (uint32_t nSeed : {151u, 152u, 153u})
    {
        const ClImage source = RandomImage(ClImage::eUInt8, 13, 11, 1, nSeed);
        uint32_t nCounts[256] = {};
        for (int32_t y = 0; y < 11; ++y)
            for (int32_t x = 0; x < 13; ++x)
                ++nCounts[At<uint8_t>(source, x, y)];
        ClImage image;
        image.Assign(source);
        ASSERT_EQ(equalise.Run(&image), 0);
        for (int32_t y = 0; y < 11; ++y)
            for (int32_t x = 0; x < 13; ++x)
            {
                uint32_t nBelow = 0;
                for (int32_t i = 0; i <= At<uint8_t>(source, x, y); ++i)
                    nBelow += nCounts[i];
                EXPECT_EQ(At<uint8_t>(image, x, y),
                          static_cast<uint8_t>(255.0 * nBelow / (13 * 11)));
            }
    }

    // The lower bound is not added back: on [100, 200] the largest sample
    // gives 100, not 200.
    ClImage ranged;
    ranged.Create(ClImage::eUInt8, 2, 1);
    ranged.Row<uint8_t>(0)[0] = 3;
    ranged.Row<uint8_t>(0)[1] = 9;
    ranged.SetBounds(100, 200);
    ASSERT_EQ(equalise.Run(&ranged, &out), 0);
    EXPECT_EQ(At<uint8_t>(out, 0, 0), 50);
    EXPECT_EQ(At<uint8_t>(out, 1, 0), 100);

    // Only bytes are accepted.
    ClImage shorts = RandomImage(ClImage::eUInt16, 3, 3, 1, 154);
    ExpectThrows([&] { equalise.Run(&shorts, &out); }, ZRC_ERROR_FORMAT_NOTSUPPORTED);
}
