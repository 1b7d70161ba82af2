// sentivo evaluate and sentivo threshold on made-up results whose measures
// are counted by hand (see data/README.md).
#include <cmath>
#include <cstdlib>

#include <nlohmann/json.hpp>

#include "ToolRun.h"
#include "sentivo/sentivo.h"

namespace
{
const std::string kData = SourceDir() + "/tests/tools/data";

// The library's threshold for a false acceptance rate, through its C interface.
double LibraryThreshold(const char* szFar)
{
    EXPECT_EQ(SentivoInitialize(nullptr), ZRC_SUCCESS);
    SentivoHandle hHandle = nullptr;
    EXPECT_EQ(SentivoCreateHandle(&hHandle), ZRC_SUCCESS);
    EXPECT_EQ(SentivoSetPropertyA(hHandle, "dQueryFAR", szFar), ZRC_SUCCESS);
    char szValue[64] = {};
    uint32_t nSize = sizeof(szValue);
    EXPECT_EQ(SentivoGetPropertyA(hHandle, "dQueryScore", szValue, &nSize), ZRC_SUCCESS);
    SentivoDestroyHandle(&hHandle);
    SentivoUninitialize();
    return std::strtod(szValue, nullptr);
}

nlohmann::json Evaluate(const std::string& dir, const std::vector<std::string>& extra)
{
    std::vector<std::string> args = {"evaluate", kData + "/evaluate_live.csv",
                                     kData + "/evaluate_fake.jsonl", "--out", dir};
    args.insert(args.end(), extra.begin(), extra.end());
    const ToolRun run = RunSentivo(args);
    EXPECT_EQ(run.nStatus, 0) << run.err;
    return nlohmann::json::parse(ReadFileText(dir + "/metrics.json"));
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
    const std::string dir = ScratchDir("evaluate") + "/report";
    const nlohmann::json metrics = Evaluate(dir, {"--threshold", "55"});
    EXPECT_EQ(metrics.at("live"), 5);
    EXPECT_EQ(metrics.at("fake"), 6);
    EXPECT_EQ(metrics.at("unlabelled"), 1);
    EXPECT_EQ(metrics.at("live_scored"), 4);
    EXPECT_EQ(metrics.at("fake_scored"), 4);
    EXPECT_EQ(metrics.at("failed"), nlohmann::json({{"-15", 1}, {"-44", 1}, {"-770", 1}}));
    EXPECT_EQ(metrics.at("threshold"), 55.0);
    EXPECT_EQ(metrics.at("threshold_from"), "given");
    EXPECT_DOUBLE_EQ(metrics.at("apcer").get<double>(), 0.5);
    EXPECT_DOUBLE_EQ(metrics.at("bpcer").get<double>(), 0.25);
    EXPECT_DOUBLE_EQ(metrics.at("eer").get<double>(), 0.375);
    EXPECT_DOUBLE_EQ(metrics.at("bpcer20").get<double>(), 0.5);
    EXPECT_DOUBLE_EQ(metrics.at("bpcer100").get<double>(), 0.5);
    EXPECT_EQ(metrics.at("bpcer20_threshold"), 70.0);
    EXPECT_EQ(metrics.at("sources").size(), 2u);

    // The figures: one bar per non-empty bin (four live, four fake) beside
    // the background, the measured and the library's curve.
    const std::string scores = ReadFileText(dir + "/scores.svg");
    EXPECT_EQ(scores.rfind("<svg", 0), 0u);
    EXPECT_EQ(Count(scores, "<rect"), 9u);
    EXPECT_NE(scores.find("threshold 55.00"), std::string::npos);
    const std::string det = ReadFileText(dir + "/det.svg");
    EXPECT_EQ(Count(det, "<polyline"), 2u);

    // The page stands alone: both figures inline, nothing to fetch.
    const std::string html = ReadFileText(dir + "/report.html");
    EXPECT_EQ(Count(html, "<svg"), 2u);
    for (const char* szOut : {"<script", "<link", "<img", "src=", "href=", "url(", "@import"})
        EXPECT_EQ(html.find(szOut), std::string::npos) << szOut;
    for (const char* szShown : {"37.50 %", "50.00 %", "25.00 %", "-770", "<td>5</td>"})
        EXPECT_NE(html.find(szShown), std::string::npos) << szShown;
}

TEST(EvaluateCommand, TheThresholdIsTheLibrarysForAFalseAcceptanceRate)
{
    const std::string dir = ScratchDir("evaluate_far");
    // Default: the threshold for 1 %, above every made-up score.
    const nlohmann::json standard = Evaluate(dir + "/default", {});
    EXPECT_NEAR(standard.at("threshold").get<double>(), LibraryThreshold("0.01"), 1e-6);
    EXPECT_EQ(standard.at("threshold_from"), "far 0.01");
    EXPECT_DOUBLE_EQ(standard.at("apcer").get<double>(), 0.0);
    EXPECT_DOUBLE_EQ(standard.at("bpcer").get<double>(), 1.0);
    // The curve and its EER do not depend on the threshold.
    EXPECT_DOUBLE_EQ(standard.at("eer").get<double>(), 0.375);

    const nlohmann::json tenth = Evaluate(dir + "/tenth", {"--far", "0.1"});
    const double dThreshold = tenth.at("threshold").get<double>();
    EXPECT_NEAR(dThreshold, LibraryThreshold("0.1"), 1e-6);
    ASSERT_TRUE(dThreshold > 20.0 && dThreshold < 55.0) << dThreshold;
    // Between 20 and 55 the made-up sets give APCER 2/4 and BPCER 1/4.
    EXPECT_DOUBLE_EQ(tenth.at("apcer").get<double>(), 0.5);
    EXPECT_DOUBLE_EQ(tenth.at("bpcer").get<double>(), 0.25);
}

TEST(ThresholdCommand, TheTableHasEveryRowAndAgreesWithTheQuery)
{
    const ToolRun table = RunSentivo({"threshold", "--table"});
    ASSERT_EQ(table.nStatus, 0);
    const std::vector<std::string> lines = Lines(table.out);
    ASSERT_EQ(lines.size(), 1001u);
    EXPECT_EQ(lines[0], "row,score,far,frr");
    std::vector<double> scores, far, frr;
    for (size_t k = 0; k < 1000; ++k)
    {
        int nRow = -1;
        double adValue[3] = {};
        ASSERT_EQ(std::sscanf(lines[k + 1].c_str(), "%d,%lf,%lf,%lf", &nRow, &adValue[0],
                              &adValue[1], &adValue[2]),
                  4)
            << lines[k + 1];
        EXPECT_EQ(nRow, static_cast<int>(k));
        scores.push_back(adValue[0]);
        far.push_back(adValue[1]);
        frr.push_back(adValue[2]);
        // Rows are spaced so that the score of row k is near 100 k / 999.
        EXPECT_NEAR(adValue[0], 100.0 * k / 999.0, 2.0) << k;
        if (k > 0)
        {
            EXPECT_LE(far[k], far[k - 1]) << k;
            EXPECT_GE(frr[k], frr[k - 1]) << k;
        }
    }
    EXPECT_EQ(far.back(), 0.0);

    // The query for a false acceptance rate of 1 % lands on the first row whose
    // rate is at most that.
    size_t k = 0;
    while (far[k] > 0.01)
        ++k;
    const ToolRun query = RunSentivo({"threshold", "--far", "0.01"});
    ASSERT_EQ(query.nStatus, 0);
    double dScore = 0.0;
    ASSERT_EQ(std::sscanf(query.out.c_str(), "dQueryScore %lf", &dScore), 1) << query.out;
    EXPECT_NEAR(dScore, scores[k], 1e-6);
    double dFrr = 0.0;
    ASSERT_NE(query.out.find("dQueryFRR "), std::string::npos);
    dFrr = std::strtod(query.out.c_str() + query.out.find("dQueryFRR ") + 10, nullptr);
    EXPECT_NEAR(dFrr, frr[k], 1e-6);
}
