#include "detection/IpFingerprintPositionCheck.h"

#include <functional>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"

namespace
{

// A 320 x 480 mask, 255 where inside(x, y).
ClImage Mask(const std::function<bool(int32_t, int32_t)>& inside)
{
    ClImage mask;
    mask.Create(ClImage::eUInt8, 320, 480);
    for (int32_t y = 0; y < 480; ++y)
        for (int32_t x = 0; x < 320; ++x)
            mask.Row<uint8_t>(y)[x] = inside(x, y) ? 255 : 0;
    return mask;
}

void ExpectVerdict(ClImage mask, int32_t nCode, const char* szText = nullptr)
{
    ClIpFingerprintPositionCheck check;
    check.pInImage = &mask;
    if (nCode == 0)
        EXPECT_NO_THROW(check.Run());
    else
        ExpectThrows([&] { check.Run(); }, nCode, szText);
}

} // namespace

TEST(IpFingerprintPositionCheck, AreaLimitsAreThoseOfTheCaptureSize)
{
    // 3999 mask pixels are no print; 4000 are, and then too small.
    ExpectVerdict(Mask([](int32_t x, int32_t y) { return y * 320 + x < 3999; }), -15,
                  "No fingerprint found in image.");
    ExpectVerdict(Mask([](int32_t x, int32_t y) { return y * 320 + x < 4000; }), -768,
                  "Fingerprint is to small.");
    // Exactly 102400 background pixels pass; one more fails. The mask is a
    // band of whole rows from row 0 upward plus a part row.
    auto upTo = [](int32_t n) { return [n](int32_t x, int32_t y) { return y * 320 + x < n; }; };
    ExpectVerdict(Mask(upTo(153600 - 102401)), -768, "Fingerprint is to small.");
    // With 102400 background the mask ends below row 300: the upper band
    // test fails, with its own text.
    ExpectVerdict(Mask(upTo(153600 - 102400)), -768, "Fingerprint is to small");
    // One pixel in rows 300-479 passes the upper band test.
    ExpectVerdict(Mask([&](int32_t x, int32_t y)
                       { return y * 320 + x < 153600 - 102400 || (x == 5 && y == 470); }),
                  0);
    // No pixel in rows 0-49: not at the bottom.
    ExpectVerdict(Mask([](int32_t x, int32_t y) { return y >= 50 && x >= 60 && x < 260; }), -769,
                  "The fingerprint is not placed correct at the bottom");
    ClIpFingerprintPositionCheck check;
    ExpectThrows([&] { check.Run(); }, -701, "Input image not assigned");
}

TEST(IpFingerprintPositionCheck, SpreadOfTheRowCentresAgainstTheMeanWidth)
{
    // A straight print has a spread of 0 and passes.
    ExpectVerdict(Mask([](int32_t x, int32_t) { return x >= 100 && x <= 220; }), 0);

    // Every row holds a print of width 120 whose centre is 160 + a or
    // 160 - a, alternately. N = 480, so the first row is 1 (row 0 does not
    // count as first), m = 96 and the kept rows are 97 to 383: 287 of them,
    // as many as the divisor 480 / 5 * 3 - 1. Q is 287 a^2 and the spread
    // a^2, against 1.5 times the mean width, 180.
    auto zigzag = [](int32_t a, int32_t nOutlierRow)
    {
        return [=](int32_t x, int32_t y)
        {
            if (y == nOutlierRow)
                return x >= 250;
            const int32_t l = 100 + (y % 2 == 0 ? a : -a);
            return x >= l && x <= l + 120;
        };
    };
    ExpectVerdict(Mask(zigzag(14, -1)), -770, "Finger is placed with too much skewness.");
    ExpectVerdict(Mask(zigzag(13, -1)), 0);

    // One row far to the side (centre 284.5) adds about 53 to the spread of
    // 169 when it is kept: row 97 is, row 96 is not, because the first row
    // is taken from the row after row 0.
    ExpectVerdict(Mask(zigzag(13, 96)), 0);
    ExpectVerdict(Mask(zigzag(13, 97)), -770);
}
