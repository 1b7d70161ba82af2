#pragma once
// The bitmap files of the synthetic conformance captures.
#include <array>
#include <string>

#include "BmpFile.h"

namespace TestSupport
{

// Current, backlight and dark image of tests/conformance/synthetic/NAME, in
// the order of the image indices.
inline std::array<SentivoTool::BmpFile, 3> ReadCapture(const std::string& name)
{
    const std::string folder = SENTIVO_SOURCE_DIR "/tests/conformance/synthetic/" + name + "/";
    return {SentivoTool::ReadBmpFile(folder + "current.bmp"),
            SentivoTool::ReadBmpFile(folder + "backlight.bmp"),
            SentivoTool::ReadBmpFile(folder + "dark.bmp")};
}

} // namespace TestSupport
