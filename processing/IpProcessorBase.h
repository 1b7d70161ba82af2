#pragma once
// Base of the newer operators and of all detection stages: the processor life
// cycle plus the check of the input pixel types.
#include "processing/ImageDataTypeCheck.h"
#include "processing/ProcessorBase.h"

namespace NewIpBase
{

class ClIpProcessorBase : public ClProcessorBase, private ClImageDataTypeCheck
{
public:
    // Applies the type check; a failure leaves Run as an exception.
    int32_t Init() override
    {
        CheckInputImages();
        return 0;
    }
    // The same check, reported instead of thrown.
    bool CheckInput() override
    {
        try
        {
            CheckInputImages();
            return true;
        }
        catch (...)
        {
            return false;
        }
    }

protected:
    using ClImageDataTypeCheck::AcceptsDataType;
    using ClImageDataTypeCheck::AddDataType;
    using ClImageDataTypeCheck::AddDataTypes;
    using ClImageDataTypeCheck::CheckDataType;
    using ClImageDataTypeCheck::CheckInputImages;
};

} // namespace NewIpBase
