#pragma once
// The handle classes: a root with only bodiless operations, and a base that
// implements what does not depend on what a handle is for — the properties
// as text through a temporary parameter tree, and the handle's destruction.
#include <cstdint>

#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterfaces.h"
#include "parameters/ParameterString.h"
#include "sdk/SafeHandle.h"

template <typename THandle, typename TSDK> class TSDKHandleBaseBase
{
public:
    virtual ~TSDKHandleBaseBase() = default;
    virtual int32_t GetProperty(const char* szName, char* szBuffer, uint32_t& nSize) = 0;
    virtual void SetProperty(const char* szName, const char* szValue) = 0;
    virtual void GetPropertyInt(const char* szName, int32_t* pnValue) = 0;
    virtual void SetPropertyInt(const char* szName, int32_t nValue) = 0;
    virtual void GetPropertyDouble(const char* szName, double* pdValue) = 0;
    virtual void SetPropertyDouble(const char* szName, double dValue) = 0;
    virtual void Reset() = 0;
    virtual void DestroyHandle(SentivoHandle* pHandle) = 0;
    virtual void DefineProperties(ClParameterContainer& container) = 0;
    virtual void OnCreate() = 0;
    virtual void OnDestroy() = 0;
    virtual void DefineHandleProperties(ClParameterContainer& container) = 0;
};

namespace Sentivo
{
// The library's version as the "Version" property shows it.
extern char g_szVersion[];
} // namespace Sentivo

template <typename THandle, typename TSDK, typename TBase> class TSDKHandleBase : public TBase
{
public:
    ~TSDKHandleBase() override = default;

    // A text value by name; -21 (returned, not thrown) when the buffer is too
    // small, with nSize holding the size needed.
    int32_t GetProperty(const char* szName, char* szBuffer, uint32_t& nSize) override
    {
        ClParameterContainer container;
        this->DefineProperties(container);
        return Find(container, szName).GetText(szBuffer, nSize) ? 0 : ZRC_ERROR_TEMPLATE_SIZE;
    }

    void SetProperty(const char* szName, const char* szValue) override
    {
        ClParameterContainer container;
        this->DefineProperties(container);
        ClParameter& parameter = Find(container, szName);
        CheckWritable(parameter);
        parameter.SetText(szValue);
    }

    void GetPropertyInt(const char* szName, int32_t* pnValue) override
    {
        ClParameterContainer container;
        this->DefineProperties(container);
        ClParameterNumericInterface& numeric = Numeric(container, szName, false);
        *pnValue = TruncateToInt32(numeric.GetValue());
    }

    void SetPropertyInt(const char* szName, int32_t nValue) override
    {
        SetNumeric(szName, nValue, false);
    }

    void GetPropertyDouble(const char* szName, double* pdValue) override
    {
        ClParameterContainer container;
        this->DefineProperties(container);
        *pdValue = Numeric(container, szName, true).GetValue();
    }

    void SetPropertyDouble(const char* szName, double dValue) override
    {
        SetNumeric(szName, dValue, true);
    }

    void Reset() override {}

    void DestroyHandle(SentivoHandle* pHandle) override
    {
        if (pHandle == nullptr)
            SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_PARAMETER);
        Sentivo::Resolve(*pHandle);
        this->OnDestroy();
        const int32_t nCode = Sentivo::DestroyBlock(pHandle);
        if (nCode != 0)
            SENTIVO_THROW_CODE(nCode);
    }

    void DefineProperties(ClParameterContainer& container) override
    {
        container.AddString("Version")->Bind(m_szVersion, kVersionCapacity,
                                             ClParameter::eFlagOutput);
        this->DefineHandleProperties(container);
    }

    void OnCreate() override {}
    void OnDestroy() override {}
    void DefineHandleProperties(ClParameterContainer&) override {}

private:
    static constexpr uint32_t kVersionCapacity = 32;

    static ClParameter& Find(ClParameterContainer& container, const char* szName)
    {
        ClParameter* pParameter = container.Find(szName);
        if (pParameter == nullptr)
            SENTIVO_THROW_CODE(ZRC_ERROR_UNKNOWN_PARAMETER);
        return *pParameter;
    }

    static void CheckWritable(const ClParameter& parameter)
    {
        if ((parameter.GetFlags() & ClParameter::eFlagInput) == 0)
            SENTIVO_THROW_CODE(ZRC_ERROR_PARAM_IS_READONLY);
    }

    // Type test (-44), then read-only test (-47), then the value.
    void SetNumeric(const char* szName, double dValue, bool bFloating)
    {
        ClParameterContainer container;
        this->DefineProperties(container);
        ClParameterNumericInterface& numeric = Numeric(container, szName, bFloating);
        CheckWritable(*container.Find(szName));
        numeric.SetValue(dValue);
    }

    // The numeric interface of a parameter of the wanted kind, or -44.
    static ClParameterNumericInterface& Numeric(ClParameterContainer& container, const char* szName,
                                                bool bFloating)
    {
        ClParameter& parameter = Find(container, szName);
        ClParameterNumericInterface* pNumeric =
            parameter.IsNumeric() ? parameter.AsNumeric() : nullptr;
        if (pNumeric == nullptr || (bFloating ? !pNumeric->IsFloating() : !pNumeric->IsInteger()))
            SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_PARAMETER);
        return *pNumeric;
    }

    char* m_szVersion = Sentivo::g_szVersion;
};
