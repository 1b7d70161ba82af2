#pragma once
// The lines of batch output, written by batch and read back by batch
// --resume and by evaluate. Fields, in this order: current (the path of the
// current image), label ("live", "fake" or null), finger_code (the code the
// evaluation ended with, 0 when the capture was scored; negative for a
// capture that could not be read), message (the library's description, or
// the reason naming the file), score (null where there is none), and with
// features the 42 features (null where the run did not make them). CSV has
// a header line and the columns feature_0 to feature_41; JSON lines carry
// "features" as an array, or null where the finger half did not pass.
// Numbers have 17 significant digits, so that a score reads back exactly.
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "CaptureSources.h"

namespace SentivoTool
{

enum class EOutputFormat
{
    eCsv,
    eJsonl
};

struct BatchRecord
{
    std::string current;
    std::optional<std::string> label;
    int32_t nFingerCode = 0;
    std::string message;
    std::optional<double> score;
    // Empty where the finger half did not pass; otherwise what the run made,
    // in feature order.
    std::vector<double> features;
};

constexpr int kBatchFeatureCount = 42;

BatchRecord RecordOf(const CaptureEntry& entry, const JudgedCapture& judged);

// The CSV header line, with its line break.
std::string CsvHeader(bool bFeatures);
// One output line with its line break.
std::string FormatRecord(const BatchRecord& record, EOutputFormat eFormat, bool bFeatures);

struct ResultFile
{
    EOutputFormat eFormat = EOutputFormat::eCsv;
    bool bFeatures = false;
    std::vector<BatchRecord> records; // features are not read back
    // The length of the text up to the last whole line.
    size_t nWholeBytes = 0;
};

// Parses batch output; the format is told by the first character (a JSON
// line starts with '{'). With bDropCutLine a last line without its line
// break (a write cut short) is left out. Throws InputError naming the file
// and line.
ResultFile ParseResults(const std::string& path, const std::string& text, bool bDropCutLine);

} // namespace SentivoTool
