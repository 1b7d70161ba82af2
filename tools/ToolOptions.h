#pragma once
// The command line of one command: its options, its operands and the checked
// values, with the two kinds of failure the tool tells apart: a usage error
// (exit 64) and an input that cannot be used (exit 1).
#include <cstdint>
#include <initializer_list>
#include <map>
#include <stdexcept>
#include <string>
#include <vector>

#include "CaptureRun.h"

namespace SentivoTool
{

// The command line is wrong: an unknown option, a missing or bad value, the
// wrong number of operands. The message names the option or operand.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// A file, folder or manifest cannot be used. The message names it.
class InputError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

struct OptionDef
{
    const char* szName; // "--threads"
    bool bValue;        // takes a value: "--threads 4" or "--threads=4"
};

// Options may stand anywhere among the operands; "--" ends them. "--help"
// and "-h" are always known.
class CommandLine
{
public:
    CommandLine(const std::vector<std::string>& args, std::initializer_list<OptionDef> known);

    bool Help() const { return m_bHelp; }
    bool Has(const std::string& name) const { return m_Values.count(name) != 0; }
    // The value given last, or the fallback where the option is absent.
    const std::string& Value(const std::string& name, const std::string& fallback = "") const;
    const std::vector<std::string>& Operands() const { return m_Operands; }

    // Usage errors for the common checks.
    void ExpectOperands(size_t nMin, size_t nMax, const char* szWhat) const;
    void Exclusive(std::initializer_list<const char*> names) const;

private:
    bool m_bHelp = false;
    std::map<std::string, std::string> m_Values;
    std::vector<std::string> m_Operands;
};

// Whole numbers and numbers of an option, checked against their range.
int64_t IntegerOption(const std::string& option, const std::string& text, int64_t nMin,
                      int64_t nMax);
double NumberOption(const std::string& option, const std::string& text, double dMin, double dMax);

// The options that say how a capture is judged, shared by every command that
// judges one.
extern const OptionDef kSecurityLevelOption;
extern const OptionDef kNoMovementOption;

// A still finger: the second of two identical captures, so that the movement
// test passes; --security-level and --no-movement as given.
RunSettings JudgingSettings(const CommandLine& line);

// A whole text file; InputError naming it where it cannot be read.
std::string ReadTextFile(const std::string& path);

// The number of cores this process may run on.
unsigned AvailableCores();

} // namespace SentivoTool
