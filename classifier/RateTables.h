#pragma once
// Error rates of the trained net at the acceptance thresholds k / 999: row k
// holds the false acceptance rate (FarTable, never rising) and the false
// rejection rate (FrrTable, never falling) when a net output of k / 999 is
// the threshold. The rows are spaced so that the score of row k,
// 100 * FRR / (FRR + FAR), is close to 100 * k / 999.
//
// classifier/RateTables.cpp is written by scripts/generate_rate_tables.py.
#include <cstdint>

namespace NeuralNet
{

extern const double FarTable[];
extern const double FrrTable[];
// Rows of both tables. Code that walks the tables reads this at run time.
extern const int32_t nRateTableSize;

} // namespace NeuralNet
