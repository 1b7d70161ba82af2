// sentivo evaluate and sentivo threshold on made-up results whose measures
// are counted by hand (see data/README.md).
#include <cstdio>
#include <tuple>

#include <nlohmann/json.hpp>

#include "ToolRun.h"

using nlohmann::json;

namespace
{
const std::string kData = kSourceDir + "/tests/tools/data";

// The library's threshold and false rejection rate for a false acceptance rate.
std::pair<double, double> Query(const std::string& far)
{
    const ToolRun query = RunSentivo({"threshold", "--far", far});
    double dScore = -1.0, dFrr = -1.0;
    EXPECT_EQ(std::sscanf(query.out.c_str(), "dQueryScore %lf dQueryFAR %*f dQueryFRR %lf", &dScore,
                          &dFrr),
              2)
        << query.out;
    return {dScore, dFrr};
}

size_t Count(const std::string& text, const std::string& what)
{
    size_t nCount = 0;
    for (size_t n = text.find(what); n != std::string::npos; n = text.find(what, n + 1))
        ++nCount;
    return nCount;
}

} // namespace

TEST(EvaluateCommand, MetricsOfAHandCountedSet)
{
    // At the given 55 and at the library's threshold for a false acceptance
    // rate of 10 % (between 20 and 55) APCER is 2/4 and BPCER 1/4; the one for
    // 1 %, the default, lies above every score. The curve does not move.
    const std::string dir = ScratchDir("evaluate");
    for (const auto& [option, value, dApcer, dBpcer] :
         {std::make_tuple("--threshold", "55", 0.5, 0.25),
          std::make_tuple("--far", "0.1", 0.5, 0.25), std::make_tuple("", "0.01", 0.0, 1.0)})
    {
        const std::string out = dir + "/" + value;
        std::vector<std::string> args = {"evaluate", kData + "/evaluate_live.csv",
                                         kData + "/evaluate_fake.jsonl", "--out", out};
        if (*option)
            args.insert(args.end(), {option, value});
        const ToolRun run = RunSentivo(args);
        ASSERT_EQ(run.nStatus, 0) << run.err;
        const json metrics = json::parse(ReadFileText(out + "/metrics.json"));
        const bool bGiven = std::string(option) == "--threshold";
        EXPECT_NEAR(metrics.at("threshold").get<double>(), bGiven ? 55 : Query(value).first, 1e-6);
        const std::string from = metrics.at("threshold_from");
        EXPECT_EQ(from, bGiven ? std::string("given") : "far " + std::string(value));
        EXPECT_DOUBLE_EQ(metrics.at("apcer").get<double>(), dApcer) << value;
        EXPECT_DOUBLE_EQ(metrics.at("bpcer").get<double>(), dBpcer) << value;
        EXPECT_DOUBLE_EQ(metrics.at("eer").get<double>(), 0.375) << value;
    }
    const json metrics = json::parse(ReadFileText(dir + "/55/metrics.json"));
    EXPECT_EQ(metrics.at("failed"), json({{"-15", 1}, {"-44", 1}, {"-770", 1}}));
    EXPECT_EQ(metrics.at("sources").size(), 2u);
    const std::pair<const char*, double> expected[] = {
        {"live", 5},        {"fake", 6},      {"unlabelled", 1}, {"live_scored", 4},
        {"fake_scored", 4}, {"bpcer20", 0.5}, {"bpcer100", 0.5}, {"bpcer20_threshold", 70}};
    for (const auto& [name, dValue] : expected)
        EXPECT_DOUBLE_EQ(metrics.at(name).get<double>(), dValue) << name;
    // The figures: one bar per non-empty bin (four live, four fake) beside
    // the background, the measured and the library's curve.
    const std::string scores = ReadFileText(dir + "/55/scores.svg");
    EXPECT_EQ(scores.rfind("<svg", 0), 0u);
    EXPECT_EQ(Count(scores, "<rect"), 9u);
    EXPECT_NE(scores.find("threshold 55.00"), std::string::npos);
    EXPECT_EQ(Count(ReadFileText(dir + "/55/det.svg"), "<polyline"), 2u);
    // The page stands alone: both figures inline, nothing to fetch.
    const std::string html = ReadFileText(dir + "/55/report.html");
    EXPECT_EQ(Count(html, "<svg"), 2u);
    for (const char* szOut : {"<script", "<link", "<img", "src=", "href=", "url(", "@import"})
        EXPECT_EQ(html.find(szOut), std::string::npos) << szOut;
    for (const char* szShown : {"37.50 %", "50.00 %", "25.00 %", "-770", "<td>5</td>"})
        EXPECT_NE(html.find(szShown), std::string::npos) << szShown;
}

TEST(ThresholdCommand, TheTableHasEveryRowAndAgreesWithTheQuery)
{
    const std::vector<std::string> lines = Lines(RunSentivo({"threshold", "--table"}).out);
    ASSERT_EQ(lines.size(), 1001u);
    EXPECT_EQ(lines[0], "row,score,far,frr");
    std::vector<double> score(1000), far(1000), frr(1000);
    for (size_t k = 0; k < 1000; ++k)
    {
        int nRow = -1;
        ASSERT_EQ(
            std::sscanf(lines[k + 1].c_str(), "%d,%lf,%lf,%lf", &nRow, &score[k], &far[k], &frr[k]),
            4)
            << lines[k + 1];
        EXPECT_EQ(nRow, static_cast<int>(k));
        EXPECT_NEAR(score[k], 100.0 * k / 999.0, 2.0) << k; // rows evenly spaced in score
    }
    // The query for 1 % lands on the first row whose rate is at most that.
    size_t k = 0;
    while (far[k] > 0.01)
        ++k;
    const auto [dScore, dFrr] = Query("0.01");
    EXPECT_NEAR(dScore, score[k], 1e-6);
    EXPECT_NEAR(dFrr, frr[k], 1e-6);
}
