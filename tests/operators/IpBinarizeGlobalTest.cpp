#include <cmath>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/IpBinarizeGlobal.h"
#include "support/SampleReference.h"

using namespace TestImages;

TEST(IpBinarizeGlobal, DerivedAndGivenThresholdsAndTheStatusText)
{
    using Row = std::vector<double>;
    // All parameters NaN: threshold 127.5, black 0 and white 255, in place.
    ClImage image = OneRow(ClImage::eUInt8, {0, 127, 128, 255});
    ClIpBinarizeGlobal op;
    ASSERT_EQ(op.Run(&image), 0);
    EXPECT_EQ(RowOf(image), (Row{0, 0, 255, 255}));
    char szText[64];
    op.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ(szText, "Thr128 [0;255]"); // 127.5 printed without decimals

    // Floats: range -1 to 1, NaN below, 4 decimals.
    image = OneRow(ClImage::eFloat32, {-0.01, 0.0, std::nan("")});
    ASSERT_EQ(op.Run(&image), 0);
    EXPECT_EQ(RowOf(image), (Row{-1, 1, -1}));
    op.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ(szText, "Thr0.0000 [-1.0000;1.0000]");

    // 16-bit, threshold 10.2: reached from 11; black and white are cast.
    image = OneRow(ClImage::eInt16, {10, 11, -32768, 32767});
    op.m_dBlack = 3.0;
    op.m_dWhite = 9.7;
    ASSERT_EQ(op.Run(&image, &image, 10.2), 0);
    EXPECT_EQ(RowOf(image), (Row{3, 9, 3, 9}));
}

TEST(IpBinarizeGlobal, EveryTypeAndPlaneMatchesAPlainComparison)
{
    // Derived from the bounds a and b: threshold (a + b) ÷ 2, black a and
    // white b. Integer samples reach a threshold exactly when they reach it
    // rounded up; floating ones compare in their own type.
    ClIpBinarizeGlobal op;
    ExpectOnEveryType(op,
                      [](auto s, int32_t, double a, double b)
                      {
                          using T = decltype(s);
                          const bool bWhite = std::is_floating_point_v<T>
                                                  ? s >= static_cast<T>((a + b) / 2)
                                                  : s >= (a + b) / 2;
                          return SampleFromDouble<T>(bWhite ? b : a);
                      });
}

TEST(IpBinarizeGlobal, ThresholdsAndColoursOutsideTheRangeAreRefused)
{
    ClImage image = RandomImage(ClImage::eUInt8, 3, 3, 1, 73), out;
    ClIpBinarizeGlobal op;
    EXPECT_EQ(op.Run(&image, &out, 255), 0);
    EXPECT_EQ(op.Run(&image, &out, 255.5), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    op.m_dWhite = 256;
    EXPECT_EQ(op.Run(&image, &out, 100), ZRC_ERROR_PARAM_OUT_OF_RANGE);
}
