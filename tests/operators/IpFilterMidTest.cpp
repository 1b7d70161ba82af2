// ClIpFilterMid against the mean of each cut-off window: integer results bit
// for bit, 8-bit boxes up to the largest that the float quotient serves.
#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "operators/IpFilterMid.h"
#include "support/OperatorTestImages.h"
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
        std::conditional_t<std::is_integral_v<T>, int64_t, double> s = 0;
        if constexpr (std::is_integral_v<T>)
            s = bBox ? 0 : w / 2;
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

// Floating results (running sums in the sample type) up to their rounding.
template <typename T> void ExpectAllWidths(const ClImage& in)
{
    ClIpFilterMid mid;
    for (int32_t nMode : {eModeX, eModeY, eModeXY})
        for (int32_t nWidth : Widths({INT32_MIN, 0, 40, 127}))
        {
            SCOPED_TRACE(testing::Message() << in.Width() << "x" << in.Height() << " mode " << nMode
                                            << " width " << nWidth);
            ClImage input = in, out, expected;
            int32_t nMember = nWidth;
            const int32_t nCode = Expected<T>(nMode, nMember, in, expected);
            mid.m_nMode = nMode;
            ASSERT_EQ(nCode, mid.Run(&input, &out, nWidth));
            EXPECT_EQ(nMember, mid.m_nFilterWidth);
            if (nCode != 0)
                continue;
            const double dTolerance = std::is_integral_v<T> ? 0 : sizeof(T) == 4 ? 0.05 : 1e-7;
            for (int32_t y = 0; y < in.Height(); ++y)
                for (int64_t i = 0; i < int64_t(in.Width()) * in.Planes(); ++i)
                    ASSERT_NEAR(expected.Row<T>(y)[i], out.Row<T>(y)[i], dTolerance);
        }
}

// The definition at some samples of a large 8-bit image.
void ExpectAtSamples(const ClImage& in, int32_t nMode, int32_t nWidth,
                     const std::vector<std::pair<long, long>>& samples)
{
    ClIpFilterMid mid;
    mid.m_nMode = nMode;
    ClImage input = in, out;
    ASSERT_EQ(0, mid.Run(&input, &out, nWidth));
    const auto box = CutOffBox(nMode, in.Width(), in.Height(), nWidth / 2);
    std::vector<uint8_t> v;
    for (auto [x, y] : samples)
        if (x < in.Width() && y < in.Height())
        {
            Gather(in, box(x, y), 0, v);
            ASSERT_EQ(int(Mean<uint8_t>(nMode == eModeXY, nWidth)(v)),
                      int(At<uint8_t>(out, int32_t(x), int32_t(y))))
                << x << "," << y << " w " << nWidth << " mode " << nMode;
        }
}

} // namespace

TEST(IpFilterMid, EveryTypeMatchesTheMeanOfItsWindows)
{
    uint32_t nSeed = 1;
    for (ClImage::EDataType eType : AllTypes())
        ForType(eType,
                [&](auto t)
                {
                    for (const ClImage& in : Images(eType, nSeed))
                        ExpectAllWidths<decltype(t)>(in);
                });
    // Samples of 0, 1, 254 and 255 make sums one short of a multiple of the
    // count, the quotients nearest to the next integer.
    for (auto [w, h] : Sizes())
        ExpectAllWidths<uint8_t>(ImageOf<uint8_t>(ClImage::eUInt8, w, h, 1, {0, 1, 254, 255}, 50));
}

TEST(IpFilterMid, EightBitBoxesUpToTheLargestKeepTheIntegerQuotient)
{
    // Boxes of 253 x 253 and 255 x 255 (the largest of at most 65535
    // samples) and a wider one, on 255 with a few 254: every full box sums
    // to one short of a multiple of its count, or a few more short.
    ClImage in = ImageOf<uint8_t>(ClImage::eUInt8, 300, 270, 1, {255}, 1);
    for (auto [x, y] : {std::pair{150, 135}, {3, 4}, {299, 269}, {151, 0}})
        At<uint8_t>(in, x, y) = 254;
    std::vector<std::pair<long, long>> samples = {{299, 269}};
    for (long y = 0; y < 270; y += 13)
        for (long x = 0; x < 300; x += 11)
            samples.push_back({x, y});
    for (int32_t nWidth : {253, 255, 257})
        ExpectAtSamples(in, eModeXY, nWidth, samples);

    // Lines of up to 65535 samples and one beyond, along rows and down
    // columns (whose sums need more than 16 bits beyond 257 rows).
    for (bool bX : {true, false})
    {
        ClImage line =
            ImageOf<uint8_t>(ClImage::eUInt8, bX ? 70003 : 2, bX ? 2 : 70003, 1, {255}, 2);
        At<uint8_t>(line, bX ? 35000 : 0, bX ? 0 : 35000) = 254;
        At<uint8_t>(line, bX ? 5 : 1, bX ? 1 : 5) = 0;
        samples = {{1, 70002}, {70002, 1}};
        for (long i = 0; i < 70003; i += 997)
            for (long j : {0L, 1L})
                samples.push_back(bX ? std::pair{i, j} : std::pair{j, i});
        for (int32_t nWidth : {259, 65533, 65535, 65537})
            ExpectAtSamples(line, bX ? eModeX : eModeY, nWidth, samples);
    }
}
