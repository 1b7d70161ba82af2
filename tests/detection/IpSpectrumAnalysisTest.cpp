#include <algorithm>
#include <cmath>
#include <complex>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "detection/IpSpectrumAnalysis.h"
#include "image/ImageTestSupport.h"
#include "operators/IpCut.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{

ClImage Flat(int32_t w, int32_t h, uint8_t nValue)
{
    ClImage image;
    image.Create(ClImage::eUInt8, w, h);
    image.Fill(nValue);
    return image;
}

std::vector<double> Curve(ClImage image, ClImage mask)
{
    ClIpSpectrumAnalysis stage;
    stage.pInImage = &image, stage.pInMaskImage = &mask;
    EXPECT_EQ(stage.Run(), 0);
    return {stage.m_adSpectrum, stage.m_adSpectrum + 128};
}

// The curve the plain way for a 256 by 256 image whose grey limits are lo and
// hi: the full spectrum by direct sums along the rows, then the columns, each
// magnitude but those of u = -128 added to the ring of its distance.
std::vector<double> PlainCurve(const ClImage& image, int lo, int hi)
{
    const int N = 256;
    const double kPi = 3.14159265358979323846;
    const auto Ring = [](int u, int v) { return std::min(127, int(std::sqrt(u * u + v * v))); };
    std::vector<std::complex<double>> a(N * N), b(N * N, 0.0), t(N);
    for (int k = 0; k < N; ++k)
        t[k] = std::polar(1.0, -2.0 * kPi * k / N);
    for (int y = 0; y < N; ++y)
        for (int x = 0; x < N; ++x)
            a[y * N + x] = std::clamp((At<uint8_t>(image, x, y) - lo) / double(hi - lo), 0.0, 1.0) *
                           0.5 * (1.0 + std::cos(kPi * Ring(x - 128, y - 128) / 128.0));
    for (int y = 0; y < N; ++y)
        for (int u = 0; u < N; ++u)
            for (int x = 0; x < N; ++x)
                b[y * N + u] += a[y * N + x] * t[(u * x) % N];
    std::vector<double> S(128, 0.0);
    for (int v = -128; v < 128; ++v)
        for (int u = -127; u < 128; ++u)
        {
            std::complex<double> F = 0.0;
            for (int y = 0; y < N; ++y)
                F += b[y * N + (u + N) % N] * t[((v + N) * y) % N];
            S[Ring(u, v)] += std::abs(F);
        }
    for (int k = 126; k >= 0; --k)
        S[k] += S[k + 1];
    for (int k = 2; k < 128; ++k)
        S[k] /= S[1];
    return S;
}

} // namespace

TEST(IpSpectrumAnalysis, MatchesAPlainRingSumOfTheFullSpectrum)
{
    // Noise of 60 to 187 with a 3 by 3 block of 40 and one of 220, whose
    // centres set the median's limits, and single outliers 0 and 255 that the
    // median ignores (they clamp to 0 and 1).
    ClImage noise = RandomImage(ClImage::eUInt8, 256, 256, 1, 7);
    for (int32_t y = 0; y < 256; ++y)
        for (int32_t x = 0; x < 256; ++x)
        {
            uint8_t& v = At<uint8_t>(noise, x, y);
            v = x / 3 == 10 && y / 3 == 20 ? 40 : (x / 3 == 50 && y / 3 == 40 ? 220 : 60 + v / 2);
        }
    At<uint8_t>(noise, 9, 9) = 0, At<uint8_t>(noise, 200, 90) = 255;
    const std::vector<double> S = Curve(noise, Flat(256, 256, 255)), R = PlainCurve(noise, 40, 220);
    for (int k = 0; k < 128; ++k)
        EXPECT_NEAR(S[k], R[k], 1e-9 * R[k]) << "entry " << k;
}

TEST(IpSpectrumAnalysis, WindowFollowsTheMaskCentreClampedInsideTheImage)
{
    // On a 300 by 280 image each window gives the curve of the 256 by 256
    // piece cut out here, which is its own window wherever its mask lies.
    // Only 255 counts in a mask.
    ClImage image = RandomImage(ClImage::eUInt8, 300, 280, 1, 3);
    const auto Piece = [&](int32_t x0, int32_t y0)
    {
        ClImage piece;
        ClIpCut().Run(&image, x0, y0, 256, 256, &piece);
        return piece;
    };
    ClImage mask = Flat(300, 280, 254), corner = Flat(256, 256, 254);
    At<uint8_t>(corner, 0, 0) = 255;
    // Corners clamp to 128 and to extent - 129; the centre of (150, 140) and
    // (153, 141) is (151, 140), divided in integers.
    At<uint8_t>(mask, 0, 0) = 255;
    EXPECT_EQ(Curve(image, mask), Curve(Piece(0, 0), corner));
    At<uint8_t>(mask, 0, 0) = 0, At<uint8_t>(mask, 299, 279) = 255;
    EXPECT_EQ(Curve(image, mask), Curve(Piece(43, 23), corner));
    At<uint8_t>(mask, 299, 279) = 1,
                           At<uint8_t>(mask, 150, 140) = At<uint8_t>(mask, 153, 141) = 255;
    EXPECT_EQ(Curve(image, mask), Curve(Piece(23, 12), Flat(256, 256, 255)));
}

TEST(IpSpectrumAnalysis, FlatWindowIsNaNAndAnEmptyMaskKeepsAllButTheFirstSix)
{
    for (double d : Curve(Flat(256, 256, 77), Flat(256, 256, 255)))
        EXPECT_TRUE(std::isnan(d));

    ClImage image = RandomImage(ClImage::eUInt8, 256, 256, 1, 5), mask = Flat(256, 256, 254);
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
    ClImage a = Flat(255, 256, 0), b = Flat(256, 255, 0), c = Flat(256, 256, 0),
            d = Flat(256, 257, 0);
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
