// sentivo: score and inspect captures with the library from the command line.
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/stat.h>

#include "BmpFile.h"
#include "CaptureRun.h"
#include "PngFile.h"
#include "ResultJson.h"
#include "sentivo/sentivo.h"

namespace
{

using SentivoTool::BmpFile;
using SentivoTool::ReadBmpFile;

const char* const kUsage =
    "usage: sentivo COMMAND [ARGS]\n"
    "\n"
    "commands:\n"
    "  version                          print the library version\n"
    "  check FILE...                    validate bitmaps as SentivoSetImage does\n"
    "  score [OPTIONS] CURRENT [BACKLIGHT DARK]\n"
    "                                   judge one capture; without BACKLIGHT and DARK\n"
    "                                   the current image stands in for both\n"
    "      --mode finger|fake|both      which detection to run (default both)\n"
    "      --security N                 nSecurityLevel (1 strict, default)\n"
    "      --no-movement                bMovementDetection False\n"
    "      --csv                        one line: file,code,score\n"
    "  threshold --far X | --frr X | --score X\n"
    "                                   print score threshold and error rates\n"
    "  features CURRENT BACKLIGHT DARK [OPTIONS]\n"
    "                                   everything one evaluation measures, as JSON\n"
    "      --security-level N           nSecurityLevel (1 strict, default)\n"
    "      --no-movement                bMovementDetection False\n"
    "      --repeat                     the finger half runs once before on the same capture\n"
    "      --previous PREV_CURRENT      ... or on PREV_CURRENT with the same light pair\n"
    "  inspect CURRENT BACKLIGHT DARK --out DIR [OPTIONS]\n"
    "                                   as features, plus the intermediate images as PNG\n"
    "  demo [FILE...]                   check and score the bundled samples\n";

// Owns one initialisation and one handle for the life of a command.
class Session
{
public:
    Session()
    {
        Expect(SentivoInitialize(nullptr), "SentivoInitialize");
        Expect(SentivoCreateHandle(&m_hHandle), "SentivoCreateHandle");
    }
    ~Session()
    {
        SentivoDestroyHandle(&m_hHandle);
        SentivoUninitialize();
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    SentivoHandle Handle() const { return m_hHandle; }

    std::string Property(const char* szName) const
    {
        uint32_t nSize = 0;
        int32_t nCode = SentivoGetPropertyA(m_hHandle, szName, nullptr, &nSize);
        if (nCode != ZRC_ERROR_TEMPLATE_SIZE)
            Expect(nCode, szName);
        std::string value(nSize, '\0');
        Expect(SentivoGetPropertyA(m_hHandle, szName, value.data(), &nSize), szName);
        value.resize(nSize - 1);
        return value;
    }

    void SetProperty(const char* szName, const std::string& value) const
    {
        Expect(SentivoSetPropertyA(m_hHandle, szName, value.c_str()), szName);
    }

    static void Expect(int32_t nCode, const char* szWhat)
    {
        if (nCode != ZRC_SUCCESS)
            throw std::runtime_error(std::string(szWhat) + ": " + std::to_string(nCode) + " " +
                                     SentivoGetErrorDescriptionA(nCode));
    }

private:
    SentivoHandle m_hHandle = nullptr;
};

void PrintResult(const char* szLabel, int32_t nCode)
{
    std::printf("%-48s %6d  %s\n", szLabel, nCode, SentivoGetErrorDescriptionA(nCode));
}

int CommandVersion()
{
    Session session;
    std::printf("%s\n", session.Property("Version").c_str());
    return 0;
}

// Validates each file in slot 0; returns the number of files refused.
int CheckFiles(Session& session, const std::vector<std::string>& files)
{
    int nRefused = 0;
    for (const std::string& path : files)
    {
        BmpFile file = ReadBmpFile(path);
        const int32_t nCode = SentivoSetImage(session.Handle(), 0, file.Block(), file.BlockSize());
        PrintResult(path.c_str(), nCode);
        nRefused += nCode != ZRC_SUCCESS;
    }
    return nRefused;
}

int CommandCheck(const std::vector<std::string>& files)
{
    if (files.empty())
        throw std::invalid_argument("check needs at least one file");
    Session session;
    return CheckFiles(session, files) == 0 ? 0 : 1;
}

struct ScoreOptions
{
    std::string mode = "both";
    std::string security;
    bool bNoMovement = false;
    bool bCsv = false;
    std::vector<std::string> files;
};

// Loads the capture and runs the detection; returns its code.
int32_t ScoreCapture(Session& session, const ScoreOptions& options, double& dScore)
{
    const std::string& current = options.files[0];
    const std::string& backlight = options.files.size() == 3 ? options.files[1] : current;
    const std::string& dark = options.files.size() == 3 ? options.files[2] : current;
    const std::string* paths[3] = {&current, &backlight, &dark};
    for (int32_t nIndex = 0; nIndex < 3; ++nIndex)
    {
        BmpFile file = ReadBmpFile(*paths[nIndex]);
        const int32_t nCode =
            SentivoSetImage(session.Handle(), nIndex, file.Block(), file.BlockSize());
        if (nCode != ZRC_SUCCESS)
            return nCode;
    }
    dScore = 0.0;
    if (options.mode == "finger")
        return SentivoDetectFinger(session.Handle());
    if (options.mode == "fake")
        return SentivoDetectFake(session.Handle(), &dScore);
    return SentivoEvaluateLiveliness(session.Handle(), &dScore);
}

int CommandScore(const ScoreOptions& options)
{
    if (options.files.size() != 1 && options.files.size() != 3)
        throw std::invalid_argument("score needs CURRENT or CURRENT BACKLIGHT DARK");
    if (options.mode != "finger" && options.mode != "fake" && options.mode != "both")
        throw std::invalid_argument("--mode must be finger, fake or both");
    Session session;
    if (!options.security.empty())
        session.SetProperty("nSecurityLevel", options.security);
    if (options.bNoMovement)
        session.SetProperty("bMovementDetection", "False");
    double dScore = 0.0;
    const int32_t nCode = ScoreCapture(session, options, dScore);
    if (options.bCsv)
        std::printf("%s,%d,%.6f\n", options.files[0].c_str(), nCode, dScore);
    else
        std::printf("%s: code %d (%s), score %.3f\n", options.files[0].c_str(), nCode,
                    SentivoGetErrorDescriptionA(nCode), dScore);
    return nCode == ZRC_SUCCESS ? 0 : 2;
}

int CommandThreshold(const std::vector<std::string>& args)
{
    if (args.size() != 2 || (args[0] != "--far" && args[0] != "--frr" && args[0] != "--score"))
        throw std::invalid_argument("threshold needs --far X, --frr X or --score X");
    Session session;
    const char* szName = args[0] == "--far"   ? "dQueryFAR"
                         : args[0] == "--frr" ? "dQueryFRR"
                                              : "dQueryScore";
    session.SetProperty(szName, args[1]);
    std::printf("dQueryScore %s\ndQueryFAR %s\ndQueryFRR %s\n",
                session.Property("dQueryScore").c_str(), session.Property("dQueryFAR").c_str(),
                session.Property("dQueryFRR").c_str());
    return 0;
}

int CommandDemo(const std::vector<std::string>& files)
{
    if (files.empty())
        throw std::invalid_argument("demo needs the sample files");
    Session session;
    std::printf("libsentivo %s\n\nSentivoSetImage on each sample:\n",
                session.Property("Version").c_str());
    const int nRefused = CheckFiles(session, files);
    std::printf("\nEvaluation of each sample (the capture stands in for backlight and dark):\n");
    for (const std::string& path : files)
    {
        ScoreOptions options;
        options.files = {path};
        double dScore = 0.0;
        const int32_t nCode = ScoreCapture(session, options, dScore);
        std::printf("%-48s %6d  score %7.3f  %s\n", path.c_str(), nCode, dScore,
                    SentivoGetErrorDescriptionA(nCode));
    }
    return nRefused == 0 ? 0 : 1;
}

struct FeatureOptions
{
    std::vector<std::string> files; // current, backlight, dark
    SentivoTool::RunSettings settings;
    std::string previous;
    std::string outDir;
};

FeatureOptions ParseFeatureOptions(const std::vector<std::string>& args, bool bInspect)
{
    FeatureOptions options;
    for (size_t i = 0; i < args.size(); ++i)
    {
        auto value = [&]() -> const std::string&
        {
            if (++i >= args.size())
                throw std::invalid_argument(args[i - 1] + " needs a value");
            return args[i];
        };
        if (args[i] == "--security-level")
        {
            const std::string& level = value();
            char* pEnd = nullptr;
            const long nLevel = std::strtol(level.c_str(), &pEnd, 10);
            if (level.empty() || *pEnd != '\0' || nLevel < INT32_MIN || nLevel > INT32_MAX)
                throw std::invalid_argument("--security-level needs an integer, not '" + level + "'");
            options.settings.nSecurityLevel = static_cast<int32_t>(nLevel);
        }
        else if (args[i] == "--no-movement")
            options.settings.bMovementDetection = false;
        else if (args[i] == "--repeat" || args[i] == "--previous")
        {
            if (options.settings.ePrevious != SentivoTool::RunSettings::eNone)
                throw std::invalid_argument("--repeat and --previous exclude each other");
            options.settings.ePrevious = args[i] == "--repeat" ? SentivoTool::RunSettings::eSame
                                                               : SentivoTool::RunSettings::eOther;
            if (args[i] == "--previous")
                options.previous = value();
        }
        else if (bInspect && args[i] == "--out")
            options.outDir = value();
        else if (args[i].size() > 1 && args[i][0] == '-')
            throw std::invalid_argument("unknown option '" + args[i] + "'");
        else
            options.files.push_back(args[i]);
    }
    if (options.files.size() != 3)
        throw std::invalid_argument("needs CURRENT BACKLIGHT DARK");
    if (bInspect && options.outDir.empty())
        throw std::invalid_argument("inspect needs --out DIR");
    return options;
}

SentivoTool::CaptureResult JudgeCapture(const FeatureOptions& options)
{
    using SentivoTool::ReadBmpFile;
    SentivoTool::BmpFile current = ReadBmpFile(options.files[0]);
    SentivoTool::BmpFile backlight = ReadBmpFile(options.files[1]);
    SentivoTool::BmpFile dark = ReadBmpFile(options.files[2]);
    SentivoTool::BmpFile previous;
    if (!options.previous.empty())
        previous = ReadBmpFile(options.previous);
    SentivoTool::CaptureResult result =
        SentivoTool::RunCapture(current, backlight, dark, options.settings, &previous);
    if (result.nRefusedImage >= 0)
    {
        const std::string& path = result.nRefusedImage == 3 ? options.previous
                                                             : options.files[result.nRefusedImage];
        throw std::runtime_error(path + ": refused by the image check: " +
                                 std::to_string(result.nCode) + " " +
                                 SentivoGetErrorDescriptionA(result.nCode));
    }
    return result;
}

int CommandFeatures(const std::vector<std::string>& args)
{
    const SentivoTool::CaptureResult result = JudgeCapture(ParseFeatureOptions(args, false));
    std::fputs(SentivoTool::ResultJson(result).c_str(), stdout);
    return 0;
}

int CommandInspect(const std::vector<std::string>& args)
{
    const FeatureOptions options = ParseFeatureOptions(args, true);
    const SentivoTool::CaptureResult result = JudgeCapture(options);
    if (::mkdir(options.outDir.c_str(), 0777) != 0 && errno != EEXIST)
        throw std::runtime_error("cannot create " + options.outDir);
    const std::pair<const char*, const ClImage*> images[] = {{"prepared.png", &result.prepared},
                                                             {"fast_mask.png", &result.fastMask},
                                                             {"final_mask.png", &result.finalMask},
                                                             {"masked.png", &result.masked}};
    for (const auto& [szName, pImage] : images)
        if (pImage->Data() != nullptr)
            SentivoTool::WriteGreyPng(options.outDir + "/" + szName, *pImage);
    const std::string path = options.outDir + "/result.json";
    FILE* pFile = std::fopen(path.c_str(), "w");
    if (pFile == nullptr)
        throw std::runtime_error("cannot write " + path);
    const std::string json = SentivoTool::ResultJson(result);
    const bool bWritten = std::fputs(json.c_str(), pFile) >= 0;
    if (std::fclose(pFile) != 0 || !bWritten)
        throw std::runtime_error("cannot write " + path);
    return 0;
}

int Dispatch(const std::vector<std::string>& args)
{
    if (args.empty() || args[0] == "-h" || args[0] == "--help" || args[0] == "help")
    {
        std::fputs(kUsage, stdout);
        return args.empty() ? 64 : 0;
    }
    const std::string& command = args[0];
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (command == "version")
        return CommandVersion();
    if (command == "check")
        return CommandCheck(rest);
    if (command == "threshold")
        return CommandThreshold(rest);
    if (command == "demo")
        return CommandDemo(rest);
    if (command == "features")
        return CommandFeatures(rest);
    if (command == "inspect")
        return CommandInspect(rest);
    if (command == "score")
    {
        ScoreOptions options;
        for (size_t i = 0; i < rest.size(); ++i)
        {
            auto value = [&]() -> const std::string&
            {
                if (++i >= rest.size())
                    throw std::invalid_argument(rest[i - 1] + " needs a value");
                return rest[i];
            };
            if (rest[i] == "--mode")
                options.mode = value();
            else if (rest[i] == "--security")
                options.security = value();
            else if (rest[i] == "--no-movement")
                options.bNoMovement = true;
            else if (rest[i] == "--csv")
                options.bCsv = true;
            else
                options.files.push_back(rest[i]);
        }
        return CommandScore(options);
    }
    throw std::invalid_argument("unknown command '" + command + "'");
}

} // namespace

int main(int argc, char** argv)
{
    try
    {
        return Dispatch(std::vector<std::string>(argv + 1, argv + argc));
    }
    catch (const std::invalid_argument& e)
    {
        std::fprintf(stderr, "sentivo: %s\n\n%s", e.what(), kUsage);
        return 64;
    }
    catch (const std::exception& e)
    {
        std::fprintf(stderr, "sentivo: %s\n", e.what());
        return 1;
    }
}
