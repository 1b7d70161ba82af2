#pragma once
// The common life cycle of every processor, from a median filter to the whole
// detection: inputs and outputs are plain members, tuning values are
// published as parameters, and one non-virtual Run drives Init, Process and
// Finalize.
#include <cstdint>
#include <typeinfo>

#include "image/ArrayDynamic.h"

class ClParameterContainer;
class ClParameterInterface;

// The three parameter hooks of a processor.
class ClParameterProvider
{
public:
    virtual ~ClParameterProvider() = default;
    // Appends a description record per member to the list, for tools.
    virtual void DescribeInterface(ClParameterInterface&) {}
    // Writes every tunable member's default.
    virtual void SetDefaults() {}
    // Creates and binds one parameter per member.
    virtual void DefineParameters(ClParameterContainer&) {}
};

// Sink for the per-processor log of a debugging host.
class ClProcessorLog
{
public:
    virtual ~ClProcessorLog() = default;
    virtual void Begin(const char* szLabel) = 0;
    virtual void End(const char* szFormat, ...) = 0;
};

// Seconds and runs per processor class, for a debugging host.
struct ClProcessorTimingRow
{
    const std::type_info* pType = nullptr;
    double dSeconds = 0.0;
    uint32_t nRuns = 0;
};
using ClProcessorTimingTable = TpArrayDynamic<ClProcessorTimingRow, 10>;

class ClProcessorBase : public ClParameterProvider
{
public:
    // Hooks for a debugging host; nothing in the library sets them, so they
    // are null in normal use and logging and timing are skipped.
    static ClProcessorLog* s_pDefaultLog;
    static ClProcessorTimingTable* s_pTimingTable;

    ClProcessorBase();
    ~ClProcessorBase() override = default;

    void DefineParameters(ClParameterContainer& container) override;
    virtual ClProcessorBase* NewInstance() const = 0;
    virtual const char* GetName() const = 0;
    // A check that reports instead of throwing.
    virtual bool CheckInput() { return false; }
    // One line on the settings of this run, for the log.
    virtual void GetStatusText(char* szBuffer, uint32_t nSize);
    // Binds the parameters and records the true defaults without changing
    // the members.
    virtual void ConnectParameters(ClParameterContainer& container);
    virtual void EnableLog(bool bOn);
    virtual int32_t Init() { return 0; }
    virtual int32_t Finalize(int32_t) { return 0; }
    virtual int32_t Process() = 0;

    // Init, Process, Finalize; the result is that of Process.
    int32_t Run();
    void LogBegin(const char* szText);
    void LogEnd(const char* szText);
    bool IsLogEnabled() const { return m_pLog != nullptr; }

protected:
    // Copies szText into the status buffer, throwing when it does not fit.
    static void CopyStatusText(char* szBuffer, uint32_t nSize, const char* szText);

private:
    void WriteEndLine();
    void AddTiming(double dSeconds);

    ClProcessorLog* m_pLog;
};

// Factory helper for NewInstance: allocates a default-constructed P.
template <typename P> P* NewProcessor()
{
    P* p = new (std::nothrow) P();
    if (p == nullptr)
        SENTIVO_THROW_BAD_ALLOC();
    return p;
}
