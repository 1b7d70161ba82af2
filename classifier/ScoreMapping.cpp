#include "classifier/ScoreMapping.h"

#include <cmath>
#include <cstdint>

#include "classifier/RateTables.h"
#include "sdk/Exception.h"

namespace NeuralNet
{
namespace
{

double RowScore(int32_t k)
{
    return 100.0 * FrrTable[k] / (FrrTable[k] + FarTable[k]);
}

// Score of the row a binary search ended on, read back through the net output
// k / 999 as a division of doubles. For a few rows (63, 126, 252, 504, 509)
// that output times 999 truncates to k - 1 and the score given back is that of
// the row below. That is the query's defined answer, so row k is not read
// directly.
double ScoreOfRow(int32_t k)
{
    return ScoreOfNetOutput(static_cast<double>(k) / static_cast<double>(nRateTableSize - 1));
}

} // namespace

double ScoreOfNetOutput(double dNetOutput)
{
    if (dNetOutput < 0.0 || dNetOutput > 1.0)
        SENTIVO_THROW("Score out of range", ZRC_ERROR_INTERNAL);
    // A NaN is neither below 0 nor above 1; it lands on row 0.
    int32_t k = 0;
    if (!std::isnan(dNetOutput))
        k = static_cast<int32_t>(dNetOutput * (nRateTableSize - 1));
    return RowScore(k);
}

void QueryByScore(double dTarget, double& dScore, double& dFAR, double& dFRR)
{
    // Bisection on the net output; on equality the search moves up. The loop
    // stops once the interval is 0.0001 or narrower: 14 evaluations.
    double dLo = 0.0;
    double dHi = 1.0;
    double x = 0.5;
    do
    {
        const double s = ScoreOfNetOutput(x);
        if (dTarget >= s)
            dLo = x;
        else
            dHi = x;
        x = (dHi + dLo) * 0.5;
    } while (dHi - dLo > 0.0001);

    dScore = dTarget;
    const double p = x * (nRateTableSize - 1);
    const int32_t k = static_cast<int32_t>(p);
    const double t = p - k;
    if (k >= nRateTableSize - 1)
    {
        dFAR = FarTable[k];
        dFRR = FrrTable[k];
    }
    else
    {
        dFAR = FarTable[k] * (1 - t) + FarTable[k + 1] * t;
        dFRR = FrrTable[k] * (1 - t) + FrrTable[k + 1] * t;
    }
}

void QueryByFAR(double dTarget, double& dScore, double& dFAR, double& dFRR)
{
    dFAR = dTarget;
    // Binary search for the first row whose FAR is at most the target; the
    // table never rises, and its last row is 0.
    int32_t nLo = 0;
    int32_t nHi = nRateTableSize - 1;
    int32_t k = (nRateTableSize - 1) / 2;
    while (nLo != nHi)
    {
        if (FarTable[k] > dTarget)
            nLo = k + 1;
        else
            nHi = k;
        k = (nLo + nHi) / 2;
    }
    dScore = ScoreOfRow(k);
    dFRR = FrrTable[k];
}

void QueryByFRR(double dTarget, double& dScore, double& dFAR, double& dFRR)
{
    dFRR = dTarget;
    // Binary search for the first row whose FRR is at least the target; the
    // table never falls. A target above every row ends on the last row.
    int32_t nLo = 0;
    int32_t nHi = nRateTableSize - 1;
    int32_t k = (nRateTableSize - 1) / 2;
    while (nLo != nHi)
    {
        if (dTarget > FrrTable[k])
            nLo = k + 1;
        else
            nHi = k;
        k = (nLo + nHi) / 2;
    }
    dScore = ScoreOfRow(k);
    dFAR = FarTable[k];
}

} // namespace NeuralNet
