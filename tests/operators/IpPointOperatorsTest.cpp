// The sample-by-sample operators against their formulas on every type.
#include <cmath>

#include <gtest/gtest.h>

#include "operators/IpBinarizeGlobal.h"
#include "operators/IpConvertDataType.h"
#include "operators/IpHistogramEqualization.h"
#include "operators/IpInvert.h"
#include "operators/IpScale.h"
#include "support/SampleReference.h"

using namespace TestImages;
using Row = std::vector<double>;

TEST(IpInvert, MirrorsTheRangeOnEveryType)
{
    // Types other than 8-bit run the direct path, width samples per row; in
    // place, the rest of a row keeps its samples.
    ClIpInvert invert;
    ExpectOnEveryType(invert,
                      [](auto s, int32_t i, double a, double b)
                      {
                          using T = decltype(s);
                          if (!std::is_same_v<T, uint8_t> && i >= 9)
                              return s;
                          return SampleFromDouble<T>((b - (s - a) - a) * (b - a) / (b - a) + a);
                      });
    ClImage ranged = OneRow(ClImage::eUInt16, {20}); // own bounds: 20 in [10, 50] gives 40
    ranged.SetBounds(10, 50);
    ASSERT_EQ(invert.Run(&ranged), 0);
    EXPECT_EQ(RowOf(ranged), Row{40});
}

TEST(IpScale, MultipliesAndClampsToTheOutputRange)
{
    // Factors of exactly 1 and 0 copy and clear, so that no -0.0 appears.
    ClIpScale scale;
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

TEST(IpBinarizeGlobal, DerivedAndGivenThresholdsLimitsAndTheStatusText)
{
    // All parameters NaN: threshold (a + b) / 2 of the bounds, black a, white
    // b; integer samples reach it when they reach it rounded up.
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

    // The 8-bit table, colours in either order and equal, into the input and
    // into a separate output.
    for (double dThreshold : {0.0, 0.5, 1.0, 100.25, 127.5, 128.0, 254.5, 255.0})
        for (auto [dBlack, dWhite] :
             {std::pair{0.0, 255.0}, {255.0, 0.0}, {7.0, 7.0}, {1.9, 254.2}})
            for (int32_t nWidth : {1, 6, 31})
            {
                SCOPED_TRACE(testing::Message() << dThreshold << " " << dBlack << " " << dWhite
                                                << " width " << nWidth);
                ClImage source = RandomImage(ClImage::eUInt8, nWidth, 9, 1, 70 + nWidth), out;
                for (int32_t i = 0; i < nWidth * 9; ++i)
                    source.Row<uint8_t>(i / nWidth)[i % nWidth] = static_cast<uint8_t>(i * 37);
                image.Assign(source);
                fresh.m_dBlack = dBlack, fresh.m_dWhite = dWhite;
                ASSERT_EQ(fresh.Run(&image, &out, dThreshold), 0);
                ASSERT_EQ(fresh.Run(&image, &image, dThreshold), 0);
                auto expected = [&](auto s, int32_t, int32_t, auto)
                { return SampleFromDouble<uint8_t>(s >= dThreshold ? dWhite : dBlack); };
                EXPECT_EQ(CountWrong(source, out, expected) + CountWrong(source, image, expected),
                          0);
            }
}

TEST(IpConvertDataType, EveryTypePairWithAndWithoutRounding)
{
    // The same type is a copy; otherwise a cast of s + 0.5 with the rounding
    // flag, else a plain cast; integers wrap.
    for (bool bRound : {true, false})
        for (ClImage::EDataType eIn : AllTypes())
            for (ClImage::EDataType eOut : AllTypes())
            {
                SCOPED_TRACE(std::string(ClImage::TypeText(eIn)) + " -> " +
                             ClImage::TypeText(eOut) + (bRound ? " rounded" : ""));
                const ClImage source = RandomImage(eIn, 7, 3, 3, 91);
                ClImage in(source), out;
                ClIpConvertDataType convert;
                convert.m_bRound = bRound;
                ASSERT_EQ(convert.Run(&in, &out, eOut), 0);
                ASSERT_TRUE(out.DataType() == eOut && out.Planes() == 3u);
                EXPECT_EQ(CountWrong(source, out,
                                     [&](auto s, int32_t, int32_t, auto o)
                                     {
                                         using TO = decltype(o);
                                         return bRound && eIn != eOut
                                                    ? SampleFromDouble<TO>(s + 0.5)
                                                : std::is_floating_point_v<decltype(s)>
                                                    ? SampleFromDouble<TO>(s)
                                                    : static_cast<TO>(s);
                                     }),
                          0);
            }
    // A float beyond 32 bits is not clamped; the default type is the input's.
    ClImage in = OneRow(ClImage::eFloat32, {1e10}), out;
    ASSERT_EQ(ClIpConvertDataType().Run(&in, &out, ClImage::eInt32), 0);
    EXPECT_EQ(RowOf(out), Row{-2147483648.0});
    in = OneRow(ClImage::eInt32, {123456});
    ASSERT_EQ(ClIpConvertDataType().Run(&in, &out, ClImage::eDefaultType), 0); // rounding
    EXPECT_TRUE(out.DataType() == ClImage::eInt32 && RowOf(out) == Row{123456});
}
