#pragma once
// report.html of evaluate: one page that needs nothing else (figures inline
// as SVG, no script, no link out): the counts, the failed captures by code,
// the measures, the score histograms and the DET curve.
#include <string>

#include "Evaluation.h"

namespace SentivoTool
{

std::string ReportHtml(const Evaluation& evaluation, const std::string& scoresSvg,
                       const std::string& detSvg);

} // namespace SentivoTool
