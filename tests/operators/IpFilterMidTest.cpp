// ClIpFilterMid against the mean of each cut-off window.
#include <vector>

#include <gtest/gtest.h>

#include "operators/IpFilterMid.h"
#include "WindowReference.h"

using namespace TestImages;
using namespace WindowReference;

namespace
{
// Integer sums start at w / 2 along a line, at 0 in a box, and divide toward
// zero by the window's samples, along a line by at most w; floating sums in double.
template <typename T> auto Mean(bool bBox, long w)
{
    return [=](const std::vector<T>& v)
    {
        const long n = long(v.size());
        std::conditional_t<std::is_integral_v<T>, int64_t, double> s =
            std::is_integral_v<T> && !bBox ? w / 2 : 0;
        for (T x : v)
            s += x;
        return static_cast<T>(s / (bBox ? n : std::min(n, w)));
    };
}

// The width is forced odd. Lines shorten a width not below the line's length
// to that length - 1 (0 is -101), and divide by w inside even when it is then
// even. Mode XY copies an image smaller than the window.
template <typename T>
int32_t Expected(int32_t nMode, int32_t& nMember, const ClImage& in, ClImage& expected)
{
    long w = nMember |= 1;
    const long W = in.Width(), H = in.Height();
    const bool bBox = nMode == eModeXY;
    expected = in;
    if (w <= 1 || (bBox && (W < w || H < w)))
        return 0;
    if (!bBox && (nMember = int32_t(w = std::min(w, (nMode == eModeY ? H : W) - 1))) == 0)
        return ZRC_ERROR_INTERNAL;
    expected = Walk<T>(in, CutOffBox(nMode, W, H, w / 2), Mean<T>(bBox, w));
    return 0;
}

// The definition on a grid and at the last sample of a large 8-bit image.
void ExpectOnGrid(const ClImage& in, int32_t nMode, int32_t nWidth, int32_t nStepX, int32_t nStepY)
{
    ClIpFilterMid mid;
    mid.m_nMode = nMode;
    ClImage input = in, out;
    ASSERT_EQ(0, mid.Run(&input, &out, nWidth));
    const auto box = CutOffBox(nMode, in.Width(), in.Height(), nWidth / 2);
    std::vector<uint8_t> v;
    auto right = [&](int32_t x, int32_t y)
    {
        Gather(in, box(x, y), 0, v);
        return Mean<uint8_t>(nMode == eModeXY, nWidth)(v) == At<uint8_t>(out, x, y);
    };
    ASSERT_TRUE(right(in.Width() - 1, in.Height() - 1)) << nWidth << " mode " << nMode;
    for (int32_t y = 0; y < in.Height(); y += nStepY)
        for (int32_t x = 0; x < in.Width(); x += nStepX)
            ASSERT_TRUE(right(x, y)) << x << "," << y << " w " << nWidth << " mode " << nMode;
}

} // namespace

TEST(IpFilterMid, EveryTypeMatchesTheMeanOfItsWindows)
{
    // Floating results (running sums in the sample type) up to their rounding.
    auto expectAll = [](auto t, const ClImage& in)
    {
        using T = decltype(t);
        ClIpFilterMid mid;
        ExpectEveryModeAndWidth<T>(
            in, {INT32_MIN, 0, 40, 127}, sizeof(T) == 4 ? 0.05 : 1e-7,
            [&](int32_t nMode, int32_t& nMember, ClImage& expected)
            { return Expected<T>(nMode, nMember, in, expected); },
            [&](ClImage& input, ClImage& out, int32_t nMode, int32_t nWidth)
            {
                mid.m_nMode = nMode;
                return std::pair{mid.Run(&input, &out, nWidth), mid.m_nFilterWidth};
            });
    };
    uint32_t nSeed = 1;
    ForEveryImage(nSeed, expectAll);
    // 0, 1, 254 and 255 make sums one short of a multiple of the count.
    for (auto [w, h] : kSizes)
        expectAll(uint8_t(), ImageOf<uint8_t>(ClImage::eUInt8, w, h, {0, 1, 254, 255}, 50));
}

TEST(IpFilterMid, EightBitBoxesUpToTheLargestKeepTheIntegerQuotient)
{
    // Boxes up to 255 x 255 (at most 65535 samples) and beyond, on 255 with a
    // few 254: full boxes sum to one or a few short of a multiple of their count.
    ClImage in = ImageOf<uint8_t>(ClImage::eUInt8, 300, 270, {255}, 1);
    for (auto [x, y] : {std::pair{150, 135}, {3, 4}, {299, 269}, {151, 0}})
        At<uint8_t>(in, x, y) = 254;
    for (int32_t nWidth : {253, 255, 257})
        ExpectOnGrid(in, eModeXY, nWidth, 11, 13);
    // Lines up to 65535 and beyond (column sums need over 16 bits past 257 rows).
    for (bool bX : {true, false})
    {
        ClImage line = ImageOf<uint8_t>(ClImage::eUInt8, bX ? 70003 : 2, bX ? 2 : 70003, {255}, 2);
        At<uint8_t>(line, bX ? 35000 : 0, bX ? 0 : 35000) = 254;
        At<uint8_t>(line, bX ? 5 : 1, bX ? 1 : 5) = 0;
        for (int32_t nWidth : {259, 65533, 65535, 65537})
            ExpectOnGrid(line, bX ? eModeX : eModeY, nWidth, bX ? 997 : 1, bX ? 1 : 997);
    }
}
