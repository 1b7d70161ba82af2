#pragma once
// Row-pointer walks over one-plane images, for the pixel loops of the
// detection stages: a typed view checks the image once, and ForEachPixel
// hands a function the samples of several images of one size at each pixel,
// rows from 0 upward, columns left to right. No virtual call and no
// allocation happens per pixel.
#include <cstdint>

#include "image/FpImage.h"
#include "image/SampleTraits.h"
#include "sdk/Exception.h"

namespace PixelWalk
{

// A one-plane image seen as rows of T. The view refuses an image of another
// sample type or with another plane count, so that a loop never reads a
// sample of the wrong size.
template <typename T> class TpView
{
public:
    using Sample = std::remove_const_t<T>;
    using Image = std::conditional_t<std::is_const_v<T>, const ClImage, ClImage>;

    explicit TpView(Image& image)
        : m_pData(image.Data()), m_nStride(image.RowStride()), m_nWidth(image.Width()),
          m_nHeight(image.Height())
    {
        if (image.DataType() != SampleTraits<Sample>::eType || image.Planes() != 1 ||
            (m_pData == nullptr && image.Width() > 0 && image.Height() > 0))
            SENTIVO_THROW("Image of an unexpected sample type", ZRC_ERROR_INVALID_PARAMETER);
    }

    int32_t Width() const { return m_nWidth; }
    int32_t Height() const { return m_nHeight; }
    T* Row(int32_t y) const { return reinterpret_cast<T*>(m_pData + y * m_nStride); }
    T& At(int32_t x, int32_t y) const { return Row(y)[x]; }

private:
    std::conditional_t<std::is_const_v<T>, const uint8_t*, uint8_t*> m_pData;
    int64_t m_nStride;
    int32_t m_nWidth;
    int32_t m_nHeight;
};

template <typename T> TpView<T> View(ClImage& image)
{
    return TpView<T>(image);
}
template <typename T> TpView<const T> View(const ClImage& image)
{
    return TpView<const T>(image);
}

namespace Detail
{
template <typename F, typename... P> inline void Row(F& f, int32_t nWidth, P*... pRows)
{
    for (int32_t x = 0; x < nWidth; ++x)
        f(pRows[x]...);
}
} // namespace Detail

// f(sample of the first view, sample of the second, ...) at every pixel of
// the first view; every other view must have its size (-44 otherwise).
template <typename F, typename First, typename... Rest>
void ForEachPixel(F&& f, const TpView<First>& first, const TpView<Rest>&... rest)
{
    const int32_t W = first.Width(), H = first.Height();
    const bool bSameSize = ((rest.Width() == W && rest.Height() == H) && ...);
    if (!bSameSize)
        SENTIVO_THROW("Images of different sizes", ZRC_ERROR_INVALID_PARAMETER);
    for (int32_t y = 0; y < H; ++y)
        Detail::Row(f, W, first.Row(y), rest.Row(y)...);
}

} // namespace PixelWalk
