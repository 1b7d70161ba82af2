#pragma once
// Captures made from a few bytes, for the fuzz target of the whole flow and
// its replay: three 320 x 480 grey images from structured generators
// (constant, noise, stripes, gradients, blobs, a finger-like pattern, one
// bright pixel, a checkerboard, a finger touching every edge) or raw pixels,
// chosen and parameterised by the input, and the settings of the run.
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace SentivoFuzz
{

constexpr int32_t kWidth = 320;
constexpr int32_t kHeight = 480;
constexpr size_t kPixels = static_cast<size_t>(kWidth) * kHeight;

enum EGenerator : uint8_t
{
    eConstant,
    eNoise,
    eStripes,
    eGradient,
    eBlobs,
    eFinger,
    eBrightPixel,
    eCheckerboard,
    eEdgeFinger, // a finger larger than the platen, touching every edge
    eRaw,        // the next 153600 input bytes are the pixels (tiled when short)
    eGeneratorCount
};

// Reads the input byte by byte; past its end every byte is 0.
class ClInput
{
public:
    ClInput(const uint8_t* pData, size_t nSize) : m_pData(pData), m_nSize(nSize) {}
    uint8_t Byte() { return m_nAt < m_nSize ? m_pData[m_nAt++] : 0; }
    const uint8_t* Rest(size_t& nSize) const
    {
        nSize = m_nSize - m_nAt;
        return m_pData + m_nAt;
    }
    void Skip(size_t n) { m_nAt = n > m_nSize - m_nAt ? m_nSize : m_nAt + n; }

private:
    const uint8_t* m_pData;
    size_t m_nSize;
    size_t m_nAt = 0;
};

// A deterministic generator of pseudo-random bytes from a seed.
class ClNoise
{
public:
    explicit ClNoise(uint32_t nSeed) : m_n(nSeed * 2654435761u + 1) {}
    uint8_t Next()
    {
        m_n ^= m_n << 13;
        m_n ^= m_n >> 17;
        m_n ^= m_n << 5;
        return static_cast<uint8_t>(m_n >> 7);
    }

private:
    uint32_t m_n;
};

inline uint8_t Clamp(double v)
{
    return static_cast<uint8_t>(v < 0.0 ? 0.0 : (v > 255.0 ? 255.0 : v));
}

// One image: a generator byte, then eight parameter bytes (or raw pixels).
inline std::vector<uint8_t> MakeImage(ClInput& input)
{
    std::vector<uint8_t> pixels(kPixels, 0);
    const uint8_t nKind = static_cast<uint8_t>(input.Byte() % eGeneratorCount);
    uint8_t p[8];
    for (uint8_t& b : p)
        b = input.Byte();
    const double dPeriod = 3.0 + p[1] % 29;           // 3 to 31 pixels
    const double dAngle = p[2] * 3.141592653589793 / 128.0;
    const double cx = p[3] * kWidth / 255.0, cy = p[4] * kHeight / 255.0;
    const double rx = 10.0 + p[5], ry = 10.0 + p[6] * 1.5;
    ClNoise noise(static_cast<uint32_t>(p[7]) << 8 | p[0]);
    for (int32_t y = 0; y < kHeight; ++y)
        for (int32_t x = 0; x < kWidth; ++x)
        {
            const double u = x * std::cos(dAngle) + y * std::sin(dAngle);
            const double dx = (x - cx) / rx, dy = (y - cy) / ry;
            uint8_t& v = pixels[static_cast<size_t>(y) * kWidth + x];
            switch (nKind)
            {
            case eConstant:
                v = p[0];
                break;
            case eNoise:
                v = static_cast<uint8_t>(p[0] / 2 + (noise.Next() % (1 + p[5])) / 2);
                break;
            case eStripes:
                v = std::fmod(u, dPeriod) < dPeriod / 2 ? p[0] : p[5];
                break;
            case eGradient:
                v = Clamp(p[0] + u * (p[5] - 128) / 256.0);
                break;
            case eBlobs:
                v = dx * dx + dy * dy < 1.0 ? p[0] : p[7];
                break;
            case eFinger:
            case eEdgeFinger:
            {
                const double rxx = nKind == eEdgeFinger ? 400.0 : rx + 60.0;
                const double ryy = nKind == eEdgeFinger ? 600.0 : ry + 100.0;
                const double ex = (x - cx) / rxx, ey = (y - cy) / ryy;
                const double r = std::hypot(x - cx, (y - cy) * 0.8);
                const double ridge = 0.5 + 0.5 * std::sin(2.0 * 3.141592653589793 * r / dPeriod);
                v = ex * ex + ey * ey < 1.0 ? Clamp(p[0] * 0.3 + ridge * (100 + p[5] % 120) +
                                                    (noise.Next() % 16))
                                            : static_cast<uint8_t>(200 + p[7] % 56);
                break;
            }
            case eBrightPixel:
                v = (x == static_cast<int32_t>(cx) && y == static_cast<int32_t>(cy)) ? 255 : p[0] % 8;
                break;
            case eCheckerboard:
            {
                const int32_t s = 1 + p[1] % 16;
                v = ((x / s) + (y / s)) % 2 ? p[0] : p[5];
                break;
            }
            default:
                break;
            }
        }
    if (nKind == eRaw)
    {
        size_t nRest = 0;
        const uint8_t* pRest = input.Rest(nRest);
        if (nRest > 0)
            for (size_t i = 0; i < kPixels; ++i)
                pixels[i] = pRest[i % nRest];
        input.Skip(kPixels);
    }
    return pixels;
}

// A bitmap block as SentivoSetImage takes it: 40-byte info header, grey
// palette, rows as given, 500 dpi.
inline std::vector<uint8_t> BitmapBlock(const std::vector<uint8_t>& pixels)
{
    std::vector<uint8_t> block(40 + 1024 + kPixels);
    const uint32_t header[10] = {40, kWidth, kHeight, 1u | (8u << 16), 0, kPixels, 19685, 19685,
                                 256, 256};
    std::memcpy(block.data(), header, sizeof(header));
    for (int i = 0; i < 256; ++i)
        for (int c = 0; c < 3; ++c)
            block[40 + 4 * i + c] = static_cast<uint8_t>(i);
    std::memcpy(block.data() + 1064, pixels.data(), kPixels);
    return block;
}

} // namespace SentivoFuzz
