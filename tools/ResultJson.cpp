#include "ResultJson.h"

#include <cmath>
#include <cstdio>

#include "sentivo/sentivo.h"

namespace SentivoTool
{

std::string JsonNumber(double dValue)
{
    if (std::isnan(dValue))
        return "\"NaN\"";
    if (std::isinf(dValue))
        return dValue > 0 ? "\"Infinity\"" : "\"-Infinity\"";
    char szText[32];
    std::snprintf(szText, sizeof(szText), "%.17g", dValue);
    return szText;
}

std::string JsonString(const std::string& text)
{
    std::string out = "\"";
    for (const char c : text)
    {
        switch (c)
        {
        case '"':
            out += "\\\"";
            break;
        case '\\':
            out += "\\\\";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            if (static_cast<unsigned char>(c) < 0x20)
            {
                char szEscape[8];
                std::snprintf(szEscape, sizeof(szEscape), "\\u%04x", static_cast<unsigned char>(c));
                out += szEscape;
            }
            else
                out += c;
        }
    }
    return out + "\"";
}

std::string ResultJson(const CaptureResult& result)
{
    auto numbers = [](const double* p, size_t n)
    {
        std::string text = "[";
        for (size_t i = 0; i < n; ++i)
            text += (i ? ", " : "") + JsonNumber(p[i]);
        return text + "]";
    };
    const bool bFingerPassed = result.nFingerCode == 0;
    std::string json = "{\n";
    json += "  \"code\": " + std::to_string(result.nCode) + ",\n";
    json += "  \"message\": " + JsonString(SentivoGetErrorDescriptionA(result.nCode)) + ",\n";
    json += "  \"finger_code\": " + std::to_string(result.nFingerCode) + ",\n";
    json += "  \"finger_message\": " + JsonString(result.fingerMessage) + ",\n";
    json += "  \"profile\": " +
            (result.bProfile ? numbers(result.adProfile, CaptureResult::kProfileBands) : "null") +
            ",\n";
    json += "  \"movement_sum\": " + (result.bProfile ? JsonNumber(result.dMovementSum) : "null") +
            ",\n";
    json += "  \"falloff_passed\": " +
            std::string(result.nFalloff < 0 ? "null"
                        : result.nFalloff   ? "true"
                                            : "false") +
            ",\n";
    json += "  \"features\": " +
            (bFingerPassed && !result.features.empty()
                 ? numbers(result.features.data(), result.features.size())
                 : "null") +
            ",\n";
    json +=
        "  \"net_output\": " + (result.bNetOutput ? JsonNumber(result.dNetOutput) : "null") + ",\n";
    json += "  \"k\": " + (result.bNetOutput ? std::to_string(result.k) : "null") + ",\n";
    json += "  \"score\": " + (result.bScore ? JsonNumber(result.dScore) : "null") + "\n";
    return json + "}\n";
}

} // namespace SentivoTool
