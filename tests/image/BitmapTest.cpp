#include "image/Bitmap.h"

#include <tuple>

#include <gtest/gtest.h>

#include "ImageTestSupport.h"

using std::make_tuple;

namespace
{

const char* const kFileHeader =
    "ClBitmap::Attach, Bitmapfileheader found Bitmapinfoheader expected.";
const char* const kPlanes = "ClBitmap::Attach, pBI->biPlanes != 1.";
const char* const kBitCount =
    "The Bitmap format does only support 1, 4, 8, 16, 24 and 32 bit counts!";

// An 8-bit grey bitmap of 4 x 2 pixels: 40 + 1024 + 8 bytes.
std::vector<uint8_t> GreyBlock(bool bFileHeader = false)
{
    return MakeBitmapBlock(4, 2, 8, 256, 0, bFileHeader);
}

uint8_t* At(std::vector<uint8_t>& block, size_t nOffset)
{
    return block.data() + nOffset;
}

} // namespace

TEST(Bitmap, CheckHeaderReportsTheFirstFailingTestInOrder)
{
    ExpectThrows([] { ClBitmap::CheckHeader(nullptr); }, -10, "ClBitmap::Attach, Pointer is NULL.");
    std::vector<uint8_t> block = GreyBlock();
    SentivoBitmapInfoHeader* pInfo = InfoOf(block);
    EXPECT_EQ(ClBitmap::CheckHeader(pInfo), pInfo);

    // Each fault is laid on top of the ones after it, so each case also shows
    // that the earlier test wins.
    pInfo->biBitCount = 2;
    ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, -12, kBitCount);
    pInfo->biCompression = 4;
    ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, -31,
                 "ClBitmap::Attach, Not Supported FOCC.");
    pInfo->biPlanes = 0;
    ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, -11, kPlanes);
    pInfo->biSize = 124; // a newer header version
    ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, -32,
                 "ClBitmap::Attach, Bitmap Header size is not known.");
    std::memcpy(pInfo, "BM", 2);
    ExpectThrows([&] { ClBitmap::CheckHeader(pInfo); }, -36, kFileHeader);

    block = GreyBlock();
    for (uint16_t nBits : {1, 4, 8, 16, 24, 32})
        for (uint32_t nCompression : {0u, 1u, 2u, 3u})
        {
            InfoOf(block)->biBitCount = nBits;
            InfoOf(block)->biCompression = nCompression;
            EXPECT_NO_THROW(ClBitmap::CheckHeader(block.data()));
        }
}

TEST(Bitmap, SizedBlocksMustHoldHeaderColoursAndEveryPixelRow)
{
    // Colour tables by bit count, compression and colours used, and rows of
    // whole 32-bit words; each block in an allocation of exactly its size.
    // Every size short of the whole is refused with -21, also where exactly
    // the header or the header and colour table are present. Behind "BM", 2
    // to 14 bytes cannot hold the file header (-10); 15 to 53 leave 1 to 39
    // for the info header; a single byte cannot hold the signature.
    for (auto [nWidth, nBits, nCompression, nClrUsed, nColours, bFile] :
         {std::tuple{4, 8, 0u, 0u, 256u, false}, std::tuple{4, 8, 0u, 0u, 256u, true},
          std::tuple{3, 8, 0u, 17u, 17u, false}, std::tuple{9, 4, 0u, 0u, 16u, false},
          std::tuple{33, 1, 0u, 0u, 2u, true}, std::tuple{5, 24, 0u, 0u, 0u, false},
          std::tuple{1, 24, 0u, 5u, 5u, false}, std::tuple{5, 16, 3u, 0u, 3u, false},
          std::tuple{3, 32, 3u, 9u, 3u, false}})
    {
        std::vector<uint8_t> whole =
            MakeBitmapBlock(nWidth, 3, uint16_t(nBits), nColours, nCompression, bFile);
        const size_t nStart = bFile ? 14 : 0, nWhole = whole.size();
        reinterpret_cast<SentivoBitmapInfoHeader*>(At(whole, nStart))->biClrUsed = nClrUsed;
        SCOPED_TRACE(testing::Message() << nBits << " bits, " << nColours << " colours");
        for (uint32_t nSize = 1; nSize < nWhole; ++nSize)
        {
            auto block = ExactCopy(whole, nSize);
            ClBitmap bitmap;
            const int32_t nCode = bFile && nSize >= 2 && nSize <= 14 ? -10 : -21;
            ExpectThrows<ClExVelmoran>([&] { bitmap.Attach(block.get(), nSize); }, nCode);
            ASSERT_EQ(bitmap.Header(), nullptr);
        }
        auto block = ExactCopy(whole, nWhole);
        ClBitmap bitmap;
        bitmap.Attach(block.get(), static_cast<uint32_t>(nWhole));
        uint8_t* const pHeader = block.get() + nStart;
        EXPECT_EQ(make_tuple(reinterpret_cast<uint8_t*>(bitmap.Header()),
                             reinterpret_cast<uint8_t*>(bitmap.Colours()), bitmap.Pixels(),
                             bitmap.ColourCount(), bitmap.PixelBytes()),
                  make_tuple(pHeader, nColours ? pHeader + 40 : nullptr,
                             pHeader + 40 + 4 * nColours, nColours,
                             int64_t(nWhole - nStart - 40 - 4 * nColours)));
    }
    ExpectThrows<ClExVelmoran>([] { ClBitmap::ColourCount(nullptr); }, -10);

    // A header test comes before the size test.
    std::vector<uint8_t> grey = GreyBlock();
    InfoOf(grey)->biBitCount = 7;
    auto header = ExactCopy(grey, 40);
    ExpectThrows([&] { ClBitmap().Attach(header.get(), 40); }, -12, kBitCount);
    // Colour counts and heights that no block holds; a larger block is fine.
    grey = GreyBlock();
    InfoOf(grey)->biClrUsed = 0xFFFFFFFF;
    ExpectThrows<ClExVelmoran>([&] { ClBitmap().Attach(grey.data(), 1072); }, -21);
    grey = GreyBlock();
    InfoOf(grey)->biHeight = -2;
    ExpectThrows<ClExVelmoran>([&] { ClBitmap().Attach(grey.data(), 1072); }, -21);
    grey.resize(2000);
    InfoOf(grey)->biHeight = 2;
    EXPECT_NO_THROW(ClBitmap().Attach(grey.data(), 2000));
}

TEST(Bitmap, FailedAttachLeavesTheBitmapEmptyAndNoSizeMeasuresNothing)
{
    std::vector<uint8_t> grey = GreyBlock(), file = GreyBlock(true);
    ClBitmap bitmap;
    // Without a size the header may claim any height; the file header is
    // stepped over all the same.
    InfoOf(grey)->biHeight = 100000;
    bitmap.Attach(grey.data(), 0);
    EXPECT_EQ(bitmap.Pixels(), At(grey, 1064));
    bitmap.Attach(file.data(), 0);
    EXPECT_EQ(bitmap.Pixels(), At(file, 1078));

    auto attach = [&](void* p, uint32_t nSize)
    {
        bitmap.Attach(grey.data(), 0);
        bitmap.Attach(p, nSize);
    };
    ExpectThrows([&] { attach(nullptr, 0); }, -10, "No Bitmap to Attach");
    ExpectThrows([&] { attach(nullptr, 1072); }, -10, "No Bitmap to Attach");
    InfoOf(grey)->biPlanes = 2;
    ExpectThrows([&] { attach(grey.data(), 0); }, -11, kPlanes);
    EXPECT_EQ(make_tuple(bitmap.Header(), bitmap.Colours(), bitmap.Pixels()),
              make_tuple(nullptr, nullptr, nullptr));
    InfoOf(grey)->biPlanes = 1;
    // A file header followed by a second one.
    std::memcpy(At(file, 14), "BM", 2);
    ExpectThrows([&] { attach(file.data(), 1086); }, -36, kFileHeader);
    ExpectThrows([&] { attach(file.data(), 0); }, -36, kFileHeader);
    EXPECT_EQ(bitmap.Header(), nullptr);
}

TEST(Bitmap, PrivateCopyOwnsHeaderAndPixels)
{
    std::vector<uint8_t> grey = GreyBlock();
    // Attached, not copied, the colours are set.
    EXPECT_EQ(reinterpret_cast<uint8_t*>(ClBitmap(grey.data(), true).Colours()), At(grey, 40));
    boost::shared_ptr<uint8_t> pixels;
    {
        ClBitmap copy(grey.data(), false);
        ASSERT_NE(static_cast<void*>(copy.Header()), grey.data());
        EXPECT_EQ(std::memcmp(copy.Header(), grey.data(), grey.size()), 0);
        EXPECT_EQ(make_tuple(copy.Pixels(), copy.Colours()),
                  make_tuple(reinterpret_cast<uint8_t*>(copy.Header()) + 1064, nullptr));
        pixels = copy.PixelShare();
    }
    // The copy died, but the pixel share keeps its block alive.
    std::fill(grey.begin(), grey.end(), 0);
    EXPECT_EQ(make_tuple(pixels.get()[0], pixels.get()[7]), make_tuple(1, 8));

    std::vector<uint8_t> file = GreyBlock(true);
    ExpectThrows([&] { ClBitmap(file.data(), false); }, -36, kFileHeader);
    // A header whose pixels no memory holds: a failed allocation.
    grey = MakeBitmapBlock(0, 0, 32, 0);
    InfoOf(grey)->biWidth = 0x7FFFFFFF;
    InfoOf(grey)->biHeight = 0x7FFFFFFF;
    ExpectThrows<ClExBadAlloc>([&] { ClBitmap(grey.data(), false); }, -102);
}
