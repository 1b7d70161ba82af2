#include "detection/Sentivo.h"

#include <cstdint>
#include <tuple>

#include <gtest/gtest.h>

#include "image/ImageTestSupport.h"
#include "parameters/ParameterContainer.h"

namespace
{

ClImage Image(int32_t nWidth, int32_t nHeight, ClImage::EDataType eType = ClImage::eUInt8)
{
    ClImage image;
    image.Create(eType, nWidth, nHeight);
    return image;
}

// Assigns the three images, runs Init and expects the code (0 for success)
// with its remark; the score is -1 afterwards either way.
void ExpectInit(ClSentivo& d, ClImage* pCurrent, ClImage* pBacklight, ClImage* pDark, int32_t nCode,
                const char* szText = nullptr)
{
    d.pInCurrentImage = pCurrent;
    d.pInBacklightImage = pBacklight;
    d.pInDarkImage = pDark;
    d.dOutScore = 5.0;
    if (nCode == 0)
        EXPECT_EQ(d.Init(), 0);
    else
        ExpectThrows([&] { d.Init(); }, nCode, szText);
    EXPECT_EQ(d.dOutScore, -1.0);
}

} // namespace

TEST(Sentivo, InitResetsTheScoreAndChecksTheInputsInOrder)
{
    // Presence first; pixel types before any size: current, then dark, then
    // backlight; then every width before any height.
    ClImage ok = Image(320, 480), wideDark = Image(400, 480, ClImage::eInt16),
            narrowDark = Image(316, 480), shortCurrent = Image(320, 476),
            shortBacklight = Image(320, 200, ClImage::eFloat32);
    const char* const kMissing = "Input image not assigned";
    ClSentivo d;
    ExpectInit(d, nullptr, &ok, &ok, -37, kMissing);
    ExpectInit(d, &ok, nullptr, &ok, -37, kMissing);
    ExpectInit(d, &shortCurrent, &shortBacklight, nullptr, -37, kMissing);
    ExpectInit(d, &ok, &shortBacklight, &wideDark, -33,
               "Input pixel type \"int16\" not supported by processor.");
    ExpectInit(d, &ok, &shortBacklight, &ok, -33,
               "Input pixel type \"float32\" not supported by processor.");
    ExpectInit(d, &shortCurrent, &ok, &narrowDark, -14, "Illegal image width");
    ExpectInit(d, &shortCurrent, &ok, &ok, -14, "Illegal image height");
    ExpectInit(d, &ok, &ok, &ok, 0);
}

TEST(Sentivo, ModeSelectsTheHalvesAndOnlySecurityLevelOneIsStrict)
{
    ClImage ok = Image(320, 480);
    ClSentivo d;
    d.pInCurrentImage = d.pInBacklightImage = d.pInDarkImage = &ok;
    d.m_nMode = 0;
    for (int32_t nLevel : {1, 0, 2, -1, 1})
    {
        d.nSecurityLevel = nLevel;
        EXPECT_EQ(d.Run(), 0);
        EXPECT_EQ(d.m_bStrict, nLevel == 1);
    }
    // Each half runs on its own; only the finger half clears the flag.
    for (uint8_t nMode : {ClSentivo::eModeFinger, ClSentivo::eModeFake})
    {
        d.m_nMode = nMode;
        d.m_bFingerFound = true;
        d.nSecurityLevel = 7;
        ExpectThrows([&] { d.Run(); }, -101);
        EXPECT_EQ(std::make_tuple(d.m_bStrict, d.m_bFingerFound, d.dOutScore),
                  std::make_tuple(false, nMode == ClSentivo::eModeFake, -1.0));
    }
}

TEST(Sentivo, ValidAreaIsAMarginedRectangleEndingInAHalfCircle)
{
    // Written afresh: a margin of 11 all round, and below row 372 the inside
    // of the circle of radius 165 around column 160, row 304, whose half-width
    // in a row is the largest h with h * h <= 165 * 165 - k * k.
    auto inside = [](int32_t x, int32_t y)
    {
        if (y < 11 || y > 468)
            return false;
        if (y <= 372)
            return x >= 11 && x <= 308;
        const int32_t k = y - 304;
        int32_t h = 0;
        while ((h + 1) * (h + 1) <= 165 * 165 - k * k)
            ++h;
        return x >= 160 - h && x < 160 + h;
    };
    const ClSentivo d;
    const ClImage& mask = d.ValidAreaMask();
    ASSERT_EQ(std::make_tuple(mask.DataType(), mask.Width(), mask.Height()),
              std::make_tuple(ClImage::eUInt8, 320, 480));
    int64_t nWrong = 0;
    for (int32_t y = 0; y < 480; ++y)
        for (int32_t x = 0; x < 320; ++x)
            nWrong += mask.Row<uint8_t>(y)[x] != (inside(x, y) ? 255 : 0);
    EXPECT_EQ(nWrong, 0);

    // The model checked by hand: the last inside column of either side in
    // rows 372 and 373 (k 69, h 149), 429 (k 125, h 107) and 468 (k 164, h 18).
    const int32_t edges[][3] = {{372, 11, 308}, {373, 11, 308}, {429, 53, 266}, {468, 142, 177}};
    for (const auto& e : edges)
        EXPECT_TRUE(!inside(e[1] - 1, e[0]) && inside(e[1], e[0]) && inside(e[2], e[0]) &&
                    !inside(e[2] + 1, e[0]))
            << e[0];
    EXPECT_FALSE(inside(160, 10) || inside(160, 469));
}

TEST(Sentivo, DefineParametersRegistersTheThreeImagesAndTheScore)
{
    ClSentivo d;
    ClParameterContainer container;
    d.DefineParameters(container);
    // The handle publishes the settings, so these four are all.
    EXPECT_EQ(container.GetChildCount(), 4u);
    const std::tuple<const char*, void*, int> parameters[] = {
        {"pInCurrentImage", &d.pInCurrentImage, 1},
        {"pInBacklightImage", &d.pInBacklightImage, 1},
        {"pInDarkImage", &d.pInDarkImage, 1},
        {"dOutScore", &d.dOutScore, 2}};
    for (auto [szName, pValue, nFlags] : parameters)
    {
        ClParameter* p = container.Find(szName);
        ASSERT_NE(p, nullptr) << szName;
        EXPECT_EQ(std::make_tuple(p->GetFlags(), p->IsConnection(), p->GetValuePointer()),
                  std::make_tuple(uint8_t(nFlags), nFlags == 1, pValue));
    }
    EXPECT_TRUE(container.Find("dOutScore")->AsNumeric()->IsFloating());
}
