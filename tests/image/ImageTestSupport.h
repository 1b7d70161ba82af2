#pragma once
// Helpers shared by the tests: exception checks and bitmap blocks.
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "image/Bitmap.h"
#include "sdk/Exception.h"

// f throws an E of the code and, when given, the remark (the text after the
// table's description line).
template <typename E = ClException, typename F>
void ExpectThrows(F&& f, int32_t nCode, const char* szRemark = nullptr)
{
    try
    {
        f();
        ADD_FAILURE() << "no exception, expected code " << nCode;
    }
    catch (const E& e)
    {
        EXPECT_EQ(e.GetCode(), nCode);
        const std::string sText = e.GetMessage();
        EXPECT_EQ(szRemark ? sText.substr(sText.find('\n') + 1) : "", szRemark ? szRemark : "");
    }
}

// An info header, a colour table of nEntries and pixel rows of whole 32-bit
// words whose bytes count up from 1; optionally behind a file header.
inline std::vector<uint8_t> MakeBitmapBlock(int32_t nWidth, int32_t nHeight, uint16_t nBitCount,
                                            size_t nEntries, uint32_t nCompression = 0,
                                            bool bFileHeader = false)
{
    const SentivoBitmapInfoHeader header{40, nWidth, nHeight, 1, nBitCount, nCompression,
                                         0,  19685,  19686,   0, 0};
    const size_t nPixels = (static_cast<size_t>(nWidth) * nBitCount + 31) / 32 * 4 * nHeight;
    const size_t nStart = bFileHeader ? 14 : 0;
    std::vector<uint8_t> block(nStart + 40 + 4 * nEntries + nPixels);
    const SentivoBitmapFileHeader file{0x4D42, static_cast<uint32_t>(block.size()), 0, 0,
                                       static_cast<uint32_t>(nStart + 40 + 4 * nEntries)};
    std::memcpy(block.data(), &file, nStart);
    std::memcpy(block.data() + nStart, &header, sizeof(header));
    for (size_t i = 0; i < nPixels; ++i)
        block[block.size() - nPixels + i] = static_cast<uint8_t>(i + 1);
    return block;
}

// The first nSize bytes of a block in an allocation of exactly that size, for
// the sanitizer build to catch any read behind it.
inline std::unique_ptr<uint8_t[]> ExactCopy(const std::vector<uint8_t>& block, size_t nSize)
{
    std::unique_ptr<uint8_t[]> copy(new uint8_t[nSize]);
    std::memcpy(copy.get(), block.data(), nSize);
    return copy;
}
