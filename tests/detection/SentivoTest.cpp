#include "detection/Sentivo.h"

#include <cstdint>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "sdk/SentivoSDKHandle.h"
#include "support/ConformanceCapture.h"
#include "support/DetectionImages.h"

TEST(Sentivo, InitResetsTheScoreAndChecksTheInputsInOrder)
{
    using TestImages::Blank;
    ClImage ok = Blank(ClImage::eUInt8, 320, 480), wideDark = Blank(ClImage::eInt16, 400, 480),
            narrowDark = Blank(ClImage::eUInt8, 316, 480),
            shortCurrent = Blank(ClImage::eUInt8, 320, 476),
            shortBacklight = Blank(ClImage::eFloat32, 320, 200);
    // Presence first; pixel types before any size: current, then dark, then
    // backlight; then every width before any height.
    const char* const kMissing = "Input image not assigned";
    const std::tuple<ClImage*, ClImage*, ClImage*, int32_t, const char*> cases[] = {
        {nullptr, &ok, &ok, -37, kMissing},
        {&ok, nullptr, &ok, -37, kMissing},
        {&shortCurrent, &shortBacklight, nullptr, -37, kMissing},
        {&ok, &shortBacklight, &wideDark, -33,
         "Input pixel type \"int16\" not supported by processor."},
        {&ok, &shortBacklight, &ok, -33,
         "Input pixel type \"float32\" not supported by processor."},
        {&shortCurrent, &ok, &narrowDark, -14, "Illegal image width"},
        {&shortCurrent, &ok, &ok, -14, "Illegal image height"},
        {&ok, &ok, &ok, 0, nullptr}};
    ClSentivo d;
    for (auto [pCurrent, pBacklight, pDark, nCode, szText] : cases)
    {
        std::tie(d.pInCurrentImage, d.pInBacklightImage, d.pInDarkImage, d.dOutScore) =
            std::make_tuple(pCurrent, pBacklight, pDark, 5.0);
        if (nCode == 0)
            EXPECT_EQ(d.Init(), 0);
        else
            ExpectThrows([&] { d.Init(); }, nCode, szText);
        EXPECT_EQ(d.dOutScore, -1.0);
    }
    // Mode 0 runs neither half, so a blank image passes; only level 1 is strict.
    d.m_nMode = 0;
    for (int32_t nLevel : {1, 0, 2, -1, 1})
    {
        d.nSecurityLevel = nLevel;
        EXPECT_EQ(d.Run(), 0);
        EXPECT_EQ(d.m_bStrict, nLevel == 1);
    }
}

namespace
{
// A handle with a loader of conformance captures and the code of its finger half.
struct Scanner
{
    void Load(const std::string& name)
    {
        int32_t i = 0;
        for (SentivoTool::BmpFile& file : TestSupport::ReadCapture(name))
            handle.SetImage(i++, file.Block(), file.BlockSize());
    }
    int32_t Finger()
    {
        try
        {
            return handle.DetectFinger(), 0;
        }
        catch (const ClException& e)
        {
            return e.GetCode();
        }
    }
    ClSentivoSDKHandle handle;
};

} // namespace

TEST(SentivoFingerHalf, TheProfileIsKeptPerHandleThroughResetsAndFailures)
{
    // Without movement detection the first capture passes, and its profile
    // is stored all the same: with the test on again, the next still capture
    // passes.
    Scanner still;
    still.handle.Detection().bMovementDetection = false;
    still.Load("live_a");
    EXPECT_EQ(still.Finger(), 0);
    still.handle.Detection().bMovementDetection = true;
    EXPECT_EQ(still.Finger(), 0);
    // A new handle compares with zeros, not with another handle's profile:
    // the finger moved. A failed run stores its profile, a reset keeps it.
    Scanner scanner;
    scanner.Load("live_a");
    EXPECT_EQ(scanner.Finger(), -15);
    scanner.handle.Reset();
    EXPECT_EQ(scanner.Finger(), -37);
    scanner.Load("live_a");
    EXPECT_EQ(scanner.Finger(), 0);
}

TEST(SentivoFingerHalf, AFailureClearsTheFingerFoundForTheFakeHalf)
{
    Scanner scanner;
    ClSentivo& detection = scanner.handle.Detection();
    detection.bMovementDetection = false;
    double dScore = 1.0;
    scanner.Load("no_finger");
    ExpectThrows([&] { scanner.handle.DetectFake(&dScore); }, -15, "no finger in images");
    scanner.Load("live_a");
    scanner.handle.DetectFinger();
    EXPECT_TRUE(detection.m_bFingerFound);
    scanner.Load("overexposed");
    ExpectThrows([&] { scanner.handle.DetectFinger(); }, -799, "illumination to high\n");
    EXPECT_FALSE(detection.m_bFingerFound);
    ExpectThrows([&] { scanner.handle.DetectFake(&dScore); }, -15, "no finger in images");
    EXPECT_EQ(dScore, 0.0);
}

TEST(SentivoFakeHalf, FalloffBandsMustFallSteeplyFromAnEarlyMaximum)
{
    // Seven bands (rows 32 + 32 i to 63 + 32 i, columns 10-309) flat at their
    // values, 0 unlit; band 0 may have only its first nLit pixels lit, the
    // rest below bin 9.
    auto verdict = [](std::vector<int> values, int nLit = -1)
    {
        return ClSentivo::FalloffOfBands(
            TestImages::ImageOf(320, 480,
                                [&](int32_t x, int32_t y)
                                {
                                    const int32_t i = y / 32 - 1, n = (y - 32) * 300 + x - 10;
                                    if (i == 0 && nLit >= 0 && x >= 10 && x < 310)
                                        return n < nLit ? values[0] : 8;
                                    return i >= 0 && i < 7 ? values[i] : 0;
                                }));
    };
    // Slope (38 - 10) / 7 = 4.0 and ratio 13 / 10 = 1.3 both pass. Of two
    // equal maxima the earlier counts (slope 27 / 7, not 27 / 6); one in the
    // last band fails. A band needs more than 51 lit pixels.
    const std::tuple<std::vector<int>, int, bool> cases[] = {
        {{38, 30, 20, 13, 12, 11, 10}, -1, true},   {{37, 30, 20, 13, 12, 11, 10}, -1, false},
        {{38, 30, 20, 12, 12, 11, 10}, -1, false},  {{37, 37, 20, 13, 12, 11, 10}, -1, false},
        {{36, 37, 20, 13, 12, 11, 10}, -1, true},   {{10, 11, 12, 13, 14, 15, 60}, -1, false},
        {{200, 30, 20, 13, 12, 11, 10}, 51, false}, {{200, 30, 20, 13, 12, 11, 10}, 52, true},
        {{0, 0, 0, 0, 0, 0, 0}, -1, false}};
    for (const auto& [values, nLit, bPass] : cases)
        EXPECT_EQ(verdict(values, nLit), bPass) << values[0] << ' ' << values[1] << ' ' << nLit;
}
