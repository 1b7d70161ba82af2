#pragma once
// ClBitmap: a checked view of a device-independent bitmap block (an info
// header, optionally behind a file header, then a colour table, then the
// pixel rows), either over the caller's memory or over a private copy. Header
// and pixels are shared pointers, so a ClImage can share the pixels without
// knowing who owns the block.
#include <cstdint>

#include <boost/shared_ptr.hpp>

// The bitmap structures are read straight from the caller's block, which may
// start at any address: packed, so every field may be read in place.
static_assert(__BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__, "bitmap headers are little-endian");

#pragma pack(push, 1)

// The 14-byte header of a bitmap file, starting with "BM".
struct SentivoBitmapFileHeader
{
    uint16_t bfType;
    uint32_t bfSize;
    uint16_t bfReserved1;
    uint16_t bfReserved2;
    uint32_t bfOffBits;
};

// The 40-byte info header; no other header version is accepted.
struct SentivoBitmapInfoHeader
{
    uint32_t biSize;
    int32_t biWidth;
    int32_t biHeight;
    uint16_t biPlanes;
    uint16_t biBitCount;
    uint32_t biCompression;
    uint32_t biSizeImage;
    int32_t biXPelsPerMeter;
    int32_t biYPelsPerMeter;
    uint32_t biClrUsed;
    uint32_t biClrImportant;
};

// One colour table entry.
struct SentivoBitmapRgbQuad
{
    uint8_t rgbBlue;
    uint8_t rgbGreen;
    uint8_t rgbRed;
    uint8_t rgbReserved;
};

#pragma pack(pop)

static_assert(sizeof(SentivoBitmapFileHeader) == 14, "file header is 14 bytes");
static_assert(sizeof(SentivoBitmapInfoHeader) == 40, "info header is 40 bytes");
static_assert(sizeof(SentivoBitmapRgbQuad) == 4, "colour entry is 4 bytes");

class ClBitmap
{
public:
    // Release action of a header share over the caller's block: the block is
    // not ours to free.
    struct void_deleter
    {
        void operator()(const void*) const {}
    };

    // Release action of the pixel share: the pixels are an inner pointer of
    // the header's block, so the pixel share holds a share of the header and
    // gives it up when the last pixel sharer goes.
    struct BIH_deleter
    {
        boost::shared_ptr<SentivoBitmapInfoHeader> m_Header;
        void operator()(const void*) { m_Header.reset(); }
    };

    ClBitmap() = default;
    // bAttach true: a view of the block without size tests (Attach with size
    // 0). bAttach false: a private copy of header, colour table and pixels.
    ClBitmap(void* pHeader, bool bAttach);
    ClBitmap(const ClBitmap&) = default;
    ClBitmap& operator=(const ClBitmap&) = default;
    virtual ~ClBitmap() = default;

    void Clear();
    // Checks the block and makes this bitmap a view of it. nSize is the
    // block's size in bytes, 0 when unknown (then no size is tested). A
    // failure leaves the bitmap empty.
    void Attach(void* pBlock, uint32_t nSize);

    SentivoBitmapInfoHeader* Header() const { return m_Header.get(); }
    SentivoBitmapRgbQuad* Colours() const { return m_pColours; }
    uint8_t* Pixels() const { return m_Pixels.get(); }
    const boost::shared_ptr<uint8_t>& PixelShare() const { return m_Pixels; }

    // The tests every accepted info header passes; returns the pointer.
    static const SentivoBitmapInfoHeader* CheckHeader(const void* pHeader);

    // Colour table entries: for more than 8 bits 3 (masks of compression 3)
    // or biClrUsed, for 8 bits or fewer biClrUsed or, when 0, 2^biBitCount.
    static uint32_t ColourCount(const SentivoBitmapInfoHeader* pHeader);
    // Bytes of one pixel row, padded to four.
    static int64_t RowBytes(const SentivoBitmapInfoHeader* pHeader);
    // Row bytes times the height as stored (negative for a negative height).
    static int64_t PixelBytes(const SentivoBitmapInfoHeader* pHeader);
    // Offset of the first pixel byte from the start of the info header.
    static uint64_t PixelOffset(const SentivoBitmapInfoHeader* pHeader);

    uint32_t ColourCount() const { return ColourCount(Header()); }
    int64_t RowBytes() const { return RowBytes(Header()); }
    int64_t PixelBytes() const { return PixelBytes(Header()); }
    uint64_t PixelOffset() const { return PixelOffset(Header()); }

private:
    void AttachChecked(uint8_t* pBlock, uint32_t nSize);

    boost::shared_ptr<SentivoBitmapInfoHeader> m_Header;
    SentivoBitmapRgbQuad* m_pColours = nullptr;
    boost::shared_ptr<uint8_t> m_Pixels;
};
