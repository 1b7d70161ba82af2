// The command table and the one place where failures become exit statuses.
#include <cstdio>
#include <new>

#include "Commands.h"
#include "ToolOptions.h"

namespace SentivoTool
{

namespace
{

void PrintOverview(std::FILE* pOut)
{
    std::fputs("usage: sentivo COMMAND [ARGS]\n\ncommands:\n", pOut);
    for (const Command& command : Commands())
        std::fprintf(pOut, "  %-10s %s\n", command.szName, command.szSummary);
    std::fputs("\n'sentivo COMMAND --help' tells more about a command.\n", pOut);
}

// One line: the text up to its first line break.
std::string FirstLine(const char* szText)
{
    std::string text = szText;
    const size_t nBreak = text.find('\n');
    return nBreak == std::string::npos ? text : text.substr(0, nBreak);
}

} // namespace

const std::vector<Command>& Commands()
{
    static const std::vector<Command> commands = {
        {"version", "print the library's version", kVersionHelp, CommandVersion},
        {"check", "hand files to the library's image check", kCheckHelp, CommandCheck},
        {"score", "judge one capture: code, description, score", kScoreHelp, CommandScore},
        {"batch", "judge many captures from folders or manifests", kBatchHelp, CommandBatch},
        {"evaluate", "APCER, BPCER, EER, DET curve and report of batch output", kEvaluateHelp,
         CommandEvaluate},
        {"threshold", "the library's threshold for an error rate, or its rate tables",
         kThresholdHelp, CommandThreshold},
        {"features", "everything one evaluation measures, as JSON", kFeaturesHelp, CommandFeatures},
        {"inspect", "as features, with the intermediate images as PNG", kInspectHelp,
         CommandInspect},
        {"demo", "judge the bundled sample captures as a scanner would", kDemoHelp, CommandDemo},
    };
    return commands;
}

int RunTool(const Arguments& args)
{
    std::string name = "sentivo";
    try
    {
        if (args.empty())
            throw UsageError("needs a COMMAND (sentivo --help lists them)");
        if (args[0] == "--help" || args[0] == "-h" || args[0] == "help")
        {
            if (args.size() > 1)
                return RunTool({args[1], "--help"});
            PrintOverview(stdout);
            return 0;
        }
        if (args[0] == "--version")
            return CommandVersion({});
        for (const Command& command : Commands())
            if (args[0] == command.szName)
            {
                name += " " + args[0];
                return command.pRun(Arguments(args.begin() + 1, args.end()));
            }
        throw UsageError("unknown command '" + args[0] + "' (sentivo --help lists them)");
    }
    catch (const UsageError& e)
    {
        std::fprintf(stderr, "%s: %s\n", name.c_str(), FirstLine(e.what()).c_str());
        return 64;
    }
    catch (const std::bad_alloc&)
    {
        std::fprintf(stderr, "%s: out of memory\n", name.c_str());
        return 1;
    }
    catch (const std::exception& e)
    {
        std::fprintf(stderr, "%s: %s\n", name.c_str(), FirstLine(e.what()).c_str());
        return 1;
    }
    catch (...)
    {
        std::fprintf(stderr, "%s: unexpected failure\n", name.c_str());
        return 1;
    }
}

} // namespace SentivoTool
