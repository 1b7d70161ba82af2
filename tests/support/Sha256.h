#pragma once
// SHA-256 of a byte string, as a lower-case hex text: the fingerprint by
// which the conformance set names its expected images.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

namespace TestSupport
{

inline std::string Sha256(const std::vector<uint8_t>& message)
{
    // The round constants and the start value: the first 32 fraction bits of
    // the cube roots of the first 64 primes and of the square roots of the
    // first 8 (a wrong bit changes every hash the conformance set names).
    uint32_t k[64], h[8];
    auto fraction = [](double r)
    { return static_cast<uint32_t>(std::ldexp(r - std::floor(r), 32)); };
    for (int nPrime = 2, n = 0; n < 64; ++nPrime)
    {
        int d = 2;
        while (nPrime % d != 0)
            ++d;
        if (d == nPrime && n < 8)
            h[n] = fraction(std::sqrt(nPrime));
        if (d == nPrime)
            k[n++] = fraction(std::cbrt(nPrime));
    }
    auto rotr = [](uint32_t x, int n) { return (x >> n) | (x << (32 - n)); };

    std::vector<uint8_t> m = message;
    const uint64_t nBits = static_cast<uint64_t>(message.size()) * 8;
    m.push_back(0x80);
    m.resize((m.size() + 7) / 64 * 64 + 56);
    for (int i = 7; i >= 0; --i)
        m.push_back(static_cast<uint8_t>(nBits >> (8 * i)));

    for (size_t nBlock = 0; nBlock < m.size(); nBlock += 64)
    {
        uint32_t w[64], v[8];
        for (int i = 0; i < 16; ++i)
            w[i] = uint32_t(m[nBlock + 4 * i]) << 24 | uint32_t(m[nBlock + 4 * i + 1]) << 16 |
                   uint32_t(m[nBlock + 4 * i + 2]) << 8 | uint32_t(m[nBlock + 4 * i + 3]);
        for (int i = 16; i < 64; ++i)
            w[i] = w[i - 16] + (rotr(w[i - 15], 7) ^ rotr(w[i - 15], 18) ^ (w[i - 15] >> 3)) +
                   w[i - 7] + (rotr(w[i - 2], 17) ^ rotr(w[i - 2], 19) ^ (w[i - 2] >> 10));
        std::copy(h, h + 8, v); // a b c d e f g h
        for (int i = 0; i < 64; ++i)
        {
            const uint32_t t1 = v[7] + (rotr(v[4], 6) ^ rotr(v[4], 11) ^ rotr(v[4], 25)) +
                                ((v[4] & v[5]) ^ (~v[4] & v[6])) + k[i] + w[i];
            const uint32_t t2 = (rotr(v[0], 2) ^ rotr(v[0], 13) ^ rotr(v[0], 22)) +
                                ((v[0] & v[1]) ^ (v[0] & v[2]) ^ (v[1] & v[2]));
            std::copy_backward(v, v + 7, v + 8);
            v[0] = t1 + t2;
            v[4] += t1;
        }
        for (int i = 0; i < 8; ++i)
            h[i] += v[i];
    }
    char szHex[65];
    for (int i = 0; i < 8; ++i)
        std::snprintf(szHex + 8 * i, 9, "%08x", h[i]);
    return szHex;
}

} // namespace TestSupport
