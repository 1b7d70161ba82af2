#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

#include "classifier/RateTables.h"

using NeuralNet::FarTable;
using NeuralNet::FrrTable;
using NeuralNet::nRateTableSize;

namespace
{

constexpr double kFarDenominator = 21741.0;
constexpr double kFrrDenominator = 7511.0;

double RowScore(int32_t k)
{
    return 100.0 * FrrTable[k] / (FrrTable[k] + FarTable[k]);
}

bool IsWholeMultiple(double dValue, double dDenominator)
{
    const double dCount = dValue * dDenominator;
    return std::fabs(dCount - std::round(dCount)) < 1e-9;
}

struct GivenRow
{
    int32_t k;
    double dFar;
    double dFrr;
};

// The rows measured on the evaluation set, as published with the net.
const GivenRow kGivenRows[] = {
    {0, 0.813072075801481, 0.0},
    {1, 0.719654109746562, 0.000798828385035},
    {2, 0.662343038498689, 0.001331380641725},
    {5, 0.506140471919415, 0.002795899347623},
    {10, 0.420909801757049, 0.004393556117694},
    {25, 0.338070925900373, 0.008787112235388},
    {50, 0.272756542937307, 0.014378910930635},
    {100, 0.207442159974242, 0.023166023166023},
    {200, 0.153764776229244, 0.038476900545866},
    {300, 0.123361390920381, 0.052855811476501},
    {400, 0.101375281725772, 0.067234722407136},
    {500, 0.082930867945357, 0.082678737851152},
    {600, 0.068810082332919, 0.102116895220343},
    {700, 0.056391150361069, 0.130075888696578},
    {800, 0.042316360792972, 0.166156304087339},
    {900, 0.027275654293731, 0.235521235521236},
    {950, 0.01720252058323, 0.31154307016376},
    {975, 0.010211121843521, 0.389295699640527},
    {990, 0.005381537187802, 0.506324058048196},
    {995, 0.003127731015133, 0.577819198508854},
    {998, 0.001747849684927, 0.685394754360272},
    {999, 0.0, 0.856077752629477},
};

} // namespace

TEST(RateTables, HaveAThousandRowsAndKeepTheMeasuredRowsExactly)
{
    EXPECT_EQ(nRateTableSize, 1000);
    for (const GivenRow& row : kGivenRows)
    {
        EXPECT_EQ(FarTable[row.k], row.dFar) << "row " << row.k;
        EXPECT_EQ(FrrTable[row.k], row.dFrr) << "row " << row.k;
    }
}

TEST(RateTables, FarNeverRisesAndFrrNeverFalls)
{
    for (int32_t k = 1; k < nRateTableSize; ++k)
    {
        EXPECT_LE(FarTable[k], FarTable[k - 1]) << "row " << k;
        EXPECT_GE(FrrTable[k], FrrTable[k - 1]) << "row " << k;
    }
}

TEST(RateTables, EveryRateIsACountOverTheEvaluationSetAndNoRowIsAllZero)
{
    for (int32_t k = 0; k < nRateTableSize; ++k)
    {
        EXPECT_TRUE(IsWholeMultiple(FarTable[k], kFarDenominator)) << "row " << k;
        EXPECT_TRUE(IsWholeMultiple(FrrTable[k], kFrrDenominator)) << "row " << k;
        EXPECT_FALSE(FarTable[k] == 0.0 && FrrTable[k] == 0.0) << "row " << k;
        EXPECT_GE(FarTable[k], 0.0) << "row " << k;
        EXPECT_LE(FrrTable[k], 1.0) << "row " << k;
    }
}

TEST(RateTables, ScoreRisesAlmostLinearlyWithTheRow)
{
    for (int32_t k = 0; k < nRateTableSize; ++k)
    {
        EXPECT_NEAR(RowScore(k), 100.0 * k / 999.0, 0.77) << "row " << k;
        if (k > 0)
        {
            EXPECT_GE(RowScore(k), RowScore(k - 1)) << "row " << k;
        }
    }
    EXPECT_EQ(RowScore(0), 0.0);
    // The last row has no false acceptances; evaluated left to right its score
    // is one unit in the last place above 100.
    EXPECT_DOUBLE_EQ(RowScore(999), 100.0);
}

TEST(RateTables, TheNetOutputForTheMeanFeatureVectorScores55Point124)
{
    // 0.5545188653296096 * 999 lies in row 553.
    EXPECT_EQ(static_cast<int32_t>(0.5545188653296096 * 999), 553);
    EXPECT_EQ(std::round(RowScore(553) * 1000.0), 55124.0);
}

TEST(RateTables, RatesAreNearestAtRows499And500AndCrossAfterRow500)
{
    const double dNearest = std::fabs(FarTable[500] - FrrTable[500]);
    EXPECT_EQ(std::fabs(FarTable[499] - FrrTable[499]), dNearest);
    for (int32_t k = 0; k < nRateTableSize; ++k)
    {
        if (k != 499 && k != 500)
        {
            EXPECT_GT(std::fabs(FarTable[k] - FrrTable[k]), dNearest) << "row " << k;
        }
    }
    for (int32_t k : {499, 500})
    {
        EXPECT_NEAR(FarTable[k], 0.0829, 0.00005) << "row " << k;
        EXPECT_NEAR(FrrTable[k], 0.0827, 0.00005) << "row " << k;
    }
    // Score 50, the point of equal error, lies between rows 500 and 501.
    EXPECT_LT(RowScore(500), 50.0);
    EXPECT_GT(RowScore(501), 50.0);
}
