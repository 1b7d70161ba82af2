#pragma once
// Test images for the operator and processor tests: random samples of every
// type, and plain access to one sample.
#include <cstdint>
#include <cstring>
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include "image/FpImage.h"
#include "image/SampleTraits.h"

namespace TestImages
{

// The eight sample formats, for loops over all of them.
inline const std::vector<ClImage::EDataType>& AllTypes()
{
    static const std::vector<ClImage::EDataType> types = {
        ClImage::eUInt8, ClImage::eUInt16, ClImage::eUInt32,  ClImage::eInt8,
        ClImage::eInt16, ClImage::eInt32,  ClImage::eFloat32, ClImage::eDouble64};
    return types;
}

// Sample x of row y in plane p, writable in a writable image.
template <typename T, typename I> auto& At(I& image, int32_t x, int32_t y, uint32_t p = 0)
{
    return image.template Row<T>(y)[static_cast<int64_t>(x) * image.Planes() + p];
}

// Equality of two samples bit for bit, so that NaNs of the same pattern agree.
template <typename T> bool BitEqual(T a, T b)
{
    return std::memcmp(&a, &b, sizeof(T)) == 0;
}

// A sample value spread over the whole range of an integer type, or over
// [-dSpread, dSpread] for floating types.
template <typename T> T RandomSample(std::mt19937& rng, double dSpread = 1000.0)
{
    if constexpr (std::is_floating_point_v<T>)
    {
        std::uniform_real_distribution<double> dist(-dSpread, dSpread);
        return static_cast<T>(dist(rng));
    }
    else
    {
        std::uniform_int_distribution<int64_t> dist(std::numeric_limits<T>::min(),
                                                    std::numeric_limits<T>::max());
        return static_cast<T>(dist(rng));
    }
}

// Fills every sample of the image (padding bytes of the rows too, with a
// marker byte, so that a loop that reads them shows up in the results).
inline void FillRandom(ClImage& image, uint32_t nSeed, double dSpread = 1000.0)
{
    std::mt19937 rng(nSeed);
    std::memset(image.Data(), 0xA5, static_cast<size_t>(image.ByteSize()));
    (void)SelectDataType(image.DataType(),
                         [&](auto tag)
                         {
                             using T = typename decltype(tag)::Type;
                             for (int32_t y = 0; y < image.Height(); ++y)
                             {
                                 T* pRow = image.Row<T>(y);
                                 for (int64_t i = 0;
                                      i < static_cast<int64_t>(image.Width()) * image.Planes(); ++i)
                                     pRow[i] = RandomSample<T>(rng, dSpread);
                             }
                             return 0;
                         });
}

inline ClImage RandomImage(ClImage::EDataType eType, int32_t nWidth, int32_t nHeight,
                           uint32_t nPlanes, uint32_t nSeed, double dSpread = 1000.0)
{
    ClImage image;
    image.Create(eType, nWidth, nHeight, nPlanes, 500, 500);
    FillRandom(image, nSeed, dSpread);
    return image;
}

// Whether two images hold the same samples (bit for bit, so NaNs compare
// equal), over width × planes samples per row.
inline bool SameSamples(const ClImage& a, const ClImage& b)
{
    if (a.DataType() != b.DataType() || a.Width() != b.Width() || a.Height() != b.Height() ||
        a.Planes() != b.Planes())
        return false;
    const size_t nBytes = static_cast<size_t>(a.Width()) * a.Planes() * a.SampleSize();
    for (int32_t y = 0; y < a.Height(); ++y)
        if (std::memcmp(a.Row<uint8_t>(y), b.Row<uint8_t>(y), nBytes) != 0)
            return false;
    return true;
}

// The remark of an exception text: what follows the table's sentence.
inline std::string Remark(const char* szMessage)
{
    const char* szBreak = std::strchr(szMessage, '\n');
    return szBreak ? std::string(szBreak + 1) : std::string(szMessage);
}

} // namespace TestImages
