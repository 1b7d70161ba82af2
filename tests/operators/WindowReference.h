#pragma once
// Brute-force references of the sliding-window filters.
#include <algorithm>
#include <array>
#include <initializer_list>
#include <random>
#include <utility>
#include <vector>
#include <gtest/gtest.h>
#include "image/FpImage.h"
#include "processing/FilterMode.h"
#include "support/OperatorTestImages.h"

namespace WindowReference
{
using Box = std::array<long, 4>; // {x0, x1, y0, y1}, inclusive

// The samples of plane p in the box, row by row, coordinates clamped.
template <typename T> void Gather(const ClImage& in, const Box& b, uint32_t p, std::vector<T>& v)
{
    const long W = in.Width(), H = in.Height();
    v.clear();
    for (long j = b[2]; j <= b[3]; ++j)
        for (long i = b[0]; i <= b[1]; ++i)
            v.push_back(TestImages::At<T>(in, int32_t(std::clamp(i, 0L, W - 1)),
                                          int32_t(std::clamp(j, 0L, H - 1)), p));
}

// The image whose sample (x, y, p) is combine(the samples of box(x, y)).
template <typename T, typename B, typename C> ClImage Walk(const ClImage& in, B box, C combine)
{
    ClImage out;
    out.CreateLike(in);
    std::vector<T> v;
    for (uint32_t p = 0; p < in.Planes(); ++p)
        for (int32_t y = 0; y < in.Height(); ++y)
            for (int32_t x = 0; x < in.Width(); ++x)
            {
                Gather<T>(in, box(x, y), p, v);
                TestImages::At<T>(out, x, y, p) = combine(v);
            }
    return out;
}

// The box of a mode: range(i, n) for position i on a line of n along X, Y or both.
template <typename R> auto ModeBox(int32_t nMode, long W, long H, R range)
{
    return [=](long x, long y)
    {
        const auto [x0, x1] = nMode & eModeX ? range(x, W) : std::pair{x, x};
        const auto [y0, y1] = nMode & eModeY ? range(y, H) : std::pair{y, y};
        return Box{x0, x1, y0, y1};
    };
}

// The window of half width h, cut off at the line's ends.
inline auto CutOffBox(int32_t nMode, long W, long H, long h)
{
    return ModeBox(nMode, W, H,
                   [h](long i, long n) {
                       return std::pair{std::max(0L, i - h), std::min(n - 1, i + h)};
                   });
}

// A random image of the given values only: ties, limits and special values.
template <typename T>
ClImage ImageOf(ClImage::EDataType eType, int32_t nWidth, int32_t nHeight,
                const std::vector<T>& values, uint32_t nSeed)
{
    ClImage image = TestImages::RandomImage(eType, nWidth, nHeight, 1, nSeed);
    std::mt19937 rng(nSeed);
    std::uniform_int_distribution<size_t> pick(0, values.size() - 1);
    for (int32_t y = 0; y < nHeight; ++y)
        for (int32_t i = 0; i < nWidth; ++i)
            image.Row<T>(y)[i] = values[pick(rng)];
    return image;
}

// One pixel, row or column, narrow images, and ones beyond the widest window.
inline const std::vector<std::pair<int32_t, int32_t>> kSizes = {{1, 1}, {1, 6},  {6, 1},  {2, 2},
                                                                {3, 5}, {13, 9}, {37, 4}, {4, 35}};

// Random images of every size above, and one of three planes (filtered apart).
inline std::vector<ClImage> Images(ClImage::EDataType eType, uint32_t& nSeed)
{
    std::vector<ClImage> images;
    for (auto [w, h] : kSizes)
        images.push_back(TestImages::RandomImage(eType, w, h, 1, nSeed++));
    images.push_back(TestImages::RandomImage(eType, 6, 5, 3, nSeed++));
    return images;
}

// Widths 1 to 9, about 16 and 32, and the given ones (member extremes, wide).
inline std::vector<int32_t> Widths(std::initializer_list<int32_t> extra)
{
    std::vector<int32_t> widths(extra);
    widths.insert(widths.end(), {1, 2, 3, 4, 5, 6, 7, 8, 9, 15, 16, 17, 31, 32, 33});
    return widths;
}

// Calls f(T()) with the sample type T of eType.
template <typename F> void ForType(ClImage::EDataType eType, F f)
{
    (void)SelectDataType(eType,
                         [&](auto tag)
                         {
                             f(typename decltype(tag)::Type());
                             return 0;
                         });
}

// f(T(), image) for the Images() of every sample type T.
template <typename F> void ForEveryImage(uint32_t& nSeed, F f)
{
    for (ClImage::EDataType eType : TestImages::AllTypes())
        ForType(eType,
                [&](auto t)
                {
                    for (const ClImage& in : Images(eType, nSeed))
                        f(t, in);
                });
}

// Every mode and width: expect(mode, member, image) gives the code and image and
// turns the member from the width to the kept one; run(...) gives the filter's.
// A refusal keeps the output (planes past the first aside); floats up to dTolerance.
template <typename T, typename E, typename R>
void ExpectEveryModeAndWidth(const ClImage& in, std::initializer_list<int32_t> extra,
                             double dTolerance, E expect, R run)
{
    for (int32_t nMode : {eModeX, eModeY, eModeXY})
        for (int32_t nWidth : Widths(extra))
        {
            SCOPED_TRACE(testing::Message() << in.Width() << "x" << in.Height() << " mode " << nMode
                                            << " width " << nWidth);
            ClImage input = in, out, expected;
            int32_t nMember = nWidth;
            const int32_t nCode = expect(nMode, nMember, expected);
            if (nCode != 0)
                out.Assign(in);
            const uint8_t* pBefore = out.Data();
            const auto [nRunCode, nRunMember] = run(input, out, nMode, nWidth);
            ASSERT_EQ(nCode, nRunCode);
            EXPECT_EQ(nMember, nRunMember);
            if (nCode != 0)
                ASSERT_TRUE(in.Planes() > 1 ||
                            (pBefore == out.Data() && TestImages::SameSamples(in, out)));
            else if (std::is_integral_v<T> || dTolerance == 0)
                ASSERT_TRUE(TestImages::SameSamples(expected, out));
            else
                for (int32_t y = 0; y < in.Height(); ++y)
                    for (int64_t i = 0; i < int64_t(in.Width()) * in.Planes(); ++i)
                        ASSERT_NEAR(expected.Row<T>(y)[i], out.Row<T>(y)[i], dTolerance);
        }
}
} // namespace WindowReference
