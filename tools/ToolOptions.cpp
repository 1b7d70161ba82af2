#include "ToolOptions.h"

#include <cerrno>
#include <cmath>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

#include <sched.h>

namespace SentivoTool
{

const OptionDef kSecurityLevelOption = {"--security-level", true};
const OptionDef kNoMovementOption = {"--no-movement", false};

CommandLine::CommandLine(const std::vector<std::string>& args,
                         std::initializer_list<OptionDef> known)
{
    bool bOptions = true;
    for (size_t i = 0; i < args.size(); ++i)
    {
        const std::string& arg = args[i];
        if (!bOptions || arg.size() < 2 || arg[0] != '-')
        {
            m_Operands.push_back(arg);
            continue;
        }
        if (arg == "--")
        {
            bOptions = false;
            continue;
        }
        if (arg == "--help" || arg == "-h")
        {
            m_bHelp = true;
            continue;
        }
        const size_t nEquals = arg.find('=');
        const std::string name = arg.substr(0, nEquals);
        const OptionDef* pKnown = nullptr;
        for (const OptionDef& option : known)
            if (name == option.szName)
                pKnown = &option;
        if (pKnown == nullptr)
            throw UsageError("unknown option '" + name + "'");
        if (!pKnown->bValue)
        {
            if (nEquals != std::string::npos)
                throw UsageError(name + " takes no value");
            m_Values[name] = "";
        }
        else if (nEquals != std::string::npos)
            m_Values[name] = arg.substr(nEquals + 1);
        else if (i + 1 < args.size())
            m_Values[name] = args[++i];
        else
            throw UsageError(name + " needs a value");
    }
}

const std::string& CommandLine::Value(const std::string& name, const std::string& fallback) const
{
    const auto it = m_Values.find(name);
    return it == m_Values.end() ? fallback : it->second;
}

void CommandLine::ExpectOperands(size_t nMin, size_t nMax, const char* szWhat) const
{
    if (m_Operands.size() < nMin)
        throw UsageError(std::string("needs ") + szWhat);
    if (m_Operands.size() > nMax)
        throw UsageError("unexpected operand '" + m_Operands[nMax] + "': needs " + szWhat);
}

void CommandLine::Exclusive(std::initializer_list<const char*> names) const
{
    const char* szFirst = nullptr;
    for (const char* szName : names)
    {
        if (!Has(szName))
            continue;
        if (szFirst != nullptr)
            throw UsageError(std::string(szFirst) + " and " + szName + " exclude each other");
        szFirst = szName;
    }
}

int64_t IntegerOption(const std::string& option, const std::string& text, int64_t nMin,
                      int64_t nMax)
{
    errno = 0;
    char* pEnd = nullptr;
    const long long nValue = std::strtoll(text.c_str(), &pEnd, 10);
    if (text.empty() || *pEnd != '\0' || errno == ERANGE || nValue < nMin || nValue > nMax)
        throw UsageError(option + " needs a whole number from " + std::to_string(nMin) + " to " +
                         std::to_string(nMax) + ", not '" + text + "'");
    return nValue;
}

double NumberOption(const std::string& option, const std::string& text, double dMin, double dMax)
{
    char* pEnd = nullptr;
    const double dValue = std::strtod(text.c_str(), &pEnd);
    // The negated test also refuses NaN.
    if (text.empty() || *pEnd != '\0' || !(dValue >= dMin && dValue <= dMax))
    {
        char szRange[64];
        std::snprintf(szRange, sizeof(szRange), "%g to %g", dMin, dMax);
        throw UsageError(option + " needs a number from " + szRange + ", not '" + text + "'");
    }
    return dValue;
}

RunSettings JudgingSettings(const CommandLine& line)
{
    RunSettings settings;
    settings.ePrevious = RunSettings::eSame;
    if (line.Has(kSecurityLevelOption.szName))
        settings.nSecurityLevel = static_cast<int32_t>(
            IntegerOption(kSecurityLevelOption.szName, line.Value(kSecurityLevelOption.szName),
                          INT32_MIN, INT32_MAX));
    settings.bMovementDetection = !line.Has(kNoMovementOption.szName);
    return settings;
}

std::string ReadTextFile(const std::string& path)
{
    std::error_code error;
    if (std::filesystem::is_directory(path, error))
        throw InputError("cannot read " + path + ": it is a folder");
    std::ifstream in(path, std::ios::binary);
    if (!in)
        throw InputError("cannot open " + path + ": " + std::strerror(errno));
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    if (in.bad())
        throw InputError("cannot read " + path);
    return text;
}

unsigned AvailableCores()
{
    cpu_set_t set;
    if (sched_getaffinity(0, sizeof(set), &set) == 0 && CPU_COUNT(&set) > 0)
        return static_cast<unsigned>(CPU_COUNT(&set));
    const unsigned nCores = std::thread::hardware_concurrency();
    return nCores == 0 ? 1 : nCores;
}

} // namespace SentivoTool
