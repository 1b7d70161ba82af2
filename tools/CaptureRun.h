#pragma once
// One capture judged the way the tools and the conformance test show it:
// the three bitmap files through a handle's image checks, an optional first
// finger detection (as a scanner's earlier capture), then one evaluation of
// both halves, with everything the run measured on its way.
#include <cstdint>
#include <string>
#include <vector>

#include "BmpFile.h"
#include "image/FpImage.h"

class ClSentivoSDKHandle;

namespace SentivoTool
{

struct RunSettings
{
    int32_t nSecurityLevel = 1;
    bool bMovementDetection = true;
    // Where the previous band profile comes from.
    enum EPrevious
    {
        eNone, // a new handle
        eSame, // the finger half ran once on the same capture
        eOther // it ran once with another current image and the same light pair
    } ePrevious = eNone;
};

struct CaptureResult
{
    static constexpr int kProfileBands = 28;

    // The evaluation as a whole: its code.
    int32_t nCode = 0;
    // The file the image check refused (0 current, 1 backlight, 2 dark,
    // 3 the previous current image), -1 when all were taken; nCode is then
    // the refusal's code.
    int nRefusedImage = -1;
    // The finger half: its code and the stage's own text ("" on a pass).
    int32_t nFingerCode = 0;
    std::string fingerMessage;
    // The band profile stored for the next run and the movement sum; unset
    // where the run did not reach the movement test.
    bool bProfile = false;
    double adProfile[kProfileBands] = {};
    double dMovementSum = 0.0;
    // The fake half: -1 not run (or relaxed level), 0 rejected, 1 passed.
    int nFalloff = -1;
    std::vector<double> features; // empty until made
    bool bNetOutput = false;
    double dNetOutput = 0.0;
    int32_t k = 0; // the rate-table row, integer part of net output x 999
    bool bScore = false;
    double dScore = 0.0;
    // The capture as the handle took it, and the intermediate images, empty
    // where the run did not make them.
    ClImage capture, prepared, fastMask, finalMask, masked;
};

// Loads the three files into a new handle (a file the image check refuses
// ends the run with that code) and evaluates. pPrevious is the current
// image of the earlier capture for RunSettings::eOther.
CaptureResult RunCapture(BmpFile& current, BmpFile& backlight, BmpFile& dark,
                         const RunSettings& settings, BmpFile* pPrevious = nullptr);

// The same on a handle that judges one capture after another (one handle per
// thread). Its settings are replaced by the run's; what it keeps from its
// last run is the band profile, so eNone compares with the capture before,
// while eSame and eOther give the same result as on a new handle.
CaptureResult RunCapture(ClSentivoSDKHandle& handle, BmpFile& current, BmpFile& backlight,
                         BmpFile& dark, const RunSettings& settings, BmpFile* pPrevious = nullptr);

// The text of a library exception without the table's first line: the
// stage's own message.
std::string StageMessage(const char* szText);

} // namespace SentivoTool
