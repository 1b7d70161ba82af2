// The measures of evaluate on score sets small enough to count by hand.
#include <cmath>
#include <tuple>

#include <gtest/gtest.h>

#include "PadMetrics.h"

using namespace SentivoTool;

TEST(PadMetrics, AScoreEqualToTheThresholdIsAccepted)
{
    const std::vector<double> live = {40.0, 50.0, 60.0, 70.0}, fake = {10.0, 50.0, 55.0};
    const double dAbove = std::nextafter(50.0, 100.0);
    // At 50: fakes 50 and 55 accepted (2 of 3), live 40 rejected (1 of 4);
    // just above it the captures at 50 change sides in both classes.
    EXPECT_DOUBLE_EQ(*Apcer(fake, 50.0), 2.0 / 3.0);
    EXPECT_DOUBLE_EQ(*Bpcer(live, 50.0), 0.25);
    EXPECT_DOUBLE_EQ(*Apcer(fake, dAbove), 1.0 / 3.0);
    EXPECT_DOUBLE_EQ(*Bpcer(live, dAbove), 0.5);
    EXPECT_FALSE(Apcer({}, 50.0).has_value() || Bpcer({}, 50.0).has_value());
}

TEST(PadMetrics, OperatingPointsStepThroughEachDistinctScoreAndAboveAll)
{
    // live 60 70 80 90, fake 10 20 30 65, given unsorted; no tie between the classes.
    const std::vector<OperatingPoint> points =
        OperatingPoints({{90.0, 60.0, 80.0, 70.0}, {65.0, 10.0, 30.0, 20.0}});
    const double aThresholds[] = {10, 20, 30, 60, 65, 70, 80, 90, INFINITY};
    const size_t anFakeAccepted[] = {4, 3, 2, 1, 1, 0, 0, 0, 0};
    const size_t anLiveRejected[] = {0, 0, 0, 0, 1, 1, 2, 3, 4};
    ASSERT_EQ(points.size(), 9u);
    for (size_t i = 0; i < points.size(); ++i)
    {
        EXPECT_EQ(points[i].dThreshold, aThresholds[i]) << i;
        EXPECT_EQ(points[i].nFakeAccepted, anFakeAccepted[i]) << i;
        EXPECT_EQ(points[i].nLiveRejected, anLiveRejected[i]) << i;
        EXPECT_DOUBLE_EQ(points[i].dApcer, anFakeAccepted[i] / 4.0) << i;
        EXPECT_DOUBLE_EQ(points[i].dBpcer, anLiveRejected[i] / 4.0) << i;
    }
    EXPECT_TRUE(OperatingPoints({{50.0}, {}}).empty() && OperatingPoints({{}, {50.0}}).empty());
}

TEST(PadMetrics, EqualErrorRateIsReadOnTheLineBetweenThePointsAroundTheCrossing)
{
    const std::pair<ScoreSets, double> cases[] = {
        // The set above: at 65 the rates meet exactly, no interpolation.
        {{{90, 60, 80, 70}, {65, 10, 30, 20}}, 0.25},
        // At 50: APCER 1/2, BPCER 1/3; at 70: (0, 1/3). The line between them
        // is BPCER = 1/3, which meets APCER = BPCER at 1/3.
        {{{30, 70, 90}, {20, 50}}, 1.0 / 3.0},
        // A live and a fake tie at 40: from (1/2, 0) at 40 the curve goes to
        // (0, 1/2) at 60 in one step; halfway is 1/4.
        {{{40, 60}, {20, 40}}, 0.25},
        // (1/2, 1/4) at 55, (1/4, 1/2) at 60: the crossing lies halfway, at 3/8.
        {{{30, 55, 70, 90}, {10, 20, 55, 60}}, 0.375},
        // Classes apart: 0; the other way round: 1.
        {{{80, 90}, {10, 20}}, 0.0},
        {{{10, 20}, {80, 90}}, 1.0},
        // Every score the same: all accepted at it, all rejected above; 1/2.
        {{{50, 50}, {50}}, 0.5}};
    for (const auto& [scores, dEer] : cases)
        EXPECT_DOUBLE_EQ(*EqualErrorRate(OperatingPoints(scores)), dEer) << dEer;
    EXPECT_FALSE(EqualErrorRate({}).has_value());
}

TEST(PadMetrics, BpcerAtApcerTakesTheLowestThresholdThatKeepsTheAttackShare)
{
    // 20 fakes at 0, 5, ..., 95; live 50 93 95 98.
    ScoreSets twenty{{50.0, 93.0, 95.0, 98.0}, {}};
    for (int i = 0; i < 20; ++i)
        twenty.fake.push_back(5.0 * i);
    // APCER at most 5 %: one fake of 20 may pass, so the threshold must lie
    // above 90; the lowest operating threshold there is the live score 93
    // (only the fake at 95 passes), which rejects live 50 alone. At most 1 %:
    // no fake may pass; the next threshold above 95 is the live score 98,
    // which rejects 50, 93 and 95. When the highest score is a fake's, only
    // the point above all keeps APCER at 0, rejecting every live capture.
    for (const auto& [scores, nPercent, dBpcer, dThreshold] :
         {std::make_tuple(twenty, 5, 0.25, 93.0), std::make_tuple(twenty, 1, 0.75, 98.0),
          std::make_tuple(ScoreSets{{10.0, 20.0}, {30.0}}, 1, 1.0, double(INFINITY))})
    {
        const std::optional<BpcerAtApcer> at =
            BpcerAtApcerOf(scores, OperatingPoints(scores), nPercent);
        ASSERT_TRUE(at.has_value()) << nPercent;
        EXPECT_DOUBLE_EQ(at->dBpcer, dBpcer) << nPercent;
        EXPECT_EQ(at->dThreshold, dThreshold) << nPercent;
    }
    EXPECT_FALSE(BpcerAtApcerOf({{}, {}}, {}, 5).has_value());
}

TEST(PadMetrics, HistogramBinsAreHalfOpenWithTheTopInTheLastBin)
{
    // 0, 4.99 and -3 below the range in bin 0; 5 in bin 1, 50 in bin 10;
    // 99.99, 100 and 150 above it in bin 19.
    std::vector<size_t> expected(20, 0);
    expected[0] = expected[19] = 3;
    expected[1] = expected[10] = 1;
    EXPECT_EQ(Histogram({0.0, 4.99, 5.0, 99.99, 100.0, 150.0, -3.0, 50.0}, 20, 0.0, 100.0),
              expected);
}
