// Where batch finds its captures: folders walked in name order, labels from
// the nearest live or fake folder, manifests with paths relative to them.
// Unusable sources are cases of bad_input.sh.
#include "CaptureSources.h"
#include "ToolRun.h"

using namespace SentivoTool;

namespace
{
void Capture(const std::string& folder)
{
    for (const char* szName : {"current.bmp", "backlight.bmp", "dark.bmp"})
        WriteFileText(folder + "/" + szName, "");
}

} // namespace

TEST(CaptureSources, FoldersAreWalkedInNameOrderAndLabelledByTheNearestClassFolder)
{
    const std::string root = ScratchDir("walk");
    Capture(root + "/live/z/w");
    Capture(root + "/live"); // the class folder is itself a capture
    Capture(root + "/fake/x");
    Capture(root + "/fake/live/y"); // a live folder inside a fake one: live
    Capture(root + "/a_unlabelled");
    WriteFileText(root + "/b/notes.txt", "");
    WriteFileText(root + "/fake/only_dark/dark.bmp", ""); // no current.bmp: not a capture
    const std::vector<CaptureEntry> entries = CollectCaptures({root});
    const char* aszFolders[] = {"/a_unlabelled", "/fake/live/y", "/fake/x", "/live", "/live/z/w"};
    const char* aszLabels[] = {"none", "live", "fake", "live", "live"};
    ASSERT_EQ(entries.size(), 5u);
    for (size_t i = 0; i < 5; ++i)
    {
        const std::string folder = root + aszFolders[i];
        const auto& files = entries[i].files;
        EXPECT_EQ(files.current + files.backlight + files.dark + files.previous,
                  folder + "/current.bmp" + folder + "/backlight.bmp" + folder + "/dark.bmp");
        EXPECT_EQ(entries[i].label.value_or("none"), aszLabels[i]) << folder;
    }
    // The same folder given twice is judged twice; a trailing slash changes nothing.
    EXPECT_EQ(CollectCaptures({root + "/fake/x", root + "/fake/x/"}).size(), 2u);
}

TEST(CaptureSources, ManifestsNameFilesRelativeToThemselves)
{
    const std::string lists = ScratchDir("manifest") + "/lists";
    WriteFileText(lists + "/set.csv", "current,backlight,dark,label\n"
                                      "a/c.bmp,a/b.bmp,a/d.bmp,live\n"
                                      "\"with,comma/c.bmp\",b.bmp,/abs/d.bmp,\n"
                                      "x.bmp,y.bmp,z.bmp,fake\n");
    WriteFileText(lists + "/three.csv", "current,backlight,dark\r\nc.bmp,b.bmp,d.bmp\r\n");
    WriteFileText(lists + "/set.jsonl",
                  "{\"current\": \"c.bmp\", \"backlight\": \"b.bmp\", \"dark\": \"d.bmp\", "
                  "\"label\": \"fake\"}\n\n"
                  "{\"current\": \"../c.bmp\", \"backlight\": \"b.bmp\", \"dark\": \"d.bmp\", "
                  "\"label\": null}\n"
                  "{\"dark\": \"d.bmp\", \"backlight\": \"b.bmp\", \"current\": \"e.bmp\"}\n");
    // Sources add up in the order given.
    const std::vector<CaptureEntry> all =
        CollectCaptures({lists + "/set.csv", lists + "/three.csv", lists + "/set.jsonl"});
    ASSERT_EQ(all.size(), 7u);
    const std::vector<std::pair<std::string, std::string>> expected = {
        {"a/c.bmp", "live"}, {"with,comma/c.bmp", "none"}, {"x.bmp", "fake"}, {"c.bmp", "none"},
        {"c.bmp", "fake"},   {"../c.bmp", "none"},         {"e.bmp", "none"}};
    for (size_t i = 0; i < all.size(); ++i)
    {
        EXPECT_EQ(all[i].files.current, lists + "/" + expected[i].first) << i;
        EXPECT_EQ(all[i].label.value_or("none"), expected[i].second) << i;
    }
    EXPECT_EQ(all[0].files.dark, lists + "/a/d.bmp");
    EXPECT_EQ(all[1].files.dark, "/abs/d.bmp");
    EXPECT_EQ(all[3].files.dark, lists + "/d.bmp");
}
