#pragma once
// Runs the tool in the test process, as main does, and keeps what it wrote.
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "Commands.h"

struct ToolRun
{
    int nStatus = 0;
    std::string out, err;
};

inline ToolRun RunSentivo(const std::vector<std::string>& args)
{
    ToolRun run;
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    run.nStatus = SentivoTool::RunTool(args);
    run.err = ::testing::internal::GetCapturedStderr();
    run.out = ::testing::internal::GetCapturedStdout();
    return run;
}

inline std::string ReadFileText(const std::string& path)
{
    std::ostringstream text;
    text << std::ifstream(path, std::ios::binary).rdbuf();
    return text.str();
}

inline void WriteFileText(const std::string& path, const std::string& text)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

inline std::vector<std::string> Lines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return lines;
}

inline const std::string kSourceDir = SENTIVO_SOURCE_DIR;
inline const std::string kSamples = kSourceDir + "/samples";

// The current, backlight and dark image of a capture folder.
inline std::vector<std::string> CaptureFiles(const std::string& folder)
{
    return {folder + "/current.bmp", folder + "/backlight.bmp", folder + "/dark.bmp"};
}

inline std::string ScratchDir(const std::string& name)
{
    const std::string path = ::testing::TempDir() + "tool_" + name;
    std::filesystem::remove_all(path);
    std::filesystem::create_directories(path);
    return path;
}
