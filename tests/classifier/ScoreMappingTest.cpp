#include <cmath>
#include <cstdint>
#include <tuple>

#include <gtest/gtest.h>

#include "classifier/RateTables.h"
#include "classifier/ScoreMapping.h"

using NeuralNet::FarTable;
using NeuralNet::FrrTable;
using NeuralNet::nRateTableSize;
using NeuralNet::ScoreOfNetOutput;
using std::make_tuple;

namespace
{

double RowScore(int32_t k)
{
    return 100.0 * FrrTable[k] / (FrrTable[k] + FarTable[k]);
}

bool IsWholeMultiple(double dValue, double dDenominator)
{
    const double dCount = dValue * dDenominator;
    return std::fabs(dCount - std::round(dCount)) < 1e-9;
}

// A query's three results: score, FAR, FRR.
template <typename Query> std::tuple<double, double, double> Ask(Query query, double dTarget)
{
    double dScore = -1.0, dFar = -1.0, dFrr = -1.0;
    query(dTarget, dScore, dFar, dFrr);
    return {dScore, dFar, dFrr};
}

} // namespace

TEST(RateTables, KeepTheMeasuredRowsAndRiseAlmostLinearlyInScore)
{
    // The rows measured on the evaluation set, as published with the net.
    // clang-format off
    const double adGiven[][3] = {
        {0, 0.813072075801481, 0.0}, {1, 0.719654109746562, 0.000798828385035},
        {2, 0.662343038498689, 0.001331380641725}, {5, 0.506140471919415, 0.002795899347623},
        {10, 0.420909801757049, 0.004393556117694}, {25, 0.338070925900373, 0.008787112235388},
        {50, 0.272756542937307, 0.014378910930635}, {100, 0.207442159974242, 0.023166023166023},
        {200, 0.153764776229244, 0.038476900545866}, {300, 0.123361390920381, 0.052855811476501},
        {400, 0.101375281725772, 0.067234722407136}, {500, 0.082930867945357, 0.082678737851152},
        {600, 0.068810082332919, 0.102116895220343}, {700, 0.056391150361069, 0.130075888696578},
        {800, 0.042316360792972, 0.166156304087339}, {900, 0.027275654293731, 0.235521235521236},
        {950, 0.01720252058323, 0.31154307016376}, {975, 0.010211121843521, 0.389295699640527},
        {990, 0.005381537187802, 0.506324058048196}, {995, 0.003127731015133, 0.577819198508854},
        {998, 0.001747849684927, 0.685394754360272}, {999, 0.0, 0.856077752629477},
    };
    // clang-format on
    ASSERT_EQ(nRateTableSize, 1000);
    for (const auto& row : adGiven)
        EXPECT_EQ(make_tuple(FarTable[int(row[0])], FrrTable[int(row[0])]),
                  make_tuple(row[1], row[2]))
            << "row " << row[0];

    // Every rate is a count over the evaluation set; FAR never rises, FRR and
    // the score never fall; no row has both rates 0.
    for (int32_t k = 0; k < nRateTableSize; ++k)
    {
        SCOPED_TRACE(k);
        EXPECT_TRUE(IsWholeMultiple(FarTable[k], 21741.0) && IsWholeMultiple(FrrTable[k], 7511.0));
        EXPECT_TRUE(FarTable[k] > 0.0 || FrrTable[k] > 0.0);
        EXPECT_TRUE(FarTable[k] >= 0.0 && FrrTable[k] <= 1.0);
        EXPECT_NEAR(RowScore(k), 100.0 * k / 999.0, 0.77);
        EXPECT_TRUE(k == 0 || (FarTable[k] <= FarTable[k - 1] && FrrTable[k] >= FrrTable[k - 1] &&
                               RowScore(k) >= RowScore(k - 1)));
    }
}

TEST(ScoreOfNetOutput, TruncatesTheOutputToARow)
{
    EXPECT_EQ(ScoreOfNetOutput(0.0), 0.0);
    EXPECT_DOUBLE_EQ(ScoreOfNetOutput(1.0), 100.0);
    // The mean feature vector's output lies in row 553, score 55.124.
    EXPECT_EQ(ScoreOfNetOutput(0.5545188653296096), RowScore(553));
    EXPECT_EQ(std::round(RowScore(553) * 1000.0), 55124.0);
    for (int32_t k = 0; k < 999; ++k)
        EXPECT_TRUE(ScoreOfNetOutput((k + 0.001) / 999.0) == RowScore(k) &&
                    ScoreOfNetOutput((k + 0.999) / 999.0) == RowScore(k))
            << "row " << k;
}

TEST(Queries, ScoreBisectsAndInterpolatesRatesSnapToTheFirstFittingRow)
{
    // 50 settles at x = 0.501495361328125, in row 500; the rates are
    // interpolated there and the score read back is the target itself.
    const double x = 0.501495361328125, t = x * 999 - 500;
    EXPECT_EQ(Ask(NeuralNet::QueryByScore, 50.0),
              make_tuple(50.0, FarTable[500] * (1 - t) + FarTable[501] * t,
                         FrrTable[500] * (1 - t) + FrrTable[501] * t));

    // Targets beyond the tables snap to the end rows; row 999 is the first
    // with FAR 0, and FRR 1 is above every row.
    EXPECT_EQ(Ask(NeuralNet::QueryByFAR, 1.0), make_tuple(0.0, 1.0, 0.0));
    EXPECT_EQ(Ask(NeuralNet::QueryByFRR, 0.0), make_tuple(0.0, FarTable[0], 0.0));
    EXPECT_EQ(Ask(NeuralNet::QueryByFRR, -1.0), make_tuple(0.0, FarTable[0], -1.0));
    for (auto [query, dTarget, dFar, dFrr] :
         {make_tuple(NeuralNet::QueryByFAR, 0.0, 0.0, FrrTable[999]),
          make_tuple(NeuralNet::QueryByFAR, -0.25, -0.25, FrrTable[999]),
          make_tuple(NeuralNet::QueryByFRR, 1.0, 0.0, 1.0)})
    {
        const auto [dScore, dGotFar, dGotFrr] = Ask(query, dTarget);
        EXPECT_DOUBLE_EQ(dScore, 100.0);
        EXPECT_EQ(make_tuple(dGotFar, dGotFrr), make_tuple(dFar, dFrr));
    }

    // Against a linear scan, with targets on every row's rate and halfway to
    // the next. The score is that of the net output k / 999.0.
    auto score = [](int32_t k) { return ScoreOfNetOutput(k / 999.0); };
    for (int32_t k = 0; k + 1 < nRateTableSize; ++k)
    {
        for (double dTarget : {FarTable[k], (FarTable[k] + FarTable[k + 1]) / 2})
        {
            int32_t n = 0;
            while (FarTable[n] > dTarget)
                ++n;
            EXPECT_EQ(Ask(NeuralNet::QueryByFAR, dTarget),
                      make_tuple(score(n), dTarget, FrrTable[n]));
        }
        for (double dTarget : {FrrTable[k], (FrrTable[k] + FrrTable[k + 1]) / 2})
        {
            int32_t n = 0;
            while (FrrTable[n] < dTarget)
                ++n;
            EXPECT_EQ(Ask(NeuralNet::QueryByFRR, dTarget),
                      make_tuple(score(n), FarTable[n], dTarget));
        }
    }
}
