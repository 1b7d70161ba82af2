#include <tuple>

#include <gtest/gtest.h>

#include "operators/IpConvertDataType.h"
#include "support/SampleReference.h"

using namespace TestImages;

TEST(IpConvertDataType, RoundingAddsAHalfAndIntegersWrapWithoutClamping)
{
    // Input type and value, output type, rounding flag, expected value.
    const std::tuple<ClImage::EDataType, double, ClImage::EDataType, bool, double> cases[] = {
        {ClImage::eUInt8, 7, ClImage::eFloat32, true, 7.5},
        {ClImage::eDouble64, 2.6, ClImage::eUInt8, true, 3},
        {ClImage::eDouble64, 2.6, ClImage::eInt8, false, 2},
        {ClImage::eInt16, 300, ClImage::eUInt8, true, 44}, // 300.5 -> 300 -> low byte
        {ClImage::eInt16, -1, ClImage::eUInt8, true, 0},   // -0.5 -> 0
        {ClImage::eInt16, -1, ClImage::eUInt16, false, 65535},
        {ClImage::eUInt32, 4e9, ClImage::eInt32, false, -294967296},
        {ClImage::eFloat32, 1e10, ClImage::eInt32, false, -2147483648.0},
        {ClImage::eInt32, 123456, ClImage::eDefaultType, true, 123456}, // a copy
    };
    for (const auto& [eIn, dIn, eType, bRound, dOut] : cases)
    {
        SCOPED_TRACE(std::string(ClImage::TypeText(eIn)) + " " + std::to_string(dIn));
        ClImage in = OneRow(eIn, {dIn}), out;
        ClIpConvertDataType convert;
        convert.m_bRound = bRound;
        ASSERT_EQ(convert.Run(&in, &out, eType), 0);
        const ClImage::EDataType eOut = eType == ClImage::eDefaultType ? eIn : eType;
        ASSERT_EQ(out.DataType(), eOut);
        EXPECT_EQ(SampleAt(out, 0, 0), dOut);
    }
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
                // The same type is a copy; otherwise a cast of s + 0.5 with
                // the rounding flag, else a plain cast.
                EXPECT_EQ(CountWrong(source, out,
                                     [&](auto s, int32_t, int32_t, auto o)
                                     {
                                         using TO = decltype(o);
                                         if (bRound && eIn != eOut)
                                             return SampleFromDouble<TO>(s + 0.5);
                                         if constexpr (std::is_floating_point_v<decltype(s)>)
                                             return SampleFromDouble<TO>(s);
                                         else
                                             return static_cast<TO>(s);
                                     }),
                          0);
            }
}
