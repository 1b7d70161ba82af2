// The feature stages of the fake half on small hand-made images: the rules
// at their limits, the degenerate cases and the refusals. Their values on
// ordinary captures are compared run by run by the conformance test.
#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "detection/IpCheckHipass.h"
#include "detection/IpFingerMinMaxMean.h"
#include "detection/IpGelatineCheck.h"
#include "detection/IpGetMoonValues.h"
#include "detection/IpRidgeEdgeCheck.h"
#include "detection/IpRidgeStatistics.h"
#include "image/ImageTestSupport.h"
#include "support/DetectionImages.h"

using LiveDetection::ClIpRidgeEdgeCheck;
using namespace TestImages;

TEST(IpFingerMinMaxMean, WhiteStaysOutOfTheSumsButNotOutOfTheCount)
{
    auto spreads = [](ClImage image)
    {
        ClIpFingerMinMaxMean stage;
        stage.pInImage = &image;
        EXPECT_EQ(stage.Run(), 0);
        return std::vector<double>{stage.MinDeviation, stage.MaxDeviation, stage.MidDeviation};
    };
    // One row of three: the width-21 minimum is 100 throughout, the maximum
    // all white, and the mean box, larger than the image, leaves it as it
    // is. The spread of the mean counts 100 and 200 around 150, over 3 - 1.
    EXPECT_EQ(spreads(Grid(3, {100, 200, 255})), (std::vector<double>{0.0, 0.0, 50.0}));
    // Constant images have no spread; all white falls back to the middle.
    for (int nValue : {0, 128, 254, 255})
        EXPECT_EQ(spreads(Filled(30, 30, nValue)), std::vector<double>(3, 0.0)) << nValue;
    ClIpFingerMinMaxMean stage;
    ExpectThrows([&] { stage.Run(); }, -701, "Input image not assigned");
}

TEST(IpCheckHipass, HandCasesOfContrastBrightnessAndFewPixels)
{
    // The mean ratio and the deviation ratio, preset to a marker.
    auto hipass = [](ClImage image)
    {
        ClIpCheckHipass stage;
        stage.pInImage = &image;
        stage.HipassMeanRatio = stage.HipassDeviationRatio = 5.0;
        EXPECT_EQ(stage.Run(), 0);
        return std::vector<double>{stage.HipassMeanRatio, stage.HipassDeviationRatio};
    };
    // 3 by 3: every window spans the image. A dark centre under a range of
    // 33 stretches to 0 and its mean to 2040 / 9 = 226, the rest to 255,
    // which stays out: one pixel gives its own detail. A range of 32 is no
    // contrast and a flat image has none: no pixel, 0.
    for (auto [nRest, dDetail] : {std::pair{33, -226.0}, std::pair{32, 0.0}, std::pair{0, 0.0}})
        EXPECT_EQ(hipass(Grid(3, {nRest, nRest, nRest, nRest, 0, nRest, nRest, nRest, nRest})),
                  (std::vector<double>{dDetail, 0.0}))
            << nRest;
    // Range 0..255, so stretched = image. The corner 0 has the 2 by 2 mean
    // (510 + T) / 4 = 183, detail -183. A centre T of 224 stays out; one of
    // 223 has the mean 2008 / 9 = 223, detail 0.
    EXPECT_EQ(hipass(Grid(3, {0, 255, 255, 255, 224, 255, 255, 255, 255})),
              (std::vector<double>{-183.0, 0.0}));
    // N 2, Se -183, See 183², both value sums 223 (plain, not squared); the
    // deviation is taken around the ratio r, not around the mean detail.
    const double mean = 223.0 / 2, v = 223.0 - 2 * mean * mean, r = -183.0 / 2 / mean;
    const std::vector<double> out = hipass(Grid(3, {0, 255, 255, 255, 223, 255, 255, 255, 255}));
    EXPECT_DOUBLE_EQ(out[0], r);
    EXPECT_DOUBLE_EQ(out[1], (183.0 * 183.0 - 2 * r * r) / v);
    ClIpCheckHipass stage;
    ExpectThrows([&] { stage.Run(); }, -701, "Input image not assigned");
}

TEST(IpRidgeStatistics, RidgePixelsLieMoreThanTenBelowTheWideMeanOfWidths11_3_5)
{
    // Mean ratios, then variance ratios; 7.0 where nothing was written.
    auto ratios = [](ClImage image)
    {
        ClIpRidgeStatistics stage;
        stage.pInImage = &image;
        std::fill_n(stage.m_adMeanRatios, 3, 7.0);
        std::fill_n(stage.m_adVarianceRatios, 3, 7.0);
        EXPECT_EQ(stage.Run(), 0);
        std::vector<double> out(stage.m_adMeanRatios, stage.m_adMeanRatios + 3);
        out.insert(out.end(), stage.m_adVarianceRatios, stage.m_adVarianceRatios + 3);
        return out;
    };
    // One dark line in a field of 100: its width-11 mean is (1000 + v) / 11,
    // 99 for v = 89 (exactly 10 deeper: no ridge) and 98 for v = 87, whose
    // width-3 mean is 287 / 3 = 95 and width-5 mean 487 / 5 = 97. The 21
    // ridge pixels are equal, so the variance ratios are 0 / 0.
    std::vector<int> row(41, 100);
    row[20] = 89;
    EXPECT_EQ(ratios(Striped(row, 21)), std::vector<double>(6, 7.0));
    row[20] = 87;
    const std::vector<double> out = ratios(Striped(row, 21));
    EXPECT_DOUBLE_EQ(out[0], 98.0 / 87);
    EXPECT_DOUBLE_EQ(out[1], 95.0 / 87);
    EXPECT_DOUBLE_EQ(out[2], 97.0 / 87);
    EXPECT_TRUE(std::isnan(out[3]) && std::isnan(out[4]) && std::isnan(out[5]));
    // A single ridge pixel is too few: nothing is written.
    ClImage dot = Filled(41, 41, 100);
    dot.Row<uint8_t>(20)[20] = 0;
    EXPECT_EQ(ratios(dot), std::vector<double>(6, 7.0));
    ClIpRidgeStatistics stage;
    ExpectThrows([&] { stage.Run(); }, -701, "Input image not assigned");
}

TEST(IpRidgeEdgeCheck, RefusalsDegenerateImagesAndAQuotientOfExactlyHalfADeviation)
{
    using Features = std::array<double, 4>;
    const Features kUntouched = {-7.0, -7.0, -7.0, -7.0};
    // Runs the check; a failure leaves the vector untouched.
    auto edgeFeatures = [&](ClImage image, int32_t nExpected = 0, const char* szText = nullptr)
    {
        Features features = kUntouched;
        ClIpRidgeEdgeCheck check;
        check.pInImage = &image;
        check.padOutFeatures = features.data();
        if (nExpected == 0)
            EXPECT_EQ(check.Run(), 0);
        else
            ExpectThrows([&] { check.Run(); }, nExpected, szText);
        return features;
    };
    ClImage image = Filled(8, 8, 100);
    ClIpRidgeEdgeCheck check;
    ExpectThrows([&] { check.Run(); }, -701, "Input image not assigned");
    check.pInImage = &image;
    ExpectThrows([&] { check.Run(); }, -701, "Feature vector not assigned");
    EXPECT_EQ(edgeFeatures(Blank(ClImage::eInt16, 8, 8), -33,
                           "Input pixel type \"int16\" not supported by processor."),
              kUntouched);

    // All 255; no inner column; no inner row; and a 3 x 3 image whose only
    // dark pixel is on the border, which the mean grey does not count.
    ClImage framed = Filled(3, 3, 255);
    framed.Row<uint8_t>(0)[1] = 0;
    for (const ClImage& degenerate :
         {Filled(320, 480, 255), Filled(2, 50, 100), Filled(50, 2, 100), framed})
        EXPECT_EQ(edgeFeatures(degenerate, -15, "No fingerprint found"), kUntouched);

    // Flat: no gradient and no pixel below the mean, so the mean gradient is
    // NaN and clears nothing, and no point stands above its neighbourhood.
    // A dark pixel, inside or on the border, or a dark line one pixel wide:
    // their edges lie on the bright side, which is cleared.
    ClImage dot = Filled(7, 7, 200), corner = Filled(7, 7, 200);
    dot.Row<uint8_t>(3)[3] = 100;
    corner.Row<uint8_t>(0)[0] = 100;
    for (const ClImage& flat : {Filled(3, 3, 0), Filled(320, 480, 254), dot, corner,
                                Striped({200, 200, 200, 50, 200, 200, 200}, 6)})
    {
        const Features f = edgeFeatures(flat);
        EXPECT_TRUE(f[0] == 0.0 && f[1] == 0.0 && std::isnan(f[2]) && std::isnan(f[3]));
    }

    // A line of 50 between grounds of 200 and 150, three rows: mean grey
    // 127.8, edges 150 and 100 in the inner row: n = 2, m = 125, d = 50 / 1,
    // and both quotients are exactly 0.5, not above half a deviation.
    EXPECT_EQ(edgeFeatures(Striped({200, 200, 200, 50, 50, 50, 150, 150, 150, 150, 150}, 3)),
              (Features{125.0, 50.0, 0.0, 0.0}));
}

TEST(IpGelatineCheck, NaNOrInfinityWhenDegenerateAndRefusalsInOrder)
{
    // The two mean squared steps, then the ratio.
    auto steps = [](ClImage image, ClImage mask)
    {
        std::vector<double> out = {-1.0, -1.0};
        ClIpGelatineCheck stage;
        stage.pInImage = &image;
        stage.pInMask = &mask;
        stage.m_pdOutSteps = out.data();
        EXPECT_EQ(stage.Run(), 0);
        out.push_back(stage.dOutResult);
        return out;
    };
    // A mask of one row, or a single row: no pair, 0 / 0 everywhere.
    const std::vector<int> ridges = {90, 140, 200, 140, 90, 140, 200, 140};
    ClImage line = Filled(6, 8, 0);
    std::fill_n(line.Row<uint8_t>(3), 6, 255);
    for (const std::vector<double>& out :
         {steps(Striped(ridges, 6, true), line), steps(Grid(8, ridges), Grid(8, ridges))})
        for (double d : out)
            EXPECT_TRUE(std::isnan(d));
    // Variation along the rows only: every step is 0, so 0 over 0.
    const std::vector<double> flat = steps(Striped(ridges, 6), Striped(ridges, 6));
    EXPECT_TRUE(flat[0] == 0.0 && flat[1] == 0.0 && std::isnan(flat[2]));
    // Darker down every column: no rising step, infinity.
    EXPECT_EQ(steps(Striped({100, 90, 80, 79}, 3, true), Filled(3, 4, 1)),
              (std::vector<double>{67.0, 0.0, INFINITY}));

    ClImage image = Filled(8, 8, 1), small = Filled(1, 1, 255);
    double adSteps[2];
    ClIpGelatineCheck stage;
    ExpectThrows([&] { stage.Run(); }, -701, "Input image not assigned");
    stage.pInImage = &image;
    ExpectThrows([&] { stage.Run(); }, -701, "Mask image not assigned");
    stage.pInMask = &image;
    ExpectThrows([&] { stage.Run(); }, -701, "Output pointer not assigned");
    stage.m_pdOutSteps = adSteps;
    EXPECT_EQ(stage.Run(), 0);
    // A mask of another size is refused, not read beyond its end.
    stage.pInMask = &small;
    ExpectThrows([&] { stage.Run(); }, -44);
}

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
    auto value = [&](int32_t x, int32_t y)
    {
        const char m = kLayout[y][x];
        const double v = m == 'a' ? 0.3 : m == 'b' ? 0.6 : m == 's' ? 0.2 : 0.45;
        return (x + y) % 2 == 0 ? v : -v;
    };
    for (int32_t k = 0; k < 64; ++k)
        c.Row<double>(k / 8)[k % 8] = value(k % 8, k / 8);
    ClIpGetMoonValues::CutDetailBands(c, 0.3, 0.6);
    for (int32_t k = 0; k < 64; ++k)
        EXPECT_EQ(c.Row<double>(k / 8)[k % 8],
                  kKept[k / 8][k % 8] == 'K' ? value(k % 8, k / 8) : 0.0)
            << "row " << k / 8 << ", column " << k % 8;

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
