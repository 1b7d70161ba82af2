#pragma once
// Captures for the benchmarks: a real ink print of the scanner's size as the
// library stores it, and what the finger half makes of it (the prepared
// image and the fast mask), built once per benchmark program.
#include <string>

#include "BmpFile.h"
#include "detection/IpPrepareFeatureExtraction.h"
#include "image/Bitmap.h"
#include "image/FpImage.h"
#include "sentivo/sentivo.h"

namespace BenchCaptures
{

inline const std::string& SourceDir()
{
    static const std::string dir = SENTIVO_SOURCE_DIR;
    return dir;
}

// A bitmap file of the project as a library image (rows as stored).
inline ClImage LoadImage(const std::string& relativePath)
{
    SentivoTool::BmpFile file = SentivoTool::ReadBmpFile(SourceDir() + "/" + relativePath);
    ClBitmap bitmap;
    bitmap.Attach(file.Block(), file.BlockSize());
    ClImage image;
    image.AssignBitmap(bitmap);
    return image;
}

// The real print that the benchmarks judge.
inline const ClImage& RealPrint()
{
    static const ClImage image = LoadImage("tests/data/fingerprints/nist_sivv_ink_rolled_card0001_01.bmp");
    return image;
}

struct Prepared
{
    ClImage image; // the normalised print
    ClImage mask;  // the fast mask
};

inline const Prepared& PreparedPrint()
{
    static const Prepared prepared = []
    {
        Prepared p;
        ClImage print = RealPrint();
        ClIpPrepareFeatureExtraction prepare;
        prepare.pInImage = &print;
        prepare.pOutImage = &p.image;
        prepare.pOutMask = &p.mask;
        prepare.Run();
        return p;
    }();
    return prepared;
}

// A handle of the C interface holding the real print with the conformance
// set's light pair.
class Scanner
{
public:
    Scanner()
    {
        SentivoInitialize(nullptr);
        SentivoCreateHandle(&m_hHandle);
        const char* aszFiles[3] = {"tests/data/fingerprints/nist_sivv_ink_rolled_card0001_01.bmp",
                                   "tests/conformance/light/backlight.bmp",
                                   "tests/conformance/light/dark.bmp"};
        for (int32_t i = 0; i < 3; ++i)
        {
            m_Files[i] = SentivoTool::ReadBmpFile(SourceDir() + "/" + aszFiles[i]);
            SentivoSetImage(m_hHandle, i, m_Files[i].Block(), m_Files[i].BlockSize());
        }
    }
    ~Scanner()
    {
        SentivoDestroyHandle(&m_hHandle);
        SentivoUninitialize();
    }
    Scanner(const Scanner&) = delete;
    Scanner& operator=(const Scanner&) = delete;
    SentivoHandle Handle() const { return m_hHandle; }

private:
    SentivoHandle m_hHandle = nullptr;
    SentivoTool::BmpFile m_Files[3];
};

} // namespace BenchCaptures
