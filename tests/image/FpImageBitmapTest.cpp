#include <cmath>
#include <fstream>
#include <iterator>
#include <tuple>

#include <gtest/gtest.h>

#include "ImageTestSupport.h"
#include "image/FpImage.h"

using std::make_tuple;

TEST(ImageFromBitmap, SharesThePixelsAndKeepsAPrivateCopyAlive)
{
    std::vector<uint8_t> block = MakeBitmapBlock(5, 3, 24, 0);
    ClImage image;
    {
        ClBitmap copy(block.data(), false);
        EXPECT_TRUE(image.FromBitmap(copy));
        EXPECT_EQ(make_tuple(image.Data(), image.ShareCount()), make_tuple(copy.Pixels(), 2L));
    }
    // The bitmap is gone; the pixel share still holds its block.
    std::fill(block.begin(), block.end(), 0);
    EXPECT_EQ(make_tuple(image.ShareCount(), image.Data()[0], image.Data()[47]),
              make_tuple(1L, uint8_t(1), uint8_t(48)));
    EXPECT_EQ(make_tuple(image.DataType(), image.Width(), image.Height(), image.RowStride(),
                         image.XResolution(), image.YResolution(), image.UpperBound()),
              make_tuple(ClImage::eUInt8, 5, 3, int64_t(16), 19685, 19686, 255.0));

    for (auto [nBits, nPlanes, eContent] :
         {std::tuple{8, 1u, ClImage::eGrayscale}, std::tuple{24, 3u, ClImage::eRGB},
          std::tuple{32, 4u, ClImage::eRGBA}})
    {
        block = MakeBitmapBlock(4, 2, static_cast<uint16_t>(nBits), nBits == 8 ? 256 : 0);
        ClBitmap view;
        view.Attach(block.data(), static_cast<uint32_t>(block.size()));
        const ClImage shared(view);
        EXPECT_EQ(make_tuple(shared.Data(), shared.Planes(), shared.Content()),
                  make_tuple(view.Pixels(), nPlanes, eContent));
    }
}

TEST(ImageFromBitmap, RefusesCompressedAndOtherBitCountsWithAClearedImage)
{
    std::vector<uint8_t> block = MakeBitmapBlock(4, 2, 8, 256, 1);
    ClBitmap bitmap;
    bitmap.Attach(block.data(), 0);
    ClImage image;
    image.Create(ClImage::eInt16, 3, 3);
    EXPECT_FALSE(image.FromBitmap(bitmap));
    EXPECT_EQ(make_tuple(image.Data(), image.Width()), make_tuple(nullptr, 0));
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
        EXPECT_EQ(make_tuple(image.Data(), image.Width()), make_tuple(pBefore, 2));
    }
}

TEST(ImageFromBitmap, ReadsAFingerprintCapture)
{
    std::ifstream in(SENTIVO_SOURCE_DIR "/tests/data/nist_sivv_ink_rolled_card0001_01.bmp",
                     std::ios::binary);
    const std::vector<uint8_t> file((std::istreambuf_iterator<char>(in)),
                                    std::istreambuf_iterator<char>());
    ASSERT_EQ(file.size(), 1078u + 320 * 480);

    // The info-header part, as an application hands it over, 1078 - 14 bytes
    // from the pixels.
    const uint32_t nSize = static_cast<uint32_t>(file.size() - 14);
    auto block = ExactCopy(std::vector<uint8_t>(file.begin() + 14, file.end()), nSize);
    ClBitmap bitmap;
    bitmap.Attach(block.get(), nSize);
    EXPECT_EQ(bitmap.Pixels() - block.get(), 1064);
    // AssignBitmap gives a buffer of its own, also to an image that shares the
    // bitmap's pixels.
    ClImage image, shared(bitmap);
    image.AssignBitmap(bitmap);
    shared.AssignBitmap(bitmap);
    EXPECT_TRUE(image.Data() != bitmap.Pixels() && shared.Data() != bitmap.Pixels());
    ASSERT_EQ(make_tuple(image.Width(), image.Height(), image.ShareCount()),
              make_tuple(320, 480, 1L));
    for (int32_t y = 0; y < 480; ++y)
        ASSERT_EQ(std::memcmp(image.Row<uint8_t>(y), file.data() + 1078 + 320 * y, 320), 0) << y;
    EXPECT_EQ(std::memcmp(shared.Data(), image.Data(), 320 * 480), 0);
}
