#pragma once
// Reading what a processor publishes: the parameters it creates in a
// container and the records it appends to an interface list.
#include <string>
#include <vector>

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"

namespace TestParameters
{

struct Published
{
    std::string sName;
    int nFlags;
};

// Name and flags of each parameter, in order of creation.
inline std::vector<Published> ParametersOf(const ClParameterContainer& container)
{
    std::vector<Published> result;
    for (uint32_t i = 0; i < container.GetChildCount(); ++i)
        result.push_back({container.GetChild(i)->GetName(), container.GetChild(i)->GetFlags()});
    return result;
}

inline bool operator==(const Published& a, const Published& b)
{
    return a.sName == b.sName && a.nFlags == b.nFlags;
}

inline std::ostream& operator<<(std::ostream& stream, const Published& p)
{
    return stream << p.sName << " (flags " << p.nFlags << ")";
}

// The entry texts of an enumeration parameter, in order.
inline std::vector<std::string> EntriesOf(ClParameter* pParameter)
{
    std::vector<std::string> result;
    ClParameterEnumInterface* pEnum = pParameter != nullptr ? pParameter->AsEnum() : nullptr;
    if (pEnum == nullptr)
        return result;
    for (uint32_t i = 0; i < pEnum->GetEntryCount(); ++i)
    {
        char szText[64];
        pEnum->GetEntryText(i, szText, sizeof(szText));
        result.emplace_back(szText);
    }
    return result;
}

inline std::string TextOf(ClParameter* pParameter)
{
    char szText[128];
    uint32_t nSize = sizeof(szText);
    return pParameter->GetText(szText, nSize) ? std::string(szText) : std::string("?");
}

// "name|description|direction" of each record, in order.
inline std::vector<std::string> RecordsOf(const ClParameterInterface& list)
{
    std::vector<std::string> result;
    for (const ClParameterInterface::ClParameter* p = list.First(); p != nullptr; p = p->GetNext())
        result.push_back(std::string(p->GetName()) + "|" + p->GetDescription() + "|" +
                         std::to_string(p->GetDirection()));
    return result;
}

// The entry texts of a record, in order.
inline std::vector<std::string> RecordEntries(const ClParameterInterface::ClParameter& record)
{
    std::vector<std::string> result;
    const char* szText = record.GetEntryTexts();
    for (uint32_t i = 0; szText != nullptr && i < record.GetEntryCount(); ++i)
    {
        result.emplace_back(szText);
        szText += result.back().size() + 1;
    }
    return result;
}

} // namespace TestParameters
