// ClIpFilterMedian against the median of each window, sorted sample by
// sample, on random images of every type, and its limits on the width.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <vector>

#include "operators/IpFilterMedian.h"
#include "support/OperatorTestImages.h"
#include "WindowReference.h"

using WindowReference::Walk;

namespace
{

// The median as defined: Mode X and Mode Y keep the window symmetric, its
// half width at most the distance to the border; Mode XY is a square of an
// odd width of 3 to 101 with clamped coordinates, for 8-bit data only. A
// width of 1 or less copies; below 3 (and above 100 in Mode XY) is -35.
template <typename T>
int32_t Expected(int32_t nMode, int32_t& nMember, const ClImage& in, ClImage& expected)
{
    const long w = nMember, W = in.Width(), H = in.Height();
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
    // Planes are filtered one after the other with the member as the first
    // left it: 100 forced to 101 refuses the second plane.
    if (bSquare && in.Planes() > 1 && w == 100)
        return ZRC_ERROR_PARAM_OUT_OF_RANGE;
    const long h = nMember / 2;
    auto range = [&](long i, long n)
    {
        const long r = bSquare ? h : std::min({h, i, n - 1 - i});
        return std::pair{i - r, i + r};
    };
    auto box = [&](long x, long y)
    {
        const auto [x0, x1] = nMode != eModeY ? range(x, W) : std::pair{x, x};
        const auto [y0, y1] = nMode != eModeX ? range(y, H) : std::pair{y, y};
        return std::array<long, 4>{x0, x1, y0, y1};
    };
    auto median = [](std::vector<T> v)
    {
        std::nth_element(v.begin(), v.begin() + v.size() / 2, v.end());
        return v[v.size() / 2];
    };
    expected = Walk<T>(in, box, median);
    return 0;
}

template <typename T> void ExpectAllWidths(const ClImage& in)
{
    std::vector<int32_t> widths = {INT32_MIN, 0, 40, 100, 101};
    for (int32_t w = 1; w <= 31; ++w)
        widths.push_back(w);
    ClIpFilterMedian median;
    for (int32_t nMode : {eModeX, eModeY, eModeXY})
        for (int32_t nWidth : widths)
        {
            SCOPED_TRACE(testing::Message() << in.Width() << "x" << in.Height() << " mode " << nMode
                                            << " width " << nWidth);
            ClImage input = in, out, expected;
            int32_t nMember = nWidth;
            const int32_t nCode = Expected<T>(nMode, nMember, in, expected);
            ASSERT_EQ(nCode, median.Run(&input, &out, nWidth, nMode));
            EXPECT_EQ(nMember, median.m_nFilterWidth);
            if (nCode == 0)
            {
                ASSERT_TRUE(TestImages::SameSamples(expected, out));
            }
        }
}

} // namespace

TEST(IpFilterMedian, WidthLimits)
{
    ClIpFilterMedian median;
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 6, 5, 1, 4), out;
    ASSERT_EQ(0, median.Run(&in, &out, 3, eModeX));
    const uint8_t* pBefore = out.Data();
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, median.Run(&in, &out, 2, eModeX));
    EXPECT_EQ(pBefore, out.Data()); // the output stays as it was
    EXPECT_EQ(ZRC_ERROR_PARAM_OUT_OF_RANGE, median.Run(&in, &out, 101, eModeXY));
    ASSERT_EQ(0, median.Run(&in, &out, 100, eModeXY)); // tested before the forcing to odd
    EXPECT_EQ(101, median.m_nFilterWidth);
}

TEST(IpFilterMedian, EveryTypeMatchesTheMedianOfItsWindows)
{
    uint32_t nSeed = 1;
    for (ClImage::EDataType eType : TestImages::AllTypes())
    {
        std::vector<ClImage> images;
        for (auto [w, h] : WindowReference::Sizes())
            images.push_back(TestImages::RandomImage(eType, w, h, 1, nSeed++));
        images.push_back(TestImages::RandomImage(eType, 6, 5, 3, nSeed++));
        if (eType == ClImage::eUInt8) // ties
            for (auto [w, h] : WindowReference::Sizes())
                images.push_back(
                    WindowReference::ImageOf<uint8_t>(eType, w, h, 1, {0, 1, 255}, nSeed++));
        for (const ClImage& in : images)
            SelectDataType(eType,
                           [&](auto tag)
                           {
                               ExpectAllWidths<typename decltype(tag)::Type>(in);
                               return 0;
                           });
    }
}
