// sentivo demo: the bundled sample captures judged as a scanner would, with
// the threshold an integrator would read from the library.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <set>

#include "ApiSession.h"
#include "CaptureSources.h"
#include "Commands.h"
#include "ToolOptions.h"
#include "sdk/SentivoSDKHandle.h"

namespace SentivoTool
{

const char* const kDemoHelp =
    "usage: sentivo demo [OPTIONS] [FOLDER]\n"
    "\n"
    "Judges every capture in FOLDER (default: samples) as a scanner would: as\n"
    "the second of two captures, the first being previous.bmp of the capture's\n"
    "folder where there is one (a finger that moved between them), otherwise the\n"
    "same capture (a still finger). Prints per capture its label, the finger\n"
    "outcome (code and the stage's text), the score and whether it passes the\n"
    "library's threshold for a false acceptance rate of 1 % (dQueryFAR 0.01 gives\n"
    "dQueryScore).\n"
    "\n"
    "options:\n"
    "  --security-level N    nSecurityLevel: 1 strict (default), other relaxed\n"
    "  --no-movement         switch the movement test off\n"
    "\n"
    "Exit status: 0 when every capture was read, 1 otherwise.\n";

namespace
{

struct DemoRow
{
    std::string capture, label, code, outcome, score, verdict;
};

std::string Trimmed(std::string text)
{
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
        text.pop_back();
    return text;
}

// The capture's folder as shown: relative to the demo folder.
std::string ShortName(const std::string& folder, const std::string& current)
{
    const std::filesystem::path path =
        std::filesystem::path(current).parent_path().lexically_relative(folder);
    return path.empty() || path == "." ? std::filesystem::path(current).parent_path().string()
                                       : path.string();
}

} // namespace

int CommandDemo(const Arguments& args)
{
    const CommandLine line(args, {kSecurityLevelOption, kNoMovementOption});
    if (line.Help())
    {
        std::fputs(kDemoHelp, stdout);
        return 0;
    }
    line.ExpectOperands(0, 1, "at most one FOLDER");
    const std::string folder = line.Operands().empty() ? "samples" : line.Operands()[0];
    const RunSettings settings = JudgingSettings(line);
    const std::vector<CaptureEntry> entries = CollectCaptures({folder});

    // The threshold as an integrator reads it from the library.
    ApiSession session;
    session.SetProperty("dQueryFAR", "0.01");
    const std::string threshold = session.Property("dQueryScore");
    const double dThreshold = std::strtod(threshold.c_str(), nullptr);
    std::printf("libsentivo %s: %zu captures in %s; threshold for a false acceptance rate of "
                "1 %%: score %s\n\n",
                session.Property("Version").c_str(), entries.size(), folder.c_str(),
                threshold.c_str());

    std::vector<DemoRow> rows = {
        {"capture", "label", "code", "finger outcome", "score", "at 1 % FAR"}};
    bool bAllRead = true;
    std::set<int32_t> unscored; // codes of captures whose finger passed without a score
    ClSentivoSDKHandle handle;
    for (const CaptureEntry& entry : entries)
    {
        CaptureFiles files = entry.files;
        const std::string previous =
            (std::filesystem::path(files.current).parent_path() / "previous.bmp").string();
        std::error_code error;
        if (std::filesystem::exists(previous, error))
            files.previous = previous;
        const JudgedCapture judged = JudgeCapture(handle, files, settings);
        DemoRow row;
        row.capture = ShortName(folder, files.current);
        row.label = entry.label ? *entry.label : "-";
        if (!judged.bRead)
        {
            bAllRead = false;
            row.code = std::to_string(judged.nCode);
            row.outcome = judged.message;
            row.score = "-";
            row.verdict = "-";
        }
        else
        {
            const CaptureResult& result = judged.result;
            row.code = std::to_string(result.nFingerCode);
            row.outcome = result.nFingerCode == 0 ? "finger found" : Trimmed(result.fingerMessage);
            if (result.bScore)
            {
                char szScore[32];
                std::snprintf(szScore, sizeof(szScore), "%.3f", result.dScore);
                row.score = szScore;
                row.verdict = result.dScore >= dThreshold ? "live" : "fake";
            }
            else
            {
                // The finger half passed but the fake half gave no score.
                row.score = "-";
                if (result.nFingerCode == 0)
                {
                    row.score = "none (" + std::to_string(result.nCode) + ")";
                    unscored.insert(result.nCode);
                }
                row.verdict = "-";
            }
        }
        rows.push_back(row);
    }

    size_t anWidth[6] = {};
    for (const DemoRow& row : rows)
    {
        const std::string* apCells[] = {&row.capture, &row.label, &row.code,
                                        &row.outcome, &row.score, &row.verdict};
        for (int c = 0; c < 6; ++c)
            anWidth[c] = std::max(anWidth[c], apCells[c]->size());
    }
    for (const DemoRow& row : rows)
        std::printf("%-*s  %-*s  %*s  %-*s  %*s  %s\n", static_cast<int>(anWidth[0]),
                    row.capture.c_str(), static_cast<int>(anWidth[1]), row.label.c_str(),
                    static_cast<int>(anWidth[2]), row.code.c_str(), static_cast<int>(anWidth[3]),
                    row.outcome.c_str(), static_cast<int>(anWidth[4]), row.score.c_str(),
                    row.verdict.c_str());
    for (const int32_t nCode : unscored)
        std::printf("\nnone (%d): the finger was found but the library gave no score: %s\n", nCode,
                    SentivoGetErrorDescriptionA(nCode));
    return bAllRead ? 0 : 1;
}

} // namespace SentivoTool
