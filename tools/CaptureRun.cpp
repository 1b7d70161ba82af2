#include "CaptureRun.h"

#include <cmath>
#include <cstring>
#include <stdexcept>

#include "sdk/Exception.h"
#include "sdk/SentivoSDKHandle.h"

namespace SentivoTool
{

namespace
{

// Runs one call of the handle and turns a library exception into its code.
template <typename F> int32_t Call(F&& f, std::string* pMessage = nullptr)
{
    try
    {
        f();
        return ZRC_SUCCESS;
    }
    catch (const ClException& e)
    {
        if (pMessage != nullptr)
            *pMessage = StageMessage(e.GetMessage());
        return e.GetCode();
    }
}

// A copy of its own: the handle reuses its buffers in the next run.
ClImage Keep(const ClImage& image)
{
    ClImage copy;
    if (image.Data() != nullptr)
        copy.Assign(image);
    return copy;
}

} // namespace

std::string StageMessage(const char* szText)
{
    const char* szBreak = std::strchr(szText, '\n');
    return szBreak == nullptr ? std::string(szText) : std::string(szBreak + 1);
}

CaptureResult RunCapture(BmpFile& current, BmpFile& backlight, BmpFile& dark,
                         const RunSettings& settings, BmpFile* pPrevious)
{
    ClSentivoSDKHandle handle;
    return RunCapture(handle, current, backlight, dark, settings, pPrevious);
}

CaptureResult RunCapture(ClSentivoSDKHandle& handle, BmpFile& current, BmpFile& backlight,
                         BmpFile& dark, const RunSettings& settings, BmpFile* pPrevious)
{
    CaptureResult result;
    ClSentivo& detection = handle.Detection();
    detection.nSecurityLevel = settings.nSecurityLevel;
    detection.bMovementDetection = settings.bMovementDetection;

    const bool bOther = settings.ePrevious == RunSettings::eOther;
    if (bOther && pPrevious == nullptr)
        throw std::invalid_argument("the previous capture is missing");
    // Loads a file into a slot; a refusal ends the run with its code.
    auto load = [&](int32_t nSlot, BmpFile& file, int nFile)
    {
        const int32_t nCode = Call([&] { handle.SetImage(nSlot, file.Block(), file.BlockSize()); });
        if (nCode != ZRC_SUCCESS)
        {
            result.nCode = result.nFingerCode = nCode;
            result.nRefusedImage = nFile;
        }
        return nCode == ZRC_SUCCESS;
    };
    if (!load(0, bOther ? *pPrevious : current, bOther ? 3 : 0) || !load(1, backlight, 1) ||
        !load(2, dark, 2))
        return result;
    // The earlier capture is judged before the current image replaces it.
    if (settings.ePrevious != RunSettings::eNone)
    {
        Call([&] { handle.DetectFinger(); });
        if (bOther && !load(0, current, 0))
            return result;
    }
    result.capture = Keep(*detection.pInCurrentImage);

    ClSentivo::StRunRecord record;
    detection.m_pRecord = &record;
    double dScore = 0.0;
    std::string message;
    result.nCode = Call([&] { handle.EvaluateLiveliness(&dScore); }, &message);
    detection.m_pRecord = nullptr;

    // The finger half passed when it recorded a finger; a failure then came
    // from the fake half.
    if (detection.m_bFingerFound)
        result.nFingerCode = 0;
    else
    {
        result.nFingerCode = result.nCode;
        result.fingerMessage = message;
    }
    if (record.bMovement)
    {
        result.bProfile = true;
        result.dMovementSum = record.dMovementSum;
        std::memcpy(result.adProfile, detection.m_PreviousProfile, sizeof(result.adProfile));
        // The prepared image holds the copy of the capture until the
        // preparation replaces it.
        result.prepared = Keep(detection.m_PreparedImage);
    }
    if (record.bPrepared)
        result.fastMask = Keep(detection.m_FastMask);
    result.nFalloff = record.nFalloff;
    result.features.assign(record.Features.Data(), record.Features.Data() + record.Features.Size());
    if (record.bNet)
    {
        result.bNetOutput = true;
        result.dNetOutput = record.dNetOutput;
        // The row the score mapping reads; a NaN output lands on row 0.
        result.k =
            std::isnan(record.dNetOutput) ? 0 : static_cast<int32_t>(record.dNetOutput * 999);
    }
    if (record.MaskedImage.Data() != nullptr)
    {
        result.finalMask = Keep(detection.m_FinalMask);
        result.masked = Keep(record.MaskedImage);
    }
    if (result.nCode == ZRC_SUCCESS)
    {
        result.bScore = true;
        result.dScore = dScore;
    }
    return result;
}

} // namespace SentivoTool
