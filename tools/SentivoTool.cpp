// sentivo: judge, score, evaluate and inspect captures with the library from
// the command line. The commands live in the tool's support library, so that
// the tests run them as this does.
#include <string>
#include <vector>

#include "Commands.h"

int main(int argc, char** argv)
{
    return SentivoTool::RunTool(std::vector<std::string>(argv + 1, argv + argc));
}
