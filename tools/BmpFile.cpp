#include "BmpFile.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace SentivoTool
{

namespace
{
constexpr size_t kFileHeaderSize = 14;
constexpr size_t kInfoHeaderSize = 40;
constexpr int32_t kPelsPerMeter500Dpi = 19685;

void Put16(std::vector<uint8_t>& out, uint32_t v)
{
    out.push_back(static_cast<uint8_t>(v));
    out.push_back(static_cast<uint8_t>(v >> 8));
}

void Put32(std::vector<uint8_t>& out, uint32_t v)
{
    Put16(out, v & 0xFFFF);
    Put16(out, v >> 16);
}
} // namespace

BmpFile ReadBmpFile(const std::string& path)
{
    // A capture is a few hundred kilobytes; the limit keeps a device or a
    // huge file named by mistake from being read to the end.
    constexpr std::uintmax_t kLargestFile = 64u << 20;
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status))
        throw std::runtime_error("cannot open " + path + ": no such file");
    if (std::filesystem::is_directory(status))
        throw std::runtime_error("cannot read " + path + ": it is a folder");
    if (!std::filesystem::is_regular_file(status))
        throw std::runtime_error("cannot read " + path + ": not a regular file");
    if (std::filesystem::file_size(path, error) > kLargestFile)
        throw std::runtime_error("cannot read " + path + ": larger than any capture");
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw std::runtime_error("cannot open " + path + ": " + std::strerror(errno));
    BmpFile file;
    file.data.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    if (in.bad())
        throw std::runtime_error("cannot read " + path);
    // An empty block would reach the library as a null bitmap, which empties
    // a slot instead of being refused.
    if (file.data.empty())
        throw std::runtime_error("cannot read " + path + ": the file is empty");
    if (file.data.size() > kFileHeaderSize && file.data[0] == 'B' && file.data[1] == 'M')
        file.nBlockOffset = kFileHeaderSize;
    return file;
}

void WriteGreyBmp(const std::string& path, int32_t nWidth, int32_t nHeight,
                  const std::vector<uint8_t>& pixels)
{
    const uint32_t nRowBytes = (static_cast<uint32_t>(nWidth) + 3u) & ~3u;
    const uint32_t nPixelBytes = nRowBytes * static_cast<uint32_t>(nHeight);
    const uint32_t nOffset = kFileHeaderSize + kInfoHeaderSize + 256 * 4;
    if (pixels.size() != static_cast<size_t>(nWidth) * static_cast<size_t>(nHeight))
        throw std::invalid_argument("pixel count does not match the size");

    std::vector<uint8_t> out;
    out.reserve(nOffset + nPixelBytes);
    out.push_back('B');
    out.push_back('M');
    Put32(out, nOffset + nPixelBytes);
    Put32(out, 0);
    Put32(out, nOffset);
    Put32(out, kInfoHeaderSize);
    Put32(out, static_cast<uint32_t>(nWidth));
    Put32(out, static_cast<uint32_t>(nHeight));
    Put16(out, 1);
    Put16(out, 8);
    Put32(out, 0);
    Put32(out, nPixelBytes);
    Put32(out, kPelsPerMeter500Dpi);
    Put32(out, kPelsPerMeter500Dpi);
    Put32(out, 256);
    Put32(out, 256);
    for (uint32_t i = 0; i < 256; ++i)
        Put32(out, i | (i << 8) | (i << 16));
    for (int32_t y = 0; y < nHeight; ++y)
    {
        const uint8_t* pRow = pixels.data() + static_cast<size_t>(y) * static_cast<size_t>(nWidth);
        out.insert(out.end(), pRow, pRow + nWidth);
        out.resize(out.size() + (nRowBytes - static_cast<uint32_t>(nWidth)), 0);
    }
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(out.data()), static_cast<std::streamsize>(out.size()));
    if (!file)
        throw std::runtime_error("cannot write " + path);
}

} // namespace SentivoTool
