#pragma once
// Brute-force references of the sliding-window filters: every output sample
// gathers the samples of its window one by one and combines them, with no
// running update, so that a fast filter can be compared with it bit for bit.
#include <algorithm>
#include <array>
#include <random>
#include <utility>
#include <vector>

#include "image/FpImage.h"
#include "support/OperatorTestImages.h"

namespace WindowReference
{

// The image whose sample (x, y, p) is combine(v), v holding the samples of
// plane p in the box {x0, x1, y0, y1} = box(x, y), row by row, coordinates
// clamped to the image.
template <typename T, typename B, typename C> ClImage Walk(const ClImage& in, B box, C combine)
{
    ClImage out;
    out.CreateLike(in);
    const long W = in.Width(), H = in.Height();
    std::vector<T> v;
    for (uint32_t p = 0; p < in.Planes(); ++p)
        for (long y = 0; y < H; ++y)
            for (long x = 0; x < W; ++x)
            {
                const std::array<long, 4> b = box(x, y);
                v.clear();
                for (long j = b[2]; j <= b[3]; ++j)
                    for (long i = b[0]; i <= b[1]; ++i)
                        v.push_back(TestImages::At<T>(in, int32_t(std::clamp(i, 0L, W - 1)),
                                                      int32_t(std::clamp(j, 0L, H - 1)), p));
                TestImages::At<T>(out, int32_t(x), int32_t(y), p) = combine(v);
            }
    return out;
}

// The window of position i on a line of n, cut off at the line's ends.
inline std::pair<long, long> CutOff(long i, long n, long h)
{
    return {std::max(0L, i - h), std::min(n - 1, i + h)};
}

// A box function of the cut-off window along rows (bX) or columns.
inline auto LineBox(long W, long H, long h, bool bX)
{
    return [=](long x, long y)
    {
        const auto [a, b] = CutOff(bX ? x : y, bX ? W : H, h);
        return bX ? std::array<long, 4>{a, b, y, y} : std::array<long, 4>{x, x, a, b};
    };
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

} // namespace WindowReference
