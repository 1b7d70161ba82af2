// The commands that judge one capture (score, features, inspect) and demo,
// and the help of every command.
#include <nlohmann/json.hpp>
#include <png.h>

#include "BmpFile.h"
#include "ToolRun.h"
#include "sentivo/sentivo.h"

using nlohmann::json;

namespace
{
struct Png
{
    png_image image{};
    std::vector<uint8_t> pixels; // rows top first
    std::string file;

    // Whether the file holds an uncompressed text chunk of that keyword and text.
    bool HasText(const std::string& key, const std::string& text) const
    {
        const size_t n = key.size() + 1 + text.size(); // the chunk's length, big-endian
        const std::string chunk = {char(n >> 24), char(n >> 16), char(n >> 8), char(n)};
        return file.find(chunk + "tEXt" + key + '\0' + text) != std::string::npos;
    }

    // Columns [nLeft, nLeft + 320) of every row.
    std::vector<uint8_t> Panel(uint32_t nLeft) const
    {
        std::vector<uint8_t> panel;
        for (size_t n = nLeft; n < pixels.size(); n += image.width)
            panel.insert(panel.end(), &pixels[n], &pixels[n] + 320);
        return panel;
    }
};

Png ReadPng(const std::string& path)
{
    Png png;
    png.image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_file(&png.image, path.c_str()))
        return png;
    EXPECT_EQ(png.image.format, PNG_FORMAT_GRAY) << path << " is not 8-bit grey";
    png.pixels.resize(PNG_IMAGE_SIZE(png.image));
    EXPECT_TRUE(png_image_finish_read(&png.image, nullptr, png.pixels.data(), 0, nullptr)) << path;
    png.file = ReadFileText(path);
    return png;
}

} // namespace

TEST(CaptureCommands, ScoreJudgesAStillFingerAndPreviousShowsAMovingOne)
{
    const auto files = CaptureFiles(kSourceDir + "/tests/conformance/synthetic/live_a");
    const ToolRun score = RunSentivo({"score", files[0], files[1], files[2], "--json"});
    ASSERT_EQ(score.nStatus, 0) << score.err;
    const json result = json::parse(score.out);
    const int nCode = result.at("code").get<int>();
    EXPECT_NE(nCode, ZRC_ERROR_BITMAP_NO_FINGER);
    EXPECT_EQ(result.at("message"), SentivoGetErrorDescriptionA(nCode));
    EXPECT_EQ(result.at("score").is_null(), nCode != 0);
    EXPECT_EQ(result.size(), 3u);
    // features with --repeat agrees, and so does a new handle without the movement test.
    const ToolRun still = RunSentivo({"features", "--repeat", files[0], files[1], files[2]});
    EXPECT_EQ(json::parse(still.out).at("code"), nCode);
    const ToolRun off = RunSentivo({"score", "--no-movement", files[0], files[1], files[2]});
    EXPECT_EQ(off.out.rfind("code " + std::to_string(nCode) + "\nmessage ", 0), 0u) << off.out;
    // The moving sample after its previous capture.
    const std::string moving = kSamples + "/live/moving_finger";
    std::vector<std::string> args = CaptureFiles(moving);
    args.insert(args.begin(), {"features", "--previous", moving + "/previous.bmp"});
    EXPECT_EQ(json::parse(RunSentivo(args).out).at("finger_code"), ZRC_ERROR_BITMAP_NO_FINGER);
}

TEST(CaptureCommands, OverviewShowsTheFiveImagesAsTheOtherPngsDo)
{
    const std::string dir = ScratchDir("inspect") + "/deeper/out";
    const auto files = CaptureFiles(kSamples + "/live/print_arch");
    const ToolRun run =
        RunSentivo({"inspect", "--repeat", files[0], files[1], files[2], "--out", dir});
    ASSERT_EQ(run.nStatus, 0) << run.err;
    const json result = json::parse(ReadFileText(dir + "/result.json"));
    ASSERT_EQ(result.at("finger_code"), 0) << "the print's finger half passes";
    const Png overview = ReadPng(dir + "/overview.png");
    ASSERT_EQ(overview.image.width, 5u * 320u + 4u * 8u);
    ASSERT_EQ(overview.image.height, 480u);
    // Panel 1 is the capture itself, displayed: the bitmap's last row on top.
    const SentivoTool::BmpFile capture = SentivoTool::ReadBmpFile(files[0]);
    std::vector<uint8_t> shown;
    for (int y = 479; y >= 0; --y)
        shown.insert(shown.end(), &capture.data[1078 + y * 320], &capture.data[1398 + y * 320]);
    EXPECT_TRUE(overview.Panel(0) == shown);
    const char* aszPanels[] = {"prepared.png", "fast_mask.png", "final_mask.png", "masked.png"};
    for (uint32_t p = 0; p < 4; ++p)
        EXPECT_TRUE(overview.Panel((p + 1) * 328) == ReadPng(dir + "/" + aszPanels[p]).pixels)
            << aszPanels[p];
    EXPECT_EQ(overview.pixels[320], 64); // a dark band between the panels
    const int nCode = result.at("code").get<int>();
    EXPECT_TRUE(overview.HasText("Outcome",
                                 std::to_string(nCode) + " " + SentivoGetErrorDescriptionA(nCode)));
    EXPECT_TRUE(overview.HasText("Finger", "0 finger found"));
    EXPECT_EQ(overview.HasText("Score", "none"), result.at("score").is_null());
    EXPECT_TRUE(overview.HasText("Missing", "none"));
    // A run that stops at the movement test made only the capture and its copy.
    const std::string moved = ScratchDir("inspect_moved");
    ASSERT_EQ(RunSentivo({"inspect", files[0], files[1], files[2], "--out", moved}).nStatus, 0);
    const Png partial = ReadPng(moved + "/overview.png");
    EXPECT_TRUE(partial.HasText("Missing", "fast mask, final mask, masked image"));
    EXPECT_TRUE(partial.HasText("Finger", "-15 Finger is moving"));
    EXPECT_EQ(partial.pixels[3 * 328 + 5], 128);
}

TEST(CaptureCommands, DemoJudgesEverySampleAsAScannerWould)
{
    const ToolRun demo = RunSentivo({"demo", kSamples});
    ASSERT_EQ(demo.nStatus, 0) << demo.err;
    const std::vector<std::string> lines = Lines(demo.out);
    ASSERT_GE(lines.size(), 12u);
    EXPECT_NE(lines[0].find("false acceptance rate of 1 %: score 97."), std::string::npos);
    size_t nRows = 0;
    for (const std::string& line : lines)
        if (line.rfind("live/", 0) == 0 || line.rfind("fake/", 0) == 0)
        {
            ++nRows; // only the sample with a capture before it moved
            EXPECT_EQ(line.find(" -15  Finger is moving") != std::string::npos,
                      line.rfind("live/moving_finger ", 0) == 0)
                << line;
        }
    EXPECT_EQ(nRows, 9u);
}

TEST(CaptureCommands, EveryCommandHasHelpAndTheOverviewListsThem)
{
    // An unknown option of each command is a case of bad_input.sh.
    const ToolRun overview = RunSentivo({"--help"});
    ASSERT_EQ(overview.nStatus, 0);
    const std::string manual = ReadFileText(kSourceDir + "/tools/sentivo.1");
    ASSERT_EQ(SentivoTool::Commands().size(), 9u);
    for (const std::string command : {"version", "check", "score", "batch", "evaluate", "threshold",
                                      "features", "inspect", "demo"})
    {
        EXPECT_NE(overview.out.find("\n  " + command + " "), std::string::npos) << command;
        EXPECT_NE(manual.find("\n.SS " + command + "\n"), std::string::npos)
            << "the manual page lacks " << command;
        const ToolRun help = RunSentivo({command, "--help"});
        EXPECT_TRUE(help.nStatus == 0 && help.err.empty()) << command;
        EXPECT_EQ(help.out.rfind("usage: sentivo " + command, 0), 0u) << command;
        EXPECT_EQ(RunSentivo({"help", command}).out, help.out);
    }
}
