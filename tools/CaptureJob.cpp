#include "CaptureJob.h"

#include <filesystem>
#include <stdexcept>

#include "sdk/SentivoSDKHandle.h"
#include "sentivo/sentivo.h"

namespace SentivoTool
{

namespace
{

// Reads one file; false with the reason filled in where it cannot be read.
bool ReadFile(const std::string& path, BmpFile& file, JudgedCapture& judged)
{
    try
    {
        file = ReadBmpFile(path);
        return true;
    }
    catch (const std::exception& e)
    {
        std::error_code error;
        judged.nCode =
            std::filesystem::exists(path, error) ? ZRC_ERROR_READ_FAIL : ZRC_ERROR_FILE_OPEN_FAIL;
        judged.message = e.what();
        return false;
    }
}

} // namespace

JudgedCapture JudgeCapture(ClSentivoSDKHandle& handle, const CaptureFiles& files,
                           RunSettings settings)
{
    JudgedCapture judged;
    BmpFile current, backlight, dark, previous;
    if (!ReadFile(files.current, current, judged) ||
        !ReadFile(files.backlight, backlight, judged) || !ReadFile(files.dark, dark, judged))
        return judged;
    if (!files.previous.empty())
    {
        if (!ReadFile(files.previous, previous, judged))
            return judged;
        settings.ePrevious = RunSettings::eOther;
    }
    else if (settings.ePrevious == RunSettings::eOther)
        throw std::invalid_argument("the previous capture is not named");
    judged.result = RunCapture(handle, current, backlight, dark, settings, &previous);
    judged.nCode = judged.result.nCode;
    if (judged.result.nRefusedImage >= 0)
    {
        const std::string* apPaths[] = {&files.current, &files.backlight, &files.dark,
                                        &files.previous};
        judged.message = *apPaths[judged.result.nRefusedImage] + ": refused by the image check (" +
                         std::to_string(judged.nCode) +
                         "): " + SentivoGetErrorDescriptionA(judged.nCode);
        return judged;
    }
    judged.bRead = true;
    judged.message = SentivoGetErrorDescriptionA(judged.nCode);
    return judged;
}

JudgedCapture JudgeCapture(const CaptureFiles& files, const RunSettings& settings)
{
    ClSentivoSDKHandle handle;
    return JudgeCapture(handle, files, settings);
}

} // namespace SentivoTool
