// ClWaveletD97: the bands of constant and linear images, bit-exact agreement
// with a plain evaluation of the lifting steps, round trips, level limits.
#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

#include "operators/WaveletD97.h"
#include "sdk/Exception.h"
#include "support/OperatorTestImages.h"

using TestImages::At;

namespace
{

template <typename T> ClImage Make(int32_t w, int32_t h, double (*f)(int32_t x, int32_t y))
{
    ClImage image;
    image.Create(SampleTraits<T>::eType, w, h);
    for (int32_t y = 0; y < h; ++y)
        for (int32_t x = 0; x < w; ++x)
            At<T>(image, x, y) = static_cast<T>(f(x, y));
    return image;
}

// Sample at logical row r: the transform sees the image upside down.
template <typename T> T& Logical(ClImage& image, int32_t x, int32_t r)
{
    return At<T>(image, x, image.Height() - 1 - r);
}

template <typename T> struct Coefficients
{
    static constexpr bool bFloat = std::is_same_v<T, float>;
    const double c[4] = {bFloat ? double(-1.5861343145370483f) : -1.586134342069365,
                         bFloat ? double(-0.05298011749982834f) : -0.052980118571886,
                         bFloat ? double(0.8829110860824585f) : 0.882911075541188,
                         bFloat ? double(0.4435068666934967f) : 0.443506852051114};
    const double K = bFloat ? double(1.1496044397354126f) : 1.149604398860242;
    const double J = bFloat ? double(0.8698644638061523f) : 0.869864451624781;
};

// Lifting step s (0 to 3) of the definition on one line, in double, each
// result rounded to T when stored; bUndo subtracts.
template <typename T> void Step(std::vector<T>& e, std::vector<T>& o, int s, bool bUndo)
{
    const double c = Coefficients<T>().c[s];
    const size_t n = e.size();
    auto apply = [&](T x, double d) { return static_cast<T>(bUndo ? x - d : x + d); };
    if (s % 2 == 0)
    {
        for (size_t i = 0; i + 1 < n; ++i)
            o[i] = apply(o[i], c * (double(e[i]) + double(e[i + 1])));
        const double last = e[n - 1], before = n > 1 ? double(e[n - 2]) : last;
        o[n - 1] = apply(o[n - 1], c * (last + last + last - before));
    }
    else
    {
        const double first = o[0], after = n > 1 ? double(o[1]) : first;
        e[0] = apply(e[0], c * (first + first + first - after));
        for (size_t i = 1; i < n; ++i)
            e[i] = apply(e[i], c * (double(o[i - 1]) + double(o[i])));
    }
}

// One forward level of the definition on the logical w x h corner: columns
// first, then rows; even samples scaled by K into the low half, odd ones by J
// into the high half.
template <typename T> void ForwardLevel(ClImage& image, int32_t w, int32_t h)
{
    const Coefficients<T> k;
    auto line = [&](int32_t n, auto&& get)
    {
        std::vector<T> e(n / 2), o(n / 2);
        for (int32_t i = 0; i < n / 2; ++i)
        {
            e[i] = get(2 * i);
            o[i] = get(2 * i + 1);
        }
        for (int s = 0; s < 4; ++s)
            Step(e, o, s, false);
        for (int32_t i = 0; i < n / 2; ++i)
        {
            get(i) = static_cast<T>(e[i] * k.K);
            get(n / 2 + i) = static_cast<T>(o[i] * k.J);
        }
    };
    for (int32_t x = 0; x < w; ++x)
        line(h, [&](int32_t r) -> T& { return Logical<T>(image, x, r); });
    for (int32_t r = 0; r < h; ++r)
        line(w, [&](int32_t x) -> T& { return Logical<T>(image, x, r); });
}

// One inverse level: rows first, then columns; divided by K and J, the
// steps undone in reverse order, put back interleaved.
template <typename T> void InverseLevel(ClImage& image, int32_t w, int32_t h)
{
    const Coefficients<T> k;
    auto line = [&](int32_t n, auto&& get)
    {
        std::vector<T> e(n / 2), o(n / 2);
        for (int32_t i = 0; i < n / 2; ++i)
        {
            e[i] = static_cast<T>(get(i) / k.K);
            o[i] = static_cast<T>(get(n / 2 + i) / k.J);
        }
        for (int s = 3; s >= 0; --s)
            Step(e, o, s, true);
        for (int32_t i = 0; i < n / 2; ++i)
        {
            get(2 * i) = e[i];
            get(2 * i + 1) = o[i];
        }
    };
    for (int32_t r = 0; r < h; ++r)
        line(w, [&](int32_t x) -> T& { return Logical<T>(image, x, r); });
    for (int32_t x = 0; x < w; ++x)
        line(h, [&](int32_t r) -> T& { return Logical<T>(image, x, r); });
}

// The remark and code of the exception Transform throws, or "".
std::string Failure(ClImage& image, int32_t nLevel)
{
    try
    {
        ClWaveletD97().Transform(image, nLevel);
        return "";
    }
    catch (const ClException& e)
    {
        EXPECT_STREQ("Unknown", e.GetFile());
        EXPECT_EQ(-1, e.GetLine());
        return std::to_string(e.GetCode()) + " " + TestImages::Remark(e.GetMessage());
    }
}

const char* const kDimensions = "-101 Image dimensions have to be multiples of 2^(abs(nLevel))";

} // namespace

TEST(ClWaveletD97, ConstantImageCarriesItsValueIntoTheApproximation)
{
    ClImage image = Make<double>(16, 8, [](int32_t, int32_t) { return 1.25; });
    ClWaveletD97 wavelet;
    wavelet.Transform(image, 1);
    // The approximation is the logical top-left quarter: stored rows 4 to 7.
    for (int32_t y = 0; y < 8; ++y)
        for (int32_t x = 0; x < 16; ++x)
        {
            const bool bApproximation = y >= 4 && x < 8;
            EXPECT_NEAR(bApproximation ? 2.5 : 0.0, At<double>(image, x, y), 1e-10)
                << x << "," << y;
        }

    ClImage twice = Make<double>(16, 8, [](int32_t, int32_t) { return 1.25; });
    wavelet.Transform(twice, 2);
    for (int32_t y = 0; y < 8; ++y)
        for (int32_t x = 0; x < 16; ++x)
            EXPECT_NEAR(y >= 6 && x < 4 ? 5.0 : 0.0, At<double>(twice, x, y), 1e-10)
                << x << "," << y;

    ClImage single = Make<float>(8, 8, [](int32_t, int32_t) { return 3.0; });
    wavelet.Transform(single, 1);
    EXPECT_NEAR(6.0, At<float>(single, 0, 7), 1e-5);
    EXPECT_NEAR(0.0, At<float>(single, 7, 0), 1e-5);
}

TEST(ClWaveletD97, LinearImageLeavesNoDetailEvenAtTheBorder)
{
    // The missing neighbour at a line's end is extrapolated linearly, so a
    // linear image meets the border as it meets the interior.
    ClImage image =
        Make<double>(24, 12, [](int32_t x, int32_t y) { return 3.0 + 0.5 * y - 0.25 * x; });
    ClWaveletD97().Transform(image, 1);
    for (int32_t y = 0; y < 12; ++y)
        for (int32_t x = 0; x < 24; ++x)
        {
            if (!(y >= 6 && x < 12))
            {
                EXPECT_NEAR(0.0, At<double>(image, x, y), 1e-9) << x << "," << y;
            }
        }
}

TEST(ClWaveletD97, MatchesThePlainLiftingBitForBit)
{
    for (int32_t nLevels : {1, 2, 3})
    {
        ClImage d = TestImages::RandomImage(ClImage::eDouble64, 24, 16, 1, 40 + nLevels, 100.0);
        ClImage f = TestImages::RandomImage(ClImage::eFloat32, 24, 16, 1, 50 + nLevels, 100.0);
        ClImage dRef, fRef;
        dRef.Assign(d);
        fRef.Assign(f);
        for (int32_t l = 0; l < nLevels; ++l)
        {
            ForwardLevel<double>(dRef, 24 >> l, 16 >> l);
            ForwardLevel<float>(fRef, 24 >> l, 16 >> l);
        }
        ClWaveletD97 wavelet;
        wavelet.Transform(d, nLevels);
        wavelet.Transform(f, nLevels);
        EXPECT_TRUE(TestImages::SameSamples(dRef, d)) << "forward " << nLevels;
        EXPECT_TRUE(TestImages::SameSamples(fRef, f)) << "forward " << nLevels;

        // The inverse of arbitrary data is simply the inverse formula.
        for (int32_t l = nLevels - 1; l >= 0; --l)
        {
            InverseLevel<double>(dRef, 24 >> l, 16 >> l);
            InverseLevel<float>(fRef, 24 >> l, 16 >> l);
        }
        wavelet.Transform(d, -nLevels);
        wavelet.Transform(f, -nLevels);
        EXPECT_TRUE(TestImages::SameSamples(dRef, d)) << "inverse " << nLevels;
        EXPECT_TRUE(TestImages::SameSamples(fRef, f)) << "inverse " << nLevels;
    }
}

TEST(ClWaveletD97, ForwardThenInverseGivesTheImageBack)
{
    const struct
    {
        int32_t w, h, nLevels;
    } cases[] = {{2, 2, 1},   {4, 4, 2},     {6, 10, 1},   {12, 20, 2},
                 {40, 24, 3}, {320, 480, 2}, {320, 480, 5}};
    uint32_t nSeed = 60;
    for (const auto& c : cases)
        for (ClImage::EDataType eType : {ClImage::eDouble64, ClImage::eFloat32})
        {
            ClImage image = TestImages::RandomImage(eType, c.w, c.h, 1, nSeed++, 255.0), original;
            original.Assign(image);
            ClWaveletD97 wavelet;
            wavelet.Transform(image, c.nLevels);
            wavelet.Transform(image, -c.nLevels);
            const double dTolerance = eType == ClImage::eDouble64 ? 1e-10 : 2e-3;
            double dWorst = 0;
            for (int32_t y = 0; y < c.h; ++y)
                for (int32_t x = 0; x < c.w; ++x)
                {
                    const double a = eType == ClImage::eDouble64 ? At<double>(original, x, y)
                                                                 : At<float>(original, x, y);
                    const double b = eType == ClImage::eDouble64 ? At<double>(image, x, y)
                                                                 : At<float>(image, x, y);
                    dWorst = std::max(dWorst, std::fabs(a - b));
                }
            EXPECT_LT(dWorst, dTolerance)
                << c.w << "x" << c.h << " levels " << c.nLevels << " " << ClImage::TypeText(eType);
        }
}

TEST(ClWaveletD97, LevelLimitsAndTypesAreRefusedWithTheImageUntouched)
{
    ClImage image = TestImages::RandomImage(ClImage::eDouble64, 320, 480, 1, 70);
    ClImage original;
    original.Assign(image);
    // 320 is 2^6 x 5 and 480 is 2^5 x 15: levels up to 5.
    EXPECT_EQ(kDimensions, Failure(image, 6));
    EXPECT_EQ(kDimensions, Failure(image, -6));
    EXPECT_EQ(kDimensions, Failure(image, 0));
    EXPECT_EQ(kDimensions, Failure(image, 40));
    EXPECT_EQ(kDimensions, Failure(image, INT32_MIN));
    EXPECT_TRUE(TestImages::SameSamples(original, image));
    for (int32_t nLevel = 1; nLevel <= 5; ++nLevel)
    {
        ClImage copy;
        copy.Assign(original);
        EXPECT_EQ("", Failure(copy, nLevel)) << nLevel;
        EXPECT_EQ("", Failure(copy, -nLevel)) << nLevel;
    }

    // Dimensions are tested before the type.
    ClImage bytes = TestImages::RandomImage(ClImage::eUInt8, 7, 5, 1, 71);
    EXPECT_EQ(kDimensions, Failure(bytes, 1));
    for (ClImage::EDataType eType : TestImages::AllTypes())
    {
        if (eType == ClImage::eFloat32 || eType == ClImage::eDouble64)
            continue;
        ClImage other = TestImages::RandomImage(eType, 8, 4, 1, 72), before;
        before.Assign(other);
        EXPECT_EQ("-101 Only floating point images are allowed by now", Failure(other, 2));
        EXPECT_TRUE(TestImages::SameSamples(before, other));
    }
}
