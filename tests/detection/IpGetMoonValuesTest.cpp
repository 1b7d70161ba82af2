#include "detection/IpGetMoonValues.h"

#include <tuple>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "support/DetectionImages.h"

namespace
{

// The deviation, which goes through the result pointer.
double MoonValue(ClImage& image)
{
    ClIpGetMoonValues moon;
    moon.pInImage = &image;
    double dElsewhere = -1.0;
    moon.m_pdOutDeviation = &dElsewhere;
    EXPECT_EQ(moon.Run(), 0);
    EXPECT_EQ(moon.dOutDeviation, 0.0);
    return dElsewhere;
}

} // namespace

TEST(IpGetMoonValues, RefusesMissingImageThenSizeThenTypeBeforeAnyWork)
{
    ClImage narrow = TestImages::Filled(318, 480, 90), low = TestImages::Filled(320, 478, 90),
            narrowWords = TestImages::Blank(ClImage::eInt16, 318, 480),
            words = TestImages::Blank(ClImage::eInt16, 320, 480);
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

TEST(IpGetMoonValues, CutsLevelOneWithT1AndLevelTwoWithT2AndLeavesTheApproximation)
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
    ClImage c = TestImages::Blank(ClImage::eDouble64, 8, 8);
    for (int32_t y = 0; y < 8; ++y)
        for (int32_t x = 0; x < 8; ++x)
        {
            const char m = kLayout[y][x];
            const double v = m == 'a' ? 0.3 : m == 'b' ? 0.6 : m == 's' ? 0.2 : 0.45;
            c.Row<double>(y)[x] = (x + y) % 2 == 0 ? v : -v;
        }
    ClImage before;
    before.Assign(c);
    ClIpGetMoonValues::CutDetailBands(c, 0.3, 0.6);
    for (int32_t y = 0; y < 8; ++y)
        for (int32_t x = 0; x < 8; ++x)
            EXPECT_EQ(c.Row<double>(y)[x], kKept[y][x] == 'K' ? before.Row<double>(y)[x] : 0.0)
                << "row " << y << ", column " << x;
}

TEST(IpGetMoonValues, NoneOrOnePixelBelowTheTopLevelGivesZero)
{
    // Equalisation sends a constant image to level 63, 1.0: m = 0.
    ClImage image = TestImages::Filled(320, 480, 90);
    EXPECT_EQ(MoonValue(image), 0.0);
    // A single dark pixel equalises to 255 / 153600, level 0: m = 1.
    image.Row<uint8_t>(17)[33] = 0;
    EXPECT_EQ(MoonValue(image), 0.0);
    image.Row<uint8_t>(400)[300] = 0;
    EXPECT_GT(MoonValue(image), 0.0);
}
