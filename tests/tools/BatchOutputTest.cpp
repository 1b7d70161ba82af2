// Batch output: CSV quoting, the lines batch writes, and reading them back
// as evaluate and batch --resume do (malformed results: bad_input.sh).
#include <limits>

#include "BatchRecord.h"
#include "Csv.h"
#include "Progress.h"
#include "ToolOptions.h"
#include "ToolRun.h"

using namespace SentivoTool;

namespace
{
// Every record as texts, a null field as "<null>".
std::vector<std::vector<std::string>> ReadAll(const std::string& text)
{
    CsvReader reader(text);
    std::vector<std::vector<std::string>> records;
    for (std::vector<CsvValue> record; reader.Next(record);)
    {
        records.emplace_back();
        for (const CsvValue& value : record)
            records.back().push_back(value.IsNull() ? "<null>" : value.text);
    }
    return records;
}

size_t ErrorLine(const std::string& text)
{
    try
    {
        ReadAll(text);
    }
    catch (const CsvError& e)
    {
        return e.Line();
    }
    return 0;
}

const std::string kMessage = "text, with \"quotes\"";
} // namespace

TEST(Csv, FieldsAreQuotedOnlyWhereTheyMustAndReadBackUnchanged)
{
    EXPECT_EQ(CsvField("plain/path.bmp"), "plain/path.bmp");
    EXPECT_EQ(CsvField("a,b"), "\"a,b\"");
    EXPECT_EQ(CsvField("say \"hi\""), "\"say \"\"hi\"\"\"");
    EXPECT_EQ(CsvField("two\nlines"), "\"two\nlines\"");
    EXPECT_EQ(CsvField(""), "\"\"");
    const std::string text = "\xEF\xBB\xBF"
                             "a,\"b,c\",,\"\"\r\n"
                             "\n"
                             "\"x\"\"y\",\"multi\nline\",z\n"
                             "last,unterminated";
    // "" is an empty text, not null; the blank line is no record.
    EXPECT_EQ(ReadAll(text), (std::vector<std::vector<std::string>>{{"a", "b,c", "<null>", ""},
                                                                    {"x\"y", "multi\nline", "z"},
                                                                    {"last", "unterminated"}}));
    // Lines are counted past the blank line and the quoted line break.
    CsvReader reader(text);
    std::vector<CsvValue> record;
    for (const size_t nLine : {1u, 3u, 5u})
    {
        reader.Next(record);
        EXPECT_EQ(reader.Line(), nLine);
    }
    EXPECT_EQ(ErrorLine("a,b\nc\"d,e\n"), 2u);   // a quote in an unquoted field
    EXPECT_EQ(ErrorLine("a\n\n\"open,b\n"), 3u); // never closed: where the quote opens
    EXPECT_EQ(ErrorLine("\"closed\"x,b\n"), 1u); // text behind the closing quote
}

TEST(BatchRecord, LinesCarryTheFieldsInOrderAndScoresReadBackExactly)
{
    const double dThird = 100.0 / 3.0;
    const BatchRecord scored{"dir,a/current.bmp", "live", 0, kMessage, dThird, {}};
    const BatchRecord failed{"b/current.bmp", std::nullopt, -15, kMessage, std::nullopt, {}};
    EXPECT_EQ(CsvHeader(false), "current,label,finger_code,message,score\n");
    EXPECT_EQ(FormatRecord(failed, EOutputFormat::eCsv, false),
              "b/current.bmp,,-15,\"text, with \"\"quotes\"\"\",\n");
    EXPECT_EQ(FormatRecord(failed, EOutputFormat::eJsonl, false),
              "{\"current\": \"b/current.bmp\", \"label\": null, \"finger_code\": -15, "
              "\"message\": \"text, with \\\"quotes\\\"\", \"score\": null}\n");
    for (const EOutputFormat eFormat : {EOutputFormat::eCsv, EOutputFormat::eJsonl})
    {
        const std::string text = (eFormat == EOutputFormat::eCsv ? CsvHeader(false) : "") +
                                 FormatRecord(scored, eFormat, false) +
                                 FormatRecord(failed, eFormat, false);
        const ResultFile file = ParseResults("out", text, false);
        EXPECT_EQ(file.eFormat, eFormat);
        EXPECT_FALSE(file.bFeatures);
        ASSERT_EQ(file.records.size(), 2u);
        // Written again, each record gives its line: every field, the score bit for bit.
        for (size_t i = 0; i < 2; ++i)
            EXPECT_EQ(FormatRecord(file.records[i], eFormat, false),
                      FormatRecord(i == 0 ? scored : failed, eFormat, false));
        EXPECT_EQ(file.records[0].score, std::optional<double>(dThird));
    }
}

TEST(BatchRecord, FeaturesFillFortyTwoPlacesWithNullBeyondWhatTheRunMade)
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    BatchRecord record{"c.bmp", "fake", -44, kMessage, std::nullopt, {1.5, -2.0, dNaN}};
    std::string header = "current,label,finger_code,message,score", nulls;
    for (int i = 0; i < kBatchFeatureCount; ++i)
        header += ",feature_" + std::to_string(i);
    for (int i = 3; i < kBatchFeatureCount; ++i)
        nulls += ", null";
    EXPECT_EQ(CsvHeader(true), header + "\n");
    const std::string csv = FormatRecord(record, EOutputFormat::eCsv, true);
    EXPECT_EQ(csv, "c.bmp,fake,-44,\"text, with \"\"quotes\"\"\",,1.5,-2,NaN" +
                       std::string(kBatchFeatureCount - 3, ',') + "\n");
    const std::string json = FormatRecord(record, EOutputFormat::eJsonl, true);
    EXPECT_EQ(json, "{\"current\": \"c.bmp\", \"label\": \"fake\", \"finger_code\": -44, "
                    "\"message\": \"text, with \\\"quotes\\\"\", \"score\": null, "
                    "\"features\": [1.5, -2, \"NaN\"" +
                        nulls + "]}\n");
    // A finger that did not pass has no features at all.
    record.features.clear();
    EXPECT_NE(FormatRecord(record, EOutputFormat::eJsonl, true).find("\"features\": null}"),
              std::string::npos);
    // Read back, the features are told by the header or the first line.
    EXPECT_TRUE(ParseResults("o", header + "\n" + csv, false).bFeatures);
    EXPECT_TRUE(ParseResults("o", json, false).bFeatures);
}

TEST(Progress, TheBarShowsTheShareDoneTheRateAndTheTimeLeft)
{
    // A quarter of 30 marks, 0.5 a second, 15 left take 30 s; nothing done
    // yet: no rate to tell the time left by; 9999 left x 2 s: 5:33:18.
    EXPECT_EQ(Progress::Text(5, 20, 10.0),
              "[#######.......................] 5/20  0.5/s  0:30 left");
    EXPECT_EQ(Progress::Text(0, 3, 0.0), "[..............................] 0/3");
    EXPECT_EQ(Progress::Text(1, 10000, 2.0),
              "[..............................] 1/10000  0.5/s  5:33:18 left");
}
