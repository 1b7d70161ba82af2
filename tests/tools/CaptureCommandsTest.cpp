// The commands that judge one capture (score, features, inspect) and demo,
// and the help of every command.
#include <cstdio>
#include <memory>

#include <nlohmann/json.hpp>
#include <png.h>

#include "BmpFile.h"
#include "ToolRun.h"
#include "sentivo/sentivo.h"

namespace
{
const std::string kLive = SourceDir() + "/tests/conformance/synthetic/live_a";

std::vector<std::string> Files(const std::string& folder)
{
    return {folder + "/current.bmp", folder + "/backlight.bmp", folder + "/dark.bmp"};
}

struct Png
{
    uint32_t nWidth = 0, nHeight = 0;
    std::vector<uint8_t> pixels; // rows top first
    std::map<std::string, std::string> texts;
};

Png ReadPng(const std::string& path)
{
    Png png;
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (!file)
        return png;
    png_structp read = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(read);
    if (setjmp(png_jmpbuf(read)))
    {
        png_destroy_read_struct(&read, &info, nullptr);
        return Png();
    }
    png_init_io(read, file.get());
    png_read_info(read, info);
    png.nWidth = png_get_image_width(read, info);
    png.nHeight = png_get_image_height(read, info);
    EXPECT_EQ(png_get_color_type(read, info), PNG_COLOR_TYPE_GRAY);
    EXPECT_EQ(png_get_bit_depth(read, info), 8);
    png.pixels.resize(static_cast<size_t>(png.nWidth) * png.nHeight);
    for (uint32_t y = 0; y < png.nHeight; ++y)
        png_read_row(read, png.pixels.data() + static_cast<size_t>(y) * png.nWidth, nullptr);
    png_read_end(read, info);
    png_textp pTexts = nullptr;
    const int nTexts = png_get_text(read, info, &pTexts, nullptr);
    for (int i = 0; i < nTexts; ++i)
        png.texts[pTexts[i].key] = pTexts[i].text;
    png_destroy_read_struct(&read, &info, nullptr);
    return png;
}

// Whether columns [nLeft, nLeft + width) of the overview hold the image.
bool PanelIs(const Png& overview, uint32_t nLeft, const Png& image)
{
    if (image.nHeight != overview.nHeight || image.nWidth == 0)
        return false;
    for (uint32_t y = 0; y < image.nHeight; ++y)
        if (!std::equal(image.pixels.begin() + y * image.nWidth,
                        image.pixels.begin() + (y + 1) * image.nWidth,
                        overview.pixels.begin() + y * overview.nWidth + nLeft))
            return false;
    return true;
}
} // namespace

TEST(CaptureCommands, ScoreJudgesAStillFingerAndPreviousShowsAMovingOne)
{
    const std::vector<std::string> files = Files(kLive);
    const ToolRun score = RunSentivo({"score", files[0], files[1], files[2], "--json"});
    ASSERT_EQ(score.nStatus, 0) << score.err;
    const nlohmann::json result = nlohmann::json::parse(score.out);
    const int nCode = result.at("code").get<int>();
    EXPECT_NE(nCode, ZRC_ERROR_BITMAP_NO_FINGER);
    EXPECT_EQ(result.at("message"), SentivoGetErrorDescriptionA(nCode));
    EXPECT_EQ(result.at("score").is_null(), nCode != 0);
    EXPECT_EQ(result.size(), 3u);

    // features with --repeat and score agree on the still finger.
    const ToolRun still = RunSentivo({"features", "--repeat", files[0], files[1], files[2]});
    EXPECT_EQ(nlohmann::json::parse(still.out).at("code"), nCode);
    // Without the movement test the new handle agrees as well.
    const ToolRun off = RunSentivo({"score", "--no-movement", files[0], files[1], files[2]});
    EXPECT_EQ(off.out.rfind("code " + std::to_string(nCode) + "\nmessage ", 0), 0u) << off.out;
    // The moving sample after its previous capture.
    const std::string moving = SourceDir() + "/samples/live/moving_finger";
    const ToolRun moved =
        RunSentivo({"features", "--previous", moving + "/previous.bmp", moving + "/current.bmp",
                    moving + "/backlight.bmp", moving + "/dark.bmp"});
    EXPECT_EQ(nlohmann::json::parse(moved.out).at("finger_code"), ZRC_ERROR_BITMAP_NO_FINGER);
}

TEST(CaptureCommands, OverviewShowsTheFiveImagesAsTheOtherPngsDo)
{
    const std::string dir = ScratchDir("inspect") + "/deeper/out";
    const std::string sample = SourceDir() + "/samples/live/print_arch";
    const std::vector<std::string> files = Files(sample);
    const ToolRun run =
        RunSentivo({"inspect", "--repeat", files[0], files[1], files[2], "--out", dir});
    ASSERT_EQ(run.nStatus, 0) << run.err;
    const nlohmann::json result = nlohmann::json::parse(ReadFileText(dir + "/result.json"));
    ASSERT_EQ(result.at("finger_code"), 0) << "the print's finger half passes";

    const Png overview = ReadPng(dir + "/overview.png");
    ASSERT_EQ(overview.nWidth, 5u * 320u + 4u * 8u);
    ASSERT_EQ(overview.nHeight, 480u);
    // Panel 1 is the capture itself, displayed: the bitmap's last row on top.
    SentivoTool::BmpFile capture = SentivoTool::ReadBmpFile(files[0]);
    const uint8_t* pPixels = capture.data.data() + 1078;
    Png shown;
    shown.nWidth = 320;
    shown.nHeight = 480;
    for (int y = 479; y >= 0; --y)
        shown.pixels.insert(shown.pixels.end(), pPixels + y * 320, pPixels + (y + 1) * 320);
    EXPECT_TRUE(PanelIs(overview, 0, shown));
    const char* aszPanels[] = {"prepared.png", "fast_mask.png", "final_mask.png", "masked.png"};
    for (uint32_t p = 0; p < 4; ++p)
        EXPECT_TRUE(PanelIs(overview, (p + 1) * 328, ReadPng(dir + "/" + aszPanels[p])))
            << aszPanels[p];
    // Between the panels a dark band.
    EXPECT_EQ(overview.pixels[320], 64);

    EXPECT_EQ(overview.texts.at("Outcome"),
              std::to_string(result.at("code").get<int>()) + " " +
                  SentivoGetErrorDescriptionA(result.at("code").get<int>()));
    EXPECT_EQ(overview.texts.at("Finger"), "0 finger found");
    EXPECT_EQ(overview.texts.at("Score") == "none", result.at("score").is_null());
    EXPECT_EQ(overview.texts.at("Missing"), "none");

    // A run that stops at the movement test made only the capture and its copy.
    const std::string moved = ScratchDir("inspect_moved");
    ASSERT_EQ(RunSentivo({"inspect", files[0], files[1], files[2], "--out", moved}).nStatus, 0);
    const Png partial = ReadPng(moved + "/overview.png");
    EXPECT_EQ(partial.texts.at("Missing"), "fast mask, final mask, masked image");
    EXPECT_EQ(partial.texts.at("Finger"), "-15 Finger is moving");
    EXPECT_EQ(partial.pixels[3 * 328 + 5], 128);
}

TEST(CaptureCommands, DemoJudgesEverySampleAsAScannerWould)
{
    const ToolRun demo = RunSentivo({"demo", SourceDir() + "/samples"});
    ASSERT_EQ(demo.nStatus, 0) << demo.err;
    const std::vector<std::string> lines = Lines(demo.out);
    ASSERT_GE(lines.size(), 12u);
    EXPECT_NE(lines[0].find("false acceptance rate of 1 %: score 97."), std::string::npos);
    EXPECT_EQ(lines[2].rfind("capture", 0), 0u);
    size_t nRows = 0;
    for (const std::string& line : lines)
    {
        if (line.rfind("live/", 0) != 0 && line.rfind("fake/", 0) != 0)
            continue;
        ++nRows;
        // Only the sample with a capture before it moved.
        const bool bMoving = line.rfind("live/moving_finger ", 0) == 0;
        EXPECT_EQ(line.find(" -15  Finger is moving") != std::string::npos, bMoving) << line;
        // The columns line up under the header.
        EXPECT_EQ(line.find("  " + line.substr(0, 4) + " ") + 2, lines[2].find("label")) << line;
    }
    EXPECT_EQ(nRows, 9u);
}

TEST(CaptureCommands, EveryCommandHasHelpAndTheOverviewListsThem)
{
    const ToolRun overview = RunSentivo({"--help"});
    ASSERT_EQ(overview.nStatus, 0);
    const std::string manual = ReadFileText(SourceDir() + "/tools/sentivo.1");
    ASSERT_EQ(SentivoTool::Commands().size(), 9u);
    for (const char* szCommand : {"version", "check", "score", "batch", "evaluate", "threshold",
                                  "features", "inspect", "demo"})
    {
        EXPECT_NE(overview.out.find("\n  " + std::string(szCommand) + " "), std::string::npos);
        EXPECT_NE(manual.find("\n.SS " + std::string(szCommand) + "\n"), std::string::npos)
            << "the manual page lacks " << szCommand;
        const ToolRun help = RunSentivo({szCommand, "--help"});
        EXPECT_EQ(help.nStatus, 0) << szCommand;
        EXPECT_EQ(help.out.rfind("usage: sentivo " + std::string(szCommand), 0), 0u) << szCommand;
        EXPECT_EQ(help.err, "");
        EXPECT_EQ(RunSentivo({"help", szCommand}).out, help.out);
        // An unknown option is a usage error of one line that names it.
        const ToolRun bad = RunSentivo({szCommand, "--bogus"});
        EXPECT_EQ(bad.nStatus, 64) << szCommand;
        EXPECT_EQ(bad.err, "sentivo " + std::string(szCommand) + ": unknown option '--bogus'\n");
        EXPECT_EQ(bad.out, "");
    }
}
