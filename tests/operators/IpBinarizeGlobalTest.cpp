#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/IpBinarizeGlobal.h"
#include "support/SampleReference.h"

using namespace TestImages;

TEST(IpBinarizeGlobal, DerivedAndGivenThresholdsAndTheStatusText)
{
    // All parameters NaN: threshold 127.5, black 0 and white 255, in place.
    ClImage image;
    image.Create(ClImage::eUInt8, 4, 1);
    const uint8_t samples[] = {0, 127, 128, 255}, expected[] = {0, 0, 255, 255};
    std::memcpy(image.Row<uint8_t>(0), samples, 4);
    const uint8_t* pBuffer = image.Data();
    ClIpBinarizeGlobal op;
    ASSERT_EQ(op.Run(&image), 0);
    EXPECT_EQ(image.Data(), pBuffer);
    EXPECT_EQ(std::memcmp(image.Row<uint8_t>(0), expected, 4), 0);
    char szText[64];
    op.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ(szText, "Thr128 [0;255]"); // 127.5 printed without decimals

    // On floating images the range is -1 to 1, a NaN sample counts as below,
    // and the text has 4 decimals.
    ClImage real;
    real.Create(ClImage::eFloat32, 3, 1);
    const float reals[] = {-0.01f, 0.0f, std::nanf("")}, binary[] = {-1.0f, 1.0f, -1.0f};
    std::memcpy(real.Row<float>(0), reals, sizeof(reals));
    ASSERT_EQ(op.Run(&real), 0);
    EXPECT_EQ(std::memcmp(real.Row<float>(0), binary, sizeof(binary)), 0);
    op.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ(szText, "Thr0.0000 [-1.0000;1.0000]");
    ExpectThrows([&] { op.GetStatusText(szText, 8); }, ZRC_ERROR_INTERNAL,
                 "String-Length exceeded available size");

    // 16-bit with threshold 10.2: the integer threshold is 11; black and
    // white are cast, and Run with a threshold keeps them.
    ClImage shorts;
    shorts.Create(ClImage::eInt16, 4, 1);
    const int16_t values[] = {10, 11, -32768, 32767}, twoTone[] = {3, 9, 3, 9};
    std::memcpy(shorts.Row<int16_t>(0), values, sizeof(values));
    op.m_dBlack = 3.0;
    op.m_dWhite = 9.7;
    ClImage out;
    ASSERT_EQ(op.Run(&shorts, &out, 10.2), 0);
    EXPECT_EQ(std::memcmp(out.Row<int16_t>(0), twoTone, sizeof(twoTone)), 0);
    EXPECT_EQ(op.m_dBlack, 3.0);
}

TEST(IpBinarizeGlobal, EveryTypeAndPlaneMatchesAPlainComparison)
{
    std::mt19937 rng(71);
    for (ClImage::EDataType eType : AllTypes())
        for (uint32_t nPlanes : {1u, 3u})
        {
            SCOPED_TRACE(ClImage::TypeText(eType));
            const ClImage source = RandomImage(eType, 11, 7, nPlanes, 72, 1.0);
            ClImage in(source), out;
            ClIpBinarizeGlobal op;
            const double dLower = source.LowerBound(), dUpper = source.UpperBound();
            const double dThreshold = std::uniform_real_distribution<double>(dLower, dUpper)(rng);
            op.m_dBlack = dLower + (dUpper - dLower) / 7;
            op.m_dWhite = dUpper - (dUpper - dLower) / 5;
            ASSERT_EQ(op.Run(&in, &out, dThreshold), 0);
            // Integer samples reach a threshold t exactly when they reach t
            // rounded up; floating ones compare in their own type.
            EXPECT_EQ(CountWrong(source, out,
                                 [&](auto s, int32_t, int32_t, auto o)
                                 {
                                     using T = decltype(o);
                                     const bool bWhite = std::is_floating_point_v<T>
                                                             ? s >= static_cast<T>(dThreshold)
                                                             : s >= dThreshold;
                                     return SampleFromDouble<T>(bWhite ? op.m_dWhite : op.m_dBlack);
                                 }),
                      0);
        }
}

TEST(IpBinarizeGlobal, ThresholdsAndColoursOutsideTheRangeAreRefused)
{
    ClImage image = RandomImage(ClImage::eUInt8, 3, 3, 1, 73);
    ClImage out;
    ClIpBinarizeGlobal op;
    const struct
    {
        double dThreshold, dBlack, dWhite;
        int32_t nCode;
    } cases[] = {{300.0, 0, 255, ZRC_ERROR_PARAM_OUT_OF_RANGE},
                 {-0.5, 0, 255, ZRC_ERROR_PARAM_OUT_OF_RANGE},
                 {100.0, 0, 256, ZRC_ERROR_PARAM_OUT_OF_RANGE},
                 {100.0, -1, 255, ZRC_ERROR_PARAM_OUT_OF_RANGE},
                 {255.0, 0, 255, 0}};
    for (const auto& c : cases)
    {
        SCOPED_TRACE(std::to_string(c.dThreshold) + " " + std::to_string(c.dBlack) + " " +
                     std::to_string(c.dWhite));
        op.m_dBlack = c.dBlack;
        op.m_dWhite = c.dWhite;
        EXPECT_EQ(op.Run(&image, &out, c.dThreshold), c.nCode);
        EXPECT_EQ(op.CheckThreshold() && op.CheckColours(), c.nCode == 0);
        // With an input, CheckInput is the type check's answer either way.
        EXPECT_TRUE(op.CheckInput());
    }

    // Without images both checks fail, and so does the type check.
    ClIpBinarizeGlobal bare;
    EXPECT_FALSE(bare.CheckThreshold());
    EXPECT_FALSE(bare.CheckColours());
    EXPECT_FALSE(bare.CheckInput());
}
