// ClIpFilterMedian against the median of each window, and its width limits.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <vector>

#include "operators/IpFilterMedian.h"
#include "support/OperatorTestImages.h"
#include "WindowReference.h"

using namespace WindowReference;

namespace
{

// Lines keep the window symmetric, its half width at most the distance to the
// border; Mode XY is an 8-bit square of an odd width of 3 to 101 with clamped
// coordinates. A width of 1 or less copies; below 3 (above 100 in XY) is -35.
template <typename T>
int32_t Expected(int32_t nMode, int32_t& nMember, const ClImage& in, ClImage& expected)
{
    const long w = nMember;
    const bool bSquare = nMode == eModeXY;
    expected = in;
    if (w <= 1)
        return 0;
    if (w < 3 || (bSquare && w > 100))
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    if (bSquare && sizeof(T) != 1)
        return ZRC_ERROR_FORMAT_NOTSUPPORTED;
    if (bSquare)
        nMember |= 1;
    // The first plane leaves the member 100 forced to 101: the second is refused.
    if (bSquare && in.Planes() > 1 && w == 100)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    const long h = nMember / 2;
    auto range = [&](long i, long n)
    {
        const long r = bSquare ? h : std::min({h, i, n - 1 - i});
        return std::pair{i - r, i + r};
    };
    auto median = [](std::vector<T> v)
    {
        std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
        return v[v.size() / 2];
    };
    expected = Walk<T>(in, ModeBox(nMode, in.Width(), in.Height(), range), median);
    return 0;
}

// Every mode and width; a refused width leaves the output untouched.
template <typename T> void ExpectAllWidths(const ClImage& in)
{
    ClIpFilterMedian median;
    for (int32_t nMode : {eModeX, eModeY, eModeXY})
        for (int32_t nWidth : Widths({INT32_MIN, 0, 40, 100, 101}))
        {
            SCOPED_TRACE(testing::Message() << in.Width() << "x" << in.Height() << " mode " << nMode
                                            << " width " << nWidth);
            ClImage input = in, out, expected;
            int32_t nMember = nWidth;
            const int32_t nCode = Expected<T>(nMode, nMember, in, expected);
            if (nCode != 0)
                out.Assign(in);
            const uint8_t* pBefore = out.Data();
            ASSERT_EQ(nCode, median.Run(&input, &out, nWidth, nMode));
            EXPECT_EQ(nMember, median.m_nFilterWidth);
            const bool bRight = nCode == 0 ? TestImages::SameSamples(expected, out)
                                           : in.Planes() > 1 || (pBefore == out.Data() &&
                                                                 TestImages::SameSamples(in, out));
            ASSERT_TRUE(bRight);
        }
}

} // namespace

TEST(IpFilterMedian, EveryTypeMatchesTheMedianOfItsWindows)
{
    uint32_t nSeed = 1;
    for (ClImage::EDataType eType : TestImages::AllTypes())
        ForType(eType,
                [&](auto t)
                {
                    for (const ClImage& in : Images(eType, nSeed))
                        ExpectAllWidths<decltype(t)>(in);
                });
    for (auto [w, h] : Sizes()) // ties
        ExpectAllWidths<uint8_t>(ImageOf<uint8_t>(ClImage::eUInt8, w, h, 1, {0, 1, 255}, nSeed++));
}
