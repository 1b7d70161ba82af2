// Binarisation: derived and given thresholds, limits and the status text.
#include "operators/IpBinarizeGlobal.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "support/SampleReference.h"

using namespace TestImages;
using Row = std::vector<double>;

TEST(IpBinarizeGlobal, DerivedAndGivenThresholdsLimitsAndTheStatusText)
{
    // All NaN: threshold (a + b) / 2, black a, white b; integers reach it rounded up.
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
    ClImage image = OneRow(ClImage::eFloat32, {-0.01, 0.0, std::nan("")}); // NaN is below
    ASSERT_EQ(op.Run(&image), 0);
    EXPECT_EQ(RowOf(image), (Row{-1, 1, -1}));
    char szText[64];
    op.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ(szText, "Thr0.0000 [-1.0000;1.0000]");
    image = OneRow(ClImage::eUInt8, {0, 255});
    ASSERT_EQ(op.Run(&image), 0);
    op.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ(szText, "Thr128 [0;255]"); // 127.5 printed without decimals
    // 16-bit, threshold 10.2: reached from 11; black and white are cast.
    image = OneRow(ClImage::eInt16, {10, 11, -32768, 32767});
    op.m_dBlack = 3.0, op.m_dWhite = 9.7;
    ASSERT_EQ(op.Run(&image, &image, 10.2), 0);
    EXPECT_EQ(RowOf(image), (Row{3, 9, 3, 9}));
    // Thresholds and colours outside the range are refused.
    image = RandomImage(ClImage::eUInt8, 3, 3, 1, 73);
    ClIpBinarizeGlobal fresh;
    EXPECT_EQ(fresh.Run(&image, &image, 255), 0);
    EXPECT_EQ(fresh.Run(&image, &image, 255.5), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    fresh.m_dWhite = 256;
    EXPECT_EQ(fresh.Run(&image, &image, 100), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    // The 8-bit table, colours in either order and equal, in place and not.
    for (double dThreshold : {0.0, 0.5, 127.5, 128.0, 254.5, 255.0})
        for (auto [dBlack, dWhite] :
             {std::pair{0.0, 255.0}, {255.0, 0.0}, {7.0, 7.0}, {1.9, 254.2}})
            for (int32_t nWidth : {1, 6, 31})
            {
                SCOPED_TRACE(testing::Message()
                             << dThreshold << " " << dBlack << " " << dWhite << " " << nWidth);
                ClImage source = RandomImage(ClImage::eUInt8, nWidth, 9, 1, 70 + nWidth), out;
                for (int32_t i = 0; i < nWidth * 9; ++i)
                    source.Row<uint8_t>(i / nWidth)[i % nWidth] = static_cast<uint8_t>(i * 37);
                image.Assign(source);
                fresh.m_dBlack = dBlack, fresh.m_dWhite = dWhite;
                ASSERT_EQ(fresh.Run(&image, &out, dThreshold), 0);
                ASSERT_EQ(fresh.Run(&image, &image, dThreshold), 0);
                auto want = [&](auto s, int32_t, int32_t, auto)
                { return SampleFromDouble<uint8_t>(s >= dThreshold ? dWhite : dBlack); };
                EXPECT_EQ(CountWrong(source, out, want) + CountWrong(source, image, want), 0);
            }
}
