// The feature stages of local statistics: intensity spread, high-pass detail,
// ridge statistics and the gelatine step ratio. Hand-derived cases pin each
// rule; images that vary in one direction only (either one) are checked
// against a plain reference along that direction.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <numeric>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "detection/IpCheckHipass.h"
#include "detection/IpFingerMinMaxMean.h"
#include "detection/IpGelatineCheck.h"
#include "detection/IpRidgeStatistics.h"

namespace
{

using Row = std::vector<int>;

// An image of W columns holding the values row after row.
ClImage Grid(int32_t W, const Row& v)
{
    ClImage image;
    image.Create(ClImage::eUInt8, W, static_cast<int32_t>(v.size()) / W);
    for (size_t i = 0; i < v.size(); ++i)
        image.Row<uint8_t>(static_cast<int32_t>(i) / W)[i % W] = static_cast<uint8_t>(v[i]);
    return image;
}

// Every row is `row`; transposed, every column is.
ClImage Striped(const Row& row, int32_t nRows, bool bTransposed = false)
{
    Row v;
    for (int32_t y = 0; y < nRows; ++y)
        v.insert(v.end(), row.begin(), row.end());
    if (!bTransposed)
        return Grid(static_cast<int32_t>(row.size()), v);
    for (size_t i = 0; i < v.size(); ++i)
        v[i] = row[i / nRows];
    return Grid(nRows, v);
}

// Noisy ridges of a period across a row, clipped to 0..255.
Row Ridges(int32_t n, uint32_t nSeed, double dPeriod, double dAmplitude)
{
    std::mt19937 rng(nSeed);
    Row row(n);
    for (int32_t x = 0; x < n; ++x)
        row[x] = std::clamp(static_cast<int>(140 + dAmplitude * std::sin(6.2831853 * x / dPeriod)) +
                                static_cast<int>(rng() % 41) - 20,
                            0, 255);
    return row;
}

enum EWindow
{
    eMin,
    eMax,
    eMean
};

// A box filter seen along a striped image of nRows rows: the window is cut
// off at the ends, the mean truncates, and a mean box larger than the image
// leaves it as it is.
Row Window(const Row& v, int32_t w, EWindow e, int32_t nRows)
{
    const int32_t n = static_cast<int32_t>(v.size());
    if (e == eMean && (n < w || nRows < w))
        return v;
    Row out(n);
    for (int32_t x = 0; x < n; ++x)
    {
        const int32_t lo = std::max(0, x - w / 2), hi = std::min(n - 1, x + w / 2);
        const auto first = v.begin() + lo, last = v.begin() + hi + 1;
        out[x] = e == eMin   ? *std::min_element(first, last)
                 : e == eMax ? *std::max_element(first, last)
                             : std::accumulate(first, last, 0) / (hi - lo + 1);
    }
    return out;
}

void ExpectRelative(double dActual, double dExpected)
{
    EXPECT_NEAR(dActual, dExpected, 1e-12 * std::fabs(dExpected)) << dExpected;
}

// Each stage run on an image, its results returned; results that the stage
// must write are preset to a marker.
std::vector<double> MinMaxMean(ClImage& image)
{
    ClIpFingerMinMaxMean stage;
    stage.pInImage = &image;
    EXPECT_EQ(stage.Run(), 0);
    return {stage.MinDeviation, stage.MaxDeviation, stage.MidDeviation};
}
std::vector<double> Hipass(ClImage& image)
{
    ClIpCheckHipass stage;
    stage.pInImage = &image;
    stage.HipassMeanRatio = stage.HipassDeviationRatio = 5.0;
    EXPECT_EQ(stage.Run(), 0);
    return {stage.HipassMeanRatio, stage.HipassDeviationRatio};
}
// Mean ratios, then variance ratios; 7.0 where nothing was written.
std::vector<double> Ridge(ClImage& image)
{
    ClIpRidgeStatistics stage;
    stage.pInImage = &image;
    std::fill_n(stage.m_adMeanRatios, 3, 7.0);
    std::fill_n(stage.m_adVarianceRatios, 3, 7.0);
    EXPECT_EQ(stage.Run(), 0);
    std::vector<double> out(stage.m_adMeanRatios, stage.m_adMeanRatios + 3);
    out.insert(out.end(), stage.m_adVarianceRatios, stage.m_adVarianceRatios + 3);
    return out;
}
// The two mean squared steps, then the ratio.
std::vector<double> Gelatine(ClImage& image, ClImage& mask)
{
    std::vector<double> out = {-1.0, -1.0};
    ClIpGelatineCheck stage;
    stage.pInImage = &image;
    stage.pInMask = &mask;
    stage.m_pdOutSteps = out.data();
    EXPECT_EQ(stage.Run(), 0);
    out.push_back(stage.dOutResult);
    return out;
}

} // namespace

TEST(IpFingerMinMaxMean, SpreadLeavesWhiteOutOfTheSumsButNotOutOfTheCount)
{
    // Mean and squares over the values below 255 (the middle 127 when there
    // are none), divided by all pixels less one.
    const int32_t H = 25;
    auto spread = [H](const Row& v)
    {
        double n = 0, sum = 0, squares = 0;
        for (int s : v)
            if (s < 255)
                n += 1, sum += s;
        const double mean = n > 0 ? sum / n : 127.0;
        for (int s : v)
            if (s < 255)
                squares += (s - mean) * (s - mean) * H;
        return std::sqrt(squares / (static_cast<double>(v.size()) * H - 1.0));
    };
    // Crests clipped at 255, so that the local maximum is white in runs.
    const Row row = Ridges(100, 1, 50.0, 125.0);
    const Row maxima = Window(row, 21, eMax, H);
    ASSERT_GT(std::count(maxima.begin(), maxima.end(), 255), 5);
    ASSERT_LT(std::count(maxima.begin(), maxima.end(), 255), 80);
    for (bool bTransposed : {false, true})
    {
        ClImage image = Striped(row, H, bTransposed);
        const std::vector<double> out = MinMaxMean(image);
        ExpectRelative(out[0], spread(Window(row, 21, eMin, H)));
        ExpectRelative(out[1], spread(maxima));
        ExpectRelative(out[2], spread(Window(row, 21, eMean, H)));
    }
    // Constant images have no spread; all white falls back to the middle.
    for (int nValue : {0, 128, 254, 255})
    {
        ClImage image = Striped(Row(30, nValue), 30);
        EXPECT_EQ(MinMaxMean(image), std::vector<double>(3, 0.0)) << nValue;
    }
}

TEST(IpCheckHipass, HandCasesOfContrastBrightnessAndFewPixels)
{
    // 3 by 3: every window spans the image. A dark centre under a range of
    // 33 stretches to 0 and its mean to 2040 / 9 = 226, the rest to 255,
    // which stays out: one pixel gives its own detail. A range of 32 is no
    // contrast and a flat image has none: no pixel, 0.
    for (auto [nRest, dDetail] : {std::pair{33, -226.0}, std::pair{32, 0.0}, std::pair{0, 0.0}})
    {
        ClImage image = Grid(3, {nRest, nRest, nRest, nRest, 0, nRest, nRest, nRest, nRest});
        EXPECT_EQ(Hipass(image), (std::vector<double>{dDetail, 0.0})) << nRest;
    }
    // Range 0..255, so stretched = image. The corner 0 has the 2 by 2 mean
    // (510 + T) / 4 = 183, detail -183. A centre T of 224 stays out; one of
    // 223 has the mean 2008 / 9 = 223, detail 0.
    ClImage bright = Grid(3, {0, 255, 255, 255, 224, 255, 255, 255, 255});
    EXPECT_EQ(Hipass(bright), (std::vector<double>{-183.0, 0.0}));
    ClImage image = Grid(3, {0, 255, 255, 255, 223, 255, 255, 255, 255});
    // N 2, Se -183, See 183², both value sums 223 (plain, not squared); the
    // deviation is taken around the ratio r, not around the mean detail.
    const double mean = 223.0 / 2, v = 223.0 - 2 * mean * mean, r = -183.0 / 2 / mean;
    const std::vector<double> out = Hipass(image);
    EXPECT_DOUBLE_EQ(out[0], r);
    EXPECT_DOUBLE_EQ(out[1], (183.0 * 183.0 - 2 * r * r) / v);
}

TEST(IpCheckHipass, MatchesAColumnReferenceAcrossHighContrastRidges)
{
    // Ridges right of a flat part, whose edge is high contrast for the
    // pixel but not for its whole window.
    Row row = Ridges(90, 2, 9.0, 60.0);
    std::fill_n(row.begin(), 20, 140);
    const int32_t H = 30;
    // Stretch between the width-11 extremes, contrast where the whole
    // width-11 window ranges over more than 32, detail against a width-3 mean.
    const Row lo = Window(row, 11, eMin, H), hi = Window(row, 11, eMax, H);
    Row a(row.size()), contrast(row.size());
    for (size_t x = 0; x < row.size(); ++x)
    {
        const int d = hi[x] - lo[x];
        contrast[x] = d > 32 ? 255 : 0;
        a[x] = d > 0 ? (row[x] - lo[x]) * 255 / d : 0;
    }
    contrast = Window(contrast, 11, eMean, H);
    const Row b = Window(a, 3, eMean, H);
    double N = 0, Se = 0, See = 0, Sa = 0;
    for (size_t x = 0; x < row.size(); ++x)
        if (contrast[x] == 255 && a[x] < 224)
            N += H, Se += H * (a[x] - b[x]), See += H * (a[x] - b[x]) * (a[x] - b[x]),
                Sa += H * a[x];
    ASSERT_GT(N, H * 20.0);
    const double mean = Sa / N, v = (Sa - N * mean * mean) / (N - 1), r = Se / N / mean;
    for (bool bTransposed : {false, true})
    {
        ClImage image = Striped(row, H, bTransposed);
        const std::vector<double> out = Hipass(image);
        ExpectRelative(out[0], r);
        ExpectRelative(out[1], (See - N * r * r) / (N - 1) / v);
    }
}

TEST(IpRidgeStatistics, RidgePixelsLieMoreThanTenBelowTheWideMean)
{
    // One dark line in a field of 100: its width-11 mean is (1000 + v) / 11,
    // 99 for v = 89 (exactly 10 deeper: no ridge) and 98 for v = 87, whose
    // width-3 mean is 287 / 3 = 95 and width-5 mean 487 / 5 = 97. The 21
    // ridge pixels are equal, so the variance ratios are 0 / 0.
    Row row(41, 100);
    row[20] = 89;
    ClImage shallow = Striped(row, 21);
    EXPECT_EQ(Ridge(shallow), std::vector<double>(6, 7.0));
    row[20] = 87;
    for (bool bTransposed : {false, true})
    {
        ClImage deep = Striped(row, 21, bTransposed);
        const std::vector<double> out = Ridge(deep);
        EXPECT_DOUBLE_EQ(out[0], 98.0 / 87);
        EXPECT_DOUBLE_EQ(out[1], 95.0 / 87);
        EXPECT_DOUBLE_EQ(out[2], 97.0 / 87);
        EXPECT_TRUE(std::isnan(out[3]) && std::isnan(out[4]) && std::isnan(out[5]));
    }
    // A single ridge pixel is too few: nothing is written.
    ClImage dot = Striped(Row(41, 100), 41);
    dot.Row<uint8_t>(20)[20] = 0;
    EXPECT_EQ(Ridge(dot), std::vector<double>(6, 7.0));
}

TEST(IpGelatineCheck, FallingOverRisingStepsUnderTheMaskInvertUpsideDown)
{
    // Columns from the top: 10 20 15 (rising 100, falling 25); 50 50 40 (a
    // counted step of 0, falling 100); 30 255 60 (white is not used: no
    // pair); 70 80 90 with 70 outside the mask (rising 100). Five pairs.
    Row values = {10, 50, 30, 70, 20, 50, 255, 80, 15, 40, 60, 90}, inMask(12, 1);
    inMask[3] = 0;
    ClImage image = Grid(4, values), mask = Grid(4, inMask);
    EXPECT_EQ(Gelatine(image, mask), (std::vector<double>{25.0, 40.0, 0.625}));
    // Upside down the two sides swap and the ratio inverts.
    std::reverse(values.begin(), values.end());
    std::reverse(inMask.begin(), inMask.end());
    ClImage flipped = Grid(4, values), flippedMask = Grid(4, inMask);
    EXPECT_EQ(Gelatine(flipped, flippedMask), (std::vector<double>{40.0, 25.0, 1.6}));
}

TEST(IpGelatineCheck, DegenerateStepsGiveNaNOrInfinity)
{
    // A mask of one row has no pair: 0 / 0 everywhere.
    ClImage image = Striped(Ridges(20, 4, 5.0, 50.0), 6, true), line = Striped(Row(6, 0), 20);
    std::fill_n(line.Row<uint8_t>(7), 6, 255);
    for (double d : Gelatine(image, line))
        EXPECT_TRUE(std::isnan(d));
    // Variation along the rows only: every step is 0, so 0 over 0.
    ClImage rows = Striped(Ridges(20, 4, 5.0, 50.0), 6);
    const std::vector<double> flat = Gelatine(rows, rows);
    EXPECT_TRUE(flat[0] == 0.0 && flat[1] == 0.0 && std::isnan(flat[2]));
    // Darker down every column: no rising step, infinity.
    ClImage falling = Striped({100, 90, 80, 79}, 3, true);
    EXPECT_EQ(Gelatine(falling, falling), (std::vector<double>{67.0, 0.0, INFINITY}));
}

TEST(FeatureStages, MissingInputsAreBadPointersOfTheStage)
{
    auto expectMissing = [](NewIpBase::ClIpStageBase& stage, const char* szUnit, const char* szText)
    {
        try
        {
            stage.Run();
            ADD_FAILURE() << "no exception for " << szText;
        }
        catch (const ClException& e)
        {
            EXPECT_EQ(e.GetCode(), -701);
            const std::string sText = e.GetMessage(); // the table's line, then the text
            EXPECT_EQ(sText.substr(sText.find('\n') + 1), szText);
            EXPECT_STREQ(e.GetFile(), szUnit);
        }
    };
    ClIpFingerMinMaxMean minMaxMean;
    ClIpCheckHipass hipass;
    ClIpRidgeStatistics ridges;
    expectMissing(minMaxMean, "IpFingerMinMaxMean", "Input image not assigned");
    expectMissing(hipass, "IpCheckHipass", "Input image not assigned");
    expectMissing(ridges, "IpRidgeStatistics", "Input image not assigned");
    // Image, mask and output pointer are tested in this order.
    ClImage image = Striped(Row(8, 1), 8);
    double adSteps[2];
    ClIpGelatineCheck gelatine;
    expectMissing(gelatine, "IpGelatineCheck", "Input image not assigned");
    gelatine.pInImage = &image;
    expectMissing(gelatine, "IpGelatineCheck", "Mask image not assigned");
    gelatine.pInMask = &image;
    expectMissing(gelatine, "IpGelatineCheck", "Output pointer not assigned");
    gelatine.m_pdOutSteps = adSteps;
    EXPECT_EQ(gelatine.Run(), 0);
}

TEST(FeatureStages, AnyContentRunsWithoutFault)
{
    std::mt19937 rng(5);
    Row noise(320 * 480);
    for (int& v : noise)
        v = static_cast<int>(rng() % 256);
    std::vector<ClImage> images = {Striped(Row(320, 0), 480),
                                   Striped(Row(320, 128), 480),
                                   Striped(Row(320, 255), 480),
                                   Grid(320, noise),
                                   Grid(1, {77}),
                                   Striped(Ridges(40, 6, 7.0, 90.0), 2, true)};
    for (ClImage& image : images)
    {
        ClImage dot = Striped(Row(image.Width(), 0), image.Height());
        dot.Row<uint8_t>(image.Height() / 2)[image.Width() / 2] = 255;
        MinMaxMean(image);
        Hipass(image);
        Ridge(image);
        Gelatine(image, image);
        Gelatine(image, dot);
    }
    // A mask of another size is refused, not read beyond its end.
    ClImage small = Grid(1, {255});
    double adSteps[2];
    ClIpGelatineCheck gelatine;
    gelatine.pInImage = &images[3];
    gelatine.pInMask = &small;
    gelatine.m_pdOutSteps = adSteps;
    EXPECT_THROW(gelatine.Run(), ClException);
}
