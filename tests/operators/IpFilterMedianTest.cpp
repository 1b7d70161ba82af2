// ClIpFilterMedian against the median of each window, and its width limits.
#include <algorithm>
#include <vector>

#include <gtest/gtest.h>

#include "operators/IpFilterMedian.h"
#include "WindowReference.h"

using namespace WindowReference;

namespace
{
// Lines shrink the window to stay symmetric inside; Mode XY is an 8-bit clamped
// square, odd width 3 to 101. Width <= 1 copies; below 3 (above 100 in XY) is -35.
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
    nMember |= int(bSquare);
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

} // namespace

TEST(IpFilterMedian, EveryTypeMatchesTheMedianOfItsWindows)
{
    auto expectAll = [](auto t, const ClImage& in)
    {
        ClIpFilterMedian median;
        ExpectEveryModeAndWidth<decltype(t)>(
            in, {INT32_MIN, 0, 40, 100, 101}, 0,
            [&](int32_t nMode, int32_t& nMember, ClImage& expected)
            { return Expected<decltype(t)>(nMode, nMember, in, expected); },
            [&](ClImage& input, ClImage& out, int32_t nMode, int32_t nWidth) {
                return std::pair{median.Run(&input, &out, nWidth, nMode), median.m_nFilterWidth};
            });
    };
    uint32_t nSeed = 1;
    ForEveryImage(nSeed, expectAll);
    for (auto [w, h] : kSizes) // ties
        expectAll(uint8_t(), ImageOf<uint8_t>(ClImage::eUInt8, w, h, {0, 1, 255}, nSeed++));
}
