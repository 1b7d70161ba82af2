#pragma once
// Brute-force references of the sliding-window filters: every output sample
// combines the samples of its window gathered one by one.
#include <algorithm>
#include <array>
#include <initializer_list>
#include <random>
#include <utility>
#include <vector>

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

// The box of a mode: range(i, n) for position i on a line of n, along rows
// (Mode X), columns (Mode Y) or both.
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
ClImage ImageOf(ClImage::EDataType eType, int32_t nWidth, int32_t nHeight, uint32_t nPlanes,
                const std::vector<T>& values, uint32_t nSeed)
{
    ClImage image = TestImages::RandomImage(eType, nWidth, nHeight, nPlanes, nSeed);
    std::mt19937 rng(nSeed);
    std::uniform_int_distribution<size_t> pick(0, values.size() - 1);
    for (int32_t y = 0; y < nHeight; ++y)
        for (int64_t i = 0; i < int64_t(nWidth) * nPlanes; ++i)
            image.Row<T>(y)[i] = values[pick(rng)];
    return image;
}

// Sizes at a window's borders: one pixel, row or column, narrow images, and
// images beyond the widest window tried.
inline const std::vector<std::pair<int32_t, int32_t>> kSizes = {{1, 1}, {1, 6},  {6, 1},  {2, 2},
                                                                {3, 5}, {13, 9}, {37, 4}, {4, 35}};
inline const std::vector<std::pair<int32_t, int32_t>>& Sizes()
{
    return kSizes;
}

// Random images of every size above, and one of three planes (filtered apart).
inline std::vector<ClImage> Images(ClImage::EDataType eType, uint32_t& nSeed)
{
    std::vector<ClImage> images;
    for (auto [w, h] : Sizes())
        images.push_back(TestImages::RandomImage(eType, w, h, 1, nSeed++));
    images.push_back(TestImages::RandomImage(eType, 6, 5, 3, nSeed++));
    return images;
}

// Widths 1 to 9 (odd and even), the powers of two about 16 and 32, and the
// given ones (the member's extremes, wider than every image).
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

} // namespace WindowReference
