// The tool's bitmap files: what it hands the library, and what it writes.
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "BmpFile.h"

using SentivoTool::ReadBmpFile;
using SentivoTool::WriteGreyBmp;

namespace
{
std::string TempPath(const char* szName)
{
    return ::testing::TempDir() + szName;
}

void WriteBytes(const std::string& path, const std::string& bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}
} // namespace

TEST(BmpFile, WrittenBitmapIsAcceptedAndReadsBackRowForRow)
{
    const int32_t nWidth = 201; // rows padded to 204 bytes
    const int32_t nHeight = 3;
    std::vector<uint8_t> pixels(static_cast<size_t>(nWidth * nHeight));
    for (size_t i = 0; i < pixels.size(); ++i)
        pixels[i] = static_cast<uint8_t>(i * 7);
    const std::string path = TempPath("written.bmp");
    WriteGreyBmp(path, nWidth, nHeight, pixels);

    SentivoTool::BmpFile file = ReadBmpFile(path);
    EXPECT_EQ(file.nBlockOffset, 14u);
    ASSERT_EQ(file.BlockSize(), 40u + 1024u + 204u * 3u);
    const uint8_t* pBlock = file.Block();
    int32_t nStoredWidth = 0;
    std::memcpy(&nStoredWidth, pBlock + 4, 4);
    EXPECT_EQ(nStoredWidth, nWidth);
    for (int32_t y = 0; y < nHeight; ++y)
    {
        EXPECT_EQ(0, std::memcmp(pBlock + 1064 + 204 * y, pixels.data() + nWidth * y, nWidth))
            << "row " << y;
        EXPECT_EQ(pBlock[1064 + 204 * y + 203], 0) << "padding of row " << y;
    }
    EXPECT_THROW(WriteGreyBmp(path, 4, 4, pixels), std::invalid_argument);
}

TEST(BmpFile, OnlyAFileHeaderIsStripped)
{
    const std::string path = TempPath("short.bmp");
    WriteBytes(path, "BM123456789012"); // exactly a file header, nothing behind it
    EXPECT_EQ(ReadBmpFile(path).nBlockOffset, 0u);
    WriteBytes(path, "no bitmap at all");
    EXPECT_EQ(ReadBmpFile(path).nBlockOffset, 0u);
    EXPECT_EQ(ReadBmpFile(path).BlockSize(), 16u);
}
