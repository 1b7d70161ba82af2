#include <gtest/gtest.h>

#include "operators/IpInvert.h"
#include "operators/IpScale.h"
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

TEST(IpScale, MultipliesAndClampsToTheOutputRange)
{
    // 8-bit by 2: 200 gives 255, 100 gives 200.
    ClImage bytes = OneRow(ClImage::eUInt8, {200, 100});
    ClIpScale scale;
    scale.m_dScaleFactor = 2.0;
    ASSERT_EQ(scale.Run(&bytes), 0);
    EXPECT_EQ(RowOf(bytes), (std::vector<double>{255, 200}));

    // Every type against the formula (16-bit by 0 among them); factors of
    // exactly 1 and 0 copy and clear, so that no -0.0 appears.
    for (double dFactor : {0.37, -2.5, 3.0, 1.0, 0.0})
    {
        SCOPED_TRACE(dFactor);
        scale.m_dScaleFactor = dFactor;
        ExpectOnEveryType(scale,
                          [dFactor](auto s, int32_t, double lo, double hi)
                          {
                              using T = decltype(s);
                              if (dFactor == 1.0 || dFactor == 0.0)
                                  return dFactor == 1.0 ? s : T(0);
                              const double v = dFactor * static_cast<double>(s);
                              return SampleFromDouble<T>(v < lo ? lo : v > hi ? hi : v);
                          });
    }
}
