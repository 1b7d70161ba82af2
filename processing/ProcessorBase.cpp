#include "processing/ProcessorBase.h"

#include <cstring>

#include "parameters/ParameterContainer.h"
#include "processing/StopWatch.h"
#include "sdk/Exception.h"

ClProcessorLog* ClProcessorBase::s_pDefaultLog = nullptr;
ClProcessorTimingTable* ClProcessorBase::s_pTimingTable = nullptr;

ClProcessorBase::ClProcessorBase() : m_pLog(s_pDefaultLog) {}

void ClProcessorBase::DefineParameters(ClParameterContainer&)
{
    (void)GetName();
}

void ClProcessorBase::CopyStatusText(char* szBuffer, uint32_t nSize, const char* szText)
{
    if (nSize == 0)
        SENTIVO_THROW("Unexpected zero-length string", ZRC_ERROR_INTERNAL);
    const size_t nLength = std::strlen(szText);
    if (nLength + 1 > nSize)
        SENTIVO_THROW("String-Length exceeded available size", ZRC_ERROR_INTERNAL);
    std::memcpy(szBuffer, szText, nLength + 1);
}

void ClProcessorBase::GetStatusText(char* szBuffer, uint32_t nSize)
{
    CopyStatusText(szBuffer, nSize, "");
}

void ClProcessorBase::ConnectParameters(ClParameterContainer& container)
{
    // The members hold the current values; the defaults come from
    // SetDefaults, read through the parameters and swapped back.
    DefineParameters(container);
    container.SwapValuesAndDefaults();
    SetDefaults();
    container.SwapValuesAndDefaults();
}

void ClProcessorBase::EnableLog(bool bOn)
{
    m_pLog = bOn ? s_pDefaultLog : nullptr;
}

int32_t ClProcessorBase::Run()
{
    if (m_pLog != nullptr)
        m_pLog->Begin(nullptr);
    Vlm::CXStopWatch watch;
    watch.Start();

    const int32_t nInit = Init();
    if (nInit != 0)
        return nInit;
    const int32_t nResult = Process();
    const int32_t nFinal = Finalize(nResult);
    if (nFinal != 0)
        SENTIVO_THROW("Finalization failed", nFinal);

    if (s_pTimingTable != nullptr)
        AddTiming(watch.Elapsed());
    if (m_pLog != nullptr)
        WriteEndLine();
    return nResult;
}

void ClProcessorBase::AddTiming(double dSeconds)
{
    ClProcessorTimingTable& table = *s_pTimingTable;
    for (ClProcessorTimingRow& row : table)
    {
        if (*row.pType == typeid(*this))
        {
            row.dSeconds += dSeconds;
            ++row.nRuns;
            return;
        }
    }
    ClProcessorTimingRow row;
    row.pType = &typeid(*this);
    row.dSeconds = dSeconds;
    row.nRuns = 1;
    table.Add(row);
}

void ClProcessorBase::WriteEndLine()
{
    char szStatus[512];
    GetStatusText(szStatus, sizeof(szStatus));
    m_pLog->End("%s %s", GetName(), szStatus);
}

void ClProcessorBase::LogBegin(const char* szText)
{
    if (m_pLog != nullptr)
        m_pLog->Begin(szText);
}

void ClProcessorBase::LogEnd(const char* szText)
{
    if (m_pLog == nullptr)
        return;
    if (szText != nullptr)
        m_pLog->End("%s", szText);
    else
        WriteEndLine();
}
