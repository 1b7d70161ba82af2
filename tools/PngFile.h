#pragma once
// 8-bit grey PNG files of library images, oriented as the bitmap is
// displayed: the image's last row (the top of a bottom-up bitmap) first.
#include <string>
#include <utility>
#include <vector>

#include "image/FpImage.h"

namespace SentivoTool
{

// Writes a one-plane 8-bit image; text chunks as (keyword, text) pairs.
// Throws std::runtime_error naming the file when it cannot be written.
void WriteGreyPng(const std::string& path, const ClImage& image,
                  const std::vector<std::pair<std::string, std::string>>& texts = {});

// The same for rows of bytes given top row first.
void WriteGreyPng(const std::string& path, int32_t nWidth, int32_t nHeight,
                  const std::vector<const uint8_t*>& rowsTopFirst,
                  const std::vector<std::pair<std::string, std::string>>& texts);

} // namespace SentivoTool
