#pragma once
// The JSON object of one judged capture, as the tool's features and inspect
// commands print it: numbers with 17 significant digits, NaN and the
// infinities as the strings "NaN", "Infinity" and "-Infinity", null for what
// the run did not reach.
#include <string>

#include "CaptureRun.h"

namespace SentivoTool
{

std::string ResultJson(const CaptureResult& result);

// A number as the object writes it.
std::string JsonNumber(double dValue);
// A text with the JSON escapes.
std::string JsonString(const std::string& text);

} // namespace SentivoTool
