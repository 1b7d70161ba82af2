// The tool's bitmap files: what it hands the library, and what it writes.
#include <cstring>

#include "BmpFile.h"
#include "ToolRun.h"

using SentivoTool::ReadBmpFile;

TEST(BmpFile, WrittenBitmapReadsBackRowForRowAndOnlyAFileHeaderIsStripped)
{
    std::vector<uint8_t> pixels(201 * 3); // rows padded to 204 bytes
    for (size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<uint8_t>(i * 7);
    const std::string path = ::testing::TempDir() + "written.bmp";
    SentivoTool::WriteGreyBmp(path, 201, 3, pixels);
    SentivoTool::BmpFile file = ReadBmpFile(path);
    EXPECT_EQ(file.nBlockOffset, 14u);
    ASSERT_EQ(file.BlockSize(), 40u + 1024u + 204u * 3u);
    const uint8_t* pBlock = file.Block();
    EXPECT_EQ(std::vector<uint8_t>(pBlock + 4, pBlock + 8), (std::vector<uint8_t>{201, 0, 0, 0}));
    for (int32_t y = 0; y < 3; ++y)
    {
        EXPECT_EQ(0, std::memcmp(pBlock + 1064 + 204 * y, pixels.data() + 201 * y, 201)) << y;
        EXPECT_EQ(pBlock[1064 + 204 * y + 203], 0) << "padding of row " << y;
    }
    EXPECT_THROW(SentivoTool::WriteGreyBmp(path, 4, 4, pixels), std::invalid_argument);
    WriteFileText(path, "BM123456789012"); // exactly a file header, nothing behind it
    EXPECT_EQ(ReadBmpFile(path).nBlockOffset, 0u);
    WriteFileText(path, "no bitmap at all");
    EXPECT_EQ(ReadBmpFile(path).nBlockOffset, 0u);
    EXPECT_EQ(ReadBmpFile(path).BlockSize(), 16u);
}
