#include "image/Bitmap.h"

#include <gtest/gtest.h>

#include "ImageTestSupport.h"

namespace
{

const char* const kNull = "ClBitmap::Attach, Pointer is NULL.";
const char* const kFileHeader =
    "ClBitmap::Attach, Bitmapfileheader found Bitmapinfoheader expected.";
const char* const kHeaderSize = "ClBitmap::Attach, Bitmap Header size is not known.";
const char* const kPlanes = "ClBitmap::Attach, pBI->biPlanes != 1.";
const char* const kCompression = "ClBitmap::Attach, Not Supported FOCC.";
const char* const kBitCount =
    "The Bitmap format does only support 1, 4, 8, 16, 24 and 32 bit counts!";

// An 8-bit grey bitmap of 4 x 2 pixels: 40 + 1024 + 8 bytes.
std::vector<uint8_t> GreyBlock(bool bFileHeader = false)
{
    return MakeBitmapBlock(4, 2, 8, 256, 0, 0, bFileHeader);
}

} // namespace

TEST(Bitmap, CheckHeaderReportsTheFirstFailingTestInOrder)
{
    ExpectThrows([] { ClBitmap::CheckHeader(nullptr); }, -10, kNull);

    std::vector<uint8_t> block = GreyBlock();
    SentivoBitmapInfoHeader* pInfo = InfoOf(block);
    EXPECT_EQ(ClBitmap::CheckHeader(pInfo), pInfo);

    // Each fault is laid on top of the ones after it, so each case also shows
    // that the earlier test wins.
    pInfo->biBitCount = 2;
    ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, -12, kBitCount);
    pInfo->biCompression = 4;
    ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, -31, kCompression);
    pInfo->biPlanes = 0;
    ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, -11, kPlanes);
    pInfo->biSize = 124; // a newer header version
    ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, -32, kHeaderSize);
    block[0] = 'B';
    block[1] = 'M';
    ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, -36, kFileHeader);

    // Every accepted bit count and compression passes.
    block = GreyBlock();
    for (uint16_t nBits : {1, 4, 8, 16, 24, 32})
        for (uint32_t nCompression : {0u, 1u, 2u, 3u})
        {
            InfoOf(block)->biBitCount = nBits;
            InfoOf(block)->biCompression = nCompression;
            EXPECT_NO_THROW(ClBitmap::CheckHeader(block.data()));
        }
}

TEST(Bitmap, DerivedValuesFollowBitCountCompressionAndColoursUsed)
{
    SentivoBitmapInfoHeader h{};
    h.biSize = 40;
    h.biPlanes = 1;
    const struct
    {
        uint16_t nBits;
        uint32_t nCompression, nClrUsed, nColours;
    } cases[] = {{8, 0, 0, 256}, {8, 0, 17, 17}, {4, 0, 0, 16}, {1, 0, 0, 2},
                 {24, 0, 0, 0},  {24, 0, 5, 5},  {16, 3, 0, 3}, {32, 3, 9, 3}};
    for (const auto& c : cases)
    {
        h.biBitCount = c.nBits;
        h.biCompression = c.nCompression;
        h.biClrUsed = c.nClrUsed;
        EXPECT_EQ(ClBitmap::ColourCount(&h), c.nColours) << c.nBits << " bits";
        EXPECT_EQ(ClBitmap::PixelOffset(&h), 40u + 4u * c.nColours);
    }

    const struct
    {
        uint16_t nBits;
        int32_t nWidth;
        int64_t nRowBytes;
    } rows[] = {{8, 3, 4}, {1, 1, 4}, {1, 33, 8}, {24, 5, 16}, {32, 3, 12}, {4, 9, 8}, {8, 0, 0}};
    for (const auto& r : rows)
    {
        h.biBitCount = r.nBits;
        h.biWidth = r.nWidth;
        h.biHeight = 7;
        EXPECT_EQ(ClBitmap::RowBytes(&h), r.nRowBytes) << r.nBits << " bits, width " << r.nWidth;
        EXPECT_EQ(ClBitmap::PixelBytes(&h), 7 * r.nRowBytes);
    }

    ExpectThrows<ClExVelmoran>([] { ClBitmap::ColourCount(nullptr); }, -10);
    ExpectThrows<ClExVelmoran>([] { ClBitmap().ColourCount(); }, -10);
}

TEST(Bitmap, AttachSetsColoursAndPixelsBehindTheHeader)
{
    std::vector<uint8_t> grey = GreyBlock();
    ClBitmap bitmap;
    bitmap.Attach(grey.data(), static_cast<uint32_t>(grey.size()));
    EXPECT_EQ(static_cast<void*>(bitmap.Header()), grey.data());
    EXPECT_EQ(reinterpret_cast<uint8_t*>(bitmap.Colours()), grey.data() + 40);
    EXPECT_EQ(bitmap.Pixels(), grey.data() + 1064);
    EXPECT_EQ(bitmap.PixelBytes(), 8);

    // The file header is stepped over, also without a size.
    std::vector<uint8_t> file = GreyBlock(true);
    for (uint32_t nSize : {static_cast<uint32_t>(file.size()), 0u})
    {
        bitmap.Attach(file.data(), nSize);
        EXPECT_EQ(static_cast<void*>(bitmap.Header()), file.data() + 14);
        EXPECT_EQ(bitmap.Pixels(), file.data() + 14 + 1064);
    }

    // No colour table: no colours pointer, pixels right behind the header.
    std::vector<uint8_t> rgb = MakeBitmapBlock(3, 2, 24, 0);
    bitmap.Attach(rgb.data(), static_cast<uint32_t>(rgb.size()));
    EXPECT_EQ(bitmap.Colours(), nullptr);
    EXPECT_EQ(bitmap.Pixels(), rgb.data() + 40);

    // Three bit-field masks for 16 bits with compression 3.
    std::vector<uint8_t> masks = MakeBitmapBlock(2, 2, 16, 3, 0, 3);
    bitmap.Attach(masks.data(), static_cast<uint32_t>(masks.size()));
    EXPECT_EQ(bitmap.Pixels(), masks.data() + 52);

    // Without a size nothing is measured: the header may claim any height.
    InfoOf(grey)->biHeight = 100000;
    bitmap.Attach(grey.data(), 0);
    EXPECT_EQ(bitmap.Pixels(), grey.data() + 1064);
}

TEST(Bitmap, FailedAttachLeavesTheBitmapEmpty)
{
    std::vector<uint8_t> grey = GreyBlock();
    ClBitmap bitmap;
    auto attach = [&](void* p, uint32_t nSize)
    {
        bitmap.Attach(grey.data(), 0);
        bitmap.Attach(p, nSize);
    };
    ExpectThrows([&] { attach(nullptr, 0); }, -10, "No Bitmap to Attach");
    EXPECT_EQ(bitmap.Header(), nullptr);
    ExpectThrows([&] { attach(nullptr, 1072); }, -10, "No Bitmap to Attach");

    InfoOf(grey)->biPlanes = 2;
    ExpectThrows([&] { attach(grey.data(), 1072); }, -11, kPlanes);
    EXPECT_EQ(bitmap.Header(), nullptr);
    EXPECT_EQ(bitmap.Colours(), nullptr);
    EXPECT_EQ(bitmap.Pixels(), nullptr);
    InfoOf(grey)->biPlanes = 1;

    // A file header followed by a second one.
    std::vector<uint8_t> file = GreyBlock(true);
    file[14] = 'B';
    file[15] = 'M';
    ExpectThrows([&] { attach(file.data(), static_cast<uint32_t>(file.size())); }, -36,
                 kFileHeader);
    ExpectThrows([&] { attach(file.data(), 0); }, -36, kFileHeader);
    EXPECT_EQ(bitmap.Header(), nullptr);
}

TEST(Bitmap, SizedBlocksMustHoldHeaderColoursAndEveryPixelRow)
{
    // Every size short of the whole block is refused with -21, also where
    // exactly the header or the header and colour table are present. Behind
    // "BM", 2 to 14 bytes cannot hold the file header (-10); 15 to 53 leave
    // 1 to 39 for the info header; a single byte cannot hold the signature.
    const std::vector<std::vector<uint8_t>> blocks = {GreyBlock(), GreyBlock(true),
                                                      MakeBitmapBlock(3, 2, 24, 0),
                                                      MakeBitmapBlock(5, 3, 16, 3, 0, 3)};
    for (const std::vector<uint8_t>& whole : blocks)
    {
        const uint32_t nWhole = static_cast<uint32_t>(whole.size());
        for (uint32_t nSize = 1; nSize < nWhole; ++nSize)
        {
            auto block = ExactCopy(whole, nSize);
            ClBitmap bitmap;
            const int32_t nCode = whole[0] == 'B' && nSize >= 2 && nSize <= 14 ? -10 : -21;
            ExpectThrows<ClExVelmoran>([&] { bitmap.Attach(block.get(), nSize); }, nCode);
            EXPECT_EQ(bitmap.Header(), nullptr);
        }
        auto block = ExactCopy(whole, nWhole);
        ClBitmap bitmap;
        EXPECT_NO_THROW(bitmap.Attach(block.get(), nWhole));
        EXPECT_EQ(bitmap.Pixels()[0], 1);
        EXPECT_EQ(bitmap.Pixels()[bitmap.PixelBytes() - 1],
                  static_cast<uint8_t>(bitmap.PixelBytes()));
    }

    // A header test comes before the size test.
    std::vector<uint8_t> grey = GreyBlock();
    InfoOf(grey)->biBitCount = 7;
    auto header = ExactCopy(grey, 40);
    ExpectThrows([&] { ClBitmap().Attach(header.get(), 40); }, -12, kBitCount);

    // Colour counts and heights that no block holds.
    grey = GreyBlock();
    InfoOf(grey)->biClrUsed = 0xFFFFFFFF;
    ExpectThrows<ClExVelmoran>([&] { ClBitmap().Attach(grey.data(), 1072); }, -21);
    grey = GreyBlock();
    InfoOf(grey)->biHeight = -2;
    ExpectThrows<ClExVelmoran>([&] { ClBitmap().Attach(grey.data(), 1072); }, -21);
    // A block larger than needed is fine.
    grey.resize(2000);
    InfoOf(grey)->biHeight = 2;
    EXPECT_NO_THROW(ClBitmap().Attach(grey.data(), 2000));
}

TEST(Bitmap, PrivateCopyOwnsHeaderAndPixels)
{
    std::vector<uint8_t> grey = GreyBlock();
    ClBitmap view(grey.data(), true);
    EXPECT_EQ(static_cast<void*>(view.Header()), grey.data());
    EXPECT_EQ(reinterpret_cast<uint8_t*>(view.Colours()), grey.data() + 40);

    boost::shared_ptr<uint8_t> pixels;
    {
        ClBitmap copy(grey.data(), false);
        ASSERT_NE(static_cast<void*>(copy.Header()), grey.data());
        EXPECT_EQ(std::memcmp(copy.Header(), grey.data(), grey.size()), 0);
        EXPECT_EQ(copy.Pixels(), reinterpret_cast<uint8_t*>(copy.Header()) + 1064);
        EXPECT_EQ(copy.Colours(), nullptr);
        pixels = copy.PixelShare();
    }
    // The copy died, but the pixel share keeps its block alive.
    std::fill(grey.begin(), grey.end(), 0);
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(pixels.get()[i], i + 1);

    ExpectThrows([&] { ClBitmap(nullptr, false); }, -10, kNull);
    std::vector<uint8_t> file = GreyBlock(true);
    ExpectThrows([&] { ClBitmap(file.data(), false); }, -36, kFileHeader);

    // A header whose pixels no memory holds: a failed allocation.
    grey = MakeBitmapBlock(0, 0, 32, 0);
    InfoOf(grey)->biWidth = 0x7FFFFFFF;
    InfoOf(grey)->biHeight = 0x7FFFFFFF;
    ExpectThrows<ClExBadAlloc>([&] { ClBitmap(grey.data(), false); }, -102);
}
