#pragma once
// Reading bitmap files from disk for the command-line tool. The library takes
// in-memory bitmaps without the 14-byte file header, so the tool hands it the
// block behind that header.
#include <cstdint>
#include <string>
#include <vector>

namespace SentivoTool
{

struct BmpFile
{
    std::vector<uint8_t> data; // the whole file
    size_t nBlockOffset = 0;   // where the info header starts: 14 behind "BM", else 0

    uint8_t* Block() { return data.data() + nBlockOffset; }
    uint32_t BlockSize() const { return static_cast<uint32_t>(data.size() - nBlockOffset); }
};

// Reads a file; a file that starts with "BM" and is long enough loses its file
// header, anything else is handed on as it stands (the library then judges
// it). Throws std::runtime_error naming the file when it is missing, not a
// regular file, empty, too large to be a capture or cannot be read.
BmpFile ReadBmpFile(const std::string& path);

// Writes an 8-bit grey image (rows as stored, row 0 first) as a bitmap file
// with file header, grey palette and 500 dpi.
void WriteGreyBmp(const std::string& path, int32_t nWidth, int32_t nHeight,
                  const std::vector<uint8_t>& pixels);

} // namespace SentivoTool
