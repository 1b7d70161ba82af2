#include "detection/IpGetMoonValues.h"

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BmpFile.h"
#include "image/Bitmap.h"
#include "image/ImageTestSupport.h"
#include "parameters/ParameterContainer.h"
#include "support/OperatorTestImages.h"

namespace
{

// 8-bit images are filled with 90; the others are never read.
ClImage Grey(ClImage::EDataType eType, int32_t nWidth, int32_t nHeight)
{
    ClImage image;
    image.Create(eType, nWidth, nHeight);
    if (eType == ClImage::eUInt8)
        image.Fill<uint8_t>(90);
    return image;
}

double MoonValue(ClImage& image)
{
    ClIpGetMoonValues moon;
    moon.pInImage = &image;
    double dElsewhere = -1.0;
    moon.m_pdOutDeviation = &dElsewhere; // the result goes through the pointer
    EXPECT_EQ(moon.Run(), 0);
    EXPECT_EQ(moon.dOutDeviation, 0.0);
    return dElsewhere;
}

} // namespace

TEST(IpGetMoonValues, RefusesMissingImageThenSizeThenTypeBeforeAnyWork)
{
    ClImage narrow = Grey(ClImage::eUInt8, 318, 480), low = Grey(ClImage::eUInt8, 320, 478),
            narrowWords = Grey(ClImage::eInt16, 318, 480), words = Grey(ClImage::eInt16, 320, 480);
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

TEST(IpGetMoonValues, RegistersTheImageThenTheDeviationBehindItsPointer)
{
    ClIpGetMoonValues moon;
    ClParameterContainer container;
    moon.DefineParameters(container);
    ASSERT_EQ(container.GetChildCount(), 2u);
    EXPECT_STREQ(container.GetChild(0)->GetName(), "pInImage");
    EXPECT_STREQ(container.GetChild(1)->GetName(), "dOutDeviation");
    EXPECT_EQ(container.GetChild(1)->GetFlags(), ClParameter::eFlagOutput);
    double dElsewhere = 0.0;
    moon.m_pdOutDeviation = &dElsewhere;
    EXPECT_EQ(container.GetChild(1)->GetValuePointer(), &dElsewhere);
}

TEST(IpGetMoonValues, SigmaIsTheSpreadOfThePixelsOfTheThreeDetailQuarters)
{
    // 4 x 4: the upper-left quarter at 1.0, the right half at 0.0 and the
    // bottom-left quarter at 5.0, which does not count. n = 12, mean 1/3,
    // variance (4 (2/3)^2 + 8 (1/3)^2) / 11 = 8 / 33.
    ClImage image;
    image.Create(ClImage::eDouble64, 4, 4);
    for (int32_t y = 0; y < 4; ++y)
        for (int32_t x = 0; x < 4; ++x)
            image.Row<double>(y)[x] = x >= 2 ? 0.0 : (y < 2 ? 1.0 : 5.0);
    EXPECT_NEAR(ClIpGetMoonValues::PixelSigma(image), std::sqrt(8.0 / 33.0), 1e-15);

    // The sums take the upper-left quarter first, then the right half, row by
    // row; on random values another order shows in the last bits.
    image = TestImages::RandomImage(ClImage::eDouble64, 24, 16, 1, 11, 1.0);
    std::vector<double> v;
    for (int32_t y = 0; y < 8; ++y)
        for (int32_t x = 0; x < 12; ++x)
            v.push_back(image.Row<double>(y)[x]);
    for (int32_t y = 0; y < 16; ++y)
        for (int32_t x = 12; x < 24; ++x)
            v.push_back(image.Row<double>(y)[x]);
    double dSum = 0.0, dSquares = 0.0;
    for (double s : v)
        dSum += s;
    for (double s : v)
        dSquares += (s - dSum / 288.0) * (s - dSum / 288.0);
    EXPECT_EQ(ClIpGetMoonValues::PixelSigma(image), std::sqrt(dSquares / 287.0));
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
    ClImage c;
    c.Create(ClImage::eDouble64, 8, 8);
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

    // On the capture size only rows 360-479 of columns 0-79 stay.
    c.Create(ClImage::eDouble64, 320, 480);
    c.Fill(1e-3);
    ClIpGetMoonValues::CutDetailBands(c, 0.5, 0.5);
    int64_t nKept = 0, nKeptOutside = 0;
    for (int32_t y = 0; y < 480; ++y)
        for (int32_t x = 0; x < 320; ++x)
        {
            nKept += c.Row<double>(y)[x] != 0.0;
            nKeptOutside += c.Row<double>(y)[x] != 0.0 && !(y >= 360 && x < 80);
        }
    EXPECT_EQ(nKept, 120 * 80);
    EXPECT_EQ(nKeptOutside, 0);
}

TEST(IpGetMoonValues, NoneOrOnePixelBelowTheTopLevelGivesZero)
{
    // Equalisation sends a constant image to level 63, 1.0: m = 0.
    ClImage image = Grey(ClImage::eUInt8, 320, 480);
    EXPECT_EQ(MoonValue(image), 0.0);
    // A single dark pixel equalises to 255 / 153600, level 0: m = 1.
    image.Row<uint8_t>(17)[33] = 0;
    EXPECT_EQ(MoonValue(image), 0.0);
    image.Row<uint8_t>(400)[300] = 0;
    EXPECT_GT(MoonValue(image), 0.0);
}

TEST(IpGetMoonValues, AgreesWithTheConformanceSetOnItsMaskedImages)
{
    // Index 15 of three conformance runs, from an independent implementation.
    for (auto [szRun, dExpected] :
         {std::pair{"live_a_1", 0.1039718752019027}, std::pair{"skewed_1", 0.10917578702730225},
          std::pair{"smooth_c_0", 0.09904771432648356}})
    {
        SentivoTool::BmpFile file = SentivoTool::ReadBmpFile(std::string(SENTIVO_SOURCE_DIR) +
                                                             "/tests/conformance/intermediates/" +
                                                             szRun + "/masked_image.bmp");
        ClBitmap bitmap;
        bitmap.Attach(file.Block(), file.BlockSize());
        ClImage masked(bitmap);
        EXPECT_NEAR(MoonValue(masked), dExpected, 1e-9 * dExpected) << szRun;
    }
}
