#include <gtest/gtest.h>

#include "operators/IpInvert.h"
#include "support/SampleReference.h"

using namespace TestImages;

TEST(IpInvert, MirrorsTheRangeOnEveryType)
{
    // 8-bit 0 gives 255 and 255 gives 0; floats of -1 to 1: 0.25 gives -0.25;
    // in place on an image with its own bounds, input and output ranges are
    // one: 20 in [10, 50] becomes 40.
    ClImage bytes = OneRow(ClImage::eUInt8, {0, 255, 100});
    ClImage real = OneRow(ClImage::eFloat32, {0.25}), ranged = OneRow(ClImage::eUInt16, {20});
    ranged.SetBounds(10, 50);
    ClIpInvert invert;
    ASSERT_EQ(invert.Run(&bytes) + invert.Run(&real) + invert.Run(&ranged), 0);
    EXPECT_EQ(RowOf(bytes), (std::vector<double>{255, 0, 155}));
    EXPECT_EQ(RowOf(real), (std::vector<double>{-0.25}));
    EXPECT_EQ(RowOf(ranged), (std::vector<double>{40}));

    // Types other than 8-bit run the direct path, width samples per row; in
    // place, the rest of a row keeps its samples.
    ExpectOnEveryType(invert,
                      [](auto s, int32_t i, double a, double b)
                      {
                          using T = decltype(s);
                          if (!std::is_same_v<T, uint8_t> && i >= 9)
                              return s;
                          return SampleFromDouble<T>((b - (s - a) - a) * (b - a) / (b - a) + a);
                      });
}
