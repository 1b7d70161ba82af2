#include <cmath>
#include <random>

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
    const uint8_t* pBuffer = image.Data();
    ClIpBinarizeGlobal op;
    ASSERT_EQ(op.Run(&image), 0);
    EXPECT_EQ(image.Data(), pBuffer);
    EXPECT_EQ(RowOf(image), (Row{0, 0, 255, 255}));
    char szText[64];
    op.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ(szText, "Thr128 [0;255]"); // 127.5 printed without decimals

    // On floating images the range is -1 to 1, a NaN sample counts as below,
    // and the text has 4 decimals.
    image = OneRow(ClImage::eFloat32, {-0.01, 0.0, std::nan("")});
    ASSERT_EQ(op.Run(&image), 0);
    EXPECT_EQ(RowOf(image), (Row{-1, 1, -1}));
    op.GetStatusText(szText, sizeof(szText));
    EXPECT_STREQ(szText, "Thr0.0000 [-1.0000;1.0000]");
    ExpectThrows([&] { op.GetStatusText(szText, 8); }, ZRC_ERROR_INTERNAL,
                 "String-Length exceeded available size");

    // 16-bit with threshold 10.2: the integer threshold is 11; black and
    // white are cast, and Run with a threshold keeps them.
    image = OneRow(ClImage::eInt16, {10, 11, -32768, 32767});
    op.m_dBlack = 3.0;
    op.m_dWhite = 9.7;
    ASSERT_EQ(op.Run(&image, &image, 10.2), 0);
    EXPECT_EQ(RowOf(image), (Row{3, 9, 3, 9}));
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
    ClImage image = RandomImage(ClImage::eUInt8, 3, 3, 1, 73), out;
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
        SCOPED_TRACE(std::to_string(c.dThreshold) + " " + std::to_string(c.dWhite));
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
