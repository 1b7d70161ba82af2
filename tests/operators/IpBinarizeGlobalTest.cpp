#include <cmath>
#include <random>

#include <gtest/gtest.h>

#include "operators/IpBinarizeGlobal.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{

std::string Status(ClProcessorBase& op)
{
    char szText[512];
    op.GetStatusText(szText, sizeof(szText));
    return szText;
}

} // namespace

TEST(IpBinarizeGlobal, DerivedThresholdAndColoursFromTheOutputRange)
{
    ClImage image;
    image.Create(ClImage::eUInt8, 4, 1);
    const uint8_t samples[] = {0, 127, 128, 255};
    std::memcpy(image.Row<uint8_t>(0), samples, 4);
    const uint8_t* pBuffer = image.Data();
    ClIpBinarizeGlobal op;
    ASSERT_EQ(op.Run(&image), 0);
    // In place: the input's own buffer is overwritten.
    EXPECT_EQ(image.Data(), pBuffer);
    EXPECT_EQ(image.Row<uint8_t>(0)[0], 0);
    EXPECT_EQ(image.Row<uint8_t>(0)[1], 0);
    EXPECT_EQ(image.Row<uint8_t>(0)[2], 255);
    EXPECT_EQ(image.Row<uint8_t>(0)[3], 255);
    EXPECT_EQ(Status(op), "Thr128 [0;255]"); // 127.5 printed without decimals

    // On floating images the range is -1 to 1 and the text has 4 decimals.
    ClImage real;
    real.Create(ClImage::eFloat32, 3, 1);
    real.Row<float>(0)[0] = -0.01f;
    real.Row<float>(0)[1] = 0.0f;
    real.Row<float>(0)[2] = std::nanf("");
    ASSERT_EQ(op.Run(&real), 0);
    EXPECT_EQ(real.Row<float>(0)[0], -1.0f);
    EXPECT_EQ(real.Row<float>(0)[1], 1.0f);
    EXPECT_EQ(real.Row<float>(0)[2], -1.0f);
    EXPECT_EQ(Status(op), "Thr0.0000 [-1.0000;1.0000]");

    char szShort[8];
    try
    {
        op.GetStatusText(szShort, sizeof(szShort));
        FAIL() << "the text fitted";
    }
    catch (const ClException& e)
    {
        EXPECT_EQ(e.GetCode(), ZRC_ERROR_INTERNAL);
        EXPECT_EQ(Remark(e.GetMessage()), "String-Length exceeded available size");
    }
}

TEST(IpBinarizeGlobal, IntegerThresholdIsRoundedUp)
{
    ClImage image;
    image.Create(ClImage::eInt16, 4, 1);
    const int16_t samples[] = {10, 11, -32768, 32767};
    std::memcpy(image.Row<int16_t>(0), samples, sizeof(samples));
    ClIpBinarizeGlobal op;
    op.m_dBlack = 3.0;
    op.m_dWhite = 9.7;
    ClImage out;
    ASSERT_EQ(op.Run(&image, &out, 10.2), 0);
    EXPECT_EQ(At<int16_t>(out, 0, 0), 3);
    EXPECT_EQ(At<int16_t>(out, 1, 0), 9);
    EXPECT_EQ(At<int16_t>(out, 2, 0), 3);
    EXPECT_EQ(At<int16_t>(out, 3, 0), 9);
    // Run with a threshold keeps black and white.
    EXPECT_EQ(op.m_dBlack, 3.0);
    EXPECT_EQ(op.m_dThreshold, 10.2);
}

TEST(IpBinarizeGlobal, EveryTypeAndPlaneMatchesAPlainComparison)
{
    std::mt19937 rng(71);
    for (ClImage::EDataType eType : AllTypes())
        for (uint32_t nPlanes : {1u, 3u})
        {
            SCOPED_TRACE(ClImage::TypeText(eType));
            const ClImage source = RandomImage(eType, 11, 7, nPlanes, 72, 1.0);
            ClImage in(source);
            ClImage out;
            ClIpBinarizeGlobal op;
            const double dLower = source.LowerBound(), dUpper = source.UpperBound();
            const double dThreshold = std::uniform_real_distribution<double>(dLower, dUpper)(rng);
            op.m_dBlack = dLower + (dUpper - dLower) / 7;
            op.m_dWhite = dUpper - (dUpper - dLower) / 5;
            ASSERT_EQ(op.Run(&in, &out, dThreshold), 0);
            int nWrong = 0;
            (void)SelectDataType(
                eType,
                [&](auto tag)
                {
                    using T = typename decltype(tag)::Type;
                    // Integer samples reach a threshold t exactly when they reach
                    // t rounded up; floating ones compare in their own type.
                    const T black = SampleFromDouble<T>(op.m_dBlack),
                            white = SampleFromDouble<T>(op.m_dWhite);
                    for (int32_t y = 0; y < 7; ++y)
                        for (int32_t x = 0; x < 11; ++x)
                            for (uint32_t p = 0; p < nPlanes; ++p)
                            {
                                const T s = At<T>(source, x, y, p);
                                const bool bWhite = std::is_floating_point_v<T>
                                                        ? s >= static_cast<T>(dThreshold)
                                                        : static_cast<double>(s) >= dThreshold;
                                nWrong += At<T>(out, x, y, p) != (bWhite ? white : black);
                            }
                    return 0;
                });
            EXPECT_EQ(nWrong, 0);
        }
}

TEST(IpBinarizeGlobal, ThresholdsAndColoursOutsideTheRangeAreRefused)
{
    ClImage image = RandomImage(ClImage::eUInt8, 3, 3, 1, 73);
    const ClImage source(image);
    ClImage out;
    ClIpBinarizeGlobal op;
    EXPECT_EQ(op.Run(&image, &out, 300.0), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_EQ(op.Run(&image, &out, -0.5), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_FALSE(op.CheckThreshold());
    // With the threshold refused, CheckInput is the type check's answer.
    EXPECT_TRUE(op.CheckInput());

    op.m_dWhite = 256.0;
    EXPECT_EQ(op.Run(&image, &out, 100.0), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_FALSE(op.CheckColours());
    op.m_dWhite = 255.0;
    op.m_dBlack = -1.0;
    EXPECT_EQ(op.Run(&image, &out, 100.0), ZRC_ERROR_PARAM_OUT_OF_RANGE);
    op.m_dBlack = 0.0;
    EXPECT_EQ(op.Run(&image, &out, 255.0), 0);
    EXPECT_TRUE(op.CheckInput());

    // Without images both checks fail, and CheckInput follows the type check.
    ClIpBinarizeGlobal bare;
    EXPECT_FALSE(bare.CheckThreshold());
    EXPECT_FALSE(bare.CheckColours());
    EXPECT_FALSE(bare.CheckInput());
    bare.SetDefaults();
    EXPECT_TRUE(std::isnan(bare.m_dThreshold));
}
