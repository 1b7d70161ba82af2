// Every run of the conformance set (captures with the results that an
// independent implementation computed for them) through the library, each
// mismatch reported by run name and quantity.
#include <cmath>
#include <algorithm>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "CaptureRun.h"
#include "classifier/ScoreMapping.h"
#include "support/Sha256.h"

namespace
{

using nlohmann::json;
using SentivoTool::CaptureResult;
using SentivoTool::RunSettings;

const std::string kFolder = SENTIVO_SOURCE_DIR "/tests/conformance/";

// The image's bytes, row 0 first, without padding; "" for no image.
std::string ImageHash(const ClImage& image)
{
    if (image.Data() == nullptr)
        return "";
    std::vector<uint8_t> bytes;
    for (int32_t y = 0; y < image.Height(); ++y)
    {
        const uint8_t* pRow = image.Row<uint8_t>(y);
        bytes.insert(bytes.end(), pRow, pRow + image.Width());
    }
    return TestSupport::Sha256(bytes);
}

double Number(const json& value)
{
    if (value.is_number())
        return value.get<double>();
    const std::string text = value.is_string() ? value.get<std::string>() : "NaN";
    if (text == "Infinity")
        return HUGE_VAL;
    if (text == "-Infinity")
        return -HUGE_VAL;
    return std::nan("");
}

// Collects the mismatches of one run.
class Comparison
{
public:
    explicit Comparison(std::string run) : m_run(std::move(run)) {}

    void Exact(const std::string& quantity, const json& expected, double actual)
    {
        if (expected.is_null() || expected.get<double>() != actual)
            Report(quantity, expected.dump(), actual);
    }
    void Text(const std::string& quantity, const json& expected, const std::string& actual)
    {
        const std::string wanted = expected.is_null() ? "" : expected.get<std::string>();
        if (wanted != actual)
            m_lines.push_back(m_run + ": " + quantity + " expected " + expected.dump() + ", got " +
                              json(actual).dump());
    }
    // Within 1e-9 relative, or 1e-12 absolute near zero; NaN equals NaN and
    // an infinity only itself. Non-finite numbers are written as strings.
    void Close(const std::string& quantity, const json& expected, double actual)
    {
        const double wanted = Number(expected);
        const bool bMatch = std::isnan(wanted)   ? std::isnan(actual)
                            : std::isinf(wanted) ? wanted == actual
                                                 : std::fabs(actual - wanted) <=
                                                       std::max(1e-12, 1e-9 * std::fabs(wanted));
        if (!bMatch)
            Report(quantity, expected.dump(), actual);
    }
    void Absent(const std::string& quantity, const json& expected, bool bPresent)
    {
        if (expected.is_null() && bPresent)
            m_lines.push_back(m_run + ": " + quantity + " expected none, got a value");
    }
    const std::vector<std::string>& Lines() const { return m_lines; }

private:
    void Report(const std::string& quantity, const std::string& expected, double actual)
    {
        std::ostringstream text;
        text.precision(17);
        text << m_run << ": " << quantity << " expected " << expected << ", got " << actual;
        m_lines.push_back(text.str());
    }

    std::string m_run;
    std::vector<std::string> m_lines;
};

json ReadExpected()
{
    std::ifstream in(kFolder + "expected.json");
    return json::parse(in);
}

CaptureResult RunOf(const json& run)
{
    RunSettings settings;
    settings.nSecurityLevel = run.at("security_level").get<int32_t>();
    settings.bMovementDetection = run.at("movement_detection").get<bool>();
    const std::string previous = run.at("previous").get<std::string>();
    settings.ePrevious = previous == "none"   ? RunSettings::eNone
                         : previous == "same" ? RunSettings::eSame
                                              : RunSettings::eOther;
    auto read = [](const std::string& path) { return SentivoTool::ReadBmpFile(kFolder + path); };
    SentivoTool::BmpFile current = read(run.at("current"));
    SentivoTool::BmpFile backlight = read(run.at("backlight"));
    SentivoTool::BmpFile dark = read(run.at("dark"));
    SentivoTool::BmpFile earlier;
    if (settings.ePrevious == RunSettings::eOther)
        earlier = read(previous);
    return SentivoTool::RunCapture(current, backlight, dark, settings, &earlier);
}

void CompareFingerHalf(const json& expected, const CaptureResult& result, Comparison& compare)
{
    compare.Exact("finger_code", expected.at("finger_code"), result.nFingerCode);
    compare.Text("finger_message", expected.at("finger_message"), result.fingerMessage);
    const json& profile = expected.at("profile");
    compare.Absent("profile", profile, result.bProfile);
    if (!profile.is_null())
    {
        for (int i = 0; i < CaptureResult::kProfileBands; ++i)
            compare.Exact("profile[" + std::to_string(i) + "]", profile.at(i),
                          result.bProfile ? result.adProfile[i] : std::nan(""));
        compare.Exact("movement_sum", expected.at("movement_sum"),
                      result.bProfile ? result.dMovementSum : std::nan(""));
    }
    const json& hashes = expected.at("sha256");
    compare.Text("sha256.prepared", hashes.at("prepared"), ImageHash(result.prepared));
    compare.Text("sha256.fast_mask", hashes.at("fast_mask"), ImageHash(result.fastMask));
}

// The fake half of a run whose finger half passed: the falloff verdict, the
// final mask and the masked image exactly, the features and the net output
// closely, and the rate-table row exactly.
void CompareFakeHalf(const json& expected, const CaptureResult& result, Comparison& compare)
{
    const json& falloff = expected.at("falloff_passed");
    compare.Exact("falloff_passed",
                  falloff.is_null() ? json(-1) : json(falloff.get<bool>() ? 1 : 0),
                  result.nFalloff);
    const json& hashes = expected.at("sha256");
    compare.Text("sha256.final_mask", hashes.at("final_mask"), ImageHash(result.finalMask));
    compare.Text("sha256.masked_image", hashes.at("masked_image"), ImageHash(result.masked));
    const json& features = expected.at("features");
    compare.Exact("feature count", json(features.size()),
                  static_cast<double>(result.features.size()));
    for (size_t i = 0; i < features.size() && i < result.features.size(); ++i)
        compare.Close("features[" + std::to_string(i) + "]", features.at(i), result.features[i]);
    compare.Close("net_output", expected.at("net_output"),
                  result.bNetOutput ? result.dNetOutput : std::nan(""));
    compare.Exact("k", expected.at("k"), result.bNetOutput ? result.k : -1);
    // The score: exactly 0.0 where the falloff check rejected the capture,
    // otherwise the mapping of the net output lifted by the smallest normal
    // double, so that no computed score is 0.
    const bool bRejected = falloff.is_boolean() && !falloff.get<bool>();
    const double dWanted = bRejected
                               ? 0.0
                               : NeuralNet::ScoreOfNetOutput(Number(expected.at("net_output"))) +
                                     2.2250738585072014e-308;
    compare.Exact("score", json(dWanted), result.bScore ? result.dScore : std::nan(""));
    if (!bRejected && !(result.dScore > 0.0))
        compare.Text("score", json("above 0"), std::to_string(result.dScore));
}

TEST(Conformance, EveryRunAgreesWithTheIndependentResults)
{
    const json expected = ReadExpected();
    std::vector<std::string> mismatches;
    int nRuns = 0;
    for (const json& run : expected.at("runs"))
    {
        Comparison compare(run.at("name").get<std::string>());
        const CaptureResult result = RunOf(run);
        CompareFingerHalf(run.at("expected"), result, compare);
        if (run.at("expected").at("finger_code") == 0)
            CompareFakeHalf(run.at("expected"), result, compare);
        mismatches.insert(mismatches.end(), compare.Lines().begin(), compare.Lines().end());
        ++nRuns;
    }
    EXPECT_EQ(nRuns, 68);
    std::string report;
    for (const std::string& line : mismatches)
        report += line + "\n";
    EXPECT_TRUE(mismatches.empty()) << mismatches.size() << " mismatches:\n" << report;
}

} // namespace
