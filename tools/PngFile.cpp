#include "PngFile.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

#include <png.h>

namespace SentivoTool
{

void WriteGreyPng(const std::string& path, int32_t nWidth, int32_t nHeight,
                  const std::vector<const uint8_t*>& rowsTopFirst,
                  const std::vector<std::pair<std::string, std::string>>& texts)
{
    std::unique_ptr<FILE, int (*)(FILE*)> file(std::fopen(path.c_str(), "wb"), &std::fclose);
    if (!file)
        throw std::runtime_error("cannot write " + path);
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png != nullptr ? png_create_info_struct(png) : nullptr;
    if (info == nullptr)
    {
        png_destroy_write_struct(&png, nullptr);
        throw std::runtime_error("cannot write " + path + ": out of memory");
    }
    // libpng reports errors by a long jump back here.
    if (setjmp(png_jmpbuf(png)))
    {
        png_destroy_write_struct(&png, &info);
        throw std::runtime_error("cannot write " + path);
    }
    png_init_io(png, file.get());
    png_set_IHDR(png, info, static_cast<png_uint_32>(nWidth), static_cast<png_uint_32>(nHeight), 8,
                 PNG_COLOR_TYPE_GRAY, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    std::vector<png_text> chunks(texts.size());
    for (size_t i = 0; i < texts.size(); ++i)
    {
        chunks[i].compression = PNG_TEXT_COMPRESSION_NONE;
        chunks[i].key = const_cast<char*>(texts[i].first.c_str());
        chunks[i].text = const_cast<char*>(texts[i].second.c_str());
    }
    if (!chunks.empty())
        png_set_text(png, info, chunks.data(), static_cast<int>(chunks.size()));
    png_write_info(png, info);
    for (const uint8_t* pRow : rowsTopFirst)
        png_write_row(png, const_cast<png_bytep>(pRow));
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    if (std::fflush(file.get()) != 0)
        throw std::runtime_error("cannot write " + path);
}

void WriteGreyPng(const std::string& path, const ClImage& image,
                  const std::vector<std::pair<std::string, std::string>>& texts)
{
    if (image.DataType() != ClImage::eUInt8 || image.Planes() != 1 || image.Data() == nullptr)
        throw std::runtime_error("cannot write " + path + ": not an 8-bit grey image");
    std::vector<const uint8_t*> rows;
    for (int32_t y = image.Height() - 1; y >= 0; --y)
        rows.push_back(image.Row<uint8_t>(y));
    WriteGreyPng(path, image.Width(), image.Height(), rows, texts);
}

} // namespace SentivoTool
