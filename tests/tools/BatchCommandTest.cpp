// sentivo batch end to end on the bundled samples and on broken captures.
#include <nlohmann/json.hpp>

#include "BmpFile.h"
#include "ToolRun.h"
#include "sentivo/sentivo.h"

namespace fs = std::filesystem;
using nlohmann::json;

TEST(BatchCommand, LinesFollowTheInputOrderWhateverTheThreadCountAndHandleReuse)
{
    const std::string dir = ScratchDir("order");
    const ToolRun one =
        RunSentivo({"batch", "--threads", "1", "--output", dir + "/one.csv", kSamples});
    const ToolRun three =
        RunSentivo({"batch", "--threads=3", "--quiet", "--output", dir + "/three.csv", kSamples});
    ASSERT_EQ(one.nStatus + three.nStatus, 0) << one.err << three.err;
    EXPECT_EQ(one.err, ""); // no progress bar when standard error is no terminal
    const std::string text = ReadFileText(dir + "/one.csv");
    EXPECT_EQ(text, ReadFileText(dir + "/three.csv"));
    const std::vector<std::string> lines = Lines(text);
    ASSERT_EQ(lines.size(), 10u);
    EXPECT_EQ(lines[0], "current,label,finger_code,message,score");
    const char* aszOrder[] = {"fake/no_falloff",    "fake/smooth_ridges", "fake/smooth_ridges_2",
                              "live/moving_finger", "live/print_arch",    "live/print_rolled",
                              "live/print_thumb",   "live/print_whorl",   "live/synthetic_live"};
    // Batch reuses a handle per thread; score judges each capture alone on a
    // new handle as a still finger. They must agree, and none may move.
    for (size_t i = 0; i < 9; ++i)
    {
        const std::string folder = kSamples + "/" + aszOrder[i];
        std::vector<std::string> args = CaptureFiles(folder);
        args.insert(args.begin(), {"score", "--json"});
        const json result = json::parse(RunSentivo(args).out);
        EXPECT_NE(result.at("code"), ZRC_ERROR_BITMAP_NO_FINGER) << folder;
        const std::string& line = lines[i + 1];
        const std::string start =
            args[2] + "," + std::string(aszOrder[i], 4) + "," + result.at("code").dump() + ",";
        EXPECT_EQ(line.rfind(start, 0), 0u) << line;
        const std::string score = line.substr(line.rfind(',') + 1);
        EXPECT_EQ(score.empty() ? json() : json(std::stod(score)), result.at("score")) << line;
    }
}

TEST(BatchCommand, ResumeKeepsTheWholeLinesAndJudgesTheRest)
{
    const std::string dir = ScratchDir("resume");
    for (const std::string format : {"csv", "jsonl"})
    {
        const std::string full = dir + "/full." + format, part = dir + "/part." + format;
        auto batch = [&](const std::string& out, bool bResume)
        {
            return RunSentivo({"batch", bResume ? "--resume" : "--quiet", "--format", format,
                               "--features", "--output", out, kSamples})
                .nStatus;
        };
        ASSERT_EQ(batch(full, false), 0);
        const std::string text = ReadFileText(full);
        // Cut after four whole lines and half of the fifth, as a killed run
        // leaves it. The kept lines (fake samples come first) are marked live,
        // so that a capture judged again would show.
        size_t nCut = 0;
        for (int i = 0; i < 4; ++i)
            nCut = text.find('\n', nCut) + 1;
        std::string kept = text.substr(0, nCut);
        const std::string from = format == "csv" ? ",fake," : "\"label\": \"fake\"";
        const std::string to = format == "csv" ? ",live," : "\"label\": \"live\"";
        for (size_t n = kept.find(from); n != std::string::npos; n = kept.find(from, n))
            kept.replace(n, from.size(), to);
        ASSERT_NE(kept, text.substr(0, nCut));
        WriteFileText(part, kept + text.substr(nCut, 20));
        // Twice: the second run has nothing left to judge and leaves the file.
        for (int nRun = 0; nRun < 2; ++nRun)
        {
            ASSERT_EQ(batch(part, true), 0);
            EXPECT_EQ(ReadFileText(part), kept + text.substr(nCut)) << format << nRun;
        }
    }
    // A missing output file is a fresh start.
    const std::string fresh = dir + "/new.csv";
    ASSERT_EQ(RunSentivo({"batch", "--resume", "--output", fresh, kSamples + "/fake"}).nStatus, 0);
    EXPECT_EQ(Lines(ReadFileText(fresh)).size(), 4u);
}

TEST(BatchCommand, UnreadableCapturesGetTheirOwnLineAndTheBatchGoesOn)
{
    const std::string dir = ScratchDir("unreadable");
    for (const char* szName : {"live/a_good", "live/b_missing", "fake/e_small", "fake/g_empty"})
    {
        fs::create_directories(dir + "/" + szName);
        fs::copy(kSamples + "/live/print_arch", dir + "/" + szName);
    }
    fs::remove(dir + "/live/b_missing/dark.bmp");
    SentivoTool::WriteGreyBmp(dir + "/fake/e_small/dark.bmp", 100, 100,
                              std::vector<uint8_t>(100 * 100, 128));
    WriteFileText(dir + "/fake/g_empty/backlight.bmp", "");
    fs::create_directories(dir + "/fake/f_folder/current.bmp"); // a folder is no capture
    const ToolRun run = RunSentivo(
        {"batch", "--threads", "2", "--format", "jsonl", "--output", dir + "/out.jsonl", dir});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_EQ(run.err, "");
    const std::vector<std::string> lines = Lines(ReadFileText(dir + "/out.jsonl"));
    // Fake folders sort first; each line names the unusable file, with its
    // code (0: judged as any other, -1: some refusal).
    const std::pair<std::string, int> expected[] = {
        {"fake/e_small/dark.bmp", -1},
        {"fake/g_empty/backlight.bmp", ZRC_ERROR_READ_FAIL},
        {"live/a_good/", 0},
        {"live/b_missing/dark.bmp", ZRC_ERROR_FILE_OPEN_FAIL}};
    ASSERT_EQ(lines.size(), 4u) << ReadFileText(dir + "/out.jsonl");
    for (size_t i = 0; i < lines.size(); ++i)
    {
        const auto& [bad, nExpected] = expected[i];
        const json object = json::parse(lines[i]);
        EXPECT_EQ(object.at("current"), dir + "/" + bad.substr(0, bad.rfind('/')) + "/current.bmp");
        const int nCode = object.at("finger_code").get<int>();
        const std::string message = object.at("message").get<std::string>();
        EXPECT_EQ(object.at("score").is_null(), nCode != 0) << lines[i];
        EXPECT_TRUE(nExpected == 0 || (nExpected == -1 ? nCode < 0 : nCode == nExpected))
            << lines[i];
        if (nExpected == 0)
            EXPECT_EQ(message, SentivoGetErrorDescriptionA(nCode));
        else
            EXPECT_NE(message.find(dir + "/" + bad), std::string::npos) << lines[i];
    }
}
