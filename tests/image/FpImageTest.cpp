#include "image/FpImage.h"

#include <cmath>
#include <cstring>

#include <gtest/gtest.h>

#include "ImageTestSupport.h"

#if defined(__SANITIZE_ADDRESS__)
// The absurd requests below must fail as an allocation, not stop the run.
extern "C" const char* __asan_default_options()
{
    return "allocator_may_return_null=1";
}
#endif

TEST(Image, RowsArePaddedToFourBytes)
{
    ClImage image;
    image.Create(ClImage::eUInt8, 3, 2);
    EXPECT_EQ(image.RowStride(), 4);
    EXPECT_EQ(image.ByteSize(), 8);
    EXPECT_EQ(image.Content(), ClImage::eGrayscale);
    image.Create(ClImage::eUInt8, 3, 2, 3);
    EXPECT_EQ(image.RowStride(), 12);
    EXPECT_EQ(image.Content(), ClImage::eRGB);
    image.Create(ClImage::eInt16, 5, 2);
    EXPECT_EQ(image.RowStride(), 12);
    EXPECT_EQ(image.RowPitch(), 6);
    image.Create(ClImage::eDouble64, 3, 1, 2);
    EXPECT_EQ(image.RowStride(), 48);
    EXPECT_EQ(image.RowPitch(), 6);
    EXPECT_EQ(image.Content(), ClImage::eUnknown);
    image.Create(ClImage::eUInt8, 1, 1, 4);
    EXPECT_EQ(image.Content(), ClImage::eRGBA);
}

TEST(Image, CreateKeepsTheBufferOnlyForASoleSharerOfTheSameByteSize)
{
    ClImage image;
    image.Create(ClImage::eUInt8, 4, 2, 1, 11, 12);
    uint8_t* pBuffer = image.Data();
    std::memset(pBuffer, 7, 8);
    image.Create(ClImage::eUInt8, 4, 2);
    EXPECT_EQ(image.Data(), pBuffer);
    EXPECT_EQ(image.Data()[5], 7);
    EXPECT_EQ(image.XResolution(), 0);
    // Only the byte size counts.
    image.Create(ClImage::eUInt8, 8, 1);
    EXPECT_EQ(image.Data(), pBuffer);
    image.Create(ClImage::eUInt16, 2, 2);
    EXPECT_EQ(image.Data(), pBuffer);

    // A second sharer forces a new buffer; the sharer keeps the old pixels.
    ClImage sharer(image);
    EXPECT_EQ(image.ShareCount(), 2);
    image.Create(ClImage::eUInt16, 2, 2);
    EXPECT_NE(image.Data(), pBuffer);
    EXPECT_EQ(sharer.Data(), pBuffer);
    std::memset(image.Data(), 1, 8);
    EXPECT_EQ(sharer.Data()[5], 7);
    EXPECT_EQ(sharer.ShareCount(), 1);
}

TEST(Image, CreateOfNoAreaThrowsButKeepsTheNewHeaderAndOldBuffer)
{
    ClImage image;
    image.Create(ClImage::eUInt8, 4, 2);
    uint8_t* pBuffer = image.Data();
    const char* const kArea = "Image area must be positive";
    ExpectThrows([&] { image.Create(ClImage::eUInt8, 4, 0); }, -101, kArea);
    EXPECT_EQ(image.Height(), 0);
    EXPECT_EQ(image.Data(), pBuffer);
    ExpectThrows([&] { image.Create(ClImage::eUInt8, 0, 3); }, -101, kArea);
    EXPECT_EQ(image.Width(), 0);
    EXPECT_EQ(image.Height(), 3);
    // Repeating a degenerate request still throws.
    ExpectThrows([&] { image.Create(ClImage::eUInt8, 0, 3); }, -101, kArea);
    ExpectThrows([&] { image.Create(ClImage::eUInt8, -4, 2); }, -101, kArea);
    ExpectThrows([&] { image.Create(ClImage::eUInt8, -4, 2); }, -101, kArea);
    ExpectThrows([&] { image.Create(ClImage::eUnknownType, 4, 2); }, -101, kArea);
    EXPECT_EQ(image.Data(), pBuffer);

    // Sizes beyond any memory fail as an allocation and clear the image,
    // also where the byte size would wrap around 64 bits.
    ExpectThrows<ClExBadAlloc>([&] { image.Create(ClImage::eUInt8, 0x7FFFFFFF, 0x7FFFFFFF, 8); },
                               -102, "Memory allocation failed");
    EXPECT_EQ(image.Data(), nullptr);
    EXPECT_EQ(image.Width(), 0);
    // 2^34 bytes per row times 2^30 rows is 2^64 bytes, which wraps to none.
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
    for (int i = 0; i < 8; ++i)
        reinterpret_cast<int16_t*>(source.Data())[i] = static_cast<int16_t>(i - 3);

    ClImage as;
    as.CreateAs(source, ClImage::eFloat32);
    EXPECT_EQ(as.DataType(), ClImage::eFloat32);
    EXPECT_EQ(as.Width(), 3);
    EXPECT_EQ(as.YResolution(), 200);
    EXPECT_EQ(as.Content(), ClImage::eHSV);
    EXPECT_EQ(as.Origin(), 0x8201u);
    EXPECT_EQ(as.LowerBound(), -1.0);
    ExpectThrows([&] { as.CreateAs(as, ClImage::eUInt8); }, -44,
                 "this function dose not work on the same image.");
    EXPECT_EQ(as.DataType(), ClImage::eFloat32);

    ClImage copy;
    copy.Assign(source);
    EXPECT_NE(copy.Data(), source.Data());
    EXPECT_EQ(std::memcmp(copy.Data(), source.Data(), 12), 0);
    EXPECT_EQ(copy.LowerBound(), -5.0);
    EXPECT_EQ(copy.Content(), ClImage::eHSV);
    EXPECT_EQ(copy.Origin(), 0x8201u);
    EXPECT_EQ(copy.XResolution(), 100);
    reinterpret_cast<int16_t*>(source.Data())[0] = 99;
    EXPECT_EQ(reinterpret_cast<int16_t*>(copy.Data())[0], -3);

    const uint8_t* pBuffer = copy.Data();
    copy.CreateLike(copy);
    copy.Assign(copy);
    copy.Swap(copy);
    EXPECT_EQ(copy.Data(), pBuffer);
    EXPECT_EQ(copy.LowerBound(), -5.0);
    EXPECT_EQ(copy.DataType(), ClImage::eInt16);

    ClImage other;
    other.Create(ClImage::eUInt8, 7, 1);
    const uint8_t* pOther = other.Data();
    copy.Swap(other);
    EXPECT_EQ(copy.Data(), pOther);
    EXPECT_EQ(copy.UpperBound(), 255.0);
    EXPECT_EQ(other.Data(), pBuffer);
    EXPECT_EQ(other.Origin(), 0x8201u);
    EXPECT_EQ(other.YResolution(), 200);
}

TEST(Image, BoundsFollowTheTypeAndClearMakesThemNaN)
{
    const struct
    {
        ClImage::EDataType eType;
        double dLower, dUpper;
    } types[] = {
        {ClImage::eUInt8, 0, 255},           {ClImage::eUInt16, 0, 65535},
        {ClImage::eUInt32, 0, 4294967295.0}, {ClImage::eInt8, -128, 127},
        {ClImage::eInt16, -32768, 32767},    {ClImage::eInt32, -2147483648.0, 2147483647.0},
        {ClImage::eFloat32, -1, 1},          {ClImage::eDouble64, -1, 1}};
    ClImage image;
    for (const auto& t : types)
    {
        image.SetBoundsForType(t.eType);
        EXPECT_EQ(image.LowerBound(), t.dLower) << int(t.eType);
        EXPECT_EQ(image.UpperBound(), t.dUpper) << int(t.eType);
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
    EXPECT_EQ(image.Data(), nullptr);
    EXPECT_EQ(image.DataType(), ClImage::eUnknownType);
    EXPECT_EQ(image.Planes(), 0u);
    EXPECT_EQ(image.Origin(), 0u);
}

TEST(Image, FillSetsTheSamplesOfEachRowOrClearsEveryByte)
{
    ClImage image;
    image.Create(ClImage::eInt16, 3, 2); // 6 bytes of samples, 2 of padding per row
    std::memset(image.Data(), 0x55, 16);
    image.Fill(int16_t(-2));
    for (int y = 0; y < 2; ++y)
    {
        for (int x = 0; x < 3; ++x)
            EXPECT_EQ(image.Row<int16_t>(y)[x], -2);
        EXPECT_EQ(image.Row<uint8_t>(y)[6], 0x55);
    }

    // A non-zero value of another type is refused and changes nothing.
    ExpectThrows([&] { image.Fill(2.0); }, -101, "Image Type is not the assigned type");
    ExpectThrows([&] { image.Fill(uint16_t(3)); }, -101, "Image Type is not the assigned type");
    EXPECT_EQ(image.Row<int16_t>(1)[2], -2);

    // Zero of any type clears the whole buffer, padding included.
    image.Fill(0.0f);
    for (int i = 0; i < 16; ++i)
        EXPECT_EQ(image.Data()[i], 0) << i;

    image.Create(ClImage::eFloat32, 2, 1, 3);
    image.Fill(1.5f);
    for (int i = 0; i < 6; ++i)
        EXPECT_EQ(image.Row<float>(0)[i], 1.5f);
}
