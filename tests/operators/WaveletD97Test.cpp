// ClWaveletD97 against a plain evaluation of the lifting steps, bit for bit.
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "operators/WaveletD97.h"
#include "support/OperatorTestImages.h"

using namespace TestImages;

namespace
{
// Lifting coefficients c0 to c3, then K and J, as T holds them.
template <typename T> double Coefficient(int i)
{
    constexpr double c[6] = {-1.586134342069365, -0.052980118571886, 0.882911075541188,
                             0.443506852051114,  1.149604398860242,  0.869864451624781};
    return static_cast<double>(static_cast<T>(c[i]));
}

// Lifting step s on one line in double, stored as T: even steps change o from
// e, odd ones e from o. Beyond the end: x + x + x - neighbour (x[last] itself
// stands in for a missing x[last - 1]).
template <typename T> void Step(std::vector<T>& e, std::vector<T>& o, int s, bool bUndo)
{
    const double c = Coefficient<T>(s);
    const size_t n = e.size();
    auto apply = [&](T& x, double t) { x = static_cast<T>(bUndo ? x - c * t : x + c * t); };
    auto border = [](double x, double neighbour) { return x + x + x - neighbour; };
    for (size_t i = 0; i < n; ++i)
        if (s % 2 == 0)
            apply(o[i],
                  i + 1 < n ? double(e[i]) + double(e[i + 1]) : border(e[i], e[n > 1 ? i - 1 : i]));
        else
            apply(e[i], i > 0 ? double(o[i - 1]) + double(o[i]) : border(o[0], o[n > 1 ? 1 : 0]));
}

// One level on the w x h corner (logical row r is stored row H - 1 - r): columns,
// then rows, even values times K low, odd times J high; the inverse backwards.
template <typename T> void Level(ClImage& image, int32_t w, int32_t h, bool bInverse)
{
    const double K = Coefficient<T>(4), J = Coefficient<T>(5);
    auto line = [&](int32_t n, auto&& get)
    {
        std::vector<T> e(n / 2), o(n / 2);
        for (int32_t i = 0; i < n / 2; ++i)
        {
            e[i] = bInverse ? static_cast<T>(get(i) / K) : get(2 * i);
            o[i] = bInverse ? static_cast<T>(get(n / 2 + i) / J) : get(2 * i + 1);
        }
        for (int s = 0; s < 4; ++s)
            Step(e, o, bInverse ? 3 - s : s, bInverse);
        for (int32_t i = 0; i < n / 2; ++i)
        {
            (bInverse ? get(2 * i) : get(i)) = bInverse ? e[i] : static_cast<T>(e[i] * K);
            (bInverse ? get(2 * i + 1) : get(n / 2 + i)) =
                bInverse ? o[i] : static_cast<T>(o[i] * J);
        }
    };
    auto at = [&](int32_t x, int32_t r) -> T& { return At<T>(image, x, image.Height() - 1 - r); };
    for (int pass = 0; pass < 2; ++pass)
        if ((pass == 0) != bInverse) // columns
            for (int32_t x = 0; x < w; ++x)
                line(h, [&](int32_t r) -> T& { return at(x, r); });
        else
            for (int32_t r = 0; r < h; ++r)
                line(w, [&](int32_t x) -> T& { return at(x, r); });
}

void Levels(ClImage& image, int32_t nLevels, bool bInverse)
{
    for (int32_t i = 0; i < nLevels; ++i)
    {
        const int32_t l = bInverse ? nLevels - 1 - i : i;
        const int32_t w = image.Width() >> l, h = image.Height() >> l;
        image.DataType() == ClImage::eDouble64 ? Level<double>(image, w, h, bInverse)
                                               : Level<float>(image, w, h, bInverse);
    }
}

} // namespace

TEST(ClWaveletD97, MatchesThePlainLiftingBitForBitAndRoundTrips)
{
    const std::tuple<int32_t, int32_t, int32_t> cases[] = {
        {2, 2, 1}, {4, 4, 2}, {6, 10, 1}, {24, 16, 1}, {24, 16, 3}, {40, 24, 3}, {320, 480, 5}};
    uint32_t nSeed = 40;
    for (auto [w, h, nLevels] : cases)
        for (ClImage::EDataType eType : {ClImage::eDouble64, ClImage::eFloat32})
        {
            SCOPED_TRACE(testing::Message() << w << "x" << h << " levels " << nLevels << " "
                                            << ClImage::TypeText(eType));
            ClImage image = RandomImage(eType, w, h, 1, nSeed++, 255.0), reference, original;
            reference.Assign(image);
            original.Assign(image);
            Levels(reference, nLevels, false);
            ClWaveletD97().Transform(image, nLevels);
            EXPECT_TRUE(SameSamples(reference, image)) << "forward";
            Levels(reference, nLevels, true); // the inverse of any data is the inverse formula
            ClWaveletD97().Transform(image, -nLevels);
            EXPECT_TRUE(SameSamples(reference, image)) << "inverse";
            const bool bDouble = eType == ClImage::eDouble64;
            auto at = [&](const ClImage& i, int32_t k)
            { return bDouble ? At<double>(i, k % w, k / w) : At<float>(i, k % w, k / w); };
            double dWorst = 0; // the image comes back up to rounding
            for (int32_t k = 0; k < w * h; ++k)
                dWorst = std::max(dWorst, std::fabs(at(original, k) - at(image, k)));
            EXPECT_LT(dWorst, bDouble ? 1e-10 : 2e-3);
        }
}

TEST(ClWaveletD97, LevelLimitsAndTypesAreRefusedWithTheImageUntouched)
{
    // Levels run while 2^|level| divides both sizes; level 0 fails alike.
    const char* szDimensions = "Image dimensions have to be multiples of 2^(abs(nLevel))";
    for (auto [w, h] : {std::pair{320, 480}, {4, 2}})
        for (int32_t nLevel : {INT32_MIN, -6, -5, -1, 0, 1, 2, 6, 40})
        {
            SCOPED_TRACE(testing::Message() << w << "x" << h << " " << nLevel);
            ClImage image = RandomImage(ClImage::eDouble64, w, h, 1, 70), original;
            original.Assign(image);
            const int64_t d = std::abs(int64_t(nLevel)) < 31 ? int64_t(1) << std::abs(nLevel) : 0;
            const bool bRuns = nLevel != 0 && d != 0 && w % d == 0 && h % d == 0;
            if (bRuns) // an exception fails the test
                ClWaveletD97().Transform(image, nLevel);
            else
                ExpectThrows([&] { ClWaveletD97().Transform(image, nLevel); }, -101, szDimensions);
            EXPECT_TRUE(bRuns || SameSamples(original, image));
        }
    ClImage bytes = RandomImage(ClImage::eUInt8, 7, 5, 1, 71); // dimensions first
    ExpectThrows([&] { ClWaveletD97().Transform(bytes, 1); }, -101, szDimensions);
    ClImage words = RandomImage(ClImage::eInt16, 8, 4, 1, 72);
    ExpectThrows([&] { ClWaveletD97().Transform(words, 2); }, -101,
                 "Only floating point images are allowed by now");
}
