// sentivo evaluate: presentation-attack measures of labelled batch output,
// as metrics.json, two figures and a report page.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "Commands.h"
#include "Evaluation.h"
#include "HtmlReport.h"
#include "SvgCharts.h"
#include "ToolOptions.h"

namespace SentivoTool
{

const char* const kEvaluateHelp =
    "usage: sentivo evaluate RESULTS... --out DIR [--threshold T | --far X]\n"
    "\n"
    "Reads batch output (csv or jsonl, told apart by its first character) with\n"
    "labels and writes DIR/metrics.json, DIR/det.svg, DIR/scores.svg and\n"
    "DIR/report.html (one page, figures inline, nothing fetched).\n"
    "\n"
    "A capture is accepted as live when its score is at least the threshold.\n"
    "APCER: share of fake captures accepted; BPCER: share of live captures\n"
    "rejected; both over the captures with a score. Captures without a score are\n"
    "counted in \"failed\" by their code. EER: where the DET curve (the operating\n"
    "points at each distinct score, joined by straight lines) crosses\n"
    "APCER = BPCER. BPCER20 and BPCER100: the lowest BPCER where APCER is at most\n"
    "5 % and 1 %.\n"
    "\n"
    "options:\n"
    "  --out DIR        the folder for the four files (made when missing)\n"
    "  --threshold T    score threshold, 0 to 100\n"
    "  --far X          the library's threshold for a false acceptance rate X\n"
    "                   (0 to 1); default 0.01\n";

namespace
{

void WriteFile(const std::string& path, const std::string& text)
{
    std::ofstream out(path, std::ios::binary);
    out << text;
    out.close();
    if (!out)
        throw InputError("cannot write " + path);
}

} // namespace

int CommandEvaluate(const Arguments& args)
{
    const CommandLine line(args, {{"--out", true}, {"--threshold", true}, {"--far", true}});
    if (line.Help())
    {
        std::fputs(kEvaluateHelp, stdout);
        return 0;
    }
    line.ExpectOperands(1, SIZE_MAX, "at least one RESULTS file");
    if (line.Value("--out").empty())
        throw UsageError("needs --out DIR");
    line.Exclusive({"--threshold", "--far"});
    double dValue = kDefaultFar;
    bool bFar = true;
    if (line.Has("--threshold"))
    {
        dValue = NumberOption("--threshold", line.Value("--threshold"), 0.0, 100.0);
        bFar = false;
    }
    else if (line.Has("--far"))
        dValue = NumberOption("--far", line.Value("--far"), 0.0, 1.0);

    std::vector<ResultFile> files;
    size_t nLabelled = 0;
    for (const std::string& path : line.Operands())
    {
        files.push_back(ParseResults(path, ReadTextFile(path), false));
        if (files.back().records.empty())
            throw InputError(path + ": no results in it");
        for (const BatchRecord& record : files.back().records)
            nLabelled += record.label.has_value();
    }
    if (nLabelled == 0)
        throw InputError(line.Operands()[0] +
                         (line.Operands().size() > 1 ? " and the others" : "") +
                         ": no capture has a label (live or fake)");

    const Evaluation evaluation = Evaluate(line.Operands(), files, dValue, bFar);
    const std::string dir = line.Value("--out");
    std::error_code error;
    std::filesystem::create_directories(dir, error);
    if (!std::filesystem::is_directory(dir))
        throw InputError("cannot make the folder " + dir +
                         (error ? ": " + error.message() : std::string()));
    const std::string scores = ScoresSvg(evaluation);
    const std::string det = DetSvg(evaluation);
    WriteFile(dir + "/metrics.json", MetricsJson(evaluation));
    WriteFile(dir + "/scores.svg", scores);
    WriteFile(dir + "/det.svg", det);
    WriteFile(dir + "/report.html", ReportHtml(evaluation, scores, det));

    // A short account on standard output; the files hold the rest.
    auto rate = [](const std::optional<double>& value)
    {
        char szText[32] = "none";
        if (value)
            std::snprintf(szText, sizeof(szText), "%.2f %%", *value * 100.0);
        return std::string(szText);
    };
    std::printf("live %zu (%zu scored), fake %zu (%zu scored), unlabelled %zu\n", evaluation.nLive,
                evaluation.scores.live.size(), evaluation.nFake, evaluation.scores.fake.size(),
                evaluation.nUnlabelled);
    std::printf("threshold %.4f: APCER %s, BPCER %s; EER %s\n", evaluation.dThreshold,
                rate(evaluation.apcer).c_str(), rate(evaluation.bpcer).c_str(),
                rate(evaluation.eer).c_str());
    std::printf("written: %s/metrics.json, det.svg, scores.svg, report.html\n", dir.c_str());
    return 0;
}

} // namespace SentivoTool
