#pragma once
// The SDK class: the counted singleton plus the logging stack, mixed in by
// template arguments.
#include "sdk/Logging.h"
#include "sdk/Singleton.h"

template <typename T, typename TLogging>
class TpSDKBase : public TpSingleton<T>, public TpLogging<TLogging>
{
public:
    ~TpSDKBase() override = default;
    virtual void OnInitialize() {}
    virtual void OnUninitialize() {}
};

class ClSentivoSDK : public TpSDKBase<ClSentivoSDK, ClSdkLoggingStack>
{
public:
    ~ClSentivoSDK() override = default;
};
