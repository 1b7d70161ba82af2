// Cutting rectangles out of images of every type, and its limits.
#include "operators/IpCut.h"

#include <random>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

TEST(IpCut, RectanglesOfEveryTypeMatchAPlainCopy)
{
    std::mt19937 rng(61);
    auto uniform = [&](int32_t nTo) { return std::uniform_int_distribution<int32_t>(0, nTo)(rng); };
    for (ClImage::EDataType eType : AllTypes())
        for (uint32_t nPlanes : {1u, 3u})
            for (int round = 0; round < 5; ++round)
            {
                SCOPED_TRACE(ClImage::TypeText(eType));
                ClImage in = RandomImage(eType, 13, 9, nPlanes, 62 + round), out;
                in.SetBounds(-3.5, 77.0);
                in.SetContent(ClImage::eHSV);
                in.SetOrigin(0xBEEF);
                const int32_t x0 = uniform(12), y0 = uniform(8);
                const int32_t w = 1 + uniform(12 - x0), h = 1 + uniform(8 - y0);
                ASSERT_EQ(ClIpCut().Run(&in, x0, y0, w, h, &out), 0);
                ASSERT_TRUE(out.Width() == w && out.Height() == h && out.Planes() == nPlanes);
                EXPECT_TRUE(out.DataType() == eType && out.LowerBound() == -3.5 &&
                            out.UpperBound() == 77.0 && out.Content() == ClImage::eHSV &&
                            out.Origin() == 0xBEEFu && out.XResolution() == 500);
                const size_t nPixel = in.SampleSize() * nPlanes;
                for (int32_t y = 0; y < h; ++y)
                    ASSERT_EQ(std::memcmp(in.Row<uint8_t>(y0 + y) + x0 * nPixel,
                                          out.Row<uint8_t>(y), w * nPixel),
                              0);
            }
}

TEST(IpCut, LimitsAreCheckedWithTheirMessages)
{
    ClImage in = RandomImage(ClImage::eUInt8, 8, 6, 1, 64), out;
    ClIpCut cut;
    ExpectThrows([&] { cut.Run(&in, -1, -1, 1, 1, &out); }, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                 "ClIpCut::Process. m_nX0<0");
    ExpectThrows([&] { cut.Run(&in, 3, 2, 5, 5, &out); }, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                 "ClIpCut::Process. m_nY0+m_nDestHeight > m_pInImage->Height()");
    // Sums that would overflow 32 bits are still too large.
    ExpectThrows([&] { cut.Run(&in, 3, 2, std::numeric_limits<int32_t>::max(), 1, &out); },
                 ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_EQ(out.Data(), nullptr);
    EXPECT_EQ(cut.Run(&in, 3, 2, 5, 4, &out), 0); // exactly to the right and bottom edges
}
