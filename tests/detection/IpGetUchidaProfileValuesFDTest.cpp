#include "detection/IpGetUchidaProfileValuesFD.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"

namespace
{

using Stage = ClIpGetUchidaProfileValuesFD;
using V = Stage::StVertex;

ClImage Filled(int32_t W, int32_t H, uint8_t nValue)
{
    ClImage image;
    image.Create(ClImage::eUInt8, W, H);
    image.Fill<uint8_t>(nValue);
    return image;
}

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
    stage.pInImage = &image;
    stage.pInMask = &mask;
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
    const uint8_t expected[9] = {0, 3, 6, 99, 3, 6, 99, 99, 6};
    for (int32_t k = 0; k < 9; ++k)
        EXPECT_EQ(out.Row<uint8_t>(k / 3)[k % 3], expected[k]) << k;
    // Side steps of -21845.33 and +21845.33 truncate toward zero: at row 3
    // the left x is 2.00002 and the right 3.99998, at row 6 the right
    // 4.99997. The left value steps by -43690.67: 8.00003 at row 3, 6.00006
    // at row 6 (flooring or rounding would give 7 and 5).
    EXPECT_EQ(Drawn(7, 10, {3, 0, 10}, {6, 9, 10}, {0, 9, 4}, out),
              "1111111|1131111|1131111|1131111|1333111|1333111|1333111|3333311|3333311|1111111|");
    EXPECT_EQ(out.Row<uint8_t>(3)[2], 8);
    EXPECT_EQ(out.Row<uint8_t>(6)[1], 6);
    // Along a row too: from 10 down to 4 over 9 pixels, 8 and 6 on the spot.
    Drawn(10, 4, {0, 0, 10}, {9, 0, 4}, {9, 3, 4}, out);
    EXPECT_EQ(out.Row<uint8_t>(0)[3], 8);
    EXPECT_EQ(out.Row<uint8_t>(0)[6], 6);
    // Past a corner on the right side, on the left side, and a flat bottom.
    EXPECT_EQ(Drawn(6, 5, {0, 0, 0}, {4, 2, 0}, {0, 4, 0}, out),
              "111111|331111|333311|331111|111111|");
    EXPECT_EQ(Drawn(6, 5, {2, 0, 0}, {4, 4, 0}, {0, 2, 0}, out),
              "111111|131111|333111|113111|111111|");
    EXPECT_EQ(Drawn(6, 5, {2, 0, 0}, {4, 4, 0}, {0, 4, 0}, out),
              "111111|131111|133111|333111|111111|");

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

TEST(IpGetUchidaProfileValuesFD, RandomTrianglesStayInsideTheBoxOfTheirCorners)
{
    // Never the bottom row or right column of the box; values between the
    // corners' values.
    std::mt19937 random(7);
    for (int n = 0; n < 2000; ++n)
    {
        std::array<V, 3> P;
        for (V& p : P)
            p = {int32_t(random() % 9), int32_t(random() % 7), int32_t(random() % 256)};
        auto [x0, x1] = std::minmax({P[0].nX, P[1].nX, P[2].nX});
        auto [y0, y1] = std::minmax({P[0].nY, P[1].nY, P[2].nY});
        auto [v0, v1] = std::minmax({P[0].nValue, P[1].nValue, P[2].nValue});
        ClImage out;
        const std::string s = Drawn(9, 7, P[0], P[1], P[2], out);
        for (int32_t k = 0; k < 70; ++k)
        {
            const int32_t x = k % 10, y = k / 10;
            if (s[k] != '3')
                continue;
            const int32_t v = out.Row<uint8_t>(y)[x];
            EXPECT_TRUE(x >= x0 && x < x1 && y >= y0 && y < y1 && v >= v0 && v <= v1);
        }
    }
}

TEST(IpGetUchidaProfileValuesFD, ValuesOfBlocksWithALighterCorner)
{
    // Blocks of 8 with values 100, 140, 60 across, each top left pixel 20
    // lighter: the maxima sit on the block corners and the minima one pixel
    // right of them. Both surfaces are ramps along x; valid are columns 1 to
    // 15 of rows 0 to 7.
    const int32_t g[3] = {100, 140, 60};
    auto U = [](int32_t x) { return x < 8 ? 120 + 5 * x : 160 - 10 * (x - 8); };
    auto L = [](int32_t x) { return x < 9 ? 100 + 5 * (x - 1) : 140 - 10 * (x - 9); };
    ClImage image = Filled(24, 16, 0);
    for (int32_t k = 0; k < 24 * 16; ++k)
        image.Row<uint8_t>(k / 24)[k % 24] =
            uint8_t(g[k % 24 / 8] + (k % 8 == 0 && k / 24 % 8 == 0) * 20);

    // Plain statistics of U, L, I, U - I, I - L, U + L; the distance to the
    // upper surface is taken around the mean distance to the lower one.
    std::vector<std::array<double, 6>> terms;
    for (int32_t y = 0; y < 8; ++y)
        for (int32_t x = 1; x < 16; ++x)
        {
            const int32_t I = image.Row<uint8_t>(y)[x];
            terms.push_back({double(U(x)), double(L(x)), double(I), double(U(x) - I),
                             double(I - L(x)), double(U(x) + L(x))});
        }
    const double n = double(terms.size());
    double m[6] = {}, s[5] = {};
    for (const auto& t : terms)
        for (int k = 0; k < 6; ++k)
            m[k] += t[k] / n;
    for (const auto& t : terms)
        for (int k = 0; k < 5; ++k)
            s[k] += std::pow(t[k] - m[k == 3 ? 4 : k], 2);
    Stage stage;
    ClImage mask = Filled(24, 16, 255);
    stage.pInImage = &image;
    stage.pInMask = &mask;
    ASSERT_EQ(stage.Run(), 0);
    for (int k = 0; k < Stage::kValues; ++k)
        EXPECT_NEAR(stage.m_adProfileValues[k] * 255.0,
                    k < 6 ? m[k] : std::sqrt(s[k - 6] / (n - 1)), 1e-11)
            << k;
    for (int32_t k = 0; k < 24 * 16; ++k)
    {
        const int32_t x = k % 24, y = k / 24;
        const bool bValid = y < 8 && x >= 1 && x < 16;
        EXPECT_EQ(stage.UpperProfile.Row<uint8_t>(y)[x], bValid ? U(x) : 0) << x << "," << y;
        EXPECT_EQ(stage.LowerProfile.Row<uint8_t>(y)[x], bValid ? L(x) : 0) << x << "," << y;
    }
    // Mask value 1 counts as 255; 2 is counted but never valid.
    EXPECT_EQ(Values(image, Filled(24, 16, 1)),
              std::vector<double>(stage.m_adProfileValues, stage.m_adProfileValues + 11));
    EXPECT_TRUE(std::isnan(Values(image, Filled(24, 16, 2))[0]));
}

TEST(IpGetUchidaProfileValuesFD, FirstCountedPixelIsBothExtremesOfItsBlock)
{
    // One masked pixel per block, minimum and maximum at once; the only
    // valid pixel is the square's first corner: N is 1.
    ClImage image = Filled(16, 16, 50), mask = Filled(16, 16, 0);
    image.Row<uint8_t>(0)[0] = 90;
    for (int32_t k : {0, 8})
        mask.Row<uint8_t>(k)[0] = mask.Row<uint8_t>(k)[8] = 255;
    const std::vector<double> v = Values(image, mask);
    const double expected[6] = {90, 90, 90, 0, 0, 180};
    for (int k = 0; k < Stage::kValues; ++k)
        EXPECT_TRUE(k < 6 ? v[k] == expected[k] / 255.0 : std::isnan(v[k])) << k;
}

TEST(IpGetUchidaProfileValuesFD, NoValidPixelGivesNaNMeansWithoutAnError)
{
    // An empty mask, a mask of one block, and block sizes that leave no
    // square of four blocks (below 1 would otherwise divide by zero).
    ClImage image = Filled(16, 16, 77), oneBlock = Filled(16, 16, 0);
    for (int32_t k = 0; k < 64; ++k)
        oneBlock.Row<uint8_t>(k / 8)[k % 8] = 255;
    std::vector<std::vector<double>> runs = {Values(image, Filled(16, 16, 0)),
                                             Values(image, oneBlock)};
    for (double dBlockSize : {0.5, 0.0, -8.0, std::nan(""), 9.0, 1e12})
        runs.push_back(Values(image, Filled(16, 16, 255), dBlockSize));
    for (const std::vector<double>& v : runs)
        for (int k = 0; k < Stage::kValues; ++k)
            EXPECT_TRUE(k < 6 ? std::isnan(v[k]) : v[k] == 0.0 && std::signbit(v[k])) << k;
}

TEST(IpGetUchidaProfileValuesFD, RefusesMissingInputsAnImageOfAnotherTypeAndAnUnfitMask)
{
    ClImage image = Filled(16, 16, 0), small = Filled(16, 8, 0), floats;
    floats.Create(ClImage::eFloat32, 16, 16);
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
