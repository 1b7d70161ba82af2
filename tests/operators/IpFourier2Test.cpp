#include <cmath>
#include <complex>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "operators/IpFourier2.h"
#include "sdk/Exception.h"
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

ClImage Forward(const ClImage& source)
{
    ClImage in(source), spectrum;
    ClIpFourier2 fourier;
    EXPECT_EQ(fourier.Run(&in, &spectrum), 0);
    return spectrum;
}

} // namespace

TEST(IpFourier2, ForwardMatchesTheDefinitionOnOddAndEvenSizes)
{
    const std::pair<int32_t, int32_t> sizes[] = {{1, 1}, {5, 1}, {1, 4}, {4, 3},
                                                 {5, 5}, {6, 4}, {7, 3}, {2, 9}};
    for (const auto& size : sizes)
    {
        const int32_t w = size.first, h = size.second;
        SCOPED_TRACE(std::to_string(w) + " x " + std::to_string(h));
        ClImage source = RandomImage(ClImage::eDouble64, w, h, 1, 131, 10.0);
        source.SetResolution(500, 400);
        const ClImage spectrum = Forward(source);
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
            {
                const std::complex<double> expected = NaiveDft(source, v, u);
                const std::complex<double> actual = SpectrumAt(spectrum, v, u);
                EXPECT_NEAR(actual.real(), expected.real(), 1e-9) << v << "," << u;
                EXPECT_NEAR(actual.imag(), expected.imag(), 1e-9) << v << "," << u;
            }
    }
}

TEST(IpFourier2, OneByOneAndTheParityOfTheWidth)
{
    ClImage single;
    single.Create(ClImage::eDouble64, 1, 1);
    single.Row<double>(0)[0] = 3.25;
    ClIpFourier2 fourier;
    ClImage spectrum, back;
    ASSERT_EQ(fourier.Run(&single, &spectrum), 0);
    ASSERT_EQ(spectrum.Width(), 1);
    EXPECT_EQ(SpectrumAt(spectrum, 0, 0), std::complex<double>(3.25, 0.0));
    ASSERT_EQ(fourier.Run(&spectrum, &back), 0);
    ASSERT_EQ(back.Width(), 1);
    EXPECT_EQ(At<double>(back, 0, 0), 3.25);

    for (int32_t w : {4, 5})
    {
        const ClImage source = RandomImage(ClImage::eDouble64, w, 3, 1, 132);
        ClImage in(source), out, again;
        ASSERT_EQ(fourier.Run(&in, &out), 0);
        EXPECT_EQ(out.Width(), 3);
        EXPECT_EQ(out.Origin() & 1, static_cast<uint32_t>(w % 2));
        ASSERT_EQ(fourier.Run(&out, &again), 0);
        ASSERT_EQ(again.Width(), w);
        ASSERT_EQ(again.Height(), 3);
        EXPECT_EQ(again.Planes(), 1u);
        for (int32_t y = 0; y < 3; ++y)
            for (int32_t x = 0; x < w; ++x)
                EXPECT_NEAR(At<double>(again, x, y), At<double>(source, x, y), 1e-12);
    }
}

TEST(IpFourier2, RoundTripScalingAndTheUntouchedSpectrum)
{
    const ClImage source = RandomImage(ClImage::eDouble64, 33, 20, 1, 133, 100.0);
    ClImage spectrum = Forward(source);
    const ClImage before = [&]
    {
        ClImage copy;
        copy.Assign(spectrum);
        return copy;
    }();
    ClIpFourier2 fourier;
    ClImage back;
    ASSERT_EQ(fourier.Run(&spectrum, &back), 0);
    for (int32_t y = 0; y < 20; ++y)
        for (int32_t x = 0; x < 33; ++x)
            EXPECT_NEAR(At<double>(back, x, y), At<double>(source, x, y), 1e-10);
    // The caller's spectrum still holds its values.
    EXPECT_TRUE(SameSamples(spectrum, before));

    // Without the scaling a constant a comes back as a × n × h.
    ClImage constant;
    constant.Create(ClImage::eDouble64, 7, 6);
    constant.Fill(1.5);
    ClImage constantSpectrum = Forward(constant);
    EXPECT_NEAR(SpectrumAt(constantSpectrum, 0, 0).real(), 1.5 * 42, 1e-12);
    fourier.m_bScaleNorm = false;
    ASSERT_EQ(fourier.Run(&constantSpectrum, &back), 0);
    for (int32_t y = 0; y < 6; ++y)
        for (int32_t x = 0; x < 7; ++x)
            EXPECT_NEAR(At<double>(back, x, y), 1.5 * 7 * 6, 1e-12);
    fourier.SetDefaults();
    EXPECT_TRUE(fourier.m_bScaleNorm);

    // A capture-sized image: a few elements against the sums, and back.
    const ClImage capture = RandomImage(ClImage::eDouble64, 320, 480, 1, 134, 128.0);
    const ClImage captureSpectrum = Forward(capture);
    for (const auto& vu : {std::make_pair(0, 0), std::make_pair(479, 160), std::make_pair(17, 3)})
    {
        const std::complex<double> expected = NaiveDft(capture, vu.first, vu.second);
        const std::complex<double> actual = SpectrumAt(captureSpectrum, vu.first, vu.second);
        EXPECT_NEAR(std::abs(actual - expected), 0.0, 1e-7);
    }
    ClImage image(captureSpectrum);
    ASSERT_EQ(fourier.Run(&image), 0);
    EXPECT_NEAR(At<double>(image, 319, 479), At<double>(capture, 319, 479), 1e-9);
}

TEST(IpFourier2, HandMarkedSpectraAndOneObjectForBothRoles)
{
    // A spectrum built by hand from the sums, marked by hand: the inverse
    // reads whatever the origin word says about the width.
    const ClImage source = RandomImage(ClImage::eDouble64, 5, 2, 1, 135);
    ClImage spectrum;
    spectrum.Create(ClImage::eDouble64, 3, 2, 2);
    for (int32_t v = 0; v < 2; ++v)
        for (int32_t u = 0; u < 3; ++u)
        {
            const std::complex<double> value = NaiveDft(source, v, u);
            At<double>(spectrum, u, v, 0) = value.real();
            At<double>(spectrum, u, v, 1) = value.imag();
        }
    spectrum.SetContent(ClImage::eComplexSpectrum);
    spectrum.SetOrigin(1);
    ClImage back;
    ClIpFourier2 fourier;
    ASSERT_EQ(fourier.Run(&spectrum, &back), 0);
    ASSERT_EQ(back.Width(), 5);
    for (int32_t x = 0; x < 5; ++x)
        EXPECT_NEAR(At<double>(back, x, 1), At<double>(source, x, 1), 1e-12);
    spectrum.SetOrigin(0);
    ASSERT_EQ(fourier.Run(&spectrum, &back), 0);
    EXPECT_EQ(back.Width(), 4);

    // In and out one object: the object ends up holding the result.
    ClImage image;
    image.Assign(source);
    ASSERT_EQ(fourier.Run(&image), 0);
    EXPECT_EQ(image.Width(), 3);
    EXPECT_EQ(image.Planes(), 2u);
    ASSERT_EQ(fourier.Run(&image), 0);
    EXPECT_EQ(image.Width(), 5);
    EXPECT_EQ(image.Planes(), 1u);
    EXPECT_NEAR(At<double>(image, 4, 1), At<double>(source, 4, 1), 1e-12);
}

TEST(IpFourier2, RefusedInputsWriteNoOutput)
{
    ClIpFourier2 fourier;
    ClImage out;
    ClImage twoPlanes = RandomImage(ClImage::eDouble64, 4, 4, 2, 136);
    EXPECT_EQ(fourier.Run(&twoPlanes, &out), ZRC_ERROR_WSQ_GRAYSCALE_ONLY);
    EXPECT_EQ(out.Data(), nullptr);

    // A one-plane image marked as a spectrum holds no complex values.
    ClImage flat = RandomImage(ClImage::eDouble64, 4, 4, 1, 137);
    flat.SetContent(ClImage::eComplexSpectrum);
    EXPECT_EQ(fourier.Run(&flat, &out), ZRC_ERROR_WSQ_GRAYSCALE_ONLY);
    // A spectrum one value wide claiming an even source width: width 0, no plan.
    ClImage narrow = RandomImage(ClImage::eDouble64, 1, 4, 2, 138);
    narrow.SetContent(ClImage::eComplexSpectrum);
    narrow.SetOrigin(0);
    EXPECT_EQ(fourier.Run(&narrow, &out), ZRC_ERROR_INTERNAL);
    EXPECT_EQ(out.Data(), nullptr);

    ClImage floats = RandomImage(ClImage::eFloat32, 4, 4, 1, 139);
    try
    {
        fourier.Run(&floats, &out);
        FAIL() << "a float image was transformed";
    }
    catch (const ClException& e)
    {
        EXPECT_EQ(e.GetCode(), ZRC_ERROR_FORMAT_NOTSUPPORTED);
        EXPECT_EQ(Remark(e.GetMessage()),
                  "Input pixel type \"float32\" not supported by processor.");
    }
    try
    {
        fourier.Run(nullptr, &out);
        FAIL() << "no input was accepted";
    }
    catch (const ClException& e)
    {
        EXPECT_EQ(e.GetCode(), ZRC_ERROR_BAD_POINTER);
        EXPECT_EQ(Remark(e.GetMessage()), "Input image not assigned");
    }

    // The reporting check wants an input, no output, and a transformable image.
    ClIpFourier2 check;
    ClImage grey = RandomImage(ClImage::eDouble64, 4, 4, 1, 140);
    check.m_pInImage = &grey;
    EXPECT_TRUE(check.CheckInput());
    check.m_pInImage = &twoPlanes;
    EXPECT_FALSE(check.CheckInput());
    check.m_pInImage = &flat;
    EXPECT_TRUE(check.CheckInput());
    check.m_pInImage = &grey;
    check.m_pOutImage = &out;
    EXPECT_FALSE(check.CheckInput());
    check.m_pOutImage = nullptr;
    check.m_pInImage = &floats;
    EXPECT_FALSE(check.CheckInput());
}

TEST(IpFourier2, ThreadsTransformAtTheSameTime)
{
    const ClImage source = RandomImage(ClImage::eDouble64, 31, 24, 1, 141);
    const ClImage expected = Forward(source);
    std::vector<int> wrong(4, 0);
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back(
            [&, t]
            {
                for (int round = 0; round < 25; ++round)
                {
                    ClImage in(source), spectrum, back;
                    ClIpFourier2 fourier;
                    wrong[t] +=
                        fourier.Run(&in, &spectrum) != 0 || !SameSamples(spectrum, expected);
                    wrong[t] +=
                        fourier.Run(&spectrum, &back) != 0 ||
                        std::fabs(At<double>(back, 30, 23) - At<double>(source, 30, 23)) > 1e-12;
                }
            });
    for (std::thread& thread : threads)
        thread.join();
    for (int t = 0; t < 4; ++t)
        EXPECT_EQ(wrong[t], 0) << "thread " << t;
}
