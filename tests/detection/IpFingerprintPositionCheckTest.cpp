// The position check of the fast mask: area limits and the spread of the
// row centres.
#include <functional>
#include <tuple>

#include <gtest/gtest.h>

#include "detection/IpFingerprintPositionCheck.h"
#include "support/DetectionImages.h"

using namespace TestImages;

namespace
{
using Inside = std::function<bool(int32_t, int32_t)>;

// The check on a 320 x 480 mask, 255 where inside(x, y).
void ExpectVerdict(const Inside& inside, int32_t nCode, const char* szText = nullptr)
{
    ClImage mask = ImageOf(320, 480, [&](int32_t x, int32_t y) { return inside(x, y) ? 255 : 0; });
    ClIpFingerprintPositionCheck check;
    check.pInImage = &mask;
    if (nCode == 0)
        EXPECT_NO_THROW(check.Run());
    else
        ExpectThrows([&] { check.Run(); }, nCode, szText);
}

// The first n pixels in raster order, plus the pixel (5, nExtra).
Inside UpTo(int32_t n, int32_t nExtra = -1)
{
    return [=](int32_t x, int32_t y) { return y * 320 + x < n || (x == 5 && y == nExtra); };
}

} // namespace

TEST(IpFingerprintPositionCheck, AreaLimitsAreThoseOfTheCaptureSize)
{
    const char* const kSmall = "Fingerprint is to small.";
    // 3999 mask pixels are no print; 4000 are, and then too small. Exactly
    // 102400 background pixels pass the area test, one more fails; such a
    // mask ends above row 300 and fails the upper band test, with its own
    // text, unless one pixel lies in rows 300-479. No pixel in rows 0-49: not
    // at the bottom.
    for (auto [inside, nCode, szText] :
         {std::tuple{UpTo(3999), -15, "No fingerprint found in image."},
          std::tuple{UpTo(4000), -768, kSmall}, std::tuple{UpTo(153600 - 102401), -768, kSmall},
          std::tuple{UpTo(153600 - 102400), -768, "Fingerprint is to small"},
          std::tuple{UpTo(153600 - 102400, 470), 0, (const char*)nullptr},
          std::tuple{Inside([](int32_t x, int32_t y) { return y >= 50 && x >= 60 && x < 260; }),
                     -769, "The fingerprint is not placed correct at the bottom"}})
        ExpectVerdict(inside, nCode, szText);
    ClIpFingerprintPositionCheck check;
    ExpectThrows([&] { check.Run(); }, -701, "Input image not assigned");
}

TEST(IpFingerprintPositionCheck, SpreadOfTheRowCentresAgainstTheMeanWidth)
{
    // Every row holds a print of width 120 whose centre is 160 + a or 160 - a,
    // alternately. N = 480, so the first row is 1 (row 0 does not count as
    // first), m = 96 and the kept rows are 97 to 383: 287, as many as the
    // divisor 480 / 5 * 3 - 1. The spread a^2 is held against 1.5 times the
    // mean width, 180. One row far to the side (centre 284.5) adds about 53
    // to the spread of 169 when it is kept: row 97 is, row 96 is not.
    for (auto [a, nOutlierRow, nCode] : {std::tuple{14, -1, -770}, std::tuple{13, -1, 0},
                                         std::tuple{13, 96, 0}, std::tuple{13, 97, -770}})
        ExpectVerdict(
            [a = a, nRow = nOutlierRow](int32_t x, int32_t y)
            {
                const int32_t l = 100 + (y % 2 == 0 ? a : -a);
                return y == nRow ? x >= 250 : x >= l && x <= l + 120;
            },
            nCode, "Finger is placed with too much skewness.");
}
