#include "detection/Sentivo.h"

#include <cstdint>
#include <utility>

#include <gtest/gtest.h>

#include "classifier/RateTables.h"
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

// A detection object with three valid captures assigned.
struct Assigned
{
    ClImage current = Image(320, 480), backlight = Image(320, 480), dark = Image(320, 480);
    ClSentivo d;
    Assigned()
    {
        d.pInCurrentImage = &current;
        d.pInBacklightImage = &backlight;
        d.pInDarkImage = &dark;
    }
};

} // namespace

TEST(Sentivo, NewObjectStartsWithItsDefaults)
{
    const ClSentivo d;
    EXPECT_STREQ(d.GetName(), "ClSentivo");
    EXPECT_EQ(d.m_nMode, 3);
    EXPECT_EQ(d.nSecurityLevel, 1);
    EXPECT_TRUE(d.bMovementDetection);
    EXPECT_FALSE(d.m_bFingerFound);
    for (double dValue : {d.dQueryScore, d.dQueryFAR, d.dQueryFRR, d.dOutScore})
        EXPECT_EQ(dValue, 0.0);
    for (double dValue : d.m_PreviousProfile)
        EXPECT_EQ(dValue, 0.0);
    EXPECT_TRUE(!d.pInCurrentImage && !d.pInBacklightImage && !d.pInDarkImage);
}

TEST(Sentivo, InitResetsTheScoreAndChecksTheInputsInOrder)
{
    Assigned a;
    ClSentivo& d = a.d;
    for (ClImage** ppSlot : {&d.pInCurrentImage, &d.pInBacklightImage, &d.pInDarkImage})
    {
        ClImage* pKept = std::exchange(*ppSlot, nullptr);
        d.dOutScore = 5.0;
        ExpectThrows([&] { d.Init(); }, -37, "Input image not assigned");
        EXPECT_EQ(d.dOutScore, -1.0);
        *ppSlot = pKept;
    }

    // Pixel types before any size: current, then dark, then backlight.
    ClImage wideDark = Image(400, 480, ClImage::eInt16);
    ClImage shortBacklight = Image(320, 200, ClImage::eFloat32);
    d.pInDarkImage = &wideDark;
    d.pInBacklightImage = &shortBacklight;
    ExpectThrows([&] { d.Init(); }, -33, "Input pixel type \"int16\" not supported by processor.");
    d.pInDarkImage = &a.dark;
    ExpectThrows([&] { d.Init(); }, -33,
                 "Input pixel type \"float32\" not supported by processor.");

    // Every width before any height.
    ClImage shortCurrent = Image(320, 476), narrowDark = Image(316, 480);
    d.pInBacklightImage = &a.backlight;
    d.pInCurrentImage = &shortCurrent;
    d.pInDarkImage = &narrowDark;
    ExpectThrows([&] { d.Init(); }, -14, "Illegal image width");
    d.pInDarkImage = &a.dark;
    ExpectThrows([&] { d.Init(); }, -14, "Illegal image height");
    d.pInCurrentImage = &a.current;
    d.dOutScore = 5.0;
    EXPECT_EQ(d.Init(), 0);
    EXPECT_EQ(d.dOutScore, -1.0);
}

TEST(Sentivo, ModeSelectsTheHalvesAndOnlySecurityLevelOneIsStrict)
{
    Assigned a;
    a.d.m_nMode = 0;
    for (int32_t nLevel : {1, 0, 2, -1, 1})
    {
        a.d.nSecurityLevel = nLevel;
        EXPECT_EQ(a.d.Run(), 0);
        EXPECT_EQ(a.d.m_bStrict, nLevel == 1);
    }
    // Each half runs on its own; only the finger half clears the flag.
    for (uint8_t nMode : {ClSentivo::eModeFinger, ClSentivo::eModeFake})
    {
        a.d.m_nMode = nMode;
        a.d.m_bFingerFound = true;
        a.d.nSecurityLevel = 7;
        ExpectThrows([&] { a.d.Run(); }, -101);
        EXPECT_FALSE(a.d.m_bStrict);
        EXPECT_EQ(a.d.m_bFingerFound, nMode == ClSentivo::eModeFake);
        EXPECT_EQ(a.d.dOutScore, -1.0);
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
    ASSERT_EQ(mask.DataType(), ClImage::eUInt8);
    ASSERT_EQ(mask.Width(), 320);
    ASSERT_EQ(mask.Height(), 480);
    int64_t nModel = 0, nMask = 0, nWrong = 0;
    for (int32_t y = 0; y < 480; ++y)
        for (int32_t x = 0; x < 320; ++x)
        {
            const uint8_t v = mask.Row<uint8_t>(y)[x];
            nModel += inside(x, y);
            nMask += v == 255;
            nWrong += (v != 0 && v != 255) || (v == 255) != inside(x, y);
        }
    EXPECT_EQ(nWrong, 0);
    EXPECT_EQ(nMask, nModel);

    // The last inside column of either side, by hand: rows 372 and 373 (k 69,
    // h 149), row 429 (k 125, h 107), row 468 (k 164, h 18).
    const int32_t edges[][3] = {{372, 11, 308}, {373, 11, 308}, {429, 53, 266}, {468, 142, 177}};
    for (const auto& e : edges)
    {
        const uint8_t* pRow = mask.Row<uint8_t>(e[0]);
        EXPECT_TRUE(pRow[e[1] - 1] == 0 && pRow[e[1]] == 255) << e[0];
        EXPECT_TRUE(pRow[e[2]] == 255 && pRow[e[2] + 1] == 0) << e[0];
    }
    EXPECT_EQ(mask.Row<uint8_t>(10)[160] + mask.Row<uint8_t>(469)[160], 0);
}

TEST(Sentivo, ScoreAndQueriesGoThroughTheRateTables)
{
    using NeuralNet::FarTable;
    using NeuralNet::FrrTable;
    ClSentivo d;
    // 0.5 lies on row 499 (499.5 truncated).
    EXPECT_DOUBLE_EQ(d.ScoreOfNetOutput(0.5),
                     100.0 * FrrTable[499] / (FrrTable[499] + FarTable[499]));
    int32_t k = 0;
    while (FarTable[k] > 0.05)
        ++k;
    d.SetQueryFAR(0.05);
    EXPECT_EQ(d.GetQueryFAR(), 0.05);
    EXPECT_EQ(d.GetQueryFRR(), FrrTable[k]);
    k = 0;
    while (FrrTable[k] < 0.2)
        ++k;
    d.SetQueryFRR(0.2);
    EXPECT_EQ(d.GetQueryFRR(), 0.2);
    EXPECT_EQ(d.GetQueryFAR(), FarTable[k]);
    d.SetQueryScore(60.0);
    EXPECT_EQ(d.GetQueryScore(), 60.0);
}

TEST(Sentivo, DefineParametersRegistersTheThreeImagesAndTheScore)
{
    ClSentivo d;
    ClParameterContainer container;
    d.DefineParameters(container);
    EXPECT_EQ(container.GetChildCount(), 4u);
    EXPECT_EQ(container.Find("nSecurityLevel"), nullptr); // the handle publishes the settings
    const std::pair<const char*, void*> inputs[] = {{"pInCurrentImage", &d.pInCurrentImage},
                                                    {"pInBacklightImage", &d.pInBacklightImage},
                                                    {"pInDarkImage", &d.pInDarkImage}};
    for (const auto& input : inputs)
    {
        ClParameter* p = container.Find(input.first);
        ASSERT_NE(p, nullptr) << input.first;
        EXPECT_EQ(p->GetFlags(), ClParameter::eFlagInput);
        EXPECT_TRUE(p->IsConnection());
        EXPECT_EQ(p->GetValuePointer(), input.second);
    }
    ClParameter* pScore = container.Find("dOutScore");
    ASSERT_NE(pScore, nullptr);
    EXPECT_EQ(pScore->GetFlags(), ClParameter::eFlagOutput);
    ASSERT_TRUE(pScore->IsNumeric());
    EXPECT_TRUE(pScore->AsNumeric()->IsFloating());
    EXPECT_EQ(pScore->GetValuePointer(), &d.dOutScore);
}
