#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <set>

#include "classifier/RateTables.h"
#include "classifier/ScoreMapping.h"
#include "sdk/Exception.h"

using NeuralNet::FarTable;
using NeuralNet::FrrTable;
using NeuralNet::nRateTableSize;
using NeuralNet::QueryByFAR;
using NeuralNet::QueryByFRR;
using NeuralNet::QueryByScore;
using NeuralNet::ScoreOfNetOutput;

namespace
{

double RowScore(int32_t k)
{
    return 100.0 * FrrTable[k] / (FrrTable[k] + FarTable[k]);
}

// The rates that the score query interpolates at net output x.
void InterpolatedRates(double x, double& dFar, double& dFrr)
{
    const double p = x * 999;
    const int32_t k = static_cast<int32_t>(p);
    const double t = p - k;
    dFar = FarTable[k] * (1 - t) + FarTable[k + 1] * t;
    dFrr = FrrTable[k] * (1 - t) + FrrTable[k + 1] * t;
}

void ExpectOutOfRange(double dNetOutput)
{
    try
    {
        ScoreOfNetOutput(dNetOutput);
        ADD_FAILURE() << "no exception for " << dNetOutput;
    }
    catch (const ClException& e)
    {
        EXPECT_EQ(e.GetCode(), ZRC_ERROR_INTERNAL);
        const char* szRemark = std::strrchr(e.GetMessage(), '\n');
        ASSERT_NE(szRemark, nullptr);
        EXPECT_STREQ(szRemark + 1, "Score out of range");
    }
}

// Rows where k / 999.0 * 999.0 truncates to k - 1.
const std::set<int32_t> kRowsReadBackOneLower = {63, 126, 252, 504, 509};

} // namespace

TEST(ScoreOfNetOutput, MapsTheEndsOfTheRangeToZeroAndHundred)
{
    EXPECT_EQ(ScoreOfNetOutput(0.0), 0.0);
    EXPECT_DOUBLE_EQ(ScoreOfNetOutput(1.0), 100.0);
}

TEST(ScoreOfNetOutput, TruncatesTheOutputToARow)
{
    EXPECT_EQ(ScoreOfNetOutput(0.5), RowScore(499));
    for (int32_t k = 0; k < 999; ++k)
    {
        // Anywhere inside row k, even just below the start of row k + 1.
        EXPECT_EQ(ScoreOfNetOutput((k + 0.5) / 999.0), RowScore(k)) << "row " << k;
        EXPECT_EQ(ScoreOfNetOutput((k + 0.999) / 999.0), RowScore(k)) << "row " << k;
    }
    EXPECT_EQ(ScoreOfNetOutput(0.5545188653296096), RowScore(553));
}

TEST(ScoreOfNetOutput, RejectsOutputsOutsideZeroToOneButLetsNaNThrough)
{
    ExpectOutOfRange(-0.000001);
    ExpectOutOfRange(1.000001);
    EXPECT_EQ(ScoreOfNetOutput(std::numeric_limits<double>::quiet_NaN()), 0.0);
}

TEST(QueryByScore, FiftySettlesJustBelowRow501AndInterpolatesTheRates)
{
    double dScore = -1.0, dFar = -1.0, dFrr = -1.0;
    QueryByScore(50.0, dScore, dFar, dFrr);
    EXPECT_EQ(dScore, 50.0);

    // The bisection ends at x = 0.501495361328125: row 500, t about 0.994.
    const double x = 0.501495361328125;
    EXPECT_EQ(static_cast<int32_t>(x * 999), 500);
    EXPECT_NEAR(x * 999 - 500, 0.994, 0.0005);
    double dExpectedFar, dExpectedFrr;
    InterpolatedRates(x, dExpectedFar, dExpectedFrr);
    EXPECT_EQ(dFar, dExpectedFar);
    EXPECT_EQ(dFrr, dExpectedFrr);
    EXPECT_NEAR(dFar, 0.083, 0.0005);
    EXPECT_NEAR(dFrr, 0.083, 0.0005);
}

TEST(QueryByScore, ATargetEqualToARunOfRowsSettlesAtTheTopOfTheRun)
{
    // Rows 551 to 553 share one score; on equality the search moves up, so it
    // ends just below row 554 and not below row 551.
    ASSERT_EQ(RowScore(551), RowScore(553));
    ASSERT_LT(RowScore(553), RowScore(554));
    double dScore, dFar, dFrr;
    QueryByScore(RowScore(553), dScore, dFar, dFrr);
    EXPECT_EQ(dScore, RowScore(553));
    EXPECT_LT(dFar, FarTable[553]);
    EXPECT_GE(dFar, FarTable[554]);
    EXPECT_GT(dFrr, FrrTable[553]);
    EXPECT_LE(dFrr, FrrTable[554]);
}

TEST(QueryByScore, TargetsBeyondTheScaleStopOneStepFromTheEnds)
{
    double dScore, dFar, dFrr;
    QueryByScore(200.0, dScore, dFar, dFrr);
    EXPECT_EQ(dScore, 200.0);
    // x = 0.999969482421875 is row 998: the rates lie between the last two
    // rows and are not those of the last row.
    double dExpectedFar, dExpectedFrr;
    InterpolatedRates(0.999969482421875, dExpectedFar, dExpectedFrr);
    EXPECT_EQ(dFar, dExpectedFar);
    EXPECT_EQ(dFrr, dExpectedFrr);
    EXPECT_GT(dFar, 0.0);
    EXPECT_LT(dFrr, FrrTable[999]);

    QueryByScore(-5.0, dScore, dFar, dFrr);
    EXPECT_EQ(dScore, -5.0);
    InterpolatedRates(0.000030517578125, dExpectedFar, dExpectedFrr);
    EXPECT_EQ(dFar, dExpectedFar);
    EXPECT_EQ(dFrr, dExpectedFrr);
    EXPECT_GT(dFrr, 0.0);
    EXPECT_LT(dFar, FarTable[0]);
}

TEST(QueryByRate, RatesBeyondTheTablesSnapToTheEndRowsAndStayAsSet)
{
    double dScore, dFar, dFrr;
    QueryByFAR(1.0, dScore, dFar, dFrr); // row 0
    EXPECT_EQ(dScore, 0.0);
    EXPECT_EQ(dFrr, 0.0);
    EXPECT_EQ(dFar, 1.0);
    for (double dTarget : {0.0, -0.25}) // row 999, the first with FAR 0
    {
        QueryByFAR(dTarget, dScore, dFar, dFrr);
        EXPECT_DOUBLE_EQ(dScore, 100.0);
        EXPECT_EQ(dFrr, FrrTable[999]);
        EXPECT_EQ(dFar, dTarget);
    }
    for (double dTarget : {0.0, -1.0}) // row 0
    {
        QueryByFRR(dTarget, dScore, dFar, dFrr);
        EXPECT_EQ(dScore, 0.0);
        EXPECT_EQ(dFar, FarTable[0]);
        EXPECT_EQ(dFrr, dTarget);
    }
    QueryByFRR(1.0, dScore, dFar, dFrr); // above every row: row 999
    EXPECT_DOUBLE_EQ(dScore, 100.0);
    EXPECT_EQ(dFar, 0.0);
    EXPECT_EQ(dFrr, 1.0);
}

TEST(QueryByRate, AgreesWithALinearScanOfTheTables)
{
    // Targets on every row's rate and halfway to the next row's.
    for (int32_t k = 0; k + 1 < nRateTableSize; ++k)
    {
        for (double dTarget : {FarTable[k], (FarTable[k] + FarTable[k + 1]) / 2})
        {
            int32_t nRow = 0;
            while (FarTable[nRow] > dTarget)
                ++nRow;
            double dScore, dFar, dFrr;
            QueryByFAR(dTarget, dScore, dFar, dFrr);
            EXPECT_EQ(dFar, dTarget);
            EXPECT_EQ(dFrr, FrrTable[nRow]) << "FAR " << dTarget;
            const int32_t nScoreRow = kRowsReadBackOneLower.count(nRow) ? nRow - 1 : nRow;
            EXPECT_EQ(dScore, RowScore(nScoreRow)) << "FAR " << dTarget;
        }
        for (double dTarget : {FrrTable[k], (FrrTable[k] + FrrTable[k + 1]) / 2})
        {
            int32_t nRow = 0;
            while (FrrTable[nRow] < dTarget)
                ++nRow;
            double dScore, dFar, dFrr;
            QueryByFRR(dTarget, dScore, dFar, dFrr);
            EXPECT_EQ(dFrr, dTarget);
            EXPECT_EQ(dFar, FarTable[nRow]) << "FRR " << dTarget;
            const int32_t nScoreRow = kRowsReadBackOneLower.count(nRow) ? nRow - 1 : nRow;
            EXPECT_EQ(dScore, RowScore(nScoreRow)) << "FRR " << dTarget;
        }
    }
}
