#include <gtest/gtest.h>

#include "operators/IpConvertDataType.h"
#include "processing/SelectDataTypes.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

TEST(IpConvertDataType, RoundingAddsAHalfBeforeTheTruncation)
{
    ClImage bytes;
    bytes.Create(ClImage::eUInt8, 1, 1);
    bytes.Row<uint8_t>(0)[0] = 7;
    ClImage out;
    ClIpConvertDataType convert;
    EXPECT_TRUE(convert.m_bRound);
    ASSERT_EQ(convert.Run(&bytes, &out, ClImage::eFloat32), 0);
    EXPECT_EQ(out.DataType(), ClImage::eFloat32);
    EXPECT_EQ(At<float>(out, 0, 0), 7.5f);
    EXPECT_EQ(out.LowerBound(), -1.0); // the type's own bounds

    ClImage doubles;
    doubles.Create(ClImage::eDouble64, 3, 1);
    doubles.Row<double>(0)[0] = 2.4;
    doubles.Row<double>(0)[1] = 2.6;
    doubles.Row<double>(0)[2] = -0.7;
    ASSERT_EQ(convert.Run(&doubles, &out, ClImage::eUInt8), 0);
    EXPECT_EQ(At<uint8_t>(out, 0, 0), 2);
    EXPECT_EQ(At<uint8_t>(out, 1, 0), 3);
    EXPECT_EQ(At<uint8_t>(out, 2, 0), 0);

    // Without the flag 8-bit values stay exactly as they are.
    convert.m_bRound = false;
    ASSERT_EQ(convert.Run(&bytes, &out, ClImage::eDouble64), 0);
    EXPECT_EQ(At<double>(out, 0, 0), 7.0);
    ASSERT_EQ(convert.Run(&doubles, &out, ClImage::eInt8), 0);
    EXPECT_EQ(At<int8_t>(out, 2, 0), 0);
    EXPECT_EQ(At<int8_t>(out, 1, 0), 2);
}

TEST(IpConvertDataType, IntegersWrapWithoutClamping)
{
    ClImage shorts;
    shorts.Create(ClImage::eInt16, 2, 1);
    shorts.Row<int16_t>(0)[0] = 300;
    shorts.Row<int16_t>(0)[1] = -1;
    ClImage out;
    ClIpConvertDataType convert;
    ASSERT_EQ(convert.Run(&shorts, &out, ClImage::eUInt8), 0);
    EXPECT_EQ(At<uint8_t>(out, 0, 0), 44); // 300.5 -> 300 -> low byte
    EXPECT_EQ(At<uint8_t>(out, 1, 0), 0);  // -0.5 -> 0
    convert.m_bRound = false;
    ASSERT_EQ(convert.Run(&shorts, &out, ClImage::eUInt16), 0);
    EXPECT_EQ(At<uint16_t>(out, 1, 0), 65535);

    ClImage big;
    big.Create(ClImage::eUInt32, 1, 1);
    big.Row<uint32_t>(0)[0] = 4000000000u;
    ASSERT_EQ(convert.Run(&big, &out, ClImage::eInt32), 0);
    EXPECT_EQ(At<int32_t>(out, 0, 0), -294967296);

    ClImage huge;
    huge.Create(ClImage::eFloat32, 1, 1);
    huge.Row<float>(0)[0] = 1e10f;
    ASSERT_EQ(convert.Run(&huge, &out, ClImage::eInt32), 0);
    EXPECT_EQ(At<int32_t>(out, 0, 0), std::numeric_limits<int32_t>::min());
}

TEST(IpConvertDataType, EveryTypePairWithAndWithoutRounding)
{
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
                ASSERT_EQ(out.DataType(), eOut);
                ASSERT_EQ(out.Planes(), 3u);
                if (eIn == eOut)
                {
                    EXPECT_TRUE(SameSamples(out, source));
                    continue;
                }
                int nWrong = 0;
                (void)SelectDataTypes(
                    eIn, eOut,
                    [&](auto inTag, auto outTag)
                    {
                        using TIn = typename decltype(inTag)::Type;
                        using TOut = typename decltype(outTag)::Type;
                        for (int32_t y = 0; y < 3; ++y)
                            for (int32_t i = 0; i < 21; ++i)
                            {
                                const TIn s = source.Row<TIn>(y)[i];
                                TOut expected;
                                if (bRound)
                                    expected = SampleFromDouble<TOut>(static_cast<double>(s) + 0.5);
                                else if (std::is_floating_point_v<TIn>)
                                    expected = SampleFromDouble<TOut>(static_cast<double>(s));
                                else
                                    expected = static_cast<TOut>(s);
                                nWrong += !BitEqual(out.Row<TOut>(y)[i], expected);
                            }
                        return 0;
                    });
                EXPECT_EQ(nWrong, 0);
            }
}

TEST(IpConvertDataType, DefaultTypeCopiesAndMissingImagesGiveMinusTen)
{
    const ClImage source = RandomImage(ClImage::eInt32, 5, 5, 1, 92);
    ClImage image(source);
    image.Assign(source);
    image.SetBounds(-7, 7);
    ClImage out;
    ClIpConvertDataType convert;
    ASSERT_EQ(convert.Run(&image, &out, ClImage::eDefaultType), 0);
    EXPECT_TRUE(SameSamples(out, source));
    EXPECT_EQ(out.UpperBound(), 7.0);
    // One object for both roles.
    ASSERT_EQ(convert.Run(&image, &image, ClImage::eDouble64), 0);
    EXPECT_EQ(image.DataType(), ClImage::eDouble64);
    EXPECT_EQ(At<double>(image, 4, 4), At<int32_t>(source, 4, 4) + 0.5);

    EXPECT_EQ(convert.Run(nullptr, &out, ClImage::eUInt8), ZRC_ERROR_BITMAP_PTR);
    EXPECT_EQ(convert.Run(&image, nullptr, ClImage::eUInt8), ZRC_ERROR_BITMAP_PTR);
}
