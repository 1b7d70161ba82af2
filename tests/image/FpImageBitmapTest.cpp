#include <cmath>
#include <fstream>
#include <iterator>
#include <tuple>

#include <gtest/gtest.h>

#include "ImageTestSupport.h"
#include "image/FpImage.h"

TEST(ImageFromBitmap, SharesThePixelsAndKeepsAPrivateCopyAlive)
{
    std::vector<uint8_t> block = MakeBitmapBlock(5, 3, 24, 0);
    ClImage image;
    {
        ClBitmap copy(block.data(), false);
        EXPECT_TRUE(image.FromBitmap(copy));
        EXPECT_EQ(image.Data(), copy.Pixels());
        EXPECT_EQ(image.ShareCount(), 2);
    }
    // The bitmap is gone; the pixel share still holds its block.
    EXPECT_EQ(image.ShareCount(), 1);
    std::fill(block.begin(), block.end(), 0);
    EXPECT_EQ(image.Data()[0], 1);
    EXPECT_EQ(image.Data()[47], 48);

    EXPECT_EQ(image.DataType(), ClImage::eUInt8);
    EXPECT_EQ(image.Planes(), 3u);
    EXPECT_EQ(image.Content(), ClImage::eRGB);
    EXPECT_EQ(image.Width(), 5);
    EXPECT_EQ(image.Height(), 3);
    EXPECT_EQ(image.RowStride(), 16);
    EXPECT_EQ(image.XResolution(), 19685);
    EXPECT_EQ(image.YResolution(), 19686);
    EXPECT_EQ(image.LowerBound(), 0.0);
    EXPECT_EQ(image.UpperBound(), 255.0);

    for (auto [nBits, nPlanes, eContent] :
         {std::tuple{8, 1u, ClImage::eGrayscale}, std::tuple{32, 4u, ClImage::eRGBA}})
    {
        block = MakeBitmapBlock(4, 2, static_cast<uint16_t>(nBits), nBits == 8 ? 256 : 0);
        ClBitmap view;
        view.Attach(block.data(), static_cast<uint32_t>(block.size()));
        ClImage shared(view);
        EXPECT_EQ(shared.Data(), view.Pixels());
        EXPECT_EQ(shared.Planes(), nPlanes);
        EXPECT_EQ(shared.Content(), eContent);
    }
}

TEST(ImageFromBitmap, RefusesCompressedAndOtherBitCountsWithAClearedImage)
{
    std::vector<uint8_t> block = MakeBitmapBlock(4, 2, 8, 256, 0, 1);
    ClBitmap bitmap;
    bitmap.Attach(block.data(), 0);
    ClImage image;
    image.Create(ClImage::eInt16, 3, 3);
    EXPECT_FALSE(image.FromBitmap(bitmap));
    EXPECT_EQ(image.Data(), nullptr);
    EXPECT_EQ(image.Width(), 0);
    EXPECT_TRUE(std::isnan(image.LowerBound()));
    // The refusal reaches the copy through the cleared temporary's area.
    ExpectThrows([&] { image.AssignBitmap(bitmap); }, -101, "Image area must be positive");

    EXPECT_FALSE(image.FromBitmap(ClBitmap()));

    for (uint16_t nBits : {1, 4, 16})
    {
        block = MakeBitmapBlock(4, 2, nBits, nBits == 16 ? 0 : size_t(1) << nBits);
        bitmap.Attach(block.data(), static_cast<uint32_t>(block.size()));
        image.Create(ClImage::eUInt8, 2, 2);
        ExpectThrows([&] { image.FromBitmap(bitmap); }, -12, "bitmap bit depth not supported\n");
        EXPECT_EQ(image.Data(), nullptr);

        // AssignBitmap fails in its temporary: this image stays as it was.
        image.Create(ClImage::eUInt8, 2, 2);
        const uint8_t* pBefore = image.Data();
        ExpectThrows([&] { image.AssignBitmap(bitmap); }, -12, "bitmap bit depth not supported\n");
        EXPECT_EQ(image.Data(), pBefore);
        EXPECT_EQ(image.Width(), 2);
    }
}

TEST(ImageFromBitmap, AssignBitmapOwnsACopyOfThePixels)
{
    std::vector<uint8_t> block = MakeBitmapBlock(6, 3, 8, 256);
    ClBitmap bitmap;
    bitmap.Attach(block.data(), static_cast<uint32_t>(block.size()));
    ClImage image;
    image.AssignBitmap(bitmap);
    EXPECT_NE(image.Data(), bitmap.Pixels());
    EXPECT_EQ(image.ShareCount(), 1);
    EXPECT_EQ(image.Width(), 6);
    EXPECT_EQ(image.RowStride(), 8);
    EXPECT_EQ(std::memcmp(image.Data(), bitmap.Pixels(), 24), 0);
    bitmap.Pixels()[0] = 200;
    EXPECT_EQ(image.Data()[0], 1);

    // An image that shares the bitmap's pixels gets a buffer of its own.
    ClImage shared(bitmap);
    shared.AssignBitmap(bitmap);
    EXPECT_NE(shared.Data(), bitmap.Pixels());
    EXPECT_EQ(shared.Data()[0], 200);
}

TEST(ImageFromBitmap, ReadsAFingerprintCapture)
{
    std::ifstream in(SENTIVO_SOURCE_DIR "/tests/data/nist_sivv_ink_rolled_card0001_01.bmp",
                     std::ios::binary);
    ASSERT_TRUE(in.good());
    std::vector<uint8_t> file((std::istreambuf_iterator<char>(in)),
                              std::istreambuf_iterator<char>());
    ASSERT_GT(file.size(), 14u);
    SentivoBitmapFileHeader fileHeader;
    std::memcpy(&fileHeader, file.data(), sizeof(fileHeader));
    // Packed fields are copied out before gtest binds references to them.
    const uint32_t nOffBits = fileHeader.bfOffBits;
    ASSERT_EQ(nOffBits, 1078u);

    // The info-header part, as an application hands it over.
    const uint32_t nSize = static_cast<uint32_t>(file.size() - 14);
    auto block = ExactCopy(std::vector<uint8_t>(file.begin() + 14, file.end()), nSize);
    ClBitmap bitmap;
    bitmap.Attach(block.get(), nSize);
    EXPECT_EQ(int32_t(bitmap.Header()->biWidth), 320);
    EXPECT_EQ(int32_t(bitmap.Header()->biHeight), 480);
    EXPECT_EQ(bitmap.ColourCount(), 256u);
    EXPECT_EQ(bitmap.PixelOffset(), nOffBits - 14u);
    EXPECT_EQ(bitmap.Pixels() - block.get(), 1064);
    EXPECT_EQ(bitmap.PixelBytes(), 320 * 480);

    ClImage image;
    image.AssignBitmap(bitmap);
    ASSERT_EQ(image.Width(), 320);
    ASSERT_EQ(image.Height(), 480);
    for (int32_t y = 0; y < 480; ++y)
        ASSERT_EQ(std::memcmp(image.Row<uint8_t>(y), file.data() + 1078 + 320 * y, 320), 0)
            << "row " << y;
}
