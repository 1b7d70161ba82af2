#pragma once
// Files of one JSON object per line (batch output, manifests): each
// non-blank line parsed, with "PATH:LINE" for the messages of its reader.
#include <string>

#include <nlohmann/json.hpp>

#include "ToolOptions.h"

namespace SentivoTool
{

// Calls f(object, where, nLine) for every non-blank line of text; a line
// that is no JSON object is refused with its place.
template <typename F> void ForEachJsonLine(const std::string& path, const std::string& text, F&& f)
{
    size_t nStart = 0;
    for (size_t nLine = 1; nStart < text.size(); ++nLine)
    {
        size_t nEnd = text.find('\n', nStart);
        if (nEnd == std::string::npos)
            nEnd = text.size();
        const std::string line = text.substr(nStart, nEnd - nStart);
        nStart = nEnd + 1;
        if (line.find_first_not_of(" \t\r") == std::string::npos)
            continue;
        const std::string where = path + ":" + std::to_string(nLine);
        const nlohmann::json object = nlohmann::json::parse(line, nullptr, false);
        if (!object.is_object())
            throw InputError(where + ": not a JSON object");
        f(object, where, nLine);
    }
}

} // namespace SentivoTool
