#pragma once
// From the trained net's output to the score, and between a score threshold
// and the error rates it stands for, through the rate tables.
//
// The score of row k is 100 * FRR / (FRR + FAR): the share the false rejection
// rate has of both error rates when k / 999 is the acceptance threshold. 0 means
// surely fake, 100 surely live, about 50 the point of equal error.

namespace NeuralNet
{

// Score of the row that the net output x (0 to 1) falls on, row = x * 999
// truncated. Throws ClException -101 "Score out of range" outside [0, 1]. A NaN
// passes that test and maps to row 0, score 0.
double ScoreOfNetOutput(double dNetOutput);

// The query behind the three query properties. Each takes the value the caller
// sets and gives back all three: the set value itself unchanged, the other two
// computed from the tables. None of them checks its target.

// Finds by bisection the net output whose score reaches dTarget and
// interpolates both rates between the two rows around it.
void QueryByScore(double dTarget, double& dScore, double& dFAR, double& dFRR);
// Snaps to the first row whose FAR is at most dTarget and gives its score and FRR.
void QueryByFAR(double dTarget, double& dScore, double& dFAR, double& dFRR);
// Snaps to the first row whose FRR is at least dTarget and gives its score and FAR.
void QueryByFRR(double dTarget, double& dScore, double& dFAR, double& dFRR);

} // namespace NeuralNet
