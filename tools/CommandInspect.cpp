// sentivo features and inspect: everything one evaluation measures, and the
// images it made on its way.
#include <cstdio>
#include <filesystem>

#include "CaptureJob.h"
#include "Commands.h"
#include "PngFile.h"
#include "ResultJson.h"
#include "ToolOptions.h"
#include "sentivo/sentivo.h"

namespace SentivoTool
{

#define SENTIVO_RUN_OPTIONS_HELP                                                                   \
    "  --security-level N    nSecurityLevel: 1 strict (default), other relaxed\n"                  \
    "  --no-movement         switch the movement test off\n"                                       \
    "  --repeat              the finger half runs once before on the same capture\n"               \
    "                        (a scanner's second capture of a still finger)\n"                     \
    "  --previous PREV       ... or on PREV, the current image of the capture\n"                   \
    "                        before, with the same light pair\n"                                   \
    "  without either        the first capture of a new handle, which compares\n"                  \
    "                        with an empty profile and so sees a moving finger\n"                  \
    "                        unless --no-movement\n"

const char* const kFeaturesHelp =
    "usage: sentivo features [OPTIONS] CURRENT BACKLIGHT DARK\n"
    "\n"
    "Everything one evaluation measures, as one JSON object: code, message,\n"
    "finger_code, finger_message, profile, movement_sum, falloff_passed,\n"
    "features, net_output, k, score (null where the run did not get there).\n"
    "\n"
    "options:\n" SENTIVO_RUN_OPTIONS_HELP;

const char* const kInspectHelp =
    "usage: sentivo inspect [OPTIONS] CURRENT BACKLIGHT DARK --out DIR\n"
    "\n"
    "As features, written to DIR/result.json, with the intermediate images as\n"
    "grey PNG files (the image's last row at the top, as the bitmap is shown):\n"
    "prepared.png, fast_mask.png, final_mask.png, masked.png (those the run\n"
    "made), and overview.png: capture, prepared image, fast mask, final mask and\n"
    "masked image side by side (mid grey where the run did not make one), with\n"
    "the outcome and the score in its text chunks.\n"
    "\n"
    "options:\n"
    "  --out DIR             the folder for the files (made when "
    "missing)\n" SENTIVO_RUN_OPTIONS_HELP;

namespace
{

struct RunOptions
{
    CaptureFiles files;
    RunSettings settings;
    std::string outDir;
};

RunOptions ParseRunOptions(const Arguments& args, bool bInspect, bool& bHelp)
{
    const CommandLine line(args, {kSecurityLevelOption,
                                  kNoMovementOption,
                                  {"--repeat", false},
                                  {"--previous", true},
                                  {"--out", true}});
    RunOptions options;
    bHelp = line.Help();
    if (bHelp)
        return options;
    if (!bInspect && line.Has("--out"))
        throw UsageError("unknown option '--out'");
    line.ExpectOperands(3, 3, "CURRENT BACKLIGHT DARK");
    line.Exclusive({"--repeat", "--previous"});
    // Unlike the other commands these show one evaluation exactly as asked:
    // a new handle unless --repeat or --previous names the capture before.
    options.settings = JudgingSettings(line);
    options.settings.ePrevious = line.Has("--repeat")     ? RunSettings::eSame
                                 : line.Has("--previous") ? RunSettings::eOther
                                                          : RunSettings::eNone;
    if (line.Has("--previous"))
    {
        if (line.Value("--previous").empty())
            throw UsageError("--previous needs a file name");
        options.files.previous = line.Value("--previous");
    }
    const std::vector<std::string>& files = line.Operands();
    options.files.current = files[0];
    options.files.backlight = files[1];
    options.files.dark = files[2];
    options.outDir = line.Value("--out");
    if (bInspect && options.outDir.empty())
        throw UsageError("needs --out DIR");
    return options;
}

CaptureResult Judge(const RunOptions& options)
{
    JudgedCapture judged = JudgeCapture(options.files, options.settings);
    if (!judged.bRead)
        throw InputError(judged.message);
    return std::move(judged.result);
}

// The five images side by side, 8 pixels of dark grey between them (masks
// are white to the edge); a panel the run did not make (or of another size)
// is mid grey.
void WriteOverview(const std::string& path, const CaptureResult& result)
{
    constexpr int32_t kGap = 8;
    const ClImage* apPanels[] = {&result.capture, &result.prepared, &result.fastMask,
                                 &result.finalMask, &result.masked};
    const int32_t nWidth = result.capture.Width() > 0 ? result.capture.Width() : 320;
    const int32_t nHeight = result.capture.Height() > 0 ? result.capture.Height() : 480;
    auto usable = [&](const ClImage* pImage)
    {
        return pImage->Data() != nullptr && pImage->DataType() == ClImage::eUInt8 &&
               pImage->Planes() == 1 && pImage->Width() == nWidth && pImage->Height() == nHeight;
    };
    const int32_t nTotal = 5 * nWidth + 4 * kGap;
    std::vector<uint8_t> pixels(static_cast<size_t>(nTotal) * static_cast<size_t>(nHeight), 64);
    std::string missing;
    const char* aszNames[] = {"capture", "prepared image", "fast mask", "final mask",
                              "masked image"};
    for (int p = 0; p < 5; ++p)
    {
        const bool bUsable = usable(apPanels[p]);
        if (!bUsable)
            missing += (missing.empty() ? "" : ", ") + std::string(aszNames[p]);
        for (int32_t r = 0; r < nHeight; ++r)
        {
            uint8_t* pOut = pixels.data() + static_cast<size_t>(r) * nTotal + p * (nWidth + kGap);
            // The image's last row is the top of the picture, as in the other PNGs.
            if (bUsable)
                std::copy_n(apPanels[p]->Row<uint8_t>(nHeight - 1 - r), nWidth, pOut);
            else
                std::fill_n(pOut, nWidth, uint8_t{128});
        }
    }
    std::vector<const uint8_t*> rows;
    for (int32_t r = 0; r < nHeight; ++r)
        rows.push_back(pixels.data() + static_cast<size_t>(r) * nTotal);
    std::string outcome =
        std::to_string(result.nCode) + " " + SentivoGetErrorDescriptionA(result.nCode);
    std::string finger = std::to_string(result.nFingerCode);
    if (result.nFingerCode == 0)
        finger += " finger found";
    else if (!result.fingerMessage.empty())
    {
        std::string text = result.fingerMessage;
        while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
            text.pop_back();
        finger += " " + text;
    }
    WriteGreyPng(path, nTotal, nHeight, rows,
                 {{"Title", "capture, prepared image, fast mask, final mask, masked image"},
                  {"Outcome", outcome},
                  {"Finger", finger},
                  {"Score", result.bScore ? JsonNumber(result.dScore) : "none"},
                  {"Missing", missing.empty() ? "none" : missing}});
}

void WriteText(const std::string& path, const std::string& text)
{
    std::FILE* pFile = std::fopen(path.c_str(), "w");
    if (pFile == nullptr)
        throw InputError("cannot write " + path);
    const bool bWritten = std::fputs(text.c_str(), pFile) >= 0;
    if (std::fclose(pFile) != 0 || !bWritten)
        throw InputError("cannot write " + path);
}

} // namespace

int CommandFeatures(const Arguments& args)
{
    bool bHelp = false;
    const RunOptions options = ParseRunOptions(args, false, bHelp);
    if (bHelp)
    {
        std::fputs(kFeaturesHelp, stdout);
        return 0;
    }
    std::fputs(ResultJson(Judge(options)).c_str(), stdout);
    return 0;
}

int CommandInspect(const Arguments& args)
{
    bool bHelp = false;
    const RunOptions options = ParseRunOptions(args, true, bHelp);
    if (bHelp)
    {
        std::fputs(kInspectHelp, stdout);
        return 0;
    }
    const CaptureResult result = Judge(options);
    std::error_code error;
    std::filesystem::create_directories(options.outDir, error);
    if (!std::filesystem::is_directory(options.outDir))
        throw InputError("cannot make the folder " + options.outDir);
    const std::pair<const char*, const ClImage*> images[] = {{"prepared.png", &result.prepared},
                                                             {"fast_mask.png", &result.fastMask},
                                                             {"final_mask.png", &result.finalMask},
                                                             {"masked.png", &result.masked}};
    for (const auto& [szName, pImage] : images)
        if (pImage->Data() != nullptr)
            WriteGreyPng(options.outDir + "/" + szName, *pImage);
    WriteOverview(options.outDir + "/overview.png", result);
    WriteText(options.outDir + "/result.json", ResultJson(result));
    return 0;
}

} // namespace SentivoTool
