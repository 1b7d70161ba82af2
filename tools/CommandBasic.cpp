// The small commands: version, check, threshold and score.
#include <cstdio>
#include <filesystem>

#include "ApiSession.h"
#include "CaptureJob.h"
#include "Commands.h"
#include "ResultJson.h"
#include "ToolOptions.h"
#include "classifier/RateTables.h"
#include "classifier/ScoreMapping.h"

namespace SentivoTool
{

const char* const kVersionHelp = "usage: sentivo version\n"
                                 "\n"
                                 "Prints the library's version.\n";

const char* const kCheckHelp =
    "usage: sentivo check FILE...\n"
    "\n"
    "Hands each file to the library's image check as SentivoSetImage does and\n"
    "prints the file, the code and the library's description. A file that cannot\n"
    "be read gets -200 (missing) or -203 and the reason.\n"
    "Exit status: 0 when the check takes every file, 1 otherwise.\n";

const char* const kThresholdHelp =
    "usage: sentivo threshold --far X | --frr X | --score X\n"
    "       sentivo threshold --table\n"
    "\n"
    "The library's threshold query: sets one of dQueryFAR, dQueryFRR (error\n"
    "rates from 0 to 1) or dQueryScore (0 to 100) and prints all three as the\n"
    "library gives them. A capture is judged live when its score is at least\n"
    "dQueryScore.\n"
    "\n"
    "--table prints the library's rate tables as CSV, all 1000 rows: row, score\n"
    "(the score of a net output of row / 999), far, frr.\n";

const char* const kScoreHelp =
    "usage: sentivo score [OPTIONS] CURRENT BACKLIGHT DARK\n"
    "\n"
    "Judges one capture and prints the code, the library's description and the\n"
    "score (none where the capture has none). The capture is judged as a\n"
    "scanner sees a still finger: the second of two identical captures.\n"
    "\n"
    "options:\n"
    "  --json                one JSON object: code, message, score\n"
    "  --security-level N    nSecurityLevel: 1 strict (default), other relaxed\n"
    "  --no-movement         switch the movement test off\n"
    "\n"
    "Exit status: 0 when the capture was judged (whatever its code), 1 when a\n"
    "file cannot be read or the image check refuses it, 64 for a usage error.\n";

int CommandVersion(const Arguments& args)
{
    const CommandLine line(args, {});
    if (line.Help())
    {
        std::fputs(kVersionHelp, stdout);
        return 0;
    }
    line.ExpectOperands(0, 0, "no operands");
    ApiSession session;
    std::printf("%s\n", session.Property("Version").c_str());
    return 0;
}

int CommandCheck(const Arguments& args)
{
    const CommandLine line(args, {});
    if (line.Help())
    {
        std::fputs(kCheckHelp, stdout);
        return 0;
    }
    line.ExpectOperands(1, SIZE_MAX, "at least one FILE");
    ApiSession session;
    int nRefused = 0;
    for (const std::string& path : line.Operands())
    {
        int32_t nCode = ZRC_SUCCESS;
        std::string text;
        try
        {
            BmpFile file = ReadBmpFile(path);
            nCode = SentivoSetImage(session.Handle(), 0, file.Block(), file.BlockSize());
            text = SentivoGetErrorDescriptionA(nCode);
        }
        catch (const std::exception& e)
        {
            std::error_code error;
            nCode = std::filesystem::exists(path, error) ? ZRC_ERROR_READ_FAIL
                                                         : ZRC_ERROR_FILE_OPEN_FAIL;
            text = e.what();
        }
        std::printf("%-48s %6d  %s\n", path.c_str(), nCode, text.c_str());
        nRefused += nCode != ZRC_SUCCESS;
    }
    return nRefused == 0 ? 0 : 1;
}

int CommandThreshold(const Arguments& args)
{
    const CommandLine line(
        args, {{"--far", true}, {"--frr", true}, {"--score", true}, {"--table", false}});
    if (line.Help())
    {
        std::fputs(kThresholdHelp, stdout);
        return 0;
    }
    line.ExpectOperands(0, 0, "one of --far X, --frr X, --score X or --table");
    line.Exclusive({"--far", "--frr", "--score", "--table"});
    if (line.Has("--table"))
    {
        std::printf("row,score,far,frr\n");
        for (int32_t k = 0; k < NeuralNet::nRateTableSize; ++k)
        {
            const double dScore = NeuralNet::ScoreOfNetOutput(static_cast<double>(k) /
                                                              (NeuralNet::nRateTableSize - 1));
            std::printf("%d,%s,%s,%s\n", k, JsonNumber(dScore).c_str(),
                        JsonNumber(NeuralNet::FarTable[k]).c_str(),
                        JsonNumber(NeuralNet::FrrTable[k]).c_str());
        }
        return 0;
    }
    const char* szOption = line.Has("--far")     ? "--far"
                           : line.Has("--frr")   ? "--frr"
                           : line.Has("--score") ? "--score"
                                                 : nullptr;
    if (szOption == nullptr)
        throw UsageError("needs one of --far X, --frr X, --score X or --table");
    const std::string& value = line.Value(szOption);
    NumberOption(szOption, value, 0.0, szOption == std::string("--score") ? 100.0 : 1.0);
    const char* szProperty = szOption == std::string("--far")   ? "dQueryFAR"
                             : szOption == std::string("--frr") ? "dQueryFRR"
                                                                : "dQueryScore";
    ApiSession session;
    session.SetProperty(szProperty, value);
    std::printf("dQueryScore %s\ndQueryFAR %s\ndQueryFRR %s\n",
                session.Property("dQueryScore").c_str(), session.Property("dQueryFAR").c_str(),
                session.Property("dQueryFRR").c_str());
    return 0;
}

int CommandScore(const Arguments& args)
{
    const CommandLine line(args, {{"--json", false}, kSecurityLevelOption, kNoMovementOption});
    if (line.Help())
    {
        std::fputs(kScoreHelp, stdout);
        return 0;
    }
    line.ExpectOperands(3, 3, "CURRENT BACKLIGHT DARK");
    const RunSettings settings = JudgingSettings(line);
    const std::vector<std::string>& files = line.Operands();
    const JudgedCapture judged = JudgeCapture({files[0], files[1], files[2], ""}, settings);
    if (!judged.bRead)
        throw InputError(judged.message);
    const CaptureResult& result = judged.result;
    if (line.Has("--json"))
        std::printf("{\"code\": %d, \"message\": %s, \"score\": %s}\n", result.nCode,
                    JsonString(judged.message).c_str(),
                    result.bScore ? JsonNumber(result.dScore).c_str() : "null");
    else
        std::printf("code %d\nmessage %s\nscore %s\n", result.nCode, judged.message.c_str(),
                    result.bScore ? JsonNumber(result.dScore).c_str() : "none");
    return 0;
}

} // namespace SentivoTool
