#pragma once
// The tool's commands. Each takes the arguments behind its name and returns
// the exit status; a UsageError or InputError thrown out of it becomes one
// line on standard error in RunTool.
#include <string>
#include <vector>

namespace SentivoTool
{

using Arguments = std::vector<std::string>;

struct Command
{
    const char* szName;
    const char* szSummary; // one line for the overview
    const char* szHelp;    // the text of "sentivo NAME --help"
    int (*pRun)(const Arguments& args);
};

// All commands in the order the overview lists them.
const std::vector<Command>& Commands();

// The whole tool: "sentivo ARGS...". Never throws; prints what went wrong
// in one line and returns 64 for a usage error, 1 for any other failure.
int RunTool(const Arguments& args);

int CommandVersion(const Arguments& args);
int CommandCheck(const Arguments& args);
int CommandScore(const Arguments& args);
int CommandBatch(const Arguments& args);
int CommandEvaluate(const Arguments& args);
int CommandThreshold(const Arguments& args);
int CommandFeatures(const Arguments& args);
int CommandInspect(const Arguments& args);
int CommandDemo(const Arguments& args);

extern const char* const kVersionHelp;
extern const char* const kCheckHelp;
extern const char* const kScoreHelp;
extern const char* const kBatchHelp;
extern const char* const kEvaluateHelp;
extern const char* const kThresholdHelp;
extern const char* const kFeaturesHelp;
extern const char* const kInspectHelp;
extern const char* const kDemoHelp;

} // namespace SentivoTool
