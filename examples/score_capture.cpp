// Scores one capture from C++: score_capture CURRENT.bmp BACKLIGHT.bmp DARK.bmp
// The same judgement as quickstart.c, with the handle and the files owned by
// objects that release them on every path.
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>
#include <vector>

#include <sentivo/sentivo.h>

namespace
{

// A library failure that is not an outcome of the detection.
struct SentivoFailure : std::runtime_error
{
    SentivoFailure(const std::string& what, int32_t nCode)
        : std::runtime_error(what + ": " + SentivoGetErrorDescriptionA(nCode))
    {
    }
};

// The library initialised and one handle, for the lifetime of the object.
class Detector
{
public:
    Detector()
    {
        if (const int32_t nCode = SentivoInitialize(nullptr); nCode != ZRC_SUCCESS)
            throw SentivoFailure("initialisation", nCode);
        if (const int32_t nCode = SentivoCreateHandle(&m_hHandle); nCode != ZRC_SUCCESS)
        {
            SentivoUninitialize();
            throw SentivoFailure("handle", nCode);
        }
    }
    ~Detector()
    {
        SentivoDestroyHandle(&m_hHandle);
        SentivoUninitialize();
    }
    Detector(const Detector&) = delete;
    Detector& operator=(const Detector&) = delete;

    // Slot 0 the capture, 1 under backlight, 2 without. The library takes the
    // bitmap behind the file's 14-byte header.
    void SetImage(int32_t nSlot, const std::string& path)
    {
        std::vector<unsigned char> data;
        try
        {
            std::ifstream file(path, std::ios::binary);
            if (file)
                data.assign(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
        }
        catch (const std::exception&) // reading a folder, for one
        {
            data.clear();
        }
        if (data.size() <= kFileHeaderSize || data[0] != 'B' || data[1] != 'M')
            throw std::runtime_error(path + ": not a readable bitmap file");
        const int32_t nCode = SentivoSetImage(m_hHandle, nSlot, data.data() + kFileHeaderSize,
                                              static_cast<uint32_t>(data.size() - kFileHeaderSize));
        if (nCode != ZRC_SUCCESS)
            throw SentivoFailure(path, nCode);
    }

    // As a scanner sees a still finger: the finger detection once (standing
    // for the frame before), then both halves.
    int32_t Evaluate(double& dScore)
    {
        SentivoDetectFinger(m_hHandle);
        return SentivoEvaluateLiveliness(m_hHandle, &dScore);
    }

private:
    static constexpr size_t kFileHeaderSize = 14;
    SentivoHandle m_hHandle = nullptr;
};

} // namespace

int main(int argc, char** argv)
{
    if (argc != 4)
    {
        std::fprintf(stderr, "usage: %s CURRENT.bmp BACKLIGHT.bmp DARK.bmp\n", argv[0]);
        return 64;
    }
    try
    {
        Detector detector;
        for (int32_t nSlot = 0; nSlot < 3; ++nSlot)
            detector.SetImage(nSlot, argv[nSlot + 1]);
        double dScore = 0.0;
        const int32_t nCode = detector.Evaluate(dScore);
        std::printf("code %d: %s\n", static_cast<int>(nCode), SentivoGetErrorDescriptionA(nCode));
        if (nCode != ZRC_SUCCESS)
            return 1;
        std::printf("score %.3f (0 to 100, higher is more live)\n", dScore);
        return 0;
    }
    catch (const std::exception& e)
    {
        std::fprintf(stderr, "%s\n", e.what());
        return 2;
    }
}
