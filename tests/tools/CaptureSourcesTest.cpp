// Where batch finds its captures: folders walked in name order, labels from
// the nearest live or fake folder, manifests with paths relative to them.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "CaptureSources.h"
#include "ToolOptions.h"

using namespace SentivoTool;
namespace fs = std::filesystem;

namespace
{
std::string Scratch(const char* szName)
{
    const std::string path = ::testing::TempDir() + "sources_" + szName;
    fs::remove_all(path);
    fs::create_directories(path);
    return path;
}

void Touch(const std::string& path, const std::string& text = "")
{
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

void Capture(const std::string& folder)
{
    for (const char* szName : {"current.bmp", "backlight.bmp", "dark.bmp"})
        Touch(folder + "/" + szName);
}

std::string ErrorOf(const std::vector<std::string>& sources)
{
    try
    {
        CollectCaptures(sources);
    }
    catch (const InputError& e)
    {
        return e.what();
    }
    return "";
}

std::string Label(const CaptureEntry& entry)
{
    return entry.label ? *entry.label : "none";
}
} // namespace

TEST(CaptureSources, FoldersAreWalkedInNameOrderAndLabelledByTheNearestClassFolder)
{
    const std::string root = Scratch("walk");
    Capture(root + "/live/z/w");
    Capture(root + "/live"); // the class folder is itself a capture
    Capture(root + "/fake/x");
    Capture(root + "/fake/live/y"); // a live folder inside a fake one: live
    Capture(root + "/a_unlabelled");
    Touch(root + "/b/notes.txt");
    Touch(root + "/fake/only_dark/dark.bmp"); // no current.bmp: not a capture

    const std::vector<CaptureEntry> entries = CollectCaptures({root});
    const std::vector<std::pair<std::string, std::string>> expected = {{"/a_unlabelled", "none"},
                                                                       {"/fake/live/y", "live"},
                                                                       {"/fake/x", "fake"},
                                                                       {"/live", "live"},
                                                                       {"/live/z/w", "live"}};
    ASSERT_EQ(entries.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i)
    {
        const std::string folder = root + expected[i].first;
        EXPECT_EQ(entries[i].files.current, folder + "/current.bmp");
        EXPECT_EQ(entries[i].files.backlight, folder + "/backlight.bmp");
        EXPECT_EQ(entries[i].files.dark, folder + "/dark.bmp");
        EXPECT_TRUE(entries[i].files.previous.empty());
        EXPECT_EQ(Label(entries[i]), expected[i].second) << folder;
    }
    // The same folder given twice is judged twice, in the order given;
    // a trailing slash changes nothing but the spelling.
    EXPECT_EQ(CollectCaptures({root + "/fake/x", root + "/fake/x/"}).size(), 2u);
}

TEST(CaptureSources, ManifestsNameFilesRelativeToThemselves)
{
    const std::string root = Scratch("manifest");
    Touch(root + "/lists/set.csv", "current,backlight,dark,label\n"
                                   "a/c.bmp,a/b.bmp,a/d.bmp,live\n"
                                   "\"with,comma/c.bmp\",b.bmp,/abs/d.bmp,\n"
                                   "x.bmp,y.bmp,z.bmp,fake\n");
    Touch(root + "/lists/three.csv", "current,backlight,dark\r\nc.bmp,b.bmp,d.bmp\r\n");
    Touch(root + "/lists/set.jsonl",
          "{\"current\": \"c.bmp\", \"backlight\": \"b.bmp\", \"dark\": \"d.bmp\", \"label\": "
          "\"fake\"}\n"
          "\n"
          "{\"current\": \"../c.bmp\", \"backlight\": \"b.bmp\", \"dark\": \"d.bmp\", \"label\": "
          "null}\n"
          "{\"dark\": \"d.bmp\", \"backlight\": \"b.bmp\", \"current\": \"e.bmp\"}\n");

    const std::vector<CaptureEntry> csv = CollectCaptures({root + "/lists/set.csv"});
    ASSERT_EQ(csv.size(), 3u);
    EXPECT_EQ(csv[0].files.current, root + "/lists/a/c.bmp");
    EXPECT_EQ(csv[0].files.dark, root + "/lists/a/d.bmp");
    EXPECT_EQ(Label(csv[0]), "live");
    EXPECT_EQ(csv[1].files.current, root + "/lists/with,comma/c.bmp");
    EXPECT_EQ(csv[1].files.dark, "/abs/d.bmp");
    EXPECT_EQ(Label(csv[1]), "none");
    EXPECT_EQ(Label(csv[2]), "fake");

    const std::vector<CaptureEntry> three = CollectCaptures({root + "/lists/three.csv"});
    ASSERT_EQ(three.size(), 1u);
    EXPECT_EQ(three[0].files.dark, root + "/lists/d.bmp");
    EXPECT_EQ(Label(three[0]), "none");

    const std::vector<CaptureEntry> jsonl = CollectCaptures({root + "/lists/set.jsonl"});
    ASSERT_EQ(jsonl.size(), 3u);
    EXPECT_EQ(Label(jsonl[0]), "fake");
    EXPECT_EQ(jsonl[1].files.current, root + "/lists/../c.bmp");
    EXPECT_EQ(Label(jsonl[1]), "none");
    EXPECT_EQ(jsonl[2].files.current, root + "/lists/e.bmp");

    // Sources add up in the order given.
    EXPECT_EQ(CollectCaptures({root + "/lists/three.csv", root + "/lists/set.csv"}).size(), 4u);
}

TEST(CaptureSources, EveryUnusableSourceIsNamedWithItsLine)
{
    const std::string root = Scratch("bad");
    auto manifest = [&](const char* szName, const std::string& text)
    {
        Touch(root + "/" + szName, text);
        return root + "/" + szName;
    };
    const std::string header = "current,backlight,dark,label\n";
    // A missing source, an empty folder, a file of another kind, a wrong
    // header, a short row and broken JSON are cases of bad_input.sh.
    EXPECT_EQ(ErrorOf({manifest("l.csv", header + "c,b,d,alive\n")}),
              root + "/l.csv:2: label 'alive' is neither live, fake nor empty");
    EXPECT_EQ(ErrorOf({manifest("p.csv", header + "c,,d,live\n")}),
              root + "/p.csv:2: no path for backlight");
    EXPECT_EQ(ErrorOf({manifest("q.csv", header + "c,\"b,d,live\n")}),
              root + "/q.csv:2: a quoted field is not closed");
    EXPECT_EQ(ErrorOf({manifest("e.csv", "")}),
              root + "/e.csv: empty, needs the header current,backlight,dark[,label]");
    EXPECT_EQ(ErrorOf({manifest("o.csv", header)}),
              root + "/o.csv: the manifest lists no captures");
    EXPECT_EQ(ErrorOf({manifest("j.jsonl", "{\"current\": \"c\", \"backlight\": \"b\", "
                                           "\"dark\": \"d\"}\n[1, 2]\n")}),
              root + "/j.jsonl:2: not a JSON object");
    EXPECT_EQ(ErrorOf({manifest("k.jsonl", "{\"current\": \"c\", \"dark\": \"d\"}\n")}),
              root + "/k.jsonl:1: no path for backlight");
    EXPECT_EQ(ErrorOf({manifest("m.jsonl", "{\"current\": \"c\", \"backlight\": \"b\", "
                                           "\"dark\": \"d\", \"label\": 1}\n")}),
              root + "/m.jsonl:1: label is not a text");
}
