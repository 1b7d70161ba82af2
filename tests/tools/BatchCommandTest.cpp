// sentivo batch end to end on the bundled samples and on broken captures.
#include <nlohmann/json.hpp>

#include "BmpFile.h"
#include "ToolRun.h"
#include "sentivo/sentivo.h"

namespace fs = std::filesystem;

namespace
{
const std::string kSamples = SourceDir() + "/samples";

void CopyCapture(const std::string& from, const std::string& to)
{
    fs::create_directories(to);
    for (const char* szName : {"current.bmp", "backlight.bmp", "dark.bmp"})
        fs::copy_file(from + "/" + szName, to + "/" + szName, fs::copy_options::overwrite_existing);
}
} // namespace

TEST(BatchCommand, LinesFollowTheInputOrderWhateverTheThreadCount)
{
    const std::string dir = ScratchDir("order");
    const ToolRun one =
        RunSentivo({"batch", "--threads", "1", "--output", dir + "/one.csv", kSamples});
    const ToolRun three =
        RunSentivo({"batch", "--threads=3", "--quiet", "--output", dir + "/three.csv", kSamples});
    ASSERT_EQ(one.nStatus, 0) << one.err;
    ASSERT_EQ(three.nStatus, 0) << three.err;
    EXPECT_EQ(one.err, ""); // no progress bar when standard error is no terminal
    const std::string text = ReadFileText(dir + "/one.csv");
    EXPECT_EQ(text, ReadFileText(dir + "/three.csv"));

    const std::vector<std::string> lines = Lines(text);
    ASSERT_EQ(lines.size(), 10u); // header and the nine samples
    EXPECT_EQ(lines[0], "current,label,finger_code,message,score");
    const char* aszOrder[] = {"fake/no_falloff",    "fake/smooth_ridges", "fake/smooth_ridges_2",
                              "live/moving_finger", "live/print_arch",    "live/print_rolled",
                              "live/print_thumb",   "live/print_whorl",   "live/synthetic_live"};
    for (size_t i = 0; i < 9; ++i)
    {
        const std::string& line = lines[i + 1];
        const std::string current = kSamples + "/" + aszOrder[i] + "/current.bmp";
        EXPECT_EQ(line.rfind(current + "," + std::string(aszOrder[i], 4) + ",", 0), 0u) << line;
    }
}

TEST(BatchCommand, ResumeKeepsTheWholeLinesAndJudgesTheRest)
{
    const std::string dir = ScratchDir("resume");
    for (const char* szFormat : {"csv", "jsonl"})
    {
        const std::string full = dir + "/full." + szFormat;
        const std::string part = dir + "/part." + szFormat;
        ASSERT_EQ(
            RunSentivo({"batch", "--format", szFormat, "--features", "--output", full, kSamples})
                .nStatus,
            0);
        const std::string text = ReadFileText(full);
        // Cut after four whole lines and half of the fifth, as a killed run leaves it.
        size_t nCut = 0;
        for (int i = 0; i < 4; ++i)
            nCut = text.find('\n', nCut) + 1;
        // The kept lines are marked (the fake samples come first and become
        // "live"), so that a capture judged again would show.
        std::string kept = text.substr(0, nCut);
        for (const std::string& from : {std::string(",fake,"), std::string("\"label\": \"fake\"")})
            for (size_t n = kept.find(from); n != std::string::npos; n = kept.find(from, n))
                kept.replace(n, from.size(), from == ",fake," ? ",live," : "\"label\": \"live\"");
        ASSERT_NE(kept, text.substr(0, nCut));
        WriteFileText(part, kept + text.substr(nCut, 20));

        const ToolRun run = RunSentivo(
            {"batch", "--format", szFormat, "--features", "--resume", "--output", part, kSamples});
        ASSERT_EQ(run.nStatus, 0) << run.err;
        EXPECT_EQ(ReadFileText(part), kept + text.substr(nCut)) << szFormat;
        // Nothing left to judge: the file stays as it is.
        ASSERT_EQ(RunSentivo({"batch", "--format", szFormat, "--features", "--resume", "--output",
                              part, kSamples})
                      .nStatus,
                  0);
        EXPECT_EQ(ReadFileText(part), kept + text.substr(nCut));
    }
    // A missing output file is a fresh start.
    ASSERT_EQ(
        RunSentivo({"batch", "--resume", "--output", dir + "/new.csv", kSamples + "/fake"}).nStatus,
        0);
    EXPECT_EQ(Lines(ReadFileText(dir + "/new.csv")).size(), 4u);
    // Resuming with another format or another choice of features would mix lines.
    const ToolRun format = RunSentivo(
        {"batch", "--format", "jsonl", "--resume", "--output", dir + "/new.csv", kSamples});
    EXPECT_EQ(format.nStatus, 1);
    EXPECT_EQ(format.err, "sentivo batch: " + dir +
                              "/new.csv: holds output of another format than jsonl; resume with "
                              "its own --format\n");
    const ToolRun features =
        RunSentivo({"batch", "--features", "--resume", "--output", dir + "/new.csv", kSamples});
    EXPECT_EQ(features.nStatus, 1);
    EXPECT_NE(features.err.find("lacks the features"), std::string::npos) << features.err;
}

TEST(BatchCommand, UnreadableCapturesGetTheirOwnLineAndTheBatchGoesOn)
{
    const std::string dir = ScratchDir("unreadable");
    const std::string good = kSamples + "/live/print_arch";
    CopyCapture(good, dir + "/live/a_good");
    CopyCapture(good, dir + "/live/b_missing");
    fs::remove(dir + "/live/b_missing/dark.bmp");
    CopyCapture(good, dir + "/fake/e_small");
    SentivoTool::WriteGreyBmp(dir + "/fake/e_small/dark.bmp", 100, 100,
                              std::vector<uint8_t>(100 * 100, 128));
    CopyCapture(good, dir + "/fake/f_folder");
    fs::remove(dir + "/fake/f_folder/current.bmp");
    fs::create_directories(dir + "/fake/f_folder/current.bmp");
    CopyCapture(good, dir + "/fake/g_empty");
    WriteFileText(dir + "/fake/g_empty/backlight.bmp", "");

    const ToolRun run = RunSentivo(
        {"batch", "--threads", "2", "--format", "jsonl", "--output", dir + "/out.jsonl", dir});
    EXPECT_EQ(run.nStatus, 1);
    EXPECT_EQ(run.err, "");
    const std::vector<std::string> lines = Lines(ReadFileText(dir + "/out.jsonl"));
    // Fake folders sort before live ones; the folder named current.bmp is no
    // capture. Truncated and foreign files are refused as by score (bad_input.sh).
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"fake/e_small", "fake/e_small/dark.bmp"},
        {"fake/g_empty", "fake/g_empty/backlight.bmp"},
        {"live/a_good", ""},
        {"live/b_missing", "live/b_missing/dark.bmp"}};
    ASSERT_EQ(lines.size(), expected.size()) << ReadFileText(dir + "/out.jsonl");
    for (size_t i = 0; i < lines.size(); ++i)
    {
        const nlohmann::json object = nlohmann::json::parse(lines[i]);
        EXPECT_EQ(object.at("current"), dir + "/" + expected[i].first + "/current.bmp");
        const int nCode = object.at("finger_code").get<int>();
        const std::string message = object.at("message").get<std::string>();
        EXPECT_EQ(object.at("score").is_null(), nCode != 0) << lines[i];
        if (expected[i].second.empty())
        {
            // The good capture is judged as any other.
            EXPECT_EQ(message, SentivoGetErrorDescriptionA(nCode));
            continue;
        }
        EXPECT_LT(nCode, 0) << lines[i];
        EXPECT_NE(message.find(dir + "/" + expected[i].second), std::string::npos) << lines[i];
    }
    EXPECT_EQ(nlohmann::json::parse(lines[3]).at("finger_code"), ZRC_ERROR_FILE_OPEN_FAIL);
    EXPECT_EQ(nlohmann::json::parse(lines[1]).at("finger_code"), ZRC_ERROR_READ_FAIL);

    // Only the good capture: every capture judged, exit 0.
    EXPECT_EQ(RunSentivo({"batch", "--output", dir + "/good.csv", dir + "/live/a_good"}).nStatus,
              0);
}

TEST(BatchCommand, AHandleReusedForCaptureAfterCaptureGivesWhatANewHandleGives)
{
    // batch judges all captures of a thread on one handle; features on a new
    // handle each time. Both judge a still finger.
    const std::string out = ScratchDir("reuse") + "/all.jsonl";
    ASSERT_EQ(RunSentivo({"batch", "--threads", "1", "--features", "--format", "jsonl", "--output",
                          out, kSamples})
                  .nStatus,
              0);
    for (const std::string& line : Lines(ReadFileText(out)))
    {
        const nlohmann::json batch = nlohmann::json::parse(line);
        const std::string current = batch.at("current");
        const std::string folder =
            current.substr(0, current.size() - std::string("current.bmp").size());
        const ToolRun run = RunSentivo(
            {"features", "--repeat", current, folder + "backlight.bmp", folder + "dark.bmp"});
        ASSERT_EQ(run.nStatus, 0) << run.err;
        const nlohmann::json alone = nlohmann::json::parse(run.out);
        // Judged as a still finger: none is moving, as on a new handle each would be.
        EXPECT_NE(batch.at("finger_code"), ZRC_ERROR_BITMAP_NO_FINGER) << current;
        EXPECT_EQ(batch.at("finger_code"), alone.at("code")) << current;
        EXPECT_EQ(batch.at("score"), alone.at("score")) << current;
        if (alone.at("features").is_null())
        {
            EXPECT_TRUE(batch.at("features").is_null()) << current;
            continue;
        }
        ASSERT_EQ(batch.at("features").size(), 42u);
        for (size_t i = 0; i < 42; ++i)
        {
            if (i < alone.at("features").size())
                EXPECT_EQ(batch.at("features")[i], alone.at("features")[i]) << current << " " << i;
            else
                EXPECT_TRUE(batch.at("features")[i].is_null()) << current << " " << i;
        }
    }
}
