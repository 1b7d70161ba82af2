#include "operators/WaveletD97.h"

#include <cstdlib>

#include "image/ArrayStatic.h"
#include "sdk/Exception.h"

void ClWaveletD97::Transform(ClImage& image, int32_t nLevel)
{
    // The same message covers a zero level and dimensions that do not divide.
    const int64_t nLevels = std::llabs(static_cast<int64_t>(nLevel));
    const int64_t nDivisor = int64_t(1) << (nLevels < 62 ? nLevels : 62);
    if (nLevel == 0 || image.Width() % nDivisor != 0 || image.Height() % nDivisor != 0)
        throw ClException("Image dimensions have to be multiples of 2^(abs(nLevel))",
                          ZRC_ERROR_INTERNAL);

    const ClImage::EDataType eType = image.DataType();
    if ((eType != ClImage::eFloat32 && eType != ClImage::eDouble64) || image.Data() == nullptr ||
        image.Width() < 1 || image.Height() < 1 || image.Planes() < 1)
        throw ClException("Only floating point images are allowed by now", ZRC_ERROR_INTERNAL);
    // The work buffer holds the whole image; its size is counted in 32 bits.
    if (int64_t(image.Width()) * image.Height() > int64_t(UINT32_MAX))
        SENTIVO_THROW_BAD_ALLOC();

    const int64_t nPitch = image.RowPitch();
    const int32_t nCount = static_cast<int32_t>(nLevels);
    if (nLevel > 0)
    {
        if (eType == ClImage::eFloat32)
            ForwardFloat(image.Row<float>(0), nPitch, image.Width(), image.Height(), nCount);
        else
            ForwardDouble(image.Row<double>(0), nPitch, image.Width(), image.Height(), nCount);
    }
    else
    {
        if (eType == ClImage::eFloat32)
            InverseFloat(image.Row<float>(0), nPitch, image.Width(), image.Height(), nCount);
        else
            InverseDouble(image.Row<double>(0), nPitch, image.Width(), image.Height(), nCount);
    }
}

namespace
{

// The body of the four members: one work buffer of W x H samples per call,
// whatever the levels, and the levels of one direction on it.
template <bool bForward, typename T>
void RunLevels(T* pData, int64_t nPitch, int32_t nWidth, int32_t nHeight, int32_t nLevels)
{
    TpArrayStatic<T> work(static_cast<uint32_t>(int64_t(nWidth) * nHeight));
    if constexpr (bForward)
        WaveletD97::Forward(pData, nPitch, nWidth, nHeight, nLevels, work.Data());
    else
        WaveletD97::Inverse(pData, nPitch, nWidth, nHeight, nLevels, work.Data());
}

} // namespace

void ClWaveletD97::ForwardFloat(float* pData, int64_t nPitch, int32_t nWidth, int32_t nHeight,
                                int32_t nLevels)
{
    RunLevels<true>(pData, nPitch, nWidth, nHeight, nLevels);
}

void ClWaveletD97::ForwardDouble(double* pData, int64_t nPitch, int32_t nWidth, int32_t nHeight,
                                 int32_t nLevels)
{
    RunLevels<true>(pData, nPitch, nWidth, nHeight, nLevels);
}

void ClWaveletD97::InverseFloat(float* pData, int64_t nPitch, int32_t nWidth, int32_t nHeight,
                                int32_t nLevels)
{
    RunLevels<false>(pData, nPitch, nWidth, nHeight, nLevels);
}

void ClWaveletD97::InverseDouble(double* pData, int64_t nPitch, int32_t nWidth, int32_t nHeight,
                                 int32_t nLevels)
{
    RunLevels<false>(pData, nPitch, nWidth, nHeight, nLevels);
}
