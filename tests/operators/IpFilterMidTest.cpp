// ClIpFilterMid against the mean of each cut-off window, summed sample by
// sample, on random images of every type, every window width up to 31 and
// wider than the image; integer results bit for bit, 8-bit boxes up to the
// largest that the single-precision quotient serves.
#include <gtest/gtest.h>

#include <climits>
#include <vector>

#include "operators/IpFilterMid.h"
#include "support/OperatorTestImages.h"
#include "WindowReference.h"

using TestImages::At;
using WindowReference::CutOff;
using WindowReference::Walk;

namespace
{

std::vector<int> FilterRow(std::vector<uint8_t> values, int32_t nWidth)
{
    ClImage in, out;
    in.Create(ClImage::eUInt8, int32_t(values.size()), 1);
    std::copy(values.begin(), values.end(), in.Row<uint8_t>(0));
    ClIpFilterMid mid;
    mid.m_nMode = eModeX;
    EXPECT_EQ(0, mid.Run(&in, &out, nWidth));
    return std::vector<int>(out.Row<uint8_t>(0), out.Row<uint8_t>(0) + out.Width());
}

// The mean as defined. The width is forced odd. Mode X and Mode Y shorten
// a width that is not below the line to the line's length - 1 (0 is -101),
// start each sum at the rounding term h = w / 2 and divide by the samples
// of the cut-off window, but by w in the interior even when a shortened w
// is even. Mode XY divides the sum of the cut-off box by its samples and
// copies an image smaller than the window. Integer sums divide toward
// zero; floating ones are formed in double here.
template <typename T>
int32_t Expected(int32_t nMode, int32_t& nMember, const ClImage& in, ClImage& expected)
{
    nMember |= 1;
    long w = nMember;
    const long W = in.Width(), H = in.Height();
    expected = in;
    if (w <= 1)
        return 0; // copied by the base, whatever the mode
    const bool bBox = nMode == eModeXY;
    if (bBox && (W < w || H < w))
        return 0;
    if (!bBox && (nMember = int32_t(w = std::min(w, (nMode == eModeY ? H : W) - 1))) == 0)
        return ZRC_ERROR_INTERNAL;
    const long h = w / 2;
    auto box = [&](long x, long y)
    {
        const auto [x0, x1] = nMode != eModeY ? CutOff(x, W, h) : std::pair{x, x};
        const auto [y0, y1] = nMode != eModeX ? CutOff(y, H, h) : std::pair{y, y};
        return std::array<long, 4>{x0, x1, y0, y1};
    };
    auto mean = [&](const std::vector<T>& v)
    {
        const long n = long(v.size());
        std::conditional_t<std::is_integral_v<T>, int64_t, double> s = 0;
        if constexpr (std::is_integral_v<T>)
            s = bBox ? 0 : h;
        for (T x : v)
            s += x;
        return static_cast<T>(s / (bBox ? n : std::min(n, w)));
    };
    expected = Walk<T>(in, box, mean);
    return 0;
}

// Every mode and width on the image against the definition: integer
// results bit for bit, floating ones (running sums in the sample type) up to
// their rounding.
template <typename T> void ExpectAllWidths(const ClImage& in)
{
    std::vector<int32_t> widths = {INT32_MIN, 0, 40, 127};
    for (int32_t w = 1; w <= 31; ++w)
        widths.push_back(w);
    ClIpFilterMid mid;
    for (int32_t nMode : {eModeX, eModeY, eModeXY})
        for (int32_t nWidth : widths)
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
            if constexpr (std::is_integral_v<T>)
            {
                ASSERT_TRUE(TestImages::SameSamples(expected, out));
            }
            else
            {
                for (int32_t y = 0; y < in.Height(); ++y)
                    for (int64_t i = 0; i < int64_t(in.Width()) * in.Planes(); ++i)
                        ASSERT_NEAR(expected.Row<T>(y)[i], out.Row<T>(y)[i],
                                    sizeof(T) == 4 ? 0.05 : 1e-7);
            }
        }
}

// The definition at a few samples of a large image, for boxes too big to
// check everywhere.
template <typename T>
void ExpectAtSamples(const ClImage& in, const ClImage& out, int32_t nMode, long w,
                     const std::vector<std::pair<long, long>>& samples)
{
    const long h = w / 2, W = in.Width(), H = in.Height();
    for (auto [x, y] : samples)
    {
        const auto [x0, x1] = nMode != eModeY ? CutOff(x, W, h) : std::pair{x, x};
        const auto [y0, y1] = nMode != eModeX ? CutOff(y, H, h) : std::pair{y, y};
        int64_t s = nMode == eModeXY ? 0 : h;
        for (long j = y0; j <= y1; ++j)
            for (long i = x0; i <= x1; ++i)
                s += At<T>(in, int32_t(i), int32_t(j));
        const int64_t n = (x1 - x0 + 1) * (y1 - y0 + 1);
        ASSERT_EQ(int64_t(s / n), int64_t(At<T>(out, int32_t(x), int32_t(y))))
            << x << "," << y << " w " << w << " mode " << nMode;
    }
}

} // namespace

TEST(IpFilterMid, StatedExamples)
{
    // (1 + 10 + 20) / 2, (1 + 10 + 20 + 30) / 3, ..., (1 + 30 + 40) / 2.
    EXPECT_EQ((std::vector<int>{15, 20, 30, 35}), FilterRow({10, 20, 30, 40}, 3));
    // Width 5 is shortened to 3 on a row of 4, and the member shows it.
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 4, 3, 1, 7), out;
    ClIpFilterMid mid;
    mid.m_nMode = eModeX;
    ASSERT_EQ(0, mid.Run(&in, &out, 5));
    EXPECT_EQ(3, mid.m_nFilterWidth);
    // Mode XY on an image smaller than the window copies it.
    mid.m_nMode = eModeXY;
    ASSERT_EQ(0, mid.Run(&in, &out, 5));
    EXPECT_TRUE(TestImages::SameSamples(in, out));
    // A row of one sample shortens any width to 0.
    ClImage one = TestImages::RandomImage(ClImage::eUInt8, 1, 3, 1, 8);
    mid.m_nMode = eModeX;
    EXPECT_EQ(ZRC_ERROR_INTERNAL, mid.Run(&one, &out, 3));
}

TEST(IpFilterMid, EveryTypeMatchesTheMeanOfItsWindows)
{
    uint32_t nSeed = 1;
    for (ClImage::EDataType eType : TestImages::AllTypes())
    {
        // One-plane images of every border case, and planes filtered apart.
        std::vector<ClImage> images;
        for (auto [w, h] : WindowReference::Sizes())
            images.push_back(TestImages::RandomImage(eType, w, h, 1, nSeed++));
        images.push_back(TestImages::RandomImage(eType, 6, 5, 3, nSeed++));
        for (const ClImage& in : images)
            SelectDataType(eType,
                           [&](auto tag)
                           {
                               ExpectAllWidths<typename decltype(tag)::Type>(in);
                               return 0;
                           });
    }
}

TEST(IpFilterMid, EightBitExtremesMatchTheMeanOfTheirWindows)
{
    // Samples of 0, 1, 254 and 255 make sums one short of a multiple of the
    // count, the quotients nearest to the next integer.
    uint32_t nSeed = 50;
    for (auto [w, h] : WindowReference::Sizes())
        ExpectAllWidths<uint8_t>(
            WindowReference::ImageOf<uint8_t>(ClImage::eUInt8, w, h, 1, {0, 1, 254, 255}, nSeed++));
}

TEST(IpFilterMid, EightBitBoxesUpToTheLargestKeepTheIntegerQuotient)
{
    // Boxes of 253 x 253 and 255 x 255 (the largest of at most 65535
    // samples) and a wider one, on 255 with a few 254: every full box sums
    // to one short of a multiple of its count, or a few more short.
    ClImage in = WindowReference::ImageOf<uint8_t>(ClImage::eUInt8, 300, 270, 1, {255}, 1);
    for (auto [x, y] : {std::pair{150, 135}, {3, 4}, {299, 269}, {151, 0}})
        At<uint8_t>(in, x, y) = 254;
    std::vector<std::pair<long, long>> samples;
    for (long y = 0; y < 270; y += 13)
        for (long x = 0; x < 300; x += 11)
            samples.push_back({x, y});
    samples.push_back({299, 269});
    ClIpFilterMid mid;
    for (int32_t nWidth : {253, 255, 257})
    {
        ClImage out;
        mid.m_nMode = eModeXY;
        ASSERT_EQ(0, mid.Run(&in, &out, nWidth));
        ExpectAtSamples<uint8_t>(in, out, eModeXY, nWidth, samples);
    }

    // Lines of up to 65535 samples and one beyond, along rows and down
    // columns (whose sums need more than 16 bits beyond 257 rows).
    for (int32_t nMode : {eModeX, eModeY})
    {
        const bool bX = nMode == eModeX;
        ClImage line = WindowReference::ImageOf<uint8_t>(ClImage::eUInt8, bX ? 70003 : 2,
                                                         bX ? 2 : 70003, 1, {255}, 2);
        At<uint8_t>(line, bX ? 35000 : 0, bX ? 0 : 35000) = 254;
        At<uint8_t>(line, bX ? 5 : 1, bX ? 1 : 5) = 0;
        std::vector<std::pair<long, long>> lineSamples;
        for (long i = 0; i < 70003; i += 997)
            for (long j : {0L, 1L})
                lineSamples.push_back(bX ? std::pair{i, j} : std::pair{j, i});
        lineSamples.push_back({1, 70002});
        lineSamples.push_back({70002, 1});
        for (int32_t nWidth : {259, 65533, 65535, 65537})
        {
            ClImage out;
            mid.m_nMode = nMode;
            ASSERT_EQ(0, mid.Run(&line, &out, nWidth));
            std::vector<std::pair<long, long>> inside;
            for (auto [x, y] : lineSamples)
                if (x < line.Width() && y < line.Height())
                    inside.push_back({x, y});
            ExpectAtSamples<uint8_t>(line, out, nMode, nWidth, inside);
        }
    }
}

TEST(IpFilterMid, TheAlternativeFlagGivesTheSameResults)
{
    ClImage in = TestImages::RandomImage(ClImage::eUInt8, 23, 17, 1, 9);
    for (int32_t nWidth : {3, 5, 9})
    {
        ClIpFilterMid plain, alternative;
        alternative.m_bAlternativeXY = true;
        ClImage a, b;
        ASSERT_EQ(0, plain.Run(&in, &a, nWidth));
        ASSERT_EQ(0, alternative.Run(&in, &b, nWidth));
        EXPECT_TRUE(TestImages::SameSamples(a, b));
    }
}
