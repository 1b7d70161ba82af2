#include "detection/IpSimpleBacklightCheck.h"

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"

namespace
{

ClImage Constant(uint8_t v)
{
    ClImage image;
    image.Create(ClImage::eUInt8, 320, 480);
    image.Fill<uint8_t>(v);
    return image;
}

} // namespace

TEST(IpSimpleBacklightCheck, EachBandIsTheDifferenceOfTheMeansOfIts256DarkestPixels)
{
    ClImage backlight = Constant(255), dark = Constant(255);
    // Band 0 (rows 16-31): all 0, so more than 256 pixels share the cutting
    // bin. Band 1: 256 zeros and 255 elsewhere. Band 2: 300 pixels of 10,
    // the rest 200, so 256 of them count. Band 3: 100 of 20, 100 of 30 and
    // the rest 40: the overshoot of the 40s comes off.
    for (int32_t y = 16; y < 32; ++y)
        for (int32_t x = 16; x < 304; ++x)
            backlight.Row<uint8_t>(y)[x] = 0;
    for (int32_t i = 0; i < 256; ++i)
        backlight.Row<uint8_t>(32 + i / 288)[16 + i % 288] = 0;
    for (int32_t i = 0; i < 4608; ++i)
        backlight.Row<uint8_t>(48 + i / 288)[16 + i % 288] = i < 300 ? 10 : 200;
    for (int32_t i = 0; i < 4608; ++i)
        backlight.Row<uint8_t>(64 + i / 288)[16 + i % 288] = i < 100 ? 20 : i < 200 ? 30 : 40;
    // Pixels outside the bands never count: frame of the image all black.
    for (int32_t y = 0; y < 480; ++y)
        for (int32_t x = 0; x < 320; ++x)
            if (y < 16 || y >= 464 || x < 16 || x >= 304)
                backlight.Row<uint8_t>(y)[x] = dark.Row<uint8_t>(y)[x] = 0;

    ClIpSimpleBacklightCheck check;
    check.pInBacklightImage = &backlight;
    check.pInDarkImage = &dark;
    ASSERT_EQ(check.Run(), 0);
    EXPECT_EQ(check.m_adProfile[0], 255.0);
    EXPECT_EQ(check.m_adProfile[1], 255.0);
    EXPECT_EQ(check.m_adProfile[2], 255.0 - 10.0);
    EXPECT_EQ(check.m_adProfile[3], 255.0 - (100 * 20 + 100 * 30 + 56 * 40) / 256.0);
    for (int i = 4; i < 28; ++i)
        EXPECT_EQ(check.m_adProfile[i], 0.0) << i;

    // Two constant images differ by their values; a redirected result
    // pointer receives the values instead of the own profile.
    ClImage five = Constant(5), seven = Constant(7);
    double adOut[28] = {};
    check.pInBacklightImage = &five;
    check.pInDarkImage = &seven;
    check.m_pdOutProfile = adOut;
    check.Run();
    EXPECT_EQ(adOut[27], 2.0);
    EXPECT_EQ(check.m_adProfile[3], 255.0 - (100 * 20 + 100 * 30 + 56 * 40) / 256.0);
}

TEST(IpSimpleBacklightCheck, MissingOrForeignImagesAreRefused)
{
    ClImage image = Constant(1), wide;
    wide.Create(ClImage::eInt16, 320, 480);
    ClIpSimpleBacklightCheck check;
    ExpectThrows([&] { check.Run(); }, -701, "Input backlight image not assigned");
    check.pInBacklightImage = &image;
    ExpectThrows([&] { check.Run(); }, -701, "Input dark image not assigned");
    check.pInDarkImage = &wide;
    ExpectThrows([&] { check.Run(); }, -33, "Input pixel type \"int16\" not supported by processor.");
}
