#pragma once
// What a processor publishes, as one line each: its parameters with their
// flags, its interface records, and the entry texts of an enumeration.
#include <string>

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"

namespace TestParameters
{

// "name:flags name:flags ..." in order of creation.
inline std::string ParametersOf(const ClParameterContainer& container)
{
    std::string text;
    for (uint32_t i = 0; i < container.GetChildCount(); ++i)
        text += (i ? " " : "") + std::string(container.GetChild(i)->GetName()) + ":" +
                std::to_string(container.GetChild(i)->GetFlags());
    return text;
}

// "name|description|direction; ..." in order.
inline std::string RecordsOf(const ClParameterInterface& list)
{
    std::string text;
    for (const ClParameterInterface::ClParameter* p = list.First(); p != nullptr; p = p->GetNext())
        text += (text.empty() ? "" : "; ") + std::string(p->GetName()) + "|" + p->GetDescription() +
                "|" + std::to_string(p->GetDirection());
    return text;
}

// "text,text,..." of an enumeration parameter.
inline std::string EntriesOf(ClParameter* pParameter)
{
    std::string text;
    ClParameterEnumInterface* pEnum = pParameter->AsEnum();
    for (uint32_t i = 0; pEnum != nullptr && i < pEnum->GetEntryCount(); ++i)
    {
        char szText[64];
        pEnum->GetEntryText(i, szText, sizeof(szText));
        text += (i ? "," : "") + std::string(szText);
    }
    return text;
}

// "text,text,..." of an interface record.
inline std::string EntriesOf(const ClParameterInterface::ClParameter& record)
{
    std::string text;
    const char* szText = record.GetEntryTexts();
    for (uint32_t i = 0; szText != nullptr && i < record.GetEntryCount(); ++i)
    {
        text += (i ? "," : "") + std::string(szText);
        szText += std::strlen(szText) + 1;
    }
    return text;
}

inline std::string TextOf(ClParameter* pParameter)
{
    char szText[128];
    uint32_t nSize = sizeof(szText);
    return pParameter->GetText(szText, nSize) ? std::string(szText) : std::string("?");
}

} // namespace TestParameters
