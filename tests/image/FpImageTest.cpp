#include "image/FpImage.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

#include "ImageTestSupport.h"

#if defined(__SANITIZE_ADDRESS__)
// The absurd requests below must fail as an allocation, not stop the run.
extern "C" const char* __asan_default_options()
{
    return "allocator_may_return_null=1";
}
#endif

using std::make_tuple;

TEST(Image, RowsArePaddedToFourBytesAndPlanesSetTheContent)
{
    ClImage image;
    for (auto [eType, nWidth, nPlanes, nStride, nPitch, eContent] :
         {std::tuple{ClImage::eUInt8, 3, 1u, 4, 4, ClImage::eGrayscale},
          std::tuple{ClImage::eUInt8, 3, 3u, 12, 12, ClImage::eRGB},
          std::tuple{ClImage::eUInt8, 1, 4u, 4, 4, ClImage::eRGBA},
          std::tuple{ClImage::eInt16, 5, 1u, 12, 6, ClImage::eGrayscale},
          std::tuple{ClImage::eDouble64, 3, 2u, 48, 6, ClImage::eUnknown}})
    {
        image.Create(eType, nWidth, 2, nPlanes);
        EXPECT_EQ(
            make_tuple(image.RowStride(), image.RowPitch(), image.ByteSize(), image.Content()),
            make_tuple(int64_t(nStride), int64_t(nPitch), int64_t(2 * nStride), eContent));
    }
}

TEST(Image, CreateKeepsTheBufferOnlyForASoleSharerOfTheSameByteSize)
{
    ClImage image;
    image.Create(ClImage::eUInt8, 4, 2, 1, 11, 12);
    uint8_t* pBuffer = image.Data();
    std::memset(pBuffer, 7, 8);
    // Only the byte size counts, not the shape or the type.
    image.Create(ClImage::eUInt8, 8, 1);
    image.Create(ClImage::eUInt16, 2, 2);
    EXPECT_EQ(make_tuple(image.Data(), image.Data()[5], image.XResolution()),
              make_tuple(pBuffer, uint8_t(7), 0));

    // A second sharer forces a new buffer; the sharer keeps the old pixels.
    ClImage sharer(image);
    image.Create(ClImage::eUInt16, 2, 2);
    std::memset(image.Data(), 1, 8);
    EXPECT_EQ(make_tuple(sharer.Data(), sharer.Data()[5], sharer.ShareCount()),
              make_tuple(pBuffer, uint8_t(7), 1L));
}

TEST(Image, CreateOfNoAreaThrowsButKeepsTheNewHeaderAndOldBuffer)
{
    ClImage image;
    image.Create(ClImage::eUInt8, 4, 2);
    uint8_t* pBuffer = image.Data();
    auto refuse = [&](ClImage::EDataType eType, int32_t nWidth, int32_t nHeight)
    {
        ExpectThrows([&] { image.Create(eType, nWidth, nHeight); }, -101,
                     "Image area must be positive");
        EXPECT_EQ(make_tuple(image.Width(), image.Height(), image.Data()),
                  make_tuple(nWidth, nHeight, pBuffer));
    };
    refuse(ClImage::eUInt8, 4, 0);
    refuse(ClImage::eUInt8, 0, 3);
    refuse(ClImage::eUInt8, 0, 3); // the same (empty) byte size again still throws
    refuse(ClImage::eUInt8, -4, 2);
    refuse(ClImage::eUnknownType, 4, 2);

    // Sizes beyond any memory fail as an allocation and clear the image, also
    // where the byte size wraps around 64 bits (2^34 bytes times 2^30 rows).
    ExpectThrows<ClExBadAlloc>([&] { image.Create(ClImage::eUInt8, 0x7FFFFFFF, 0x7FFFFFFF, 8); },
                               -102, "Memory allocation failed");
    EXPECT_EQ(make_tuple(image.Data(), image.Width()), make_tuple(nullptr, 0));
    ExpectThrows<ClExBadAlloc>([&] { image.Create(ClImage::eUInt8, 1 << 30, 1 << 30, 16); }, -102);
    ExpectThrows<ClExBadAlloc>(
        [&] { image.Create(ClImage::eDouble64, 0x7FFFFFFF, 0x7FFFFFFF, 0xFFFFFFFF); }, -102);
}

TEST(Image, CreateAsCreateLikeAssignAndSwapOnOtherImagesAndThemselves)
{
    ClImage source;
    source.Create(ClImage::eInt16, 3, 2, 1, 100, 200);
    source.SetContent(ClImage::eHSV);
    source.SetOrigin(0x8201);
    source.SetBounds(-5.0, 5.0);
    std::memset(source.Data(), 0xA5, 16);

    // CreateAs takes the type's bounds, Assign (through CreateLike) the source's.
    ClImage as, copy;
    as.CreateAs(source, ClImage::eFloat32);
    const auto header = [](const ClImage& i)
    {
        return make_tuple(i.DataType(), i.Width(), i.YResolution(), i.Content(), i.Origin(),
                          i.LowerBound());
    };
    EXPECT_EQ(header(as), make_tuple(ClImage::eFloat32, 3, 200, ClImage::eHSV, 0x8201u, -1.0));
    ExpectThrows([&] { as.CreateAs(as, ClImage::eUInt8); }, -44,
                 "this function dose not work on the same image.");
    EXPECT_EQ(as.DataType(), ClImage::eFloat32);

    copy.Assign(source);
    EXPECT_EQ(header(copy), make_tuple(ClImage::eInt16, 3, 200, ClImage::eHSV, 0x8201u, -5.0));
    EXPECT_NE(copy.Data(), source.Data());
    EXPECT_EQ(std::memcmp(copy.Data(), source.Data(), 12), 0);

    const uint8_t* pBuffer = copy.Data();
    copy.CreateLike(copy);
    copy.Assign(copy);
    copy.Swap(copy);
    EXPECT_EQ(copy.Data(), pBuffer);
    EXPECT_EQ(header(copy), make_tuple(ClImage::eInt16, 3, 200, ClImage::eHSV, 0x8201u, -5.0));

    ClImage other;
    other.Create(ClImage::eUInt8, 7, 1);
    const uint8_t* pOther = other.Data();
    copy.Swap(other);
    EXPECT_EQ(make_tuple(copy.Data(), copy.UpperBound(), other.Data()),
              make_tuple(pOther, 255.0, pBuffer));
    EXPECT_EQ(header(other), make_tuple(ClImage::eInt16, 3, 200, ClImage::eHSV, 0x8201u, -5.0));
}

TEST(Image, BoundsFollowTheTypeAndClearMakesThemNaN)
{
    ClImage image;
    for (auto [eType, dLower, dUpper] :
         {std::tuple{ClImage::eUInt8, 0.0, 255.0}, std::tuple{ClImage::eUInt16, 0.0, 65535.0},
          std::tuple{ClImage::eUInt32, 0.0, 4294967295.0},
          std::tuple{ClImage::eInt8, -128.0, 127.0}, std::tuple{ClImage::eInt16, -32768.0, 32767.0},
          std::tuple{ClImage::eInt32, -2147483648.0, 2147483647.0},
          std::tuple{ClImage::eFloat32, -1.0, 1.0}, std::tuple{ClImage::eDouble64, -1.0, 1.0}})
    {
        image.SetBoundsForType(eType);
        EXPECT_EQ(make_tuple(image.LowerBound(), image.UpperBound()), make_tuple(dLower, dUpper));
    }
    for (auto eType : {ClImage::eUnknownType, ClImage::eDefaultType, ClImage::EDataType(3)})
    {
        image.SetBoundsForType(eType);
        EXPECT_TRUE(std::isnan(image.LowerBound()) && std::isnan(image.UpperBound()));
    }

    image.Create(ClImage::eInt8, 2, 2);
    image.SetOrigin(5);
    image.Clear();
    EXPECT_TRUE(std::isnan(image.LowerBound()) && std::isnan(image.UpperBound()));
    EXPECT_EQ(make_tuple(image.Data(), image.DataType(), image.Planes(), image.Origin()),
              make_tuple(nullptr, ClImage::eUnknownType, 0u, 0u));
}

TEST(Image, FillSetsTheSamplesOfEachRowOrClearsEveryByte)
{
    ClImage image;
    image.Create(ClImage::eInt16, 1, 2, 3); // 6 bytes of samples, 2 of padding per row
    std::memset(image.Data(), 0x55, 16);
    image.Fill(int16_t(-2));
    // A non-zero value of another type is refused and changes nothing.
    ExpectThrows([&] { image.Fill(uint16_t(3)); }, -101, "Image Type is not the assigned type");
    for (int y = 0; y < 2; ++y)
        EXPECT_EQ(
            make_tuple(image.Row<int16_t>(y)[0], image.Row<int16_t>(y)[2], image.Data()[8 * y + 6]),
            make_tuple(int16_t(-2), int16_t(-2), uint8_t(0x55)));

    // Zero of any type clears the whole buffer, padding included.
    image.Fill(0.0f);
    EXPECT_EQ(std::count(image.Data(), image.Data() + 16, 0), 16);
}
