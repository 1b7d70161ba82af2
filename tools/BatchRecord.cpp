#include "BatchRecord.h"

#include <cerrno>
#include <climits>
#include <cmath>
#include <cstdlib>

#include <nlohmann/json.hpp>

#include "Csv.h"
#include "JsonLines.h"
#include "ResultJson.h"
#include "ToolOptions.h"

namespace SentivoTool
{

namespace
{

const char* const kBaseColumns[] = {"current", "label", "finger_code", "message", "score"};

std::string CsvNumber(double dValue)
{
    // JsonNumber quotes the non-finite values; CSV keeps their bare names.
    std::string text = JsonNumber(dValue);
    if (text.front() == '"')
        text = text.substr(1, text.size() - 2);
    return text;
}

int32_t ParseCode(const std::string& text, const std::string& where)
{
    errno = 0;
    char* pEnd = nullptr;
    const long nCode = std::strtol(text.c_str(), &pEnd, 10);
    if (text.empty() || *pEnd != '\0' || errno == ERANGE || nCode < INT32_MIN || nCode > INT32_MAX)
        throw InputError(where + ": finger_code '" + text + "' is not a whole number");
    return static_cast<int32_t>(nCode);
}

double ParseScore(const std::string& text, const std::string& where)
{
    char* pEnd = nullptr;
    const double dScore = std::strtod(text.c_str(), &pEnd);
    if (text.empty() || *pEnd != '\0' || !std::isfinite(dScore))
        throw InputError(where + ": score '" + text + "' is not a number");
    return dScore;
}

std::optional<std::string> ParseLabel(const std::string& text, const std::string& where)
{
    if (text.empty())
        return std::nullopt;
    if (text != "live" && text != "fake")
        throw InputError(where + ": label '" + text + "' is neither live, fake nor empty");
    return text;
}

void ParseCsv(const std::string& path, const std::string& text, ResultFile& file)
{
    CsvReader reader(text);
    std::vector<CsvValue> record;
    try
    {
        if (!reader.Next(record))
            return;
        // The base columns in their order, then nothing or the 42 features.
        const size_t nBase = std::size(kBaseColumns);
        bool bHeader = record.size() == nBase || record.size() == nBase + kBatchFeatureCount;
        for (size_t i = 0; bHeader && i < record.size(); ++i)
            bHeader = record[i].text == (i < nBase ? std::string(kBaseColumns[i])
                                                   : "feature_" + std::to_string(i - nBase));
        if (!bHeader)
            throw InputError(path + ":" + std::to_string(reader.Line()) +
                             ": not the header of batch output (current,label,finger_code,"
                             "message,score[,feature_0...])");
        file.bFeatures = record.size() > nBase;
        const size_t nColumns = record.size();
        while (reader.Next(record))
        {
            const std::string where = path + ":" + std::to_string(reader.Line());
            if (record.size() != nColumns)
                throw InputError(where + ": " + std::to_string(record.size()) + " fields, not " +
                                 std::to_string(nColumns));
            BatchRecord result;
            result.current = record[0].text;
            result.label = ParseLabel(record[1].text, where);
            result.nFingerCode = ParseCode(record[2].text, where);
            result.message = record[3].text;
            if (!record[4].IsNull())
                result.score = ParseScore(record[4].text, where);
            file.records.push_back(std::move(result));
        }
    }
    catch (const CsvError& e)
    {
        throw InputError(path + ":" + std::to_string(e.Line()) + ": " + e.what());
    }
}

void ParseJsonLines(const std::string& path, const std::string& text, ResultFile& file)
{
    ForEachJsonLine(path, text,
                    [&](const nlohmann::json& object, const std::string& where, size_t)
                    {
                        BatchRecord result;
                        const auto current = object.find("current");
                        if (current == object.end() || !current->is_string())
                            throw InputError(where + ": no current path");
                        result.current = current->get<std::string>();
                        const auto label = object.find("label");
                        if (label == object.end() || !(label->is_null() || label->is_string()))
                            throw InputError(where + ": label is neither a text nor null");
                        if (label->is_string())
                            result.label = ParseLabel(label->get<std::string>(), where);
                        const auto code = object.find("finger_code");
                        if (code == object.end() || !code->is_number_integer() ||
                            code->get<int64_t>() < INT32_MIN || code->get<int64_t>() > INT32_MAX)
                            throw InputError(where + ": finger_code is not a whole number");
                        result.nFingerCode = static_cast<int32_t>(code->get<int64_t>());
                        const auto message = object.find("message");
                        if (message != object.end() && message->is_string())
                            result.message = message->get<std::string>();
                        const auto score = object.find("score");
                        if (score == object.end() || !(score->is_null() || score->is_number()))
                            throw InputError(where + ": score is neither a number nor null");
                        if (score->is_number())
                            result.score = score->get<double>();
                        if (file.records.empty())
                            file.bFeatures = object.contains("features");
                        file.records.push_back(std::move(result));
                    });
}

} // namespace

BatchRecord RecordOf(const CaptureEntry& entry, const JudgedCapture& judged)
{
    BatchRecord record;
    record.current = entry.files.current;
    record.label = entry.label;
    record.nFingerCode = judged.nCode;
    record.message = judged.message;
    if (judged.bRead && judged.result.bScore)
        record.score = judged.result.dScore;
    if (judged.bRead && judged.result.nFingerCode == 0)
        record.features = judged.result.features;
    return record;
}

std::string CsvHeader(bool bFeatures)
{
    std::string header;
    for (const char* szColumn : kBaseColumns)
        header += (header.empty() ? "" : ",") + std::string(szColumn);
    for (int i = 0; bFeatures && i < kBatchFeatureCount; ++i)
        header += ",feature_" + std::to_string(i);
    return header + "\n";
}

std::string FormatRecord(const BatchRecord& record, EOutputFormat eFormat, bool bFeatures)
{
    // The feature of place i, or null where the run did not make it.
    auto feature = [&](size_t i, bool bCsv) -> std::string
    {
        if (i >= record.features.size())
            return bCsv ? "" : "null";
        return bCsv ? CsvNumber(record.features[i]) : JsonNumber(record.features[i]);
    };
    std::string line;
    if (eFormat == EOutputFormat::eCsv)
    {
        line = CsvField(record.current) + "," + (record.label ? *record.label : "") + "," +
               std::to_string(record.nFingerCode) + "," + CsvField(record.message) + "," +
               (record.score ? CsvNumber(*record.score) : "");
        for (size_t i = 0; bFeatures && i < kBatchFeatureCount; ++i)
            line += "," + feature(i, true);
        return line + "\n";
    }
    line = "{\"current\": " + JsonString(record.current) +
           ", \"label\": " + (record.label ? JsonString(*record.label) : "null") +
           ", \"finger_code\": " + std::to_string(record.nFingerCode) +
           ", \"message\": " + JsonString(record.message) +
           ", \"score\": " + (record.score ? JsonNumber(*record.score) : "null");
    if (bFeatures)
    {
        if (record.features.empty())
            line += ", \"features\": null";
        else
        {
            line += ", \"features\": [";
            for (size_t i = 0; i < kBatchFeatureCount; ++i)
                line += (i ? ", " : "") + feature(i, false);
            line += "]";
        }
    }
    return line + "}\n";
}

ResultFile ParseResults(const std::string& path, const std::string& text, bool bDropCutLine)
{
    ResultFile file;
    file.nWholeBytes = text.size();
    if (bDropCutLine && !text.empty() && text.back() != '\n')
    {
        const size_t nBreak = text.rfind('\n');
        file.nWholeBytes = nBreak == std::string::npos ? 0 : nBreak + 1;
    }
    const std::string whole = text.substr(0, file.nWholeBytes);
    const size_t nFirst = whole.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    file.eFormat = nFirst != std::string::npos && whole[nFirst] == '{' ? EOutputFormat::eJsonl
                                                                       : EOutputFormat::eCsv;
    if (file.eFormat == EOutputFormat::eJsonl)
        ParseJsonLines(path, whole, file);
    else
        ParseCsv(path, whole, file);
    return file;
}

} // namespace SentivoTool
