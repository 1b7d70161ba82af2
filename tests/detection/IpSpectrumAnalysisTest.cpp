#include <algorithm>
#include <cmath>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "detection/IpSpectrumAnalysis.h"
#include "operators/IpCut.h"
#include "support/DetectionImages.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{
std::vector<double> Curve(ClImage image, ClImage mask)
{
    ClIpSpectrumAnalysis stage;
    stage.pInImage = &image, stage.pInMaskImage = &mask;
    EXPECT_EQ(stage.Run(), 0);
    return {stage.m_adSpectrum, stage.m_adSpectrum + 128};
}

} // namespace

TEST(IpSpectrumAnalysis, WindowFollowsTheMaskCentreClampedInsideTheImage)
{
    // On a 300 by 280 image each window gives the curve of the 256 by 256
    // piece cut out here, its own window wherever its mask (only 255 counts) lies.
    ClImage image = RandomImage(ClImage::eUInt8, 300, 280, 1, 3);
    const auto Piece = [&](int32_t x0, int32_t y0)
    {
        ClImage piece;
        ClIpCut().Run(&image, x0, y0, 256, 256, &piece);
        return piece;
    };
    // A mask in a corner puts the centre at 128 or at extent - 129.
    const ClImage corner = Spot(256, 256, 254, 0, 0, 255);
    EXPECT_EQ(Curve(image, Spot(300, 280, 254, 0, 0, 255)), Curve(Piece(0, 0), corner));
    EXPECT_EQ(Curve(image, Spot(300, 280, 254, 299, 279, 255)), Curve(Piece(43, 23), corner));
}

TEST(IpSpectrumAnalysis, FlatWindowIsNaNAndAnEmptyMaskKeepsAllButTheFirstSix)
{
    for (double d : Curve(Filled(256, 256, 77), Filled(256, 256, 255)))
        EXPECT_TRUE(std::isnan(d));
    ClImage image = RandomImage(ClImage::eUInt8, 256, 256, 1, 5), mask = Filled(256, 256, 254);
    ClIpSpectrumAnalysis stage;
    stage.pInImage = &image, stage.pInMaskImage = &mask;
    const double* S = stage.m_adSpectrum;
    EXPECT_EQ(stage.Run(), ZRC_ERROR_BITMAP_NO_FINGER); // a new object reads zeros
    EXPECT_EQ(std::vector<double>(S, S + 128), std::vector<double>(128, 0.0));
    mask.Fill<uint8_t>(255);
    EXPECT_EQ(stage.Run(), 0);
    std::vector<double> expected(S, S + 128);
    std::fill(expected.begin(), expected.begin() + 6, 0.0);
    mask.Fill<uint8_t>(0);
    EXPECT_EQ(stage.Run(), ZRC_ERROR_BITMAP_NO_FINGER);
    EXPECT_EQ(std::vector<double>(S, S + 128), expected);
}

TEST(IpSpectrumAnalysis, RefusesMissingPointersThenSmallOrUnequalImages)
{
    ClImage a = Filled(255, 256, 0), b = Filled(256, 255, 0), c = Filled(256, 256, 0),
            d = Filled(256, 257, 0);
    const std::tuple<ClImage*, ClImage*, bool, int32_t, const char*> cases[] = {
        {&c, nullptr, true, ZRC_ERROR_BAD_POINTER, "Mask image not assigned"},
        {&a, &a, false, ZRC_ERROR_BAD_POINTER, "Output vector not assigned"},
        {&a, &a, true, -14, "Input image dimensions are too small."},
        {&b, &b, true, -14, "Input image dimensions are too small."},
        {&c, &d, true, -14, "Image and mask dimensions do not match."}};
    for (const auto& [pImage, pMask, bOutput, nCode, szText] : cases)
    {
        ClIpSpectrumAnalysis stage;
        stage.pInImage = pImage, stage.pInMaskImage = pMask;
        stage.m_pdOutSpectrum = bOutput ? stage.m_adSpectrum : nullptr;
        ExpectThrows([&] { stage.Run(); }, nCode, szText);
    }
}
