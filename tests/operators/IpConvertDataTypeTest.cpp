// Conversion of every type pair, with and without rounding.
#include "operators/IpConvertDataType.h"

#include <vector>

#include <gtest/gtest.h>

#include "support/SampleReference.h"

using namespace TestImages;
using Row = std::vector<double>;

TEST(IpConvertDataType, EveryTypePairWithAndWithoutRounding)
{
    // Same type: a copy; else a cast of s + 0.5 when rounding, or of s; integers wrap.
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
                auto want = [&](auto s, int32_t, int32_t, auto o)
                {
                    using TO = decltype(o);
                    return bRound && eIn != eOut                   ? SampleFromDouble<TO>(s + 0.5)
                           : std::is_floating_point_v<decltype(s)> ? SampleFromDouble<TO>(s)
                                                                   : static_cast<TO>(s);
                };
                EXPECT_EQ(CountWrong(source, out, want), 0);
            }
    // A float beyond 32 bits is not clamped; the default type is the input's.
    ClImage in = OneRow(ClImage::eFloat32, {1e10}), out;
    ASSERT_EQ(ClIpConvertDataType().Run(&in, &out, ClImage::eInt32), 0);
    EXPECT_EQ(RowOf(out), Row{-2147483648.0});
    in = OneRow(ClImage::eInt32, {123456});
    ASSERT_EQ(ClIpConvertDataType().Run(&in, &out, ClImage::eDefaultType), 0); // rounding
    EXPECT_TRUE(out.DataType() == ClImage::eInt32 && RowOf(out) == Row{123456});
}
