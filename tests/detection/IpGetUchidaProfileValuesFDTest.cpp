#include "detection/IpGetUchidaProfileValuesFD.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/DetectionImages.h"

using namespace TestImages;

namespace
{
using Stage = ClIpGetUchidaProfileValuesFD;
using V = Stage::StVertex;

// One triangle of tag 2 on a work mask of 1s, rows joined by '|': '3' where
// it drew, '1' elsewhere. out receives the values, 99 where nothing drew.
std::string Drawn(int32_t W, int32_t H, V P0, V P1, V P2, ClImage& out)
{
    ClImage mask = Filled(W, H, 1);
    out = Filled(W, H, 99);
    Stage::FillTriangle(out, mask, P0, P1, P2, 2);
    std::string s;
    for (int32_t y = 0; y < H; ++y)
        for (int32_t x = 0; x <= W; ++x)
            s += x < W ? static_cast<char>('0' + mask.Row<uint8_t>(y)[x]) : '|';
    return s;
}

std::vector<double> Values(ClImage image, ClImage mask, double dBlockSize = 8.0)
{
    Stage stage;
    stage.pInImage = &image, stage.pInMask = &mask;
    stage.dInBlockSize = dBlockSize;
    EXPECT_EQ(stage.Run(), 0);
    return {stage.m_pdOutProfileValues, stage.m_pdOutProfileValues + Stage::kValues};
}

} // namespace

TEST(IpGetUchidaProfileValuesFD, TrianglesFollowTheFixedPointRulesToThePixel)
{
    ClImage out;
    // Flat top: spans end before the right x, the bottom row stays out, and
    // the values step by truncated 16.16 increments (3.33 and 6.67: 3, 6).
    EXPECT_EQ(Drawn(5, 4, {0, 0, 0}, {3, 0, 10}, {3, 3, 10}, out), "33311|13311|11311|11111|");
    EXPECT_EQ(
        Count(out, [](int32_t x, int32_t y, int v) { return v == (y <= x && x < 3 ? 3 * x : 99); }),
        20);
    // Side steps of -21845.33 and +21845.33 truncate toward zero: at row 3
    // the left x is 2.00002 and the right 3.99998, at row 6 the right
    // 4.99997. The left value steps by -43690.67: 8.00003 at row 3, 6.00006
    // at row 6 (flooring or rounding would give 7 and 5).
    EXPECT_EQ(Drawn(7, 10, {3, 0, 10}, {6, 9, 10}, {0, 9, 4}, out),
              "1111111|1131111|1131111|1131111|1333111|1333111|1333111|3333311|3333311|1111111|");
    EXPECT_EQ(out.Row<uint8_t>(3)[2], 8);
    EXPECT_EQ(out.Row<uint8_t>(6)[1], 6);
    // Nothing: the wrong way round; the lowest corner first (the search
    // tests P0); one row; a corner outside the image or the grey range.
    const std::string kNothing = "111111|111111|111111|111111|111111|";
    EXPECT_EQ(Drawn(6, 5, {0, 0, 0}, {0, 4, 0}, {4, 2, 0}, out), kNothing);
    EXPECT_EQ(Drawn(6, 5, {0, 4, 0}, {0, 0, 0}, {4, 2, 0}, out), kNothing);
    EXPECT_EQ(Drawn(6, 5, {0, 2, 0}, {5, 2, 0}, {3, 2, 0}, out), kNothing);
    const int32_t kBig = std::numeric_limits<int32_t>::max();
    for (const V& far : {V{-1, 0, 0}, V{6, 0, 0}, V{0, 5, 0}, V{kBig, kBig, 0}, V{0, 0, 256}})
        EXPECT_EQ(Drawn(6, 5, far, {4, 2, 0}, {0, 4, 0}, out), kNothing);
}

TEST(IpGetUchidaProfileValuesFD, OneValidPixelHasNoSpreadAndNoneGivesNaNMeansWithoutAnError)
{
    // One masked pixel per block, minimum and maximum at once; the only
    // valid pixel is the square's first corner: N is 1. Mask value 1 counts
    // as 255; 2 is counted but never valid.
    ClImage image = Spot(16, 16, 50, 0, 0, 90), mask = Filled(16, 16, 0);
    for (int32_t k : {0, 8})
        mask.Row<uint8_t>(k)[0] = mask.Row<uint8_t>(k)[8] = k == 0 ? 255 : 1;
    const std::vector<double> one = Values(image, mask);
    const double expected[6] = {90, 90, 90, 0, 0, 180};
    for (int k = 0; k < Stage::kValues; ++k)
        EXPECT_TRUE(k < 6 ? one[k] == expected[k] / 255.0 : std::isnan(one[k])) << k;
    // None: an empty mask, a mask of one block or of 2s, and block sizes that
    // leave no square of four blocks (below 1 would otherwise divide by 0).
    const ClImage block =
        ImageOf(16, 16, [](int32_t x, int32_t y) { return x < 8 && y < 8 ? 255 : 0; });
    std::vector<std::vector<double>> runs = {Values(image, Filled(16, 16, 0)), Values(image, block),
                                             Values(image, Filled(16, 16, 2))};
    for (double dBlockSize : {0.5, 0.0, -8.0, std::nan(""), 9.0, 1e12})
        runs.push_back(Values(image, Filled(16, 16, 255), dBlockSize));
    for (const std::vector<double>& v : runs)
        for (int k = 0; k < Stage::kValues; ++k)
            EXPECT_TRUE(k < 6 ? std::isnan(v[k]) : v[k] == 0.0 && std::signbit(v[k])) << k;
}

TEST(IpGetUchidaProfileValuesFD, RefusesMissingInputsAnImageOfAnotherTypeAndAnUnfitMask)
{
    ClImage image = Filled(16, 16, 0), small = Filled(16, 8, 0),
            floats = Blank(ClImage::eFloat32, 16, 16);
    Stage stage;
    ExpectThrows([&] { stage.Run(); }, -701, "Input image not assigned");
    stage.pInImage = &image;
    ExpectThrows([&] { stage.Run(); }, -701, "Mask image not assigned");
    for (ClImage* pMask : {&floats, &small})
    {
        stage.pInMask = pMask;
        ExpectThrows([&] { stage.Run(); }, -44, "Mask image does not fit the input image");
    }
    stage.pInImage = &floats;
    ExpectThrows([&] { stage.Run(); }, -33,
                 "Input pixel type \"float32\" not supported by processor.");
}
