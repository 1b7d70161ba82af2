// Batch output: CSV quoting, the lines batch writes, and reading them back
// as evaluate and batch --resume do.
#include <algorithm>
#include <limits>

#include <gtest/gtest.h>

#include "BatchRecord.h"
#include "Csv.h"
#include "Progress.h"
#include "ToolOptions.h"

using namespace SentivoTool;

namespace
{
std::vector<std::vector<CsvValue>> ReadAll(const std::string& text)
{
    CsvReader reader(text);
    std::vector<std::vector<CsvValue>> records;
    std::vector<CsvValue> record;
    while (reader.Next(record))
        records.push_back(record);
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

BatchRecord Record(const std::string& current, std::optional<std::string> label, int32_t nCode,
                   std::optional<double> score)
{
    BatchRecord record;
    record.current = current;
    record.label = std::move(label);
    record.nFingerCode = nCode;
    record.message = "text, with \"quotes\"";
    record.score = score;
    return record;
}

std::string InputErrorOf(const std::string& text)
{
    try
    {
        ParseResults("out.csv", text, false);
    }
    catch (const InputError& e)
    {
        return e.what();
    }
    return "";
}
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
    const auto records = ReadAll(text);
    ASSERT_EQ(records.size(), 3u);
    ASSERT_EQ(records[0].size(), 4u);
    EXPECT_EQ(records[0][0].text, "a");
    EXPECT_EQ(records[0][1].text, "b,c");
    EXPECT_TRUE(records[0][2].IsNull());
    EXPECT_FALSE(records[0][3].IsNull()); // "" is an empty text, not null
    EXPECT_EQ(records[1][0].text, "x\"y");
    EXPECT_EQ(records[1][1].text, "multi\nline");
    EXPECT_EQ(records[2][1].text, "unterminated");

    CsvReader reader(text);
    std::vector<CsvValue> record;
    reader.Next(record);
    EXPECT_EQ(reader.Line(), 1u);
    EXPECT_TRUE(reader.Terminated());
    reader.Next(record);
    EXPECT_EQ(reader.Line(), 3u); // behind the blank line
    reader.Next(record);
    EXPECT_EQ(reader.Line(), 5u); // the quoted line break counts
    EXPECT_FALSE(reader.Terminated());
    EXPECT_EQ(reader.End(), text.size());

    EXPECT_EQ(ErrorLine("a,b\nc\"d,e\n"), 2u);   // a quote in an unquoted field
    EXPECT_EQ(ErrorLine("a\n\n\"open,b\n"), 3u); // never closed: where the quote opens
    EXPECT_EQ(ErrorLine("\"closed\"x,b\n"), 1u); // text behind the closing quote
}

TEST(BatchRecord, LinesCarryTheFieldsInOrderAndScoresReadBackExactly)
{
    const double dThird = 100.0 / 3.0;
    const BatchRecord scored = Record("dir,a/current.bmp", std::string("live"), 0, dThird);
    const BatchRecord failed = Record("b/current.bmp", std::nullopt, -15, std::nullopt);

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
        EXPECT_EQ(file.records[0].current, "dir,a/current.bmp");
        EXPECT_EQ(file.records[0].label, std::optional<std::string>("live"));
        EXPECT_EQ(file.records[0].nFingerCode, 0);
        EXPECT_EQ(file.records[0].message, "text, with \"quotes\"");
        ASSERT_TRUE(file.records[0].score.has_value());
        EXPECT_EQ(*file.records[0].score, dThird); // bit for bit
        EXPECT_FALSE(file.records[1].label.has_value());
        EXPECT_EQ(file.records[1].nFingerCode, -15);
        EXPECT_FALSE(file.records[1].score.has_value());
    }
}

TEST(BatchRecord, FeaturesFillFortyTwoPlacesWithNullBeyondWhatTheRunMade)
{
    BatchRecord record = Record("c.bmp", std::string("fake"), -44, std::nullopt);
    record.features = {1.5, -2.0, std::numeric_limits<double>::quiet_NaN()};

    const std::string header = CsvHeader(true);
    EXPECT_EQ(std::count(header.begin(), header.end(), ','), 4 + kBatchFeatureCount);
    EXPECT_NE(header.find(",score,feature_0,feature_1,"), std::string::npos);
    EXPECT_NE(header.find(",feature_41\n"), std::string::npos);

    const std::string csv = FormatRecord(record, EOutputFormat::eCsv, true);
    EXPECT_NE(csv.find(",,1.5,-2,NaN,,"), std::string::npos) << csv;
    // 4 between the base fields, 1 in the message, 1 before each feature.
    EXPECT_EQ(std::count(csv.begin(), csv.end(), ','), 4 + 1 + kBatchFeatureCount);
    const std::string json = FormatRecord(record, EOutputFormat::eJsonl, true);
    EXPECT_NE(json.find("\"features\": [1.5, -2, \"NaN\", null, "), std::string::npos) << json;
    // 5 between the six keys, 1 in the message, 41 between the features.
    EXPECT_EQ(std::count(json.begin(), json.end(), ','), 5 + 1 + kBatchFeatureCount - 1);

    // A finger that did not pass has no features at all.
    record.features.clear();
    EXPECT_NE(FormatRecord(record, EOutputFormat::eJsonl, true).find("\"features\": null}"),
              std::string::npos);

    // Read back, the features are told by the header or the first line.
    EXPECT_TRUE(ParseResults("o", header + csv, false).bFeatures);
    EXPECT_TRUE(ParseResults("o", json, false).bFeatures);
}

TEST(BatchRecord, ACutLastLineIsDroppedOnlyWhenAsked)
{
    const BatchRecord record = Record("a.bmp", std::string("live"), 0, 50.0);
    const std::string whole = CsvHeader(false) + FormatRecord(record, EOutputFormat::eCsv, false);
    const std::string cut = whole + "b.bmp,li";
    const ResultFile dropped = ParseResults("o.csv", cut, true);
    EXPECT_EQ(dropped.records.size(), 1u);
    EXPECT_EQ(dropped.nWholeBytes, whole.size());
    // Read as it stands, the cut line is one field short.
    EXPECT_THROW(ParseResults("o.csv", cut, false), InputError);
    const std::string jsonCut = FormatRecord(record, EOutputFormat::eJsonl, false) + "{\"curr";
    EXPECT_EQ(ParseResults("o.jsonl", jsonCut, true).records.size(), 1u);
}

TEST(BatchRecord, MalformedResultsAreNamedByFileAndLine)
{
    const std::string header = CsvHeader(false);
    EXPECT_EQ(InputErrorOf(header + "a,live,0,m\n"), "out.csv:2: 4 fields, not 5");
    EXPECT_EQ(InputErrorOf(header + "a,live,0,m,5\nb,alive,0,m,5\n"),
              "out.csv:3: label 'alive' is neither live, fake nor empty");
    EXPECT_EQ(InputErrorOf(header + "a,live,zero,m,5\n"),
              "out.csv:2: finger_code 'zero' is not a whole number");
    EXPECT_EQ(InputErrorOf(header + "a,live,0,m,inf\n"), "out.csv:2: score 'inf' is not a number");
    EXPECT_EQ(InputErrorOf(header + "a,live,0,\"m,5\n"), "out.csv:2: a quoted field is not closed");
    EXPECT_EQ(InputErrorOf("{\"current\": \"a\", \"label\": null, \"finger_code\": 0, "
                           "\"score\": 5}\n{\"current\": \"b\",\n"),
              "out.csv:2: not a JSON object");
    EXPECT_EQ(InputErrorOf("{\"current\": \"a\", \"label\": null, \"finger_code\": 0.5, "
                           "\"score\": 5}\n"),
              "out.csv:1: finger_code is not a whole number");
    EXPECT_EQ(InputErrorOf("{\"current\": \"a\", \"label\": \"live\", \"finger_code\": 0, "
                           "\"score\": \"5\"}\n"),
              "out.csv:1: score is neither a number nor null");
}

TEST(Progress, TheBarShowsTheShareDoneTheRateAndTheTimeLeft)
{
    // 5 of 20 in 10 s: a quarter of 30 marks, 0.5 a second, 15 left take 30 s.
    EXPECT_EQ(Progress::Text(5, 20, 10.0),
              "[#######.......................] 5/20  0.5/s  0:30 left");
    // Nothing done yet: no rate to tell the time left by.
    EXPECT_EQ(Progress::Text(0, 3, 0.0), "[..............................] 0/3");
    EXPECT_EQ(Progress::Text(3, 3, 2.0), "[##############################] 3/3  1.5/s  0:00 left");
    // 1 of 10000 in 2 s leaves 9999 x 2 s: 5:33:18.
    EXPECT_EQ(Progress::Text(1, 10000, 2.0),
              "[..............................] 1/10000  0.5/s  5:33:18 left");
}
