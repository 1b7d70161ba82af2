// Runs the flow's fuzz target without libFuzzer, deterministically: odd
// captures by name (constant at 0, 128 and 255, noise, stripes, one blob, a
// finger touching every edge, one bright pixel, a checkerboard), the
// conformance captures as raw pixels, and pseudo-random generator choices.
// Fails only by crashing, aborting or by a sanitizer report.
//
//   replay_evaluate_capture CONFORMANCE_DIR [COUNT]
//   replay_evaluate_capture CONFORMANCE_DIR --write-corpus DIR
// The second form writes the conformance captures as inputs of the fuzz
// target into DIR, the seed corpus of a libFuzzer run.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fstream>
#include <iterator>
#include <algorithm>
#include <string>
#include <vector>

#include "CaptureGenerators.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* pData, size_t nSize);

namespace
{

using namespace SentivoFuzz;
using Input = std::vector<uint8_t>;

// Settings byte, then per image a generator byte and eight parameters.
Input Generated(uint8_t nSettings, const uint8_t (&aImages)[3][9])
{
    Input input{nSettings};
    for (const auto& image : aImages)
        input.insert(input.end(), image, image + 9);
    return input;
}

// The pixel rows of an 8-bit bitmap file of the capture size, or nothing.
bool ReadPixels(const std::string& path, Input& pixels)
{
    std::ifstream in(path, std::ios::binary);
    const Input file((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (file.size() < 54 + kPixels || file[0] != 'B' || file[1] != 'M')
        return false;
    uint32_t nOffset = 0;
    std::memcpy(&nOffset, file.data() + 10, 4);
    if (nOffset > file.size() - kPixels)
        return false;
    pixels.assign(file.begin() + nOffset, file.begin() + nOffset + kPixels);
    return true;
}

// Every capture folder of the conformance set as a raw input.
std::vector<Input> ConformanceInputs(const std::string& folder)
{
    std::vector<Input> inputs;
    const std::string synthetic = folder + "/synthetic";
    DIR* pDir = opendir(synthetic.c_str());
    if (pDir == nullptr)
        return inputs;
    while (dirent* pEntry = readdir(pDir))
    {
        if (pEntry->d_name[0] == '.')
            continue;
        Input input{static_cast<uint8_t>(inputs.size())};
        bool bComplete = true;
        for (const char* szName : {"current", "backlight", "dark"})
        {
            Input pixels;
            bComplete = bComplete && ReadPixels(synthetic + "/" + pEntry->d_name + "/" + szName + ".bmp", pixels);
            input.push_back(eRaw);
            input.insert(input.end(), 8, 0);
            input.insert(input.end(), pixels.begin(), pixels.end());
        }
        if (bComplete)
            inputs.push_back(std::move(input));
    }
    closedir(pDir);
    return inputs;
}

std::vector<Input> OddInputs()
{
    // A bright platen with the light pair of a finger-like capture.
    const uint8_t light[2][9] = {{eGradient, 40, 64, 0, 0, 200, 0, 0, 0},
                                 {eConstant, 30, 0, 0, 0, 0, 0, 0, 0}};
    auto with = [&](std::initializer_list<uint8_t> current, uint8_t nSettings = 0)
    {
        uint8_t images[3][9] = {};
        std::copy(current.begin(), current.end(), images[0]);
        std::memcpy(images[1], light[0], 9);
        std::memcpy(images[2], light[1], 9);
        return Generated(nSettings, images);
    };
    return {with({eConstant, 0}),
            with({eConstant, 128}),
            with({eConstant, 255}),
            with({eNoise, 0, 0, 0, 0, 0, 255, 0, 7}),
            with({eStripes, 20, 6, 32, 0, 0, 230}),
            with({eStripes, 0, 1, 0, 0, 0, 255}),
            with({eBlobs, 10, 0, 0, 128, 128, 80, 60, 240}),
            with({eFinger, 20, 6, 0, 128, 120, 60, 90, 30}),
            with({eEdgeFinger, 20, 6, 0, 128, 128, 80, 80, 20}),
            with({eBrightPixel, 0, 0, 0, 100, 200}),
            with({eCheckerboard, 0, 0, 0, 0, 0, 255}),
            with({eCheckerboard, 30, 5, 0, 0, 0, 220}, 3)};
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 2)
    {
        std::fprintf(stderr, "usage: %s CONFORMANCE_DIR [COUNT | --write-corpus DIR]\n", argv[0]);
        return 64;
    }
    const std::vector<Input> conformance = ConformanceInputs(argv[1]);
    if (argc == 4 && std::strcmp(argv[2], "--write-corpus") == 0)
    {
        int n = 0;
        for (const Input& input : conformance)
        {
            const std::string path = std::string(argv[3]) + "/conformance_" + std::to_string(n++);
            std::ofstream(path, std::ios::binary)
                .write(reinterpret_cast<const char*>(input.data()), static_cast<std::streamsize>(input.size()));
        }
        std::printf("%d seeds written\n", n);
        return 0;
    }
    const int nRandom = argc > 2 ? std::atoi(argv[2]) : 24;

    size_t nRuns = 0;
    auto run = [&](const Input& input)
    {
        LLVMFuzzerTestOneInput(input.data(), input.size());
        ++nRuns;
    };
    for (const Input& input : OddInputs())
        run(input);
    for (const Input& input : conformance)
        run(input);
    ClNoise random(20261123);
    for (int n = 0; n < nRandom; ++n)
    {
        Input input(28);
        for (uint8_t& b : input)
            b = random.Next();
        run(input);
    }
    std::printf("%zu captures judged four ways without a fault\n", nRuns);
    return nRuns > 0 ? 0 : 1;
}
