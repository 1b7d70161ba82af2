#include <cmath>

#include <gtest/gtest.h>

#include "operators/IpBinarizeGlobal.h"
#include "support/SampleReference.h"

using namespace TestImages;

TEST(IpBinarizeGlobal, DerivedAndGivenThresholdsLimitsAndTheStatusText)
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

    // Thresholds and colours outside the range are refused.
    image = RandomImage(ClImage::eUInt8, 3, 3, 1, 73);
    ClIpBinarizeGlobal fresh;
    EXPECT_EQ(fresh.Run(&image, &image, 255), 0);
    EXPECT_EQ(fresh.Run(&image, &image, 255.5), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    fresh.m_dWhite = 256;
    EXPECT_EQ(fresh.Run(&image, &image, 100), ZRC_ERROR_PARAM_OUT_OF_RANGE);
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

TEST(IpBinarizeGlobal, EightBitThresholdsAcrossTheRangeMatchAPlainComparison)
{
    // Every byte against thresholds from the bottom to the top of the range,
    // with colours in either order and equal, into the input and into a
    // separate output, over rows of every width up to 31.
    for (double dThreshold : {0.0, 0.5, 1.0, 100.25, 127.5, 128.0, 254.5, 255.0})
        for (auto [dBlack, dWhite] :
             {std::pair{0.0, 255.0}, {255.0, 0.0}, {7.0, 7.0}, {1.9, 254.2}})
            for (int32_t nWidth = 1; nWidth <= 31; nWidth += 5)
            {
                SCOPED_TRACE(testing::Message() << dThreshold << " " << dBlack << " " << dWhite
                                                << " width " << nWidth);
                ClImage source = RandomImage(ClImage::eUInt8, nWidth, 9, 1, 70 + nWidth);
                for (int32_t i = 0; i < nWidth * 9; ++i)
                    source.Row<uint8_t>(i / nWidth)[i % nWidth] = static_cast<uint8_t>(i * 37);
                ClImage image, out;
                image.Assign(source);
                ClIpBinarizeGlobal op;
                op.m_dBlack = dBlack;
                op.m_dWhite = dWhite;
                ASSERT_EQ(op.Run(&image, &out, dThreshold), 0);
                ASSERT_EQ(op.Run(&image, &image, dThreshold), 0);
                auto expected = [&](auto s, int32_t, int32_t, auto)
                { return SampleFromDouble<uint8_t>(s >= dThreshold ? dWhite : dBlack); };
                EXPECT_EQ(CountWrong(source, out, expected), 0);
                EXPECT_EQ(CountWrong(source, image, expected), 0);
            }
}
