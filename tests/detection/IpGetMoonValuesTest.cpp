// The moon values: refusals before any work, the band thresholds and the
// fewest dark pixels that count.
#include <tuple>

#include <gtest/gtest.h>

#include "detection/IpGetMoonValues.h"
#include "support/DetectionImages.h"

using namespace TestImages;

TEST(IpGetMoonValues, RefusesMissingImageThenSizeThenTypeBeforeAnyWork)
{
    ClImage narrow = Filled(318, 480, 90), low = Filled(320, 478, 90),
            narrowWords = Blank(ClImage::eInt16, 318, 480),
            words = Blank(ClImage::eInt16, 320, 480);
    const char* const kSize = "Image dimensions must be multiples of 4";
    for (auto [pImage, nCode, szText] :
         {std::tuple{(ClImage*)nullptr, -701, "Input image not assigned"},
          std::tuple{&narrow, -701, kSize}, std::tuple{&low, -701, kSize},
          std::tuple{&narrowWords, -701, kSize},
          std::tuple{&words, -33, "Input pixel type \"int16\" not supported by processor."}})
    {
        ClIpGetMoonValues moon;
        moon.pInImage = pImage;
        moon.dOutDeviation = 7.0;
        ExpectThrows([&] { moon.Run(); }, nCode, szText);
        EXPECT_EQ(moon.dOutDeviation, 7.0);
    }
}

TEST(IpGetMoonValues, CutsLevelOneWithT1LevelTwoWithT2AndTwoDarkPixelsAreTheFewestToCount)
{
    // 8 x 8, T1 = 0.3, T2 = 0.6. Level 1: rows 0-3 and columns 4-7; level 2:
    // rows 4-5 of columns 0-1 and rows 4-7 of columns 2-3; approximation:
    // rows 6-7 of columns 0-1. Coefficients are +-0.45 except the marked:
    // 'a' exactly T1 and 'b' exactly T2 stay, 's' = 0.2 goes but in the
    // approximation.
    const char* const kLayout[8] = {"..a.....", ".......s", "........", "s.......",
                                    "b..b..a.", "........", "......s.", "s......."};
    const char* const kKept[8] = {"KKKKKKKK", "KKKKKKK.", "KKKKKKKK", ".KKKKKKK",
                                  "K..KKKKK", "....KKKK", "KK..KK.K", "KK..KKKK"};
    ClImage c = Blank(ClImage::eDouble64, 8, 8);
    auto value = [&](int32_t k)
    {
        const char m = kLayout[k / 8][k % 8];
        const double v = m == 'a' ? 0.3 : m == 'b' ? 0.6 : m == 's' ? 0.2 : 0.45;
        return (k + k / 8) % 2 == 0 ? v : -v;
    };
    for (int32_t k = 0; k < 64; ++k)
        c.Row<double>(k / 8)[k % 8] = value(k);
    ClIpGetMoonValues::CutDetailBands(c, 0.3, 0.6);
    for (int32_t k = 0; k < 64; ++k)
        EXPECT_EQ(c.Row<double>(k / 8)[k % 8], kKept[k / 8][k % 8] == 'K' ? value(k) : 0.0) << k;
    // The deviation goes through the result pointer. Equalisation sends a
    // constant image to level 63, 1.0: m = 0; a single dark pixel equalises
    // to 255 / 153600, level 0: m = 1. Both give 0, two dark pixels do not.
    auto moonValue = [](ClImage& image)
    {
        ClIpGetMoonValues moon;
        moon.pInImage = &image;
        double dElsewhere = -1.0;
        moon.m_pdOutDeviation = &dElsewhere;
        EXPECT_EQ(moon.Run(), 0);
        EXPECT_EQ(moon.dOutDeviation, 0.0);
        return dElsewhere;
    };
    ClImage image = Filled(320, 480, 90);
    EXPECT_EQ(moonValue(image), 0.0);
    image.Row<uint8_t>(17)[33] = 0;
    EXPECT_EQ(moonValue(image), 0.0);
    image.Row<uint8_t>(400)[300] = 0;
    EXPECT_GT(moonValue(image), 0.0);
}
