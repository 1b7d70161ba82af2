#pragma once
// Brute-force references of the sliding-window filters: every output sample
// gathers the samples of its window one by one and combines them, with no
// running update, so that a fast filter can be compared with it bit for bit.
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

// The samples of plane p in the box, row by row, coordinates clamped to the
// image.
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
// in Mode X, down columns in Mode Y, both in Mode XY.
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
    return ModeBox(nMode, W, H, [h](long i, long n)
                   { return std::pair{std::max(0L, i - h), std::min(n - 1, i + h)}; });
}

// A random image whose samples come only from the given values, so that
// ties, the type's limits and special values occur often.
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

// Image sizes that meet the border cases of a window: one pixel, one row,
// one column, narrow images, and images wider or taller than the widest
// window tried.
inline const std::vector<std::pair<int32_t, int32_t>>& Sizes()
{
    static const std::vector<std::pair<int32_t, int32_t>> sizes = {
        {1, 1}, {1, 6}, {6, 1}, {2, 2}, {3, 5}, {13, 9}, {37, 4}, {4, 35}};
    return sizes;
}

// Random images of the type in every size above, one plane each, and one of
// three planes, which are filtered apart.
inline std::vector<ClImage> Images(ClImage::EDataType eType, uint32_t& nSeed)
{
    std::vector<ClImage> images;
    for (auto [w, h] : Sizes())
        images.push_back(TestImages::RandomImage(eType, w, h, 1, nSeed++));
    images.push_back(TestImages::RandomImage(eType, 6, 5, 3, nSeed++));
    return images;
}

// Every width up to 31 and the given ones (the member's extremes, wider
// than every image).
inline std::vector<int32_t> Widths(std::initializer_list<int32_t> extra)
{
    std::vector<int32_t> widths(extra);
    for (int32_t w = 1; w <= 31; ++w)
        widths.push_back(w);
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
