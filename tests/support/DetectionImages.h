#pragma once
// Small 8-bit images for the detection stage tests, and the exception check.
#include <cstdint>
#include <functional>
#include <vector>

#include "image/FpImage.h"
#include "image/ImageTestSupport.h"

namespace TestImages
{

// W by H pixels of the given type, left as created.
inline ClImage Blank(ClImage::EDataType eType, int32_t W, int32_t H)
{
    ClImage image;
    image.Create(eType, W, H);
    return image;
}

// W by H pixels of value(x, y).
inline ClImage ImageOf(int32_t W, int32_t H, const std::function<int(int32_t, int32_t)>& value)
{
    ClImage image;
    image.Create(ClImage::eUInt8, W, H);
    for (int32_t y = 0; y < H; ++y)
        for (int32_t x = 0; x < W; ++x)
            image.Row<uint8_t>(y)[x] = static_cast<uint8_t>(value(x, y));
    return image;
}

inline ClImage Filled(int32_t W, int32_t H, int nValue)
{
    return ImageOf(W, H, [=](int32_t, int32_t) { return nValue; });
}

// W by H pixels of nValue but for the single pixel (x0, y0) of nSpot.
inline ClImage Spot(int32_t W, int32_t H, int nValue, int32_t x0, int32_t y0, int nSpot)
{
    return ImageOf(W, H, [=](int32_t x, int32_t y) { return x == x0 && y == y0 ? nSpot : nValue; });
}

// W columns holding the values row after row.
inline ClImage Grid(int32_t W, const std::vector<int>& v)
{
    return ImageOf(W, static_cast<int32_t>(v.size()) / W,
                   [&](int32_t x, int32_t y) { return v[y * W + x]; });
}

// nLength rows that each are the profile, or nLength such columns.
inline ClImage Striped(const std::vector<int>& profile, int32_t nLength, bool bColumns = false)
{
    const int32_t n = static_cast<int32_t>(profile.size());
    return ImageOf(bColumns ? nLength : n, bColumns ? n : nLength,
                   [&](int32_t x, int32_t y) { return profile[bColumns ? y : x]; });
}

// The pixels (x, y) of an 8-bit image for which where(x, y, value) holds.
inline int64_t Count(const ClImage& image, const std::function<bool(int32_t, int32_t, int)>& where)
{
    int64_t n = 0;
    for (int32_t y = 0; y < image.Height(); ++y)
        for (int32_t x = 0; x < image.Width(); ++x)
            n += where(x, y, image.Row<uint8_t>(y)[x]);
    return n;
}

} // namespace TestImages
