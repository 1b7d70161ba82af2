#include <cmath>
#include <complex>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/IpFourier2.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;
using Fourier::ClIpFourier2;

namespace
{

const double kPi = 3.14159265358979323846;

// Element (v, u) of the transform written out: the sum over all pixels of
// f(y, x) exp(-2πi (v y / h + u x / w)).
std::complex<double> NaiveDft(const ClImage& image, int32_t v, int32_t u)
{
    const int32_t w = image.Width(), h = image.Height();
    std::complex<double> sum = 0.0;
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x)
        {
            const double dAngle =
                -2.0 * kPi * (static_cast<double>(v) * y / h + static_cast<double>(u) * x / w);
            sum += At<double>(image, x, y) * std::polar(1.0, dAngle);
        }
    return sum;
}

std::complex<double> SpectrumAt(const ClImage& spectrum, int32_t v, int32_t u)
{
    return {At<double>(spectrum, u, v, 0), At<double>(spectrum, u, v, 1)};
}

// Whether every sample of a one-plane image is within dTolerance of expected(x, y).
template <typename F> bool Near(const ClImage& image, double dTolerance, F expected)
{
    for (int32_t y = 0; y < image.Height(); ++y)
        for (int32_t x = 0; x < image.Width(); ++x)
            if (!(std::fabs(At<double>(image, x, y) - expected(x, y)) <= dTolerance))
                return false;
    return true;
}

} // namespace

TEST(IpFourier2, ForwardMatchesTheSumsAndInverseGivesTheImageBack)
{
    // Odd and even sizes, 1 × 1 among them: width w gives a spectrum w / 2 + 1
    // wide whose origin word keeps the parity, and the inverse width w.
    const std::pair<int32_t, int32_t> sizes[] = {{1, 1}, {5, 1}, {1, 4}, {4, 3}, {5, 3},
                                                 {5, 5}, {6, 4}, {7, 3}, {2, 9}};
    for (const auto& [w, h] : sizes)
    {
        SCOPED_TRACE(std::to_string(w) + " x " + std::to_string(h));
        ClImage source = RandomImage(ClImage::eDouble64, w, h, 1, 131, 10.0);
        source.SetResolution(500, 400);
        ClImage in(source), spectrum, back;
        ClIpFourier2 fourier;
        ASSERT_EQ(fourier.Run(&in, &spectrum), 0);
        ASSERT_EQ(spectrum.DataType(), ClImage::eDouble64);
        ASSERT_EQ(spectrum.Width(), w / 2 + 1);
        ASSERT_EQ(spectrum.Height(), h);
        ASSERT_EQ(spectrum.Planes(), 2u);
        EXPECT_EQ(spectrum.Content(), ClImage::eComplexSpectrum);
        EXPECT_EQ(spectrum.Origin(), 200u * 256 + static_cast<uint32_t>(w % 2));
        EXPECT_EQ(spectrum.XResolution(), 500);
        EXPECT_EQ(spectrum.YResolution(), 400);
        for (int32_t v = 0; v < h; ++v)
            for (int32_t u = 0; u <= w / 2; ++u)
                EXPECT_NEAR(std::abs(SpectrumAt(spectrum, v, u) - NaiveDft(source, v, u)), 0.0,
                            1e-9)
                    << v << "," << u;

        ClImage before;
        before.Assign(spectrum);
        ASSERT_EQ(fourier.Run(&spectrum, &back), 0);
        ASSERT_EQ(back.Width(), w);
        ASSERT_EQ(back.Height(), h);
        EXPECT_EQ(back.Planes(), 1u);
        EXPECT_EQ(back.YResolution(), 400);
        EXPECT_TRUE(
            Near(back, 1e-12, [&](int32_t x, int32_t y) { return At<double>(source, x, y); }));
        // The caller's spectrum still holds its values.
        EXPECT_TRUE(SameSamples(spectrum, before));
        // The inverse reads whatever the origin word says about the width;
        // width 0 has no plan and writes no output.
        spectrum.SetOrigin(spectrum.Origin() ^ 1);
        EXPECT_EQ(fourier.Run(&spectrum, &back), w == 1 ? ZRC_ERROR_INTERNAL : 0);
        EXPECT_EQ(back.Width(), w == 1 ? 1 : w % 2 ? w - 1 : w + 1);
    }
}

TEST(IpFourier2, ScalingAndACaptureInOneObject)
{
    // Without the scaling a constant a comes back as a × n × h.
    ClImage constant, spectrum, back;
    constant.Create(ClImage::eDouble64, 7, 6);
    constant.Fill(1.5);
    ClIpFourier2 fourier;
    ASSERT_EQ(fourier.Run(&constant, &spectrum), 0);
    EXPECT_NEAR(SpectrumAt(spectrum, 0, 0).real(), 1.5 * 42, 1e-12);
    fourier.m_bScaleNorm = false;
    ASSERT_EQ(fourier.Run(&spectrum, &back), 0);
    EXPECT_TRUE(Near(back, 1e-12, [](int32_t, int32_t) { return 1.5 * 7 * 6; }));
    fourier.SetDefaults();

    // A capture-sized image: a few elements against the sums, and back in
    // one object.
    const ClImage capture = RandomImage(ClImage::eDouble64, 320, 480, 1, 134, 128.0);
    ClImage image(capture);
    ASSERT_EQ(fourier.Run(&image), 0);
    for (const auto& [v, u] :
         {std::make_pair(0, 0), std::make_pair(479, 160), std::make_pair(17, 3)})
        EXPECT_NEAR(std::abs(SpectrumAt(image, v, u) - NaiveDft(capture, v, u)), 0.0, 1e-7);
    ASSERT_EQ(fourier.Run(&image), 0);
    ASSERT_EQ(image.Width(), 320);
    EXPECT_TRUE(Near(image, 1e-9, [&](int32_t x, int32_t y) { return At<double>(capture, x, y); }));
}

TEST(IpFourier2, RefusedInputsWriteNoOutput)
{
    ClIpFourier2 fourier;
    ClImage out;
    ClImage twoPlanes = RandomImage(ClImage::eDouble64, 4, 4, 2, 136);
    EXPECT_EQ(fourier.Run(&twoPlanes, &out), ZRC_ERROR_WSQ_GRAYSCALE_ONLY);
    // A one-plane image marked as a spectrum holds no complex values.
    ClImage flat = RandomImage(ClImage::eDouble64, 4, 4, 1, 137);
    flat.SetContent(ClImage::eComplexSpectrum);
    EXPECT_EQ(fourier.Run(&flat, &out), ZRC_ERROR_WSQ_GRAYSCALE_ONLY);
    EXPECT_EQ(out.Data(), nullptr);

    ClImage floats = RandomImage(ClImage::eFloat32, 4, 4, 1, 139);
    ExpectThrows([&] { fourier.Run(&floats, &out); }, ZRC_ERROR_FORMAT_NOTSUPPORTED);
    ExpectThrows([&] { fourier.Run(nullptr, &out); }, ZRC_ERROR_BAD_POINTER,
                 "Input image not assigned");

    // The reporting check wants an input, no output, and a transformable image.
    ClImage grey = RandomImage(ClImage::eDouble64, 4, 4, 1, 140);
    ClIpFourier2 check;
    for (ClImage* pInput : {&grey, &twoPlanes, &flat, &floats})
    {
        check.m_pInImage = pInput;
        EXPECT_EQ(check.CheckInput(), pInput == &grey || pInput == &flat);
    }
    check.m_pOutImage = &out;
    EXPECT_FALSE(check.CheckInput());
}

TEST(IpFourier2, ThreadsTransformAtTheSameTime)
{
    const ClImage source = RandomImage(ClImage::eDouble64, 31, 24, 1, 141);
    ClImage expected, copy(source);
    ASSERT_EQ(ClIpFourier2().Run(&copy, &expected), 0);
    std::vector<int> wrong(4, 0);
    auto transform = [&](int t)
    {
        for (int round = 0; round < 25; ++round)
        {
            ClImage in(source), spectrum, back;
            ClIpFourier2 fourier;
            wrong[t] += fourier.Run(&in, &spectrum) != 0 || !SameSamples(spectrum, expected) ||
                        fourier.Run(&spectrum, &back) != 0 ||
                        std::fabs(At<double>(back, 30, 23) - At<double>(source, 30, 23)) > 1e-12;
        }
    };
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back(transform, t);
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(wrong, std::vector<int>(4, 0));
}
