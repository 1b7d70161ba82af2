// Runs a fuzz target without libFuzzer: every file of the seed folders given
// on the command line, then a fixed number of deterministic mutations of them
// (byte flips, cuts at every interesting length, header fields set to
// extremes). Fails only by crashing or by a sanitizer report.
#include <cstdint>
#include <cstdio>
#include <dirent.h>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize);

namespace
{

std::vector<std::vector<uint8_t>> ReadSeeds(int argc, char** argv)
{
    std::vector<std::vector<uint8_t>> seeds;
    for (int i = 1; i < argc; ++i)
    {
        DIR* pDir = opendir(argv[i]);
        if (pDir == nullptr)
            continue;
        while (dirent* pEntry = readdir(pDir))
        {
            if (pEntry->d_type != DT_REG)
                continue;
            const std::string path = std::string(argv[i]) + "/" + pEntry->d_name;
            std::ifstream in(path, std::ios::binary);
            std::vector<uint8_t> data((std::istreambuf_iterator<char>(in)),
                                      std::istreambuf_iterator<char>());
            if (!data.empty())
                seeds.push_back(std::move(data));
        }
        closedir(pDir);
    }
    // A few texts for the property target: buffer size, name, NUL, value.
    using namespace std::string_literals;
    for (const std::string& text : {"\x10Version"s,
                                    "\x00nSecurityLevel\x00"
                                    "2"s,
                                    "\x40"
                                    "dQueryFAR\x00"
                                    "0.01"s,
                                    "\x05"
                                    "bMovementDetection\x00"
                                    "False"s,
                                    "\xff"
                                    "dQueryScore\x00"
                                    "1e300"s})
        seeds.emplace_back(text.begin(), text.end());
    return seeds;
}

void Run(const std::vector<uint8_t>& input)
{
    LLVMFuzzerTestOneInput(input.data(), input.size());
}

} // namespace

int main(int argc, char** argv)
{
    const std::vector<std::vector<uint8_t>> seeds = ReadSeeds(argc, argv);
    std::mt19937 random(20261122);
    size_t nRuns = 0;
    for (const std::vector<uint8_t>& seed : seeds)
    {
        // The seed as it is and behind a slot byte, without its 14-byte file header.
        std::vector<uint8_t> input = seed;
        Run(input);
        std::vector<uint8_t> block(1, 1);
        if (seed.size() > 14)
            block.insert(block.end(), seed.begin() + 14, seed.end());
        Run(block);
        // Cut at every length around the header, the palette and the last row.
        for (size_t nCut : {1, 2, 15, 40, 41, 42, 100, 1064, 1065, 1066})
        {
            if (nCut < block.size())
                Run(std::vector<uint8_t>(block.begin(),
                                         block.begin() + static_cast<std::ptrdiff_t>(nCut)));
        }
        if (block.size() > 2)
            Run(std::vector<uint8_t>(block.begin(), block.end() - 1));
        // Random flips and extreme header fields.
        for (int n = 0; n < 40; ++n)
        {
            std::vector<uint8_t> mutated = block;
            const size_t nHeader = mutated.size() < 41 ? mutated.size() : 41;
            for (int k = 0; k < 4; ++k)
            {
                const size_t nAt = random() % (n % 2 == 0 ? nHeader : mutated.size());
                mutated[nAt] =
                    static_cast<uint8_t>(k % 2 == 0 ? random() : (random() % 2 ? 0xFF : 0x00));
            }
            Run(mutated);
            ++nRuns;
        }
        nRuns += 14;
    }
    std::printf("%zu inputs replayed without a fault\n", nRuns);
    return 0;
}
