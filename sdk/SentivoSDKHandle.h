#pragma once
// ClSentivoSDKHandle: what a handle stands for. One detector with its own
// three images and settings: it validates the bitmaps a caller hands in,
// keeps private copies of them, publishes its settings as text properties
// and starts the detection in one of its three modes.
#include <cstdint>

#include "detection/Sentivo.h"
#include "sdk/SDKBase.h"
#include "sdk/SDKHandleBase.h"

class ClSentivoSDKHandle;
using ClSentivoSDKHandleBase = TSDKHandleBase<ClSentivoSDKHandle, ClSentivoSDK,
                                              TSDKHandleBaseBase<ClSentivoSDKHandle, ClSentivoSDK>>;

class ClSentivoSDKHandle : public ClSentivoSDKHandleBase
{
public:
    ClSentivoSDKHandle() = default;
    ClSentivoSDKHandle(const ClSentivoSDKHandle&) = delete;
    ClSentivoSDKHandle& operator=(const ClSentivoSDKHandle&) = delete;
    ~ClSentivoSDKHandle() override;

    // A null bitmap empties the slot; otherwise the block is checked in full
    // before the slot changes, so a failure keeps the old image.
    void SetImage(int32_t nImageIndex, void* pBitmap, uint32_t nBitmapSize);
    void DetectFinger();
    void DetectFake(double* pdScore);
    int32_t EvaluateLiveliness(double* pdScore);
    void Reset() override;
    void DefineHandleProperties(ClParameterContainer& container) override;

    ClSentivo& Detection() { return m_Detection; }

private:
    ClImage*& Slot(int32_t nImageIndex);
    void ClearImage(int32_t nImageIndex);
    static void LoadImage(ClImage*& pSlot, void* pBitmap, uint32_t nBitmapSize);
    static void CheckBitmapFormat(void* pBitmap, uint32_t nBitmapSize);
    static void CheckStandardImage(void* pBitmap, uint32_t nBitmapSize);
    int32_t RunDetection(uint8_t nMode);

    ClSentivo m_Detection;
};
