#pragma once
// The figures of evaluate as self-contained SVG: the score histograms of
// both classes with the threshold, and the DET curve beside the library's
// own curve from its rate tables.
#include <string>

#include "Evaluation.h"

namespace SentivoTool
{

// Scores from 0 to 100 in 20 bins of 5 (the last holds 100); each bar is
// the share of its class's scored captures, live and fake side by side in
// each bin, with the threshold as a dashed line.
std::string ScoresSvg(const Evaluation& evaluation);

// APCER across, BPCER up, both on normal-deviate scales from 0.05 % to
// 99.5 % (rates beyond lie on the edge): the measured operating points
// joined by straight lines, the library's FAR against FRR over its 1000
// rows, the line of equal rates, the EER and the operating point at the
// threshold.
std::string DetSvg(const Evaluation& evaluation);

// The normal deviate of a probability (the inverse of the normal
// distribution function), for 0 < p < 1.
double NormalDeviate(double p);

// Text with the XML escapes.
std::string XmlText(const std::string& text);

} // namespace SentivoTool
