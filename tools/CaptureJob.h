#pragma once
// One capture named by its files, judged on a handle: what every command that
// judges captures shares. A capture whose files cannot be read or that the
// image check refuses is not an error of the command: it gets a negative
// code and a reason that names the file, and the caller goes on.
#include <cstdint>
#include <string>

#include "CaptureRun.h"

class ClSentivoSDKHandle;

namespace SentivoTool
{

struct CaptureFiles
{
    std::string current, backlight, dark;
    // The current image of the capture before, judged first with the same
    // light pair; empty for the settings' own choice.
    std::string previous;
};

struct JudgedCapture
{
    // Every file was read and taken by the image check, and the capture
    // judged; result is then complete.
    bool bRead = false;
    // The evaluation's code (0: scored), or why the capture was not judged:
    // -200 a missing file, -203 a file that cannot be read (a folder, empty,
    // too large), otherwise the image check's own code.
    int32_t nCode = 0;
    // The library's description of nCode, or the reason naming the file
    // ("PATH: refused by the image check (CODE): DESCRIPTION" for a refusal).
    std::string message;
    CaptureResult result;
};

JudgedCapture JudgeCapture(ClSentivoSDKHandle& handle, const CaptureFiles& files,
                           RunSettings settings);

// The same on a new handle.
JudgedCapture JudgeCapture(const CaptureFiles& files, const RunSettings& settings);

} // namespace SentivoTool
