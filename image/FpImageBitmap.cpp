// The bridge from a checked bitmap to an image: sharing its pixels or copying
// them into a buffer of the image's own.
#include <cstring>

#include "image/Bitmap.h"
#include "image/FpImage.h"
#include "sdk/Exception.h"

ClImage::ClImage(const ClBitmap& bitmap)
{
    Clear();
    FromBitmap(bitmap);
}

bool ClImage::FromBitmap(const ClBitmap& bitmap)
{
    Clear();
    const SentivoBitmapInfoHeader* pHeader = bitmap.Header();
    // An empty bitmap has nothing to share; it is refused like a compressed one.
    if (pHeader == nullptr || pHeader->biCompression != 0)
        return false;

    uint32_t nPlanes = 0;
    switch (pHeader->biBitCount)
    {
    case 8:
        nPlanes = 1;
        break;
    case 24:
        nPlanes = 3;
        break;
    case 32:
        nPlanes = 4;
        break;
    default:
        SENTIVO_THROW("bitmap bit depth not supported\n", ZRC_ERROR_BITMAP_BITCOUNT);
    }

    // The bitmap's rows are padded to four bytes as the image's are, so the
    // pixel block is shared as it stands; the palette is ignored.
    m_eDataType = eUInt8;
    m_nPlanes = nPlanes;
    m_nWidth = pHeader->biWidth;
    m_nHeight = pHeader->biHeight;
    m_nXResolution = pHeader->biXPelsPerMeter;
    m_nYResolution = pHeader->biYPelsPerMeter;
    m_Data = bitmap.PixelShare();
    m_eContent = ContentOfPlanes(nPlanes);
    SetBoundsForType(m_eDataType);
    return true;
}

ClImage& ClImage::AssignBitmap(const ClBitmap& bitmap)
{
    ClImage shared;
    shared.FromBitmap(bitmap);
    // A refused bitmap leaves the temporary cleared, and CreateLike then
    // throws for its empty area.
    CreateLike(shared);
    std::memcpy(Data(), shared.Data(), static_cast<size_t>(ByteSize()));
    return *this;
}
