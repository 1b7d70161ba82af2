#include "image/Bitmap.h"

#include <cstddef>
#include <cstring>
#include <limits>
#include <new>

#include "sdk/Exception.h"

namespace
{

const uint32_t kFileHeaderBytes = sizeof(SentivoBitmapFileHeader);
const uint32_t kInfoHeaderBytes = sizeof(SentivoBitmapInfoHeader);

// The signature of a bitmap file header.
bool StartsWithFileSignature(const uint8_t* pBlock)
{
    return pBlock[0] == 'B' && pBlock[1] == 'M';
}

// Releases a private copy as the byte array it was allocated as.
struct ByteBlockDeleter
{
    void operator()(SentivoBitmapInfoHeader* p) const { delete[] reinterpret_cast<uint8_t*>(p); }
};

const SentivoBitmapInfoHeader* NeedHeader(const SentivoBitmapInfoHeader* pHeader)
{
    if (pHeader == nullptr)
        SENTIVO_THROW_CODE(ZRC_ERROR_BITMAP_PTR);
    return pHeader;
}

} // namespace

ClBitmap::ClBitmap(void* pHeader, bool bAttach)
{
    if (bAttach)
    {
        Attach(pHeader, 0);
        return;
    }

    const SentivoBitmapInfoHeader* pSource = CheckHeader(pHeader);
    const uint64_t nOffset = pSource->biSize + 4ull * ColourCount(pSource);
    // A negative height has no rows to copy; an image made from such a copy
    // is refused later for its area.
    const int64_t nPixelBytes = PixelBytes(pSource);
    const uint64_t nTotal = nOffset + (nPixelBytes > 0 ? static_cast<uint64_t>(nPixelBytes) : 0);

    // A block beyond PTRDIFF_MAX bytes is refused here: the array request
    // would throw a standard exception instead of failing.
    const bool bTooLarge = nTotal > static_cast<uint64_t>(std::numeric_limits<ptrdiff_t>::max());
    uint8_t* pBlock = bTooLarge ? nullptr : new (std::nothrow) uint8_t[nTotal];
    if (pBlock == nullptr)
        SENTIVO_THROW_BAD_ALLOC();
    std::memcpy(pBlock, pSource, nTotal);
    m_Header.reset(reinterpret_cast<SentivoBitmapInfoHeader*>(pBlock), ByteBlockDeleter());
    // The pixels came with the block; the colours pointer of a copy stays null.
    m_Pixels = boost::shared_ptr<uint8_t>(pBlock + nOffset, BIH_deleter{m_Header});
}

void ClBitmap::Clear()
{
    m_Pixels.reset();
    m_pColours = nullptr;
    m_Header.reset();
}

void ClBitmap::Attach(void* pBlock, uint32_t nSize)
{
    Clear();
    try
    {
        AttachChecked(static_cast<uint8_t*>(pBlock), nSize);
    }
    catch (const ClException&)
    {
        Clear();
        throw;
    }
    catch (const std::bad_alloc&)
    {
        // The shares' bookkeeping could not be allocated.
        Clear();
        SENTIVO_THROW_BAD_ALLOC();
    }
}

void ClBitmap::AttachChecked(uint8_t* pBlock, uint32_t nSize)
{
    if (pBlock == nullptr)
        SENTIVO_THROW("No Bitmap to Attach", ZRC_ERROR_BITMAP_PTR);

    // A sized block of one byte cannot hold the two-byte signature, and its
    // second byte is not ours to read; it fails the size test below.
    if ((nSize == 0 || nSize >= 2) && StartsWithFileSignature(pBlock))
    {
        if (nSize != 0 && nSize <= kFileHeaderBytes)
            SENTIVO_THROW_CODE(ZRC_ERROR_BITMAP_PTR);
        pBlock += kFileHeaderBytes;
        if (nSize != 0)
            nSize -= kFileHeaderBytes;
    }
    if (nSize >= 1 && nSize < kInfoHeaderBytes)
        SENTIVO_THROW_CODE(ZRC_ERROR_TEMPLATE_SIZE);

    const SentivoBitmapInfoHeader* pHeader = CheckHeader(pBlock);
    // Size 0 means unknown: no size is tested. A given size must hold the
    // header, the colour table and every pixel row, down to the last byte.
    const bool bSized = nSize != 0;
    uint64_t nRemaining = bSized ? nSize - kInfoHeaderBytes : 0;

    m_Header.reset(reinterpret_cast<SentivoBitmapInfoHeader*>(pBlock), void_deleter());

    const uint32_t nColours = ColourCount(pHeader);
    if (nColours != 0)
    {
        const uint64_t nColourBytes = 4ull * nColours;
        if (bSized && nColourBytes > nRemaining)
            SENTIVO_THROW_CODE(ZRC_ERROR_TEMPLATE_SIZE);
        if (bSized)
            nRemaining -= nColourBytes;
        m_pColours = reinterpret_cast<SentivoBitmapRgbQuad*>(pBlock + kInfoHeaderBytes);
    }

    m_Pixels = boost::shared_ptr<uint8_t>(pBlock + PixelOffset(pHeader), BIH_deleter{m_Header});

    const int64_t nPixelBytes = PixelBytes(pHeader);
    if (bSized && (nPixelBytes < 0 || static_cast<uint64_t>(nPixelBytes) > nRemaining))
        SENTIVO_THROW_CODE(ZRC_ERROR_TEMPLATE_SIZE);
}

const SentivoBitmapInfoHeader* ClBitmap::CheckHeader(const void* pHeader)
{
    if (pHeader == nullptr)
        SENTIVO_THROW("ClBitmap::Attach, Pointer is NULL.", ZRC_ERROR_BITMAP_PTR);
    if (StartsWithFileSignature(static_cast<const uint8_t*>(pHeader)))
        SENTIVO_THROW("ClBitmap::Attach, Bitmapfileheader found Bitmapinfoheader expected.",
                      ZRC_ERROR_BITMAP_UNEXPECTED_FILEHEADER);

    const SentivoBitmapInfoHeader* pInfo = static_cast<const SentivoBitmapInfoHeader*>(pHeader);
    if (pInfo->biSize != kInfoHeaderBytes)
        SENTIVO_THROW("ClBitmap::Attach, Bitmap Header size is not known.",
                      ZRC_ERROR_BITMAP_HEADERSIZE);
    if (pInfo->biPlanes != 1)
        SENTIVO_THROW("ClBitmap::Attach, pBI->biPlanes != 1.", ZRC_ERROR_BITMAP_PLANE);
    // Uncompressed, two run-length forms and bit-field masks.
    if (pInfo->biCompression > 3)
        SENTIVO_THROW("ClBitmap::Attach, Not Supported FOCC.", ZRC_ERROR_BITMAP_COMPRESSION);
    switch (pInfo->biBitCount)
    {
    case 1:
    case 4:
    case 8:
    case 16:
    case 24:
    case 32:
        break;
    default:
        SENTIVO_THROW("The Bitmap format does only support 1, 4, 8, 16, 24 and 32 bit counts!",
                      ZRC_ERROR_BITMAP_BITCOUNT);
    }
    return pInfo;
}

uint32_t ClBitmap::ColourCount(const SentivoBitmapInfoHeader* pHeader)
{
    NeedHeader(pHeader);
    const uint32_t nBitCount = pHeader->biBitCount;
    if (nBitCount > 8)
        return pHeader->biCompression == 3 ? 3 : pHeader->biClrUsed;
    return pHeader->biClrUsed != 0 ? pHeader->biClrUsed : 1u << nBitCount;
}

int64_t ClBitmap::RowBytes(const SentivoBitmapInfoHeader* pHeader)
{
    NeedHeader(pHeader);
    const int64_t nBits = static_cast<int64_t>(pHeader->biBitCount) * pHeader->biWidth + 7;
    // Rounded down, also for a negative width.
    const int64_t nBytes = nBits >= 0 ? nBits / 8 : -((-nBits + 7) / 8);
    return (nBytes + 3) & ~int64_t(3);
}

int64_t ClBitmap::PixelBytes(const SentivoBitmapInfoHeader* pHeader)
{
    // Only an unchecked bit count can overflow; the size then sticks at the
    // end of the range, which no block holds.
    int64_t nBytes;
    if (__builtin_mul_overflow(RowBytes(pHeader), static_cast<int64_t>(pHeader->biHeight), &nBytes))
        return (pHeader->biHeight < 0) ? std::numeric_limits<int64_t>::min()
                                       : std::numeric_limits<int64_t>::max();
    return nBytes;
}

uint64_t ClBitmap::PixelOffset(const SentivoBitmapInfoHeader* pHeader)
{
    return kInfoHeaderBytes + 4ull * ColourCount(pHeader);
}
