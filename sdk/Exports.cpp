// The fifteen exported functions. Each runs in one of three frames: the
// logged frame (trace lines Enter/Leave/Error), the outer frame of the two
// counted set-up functions, and the silent frame of handles and properties.
// Every ClException below becomes its code here and nowhere else.
#include <cstring>
#include <memory>

#include "sdk/ErrorTable.h"
#include "sdk/Logging.h"
#include "sdk/MemoryProbe.h"
#include "sdk/SafeHandle.h"
#include "sdk/SDKBase.h"
#include "sdk/SentivoSDKHandle.h"
#include "sdk/Utf.h"
#include "sentivo/sentivo.h"

using Sentivo::Resolve;

namespace
{

using ClSDK = TpSingleton<ClSentivoSDK>;

// Enter, the handle operation, Leave; an exception becomes an Error line and
// its code. The trace lines print the function name with an empty suffix.
template <typename F> int32_t LoggedFrame(const char* szFunction, F&& operation)
{
    try
    {
        SdkLog(Sentivo::eLogTrace, "%s%s Enter", szFunction, "");
        operation();
        SdkLog(Sentivo::eLogTrace, "%s%s Leave", szFunction, "");
        return ZRC_SUCCESS;
    }
    catch (const ClException& e)
    {
        const int32_t nCode = e.GetCode();
        SdkLog(Sentivo::eLogError, "%s%s Error(%d): %s", szFunction, "", nCode,
               ErrorDescription(nCode));
        return nCode;
    }
}

template <typename F> int32_t SilentFrame(F&& operation)
{
    try
    {
        operation();
        return ZRC_SUCCESS;
    }
    catch (const ClException& e)
    {
        return e.GetCode();
    }
}

void RaiseIfFailed(int32_t nCode)
{
    if (nCode != ZRC_SUCCESS)
        SENTIVO_THROW_CODE(nCode);
}

// Reads a property by the two-step protocol: a 128-byte buffer first, and on
// -21 an array of the size the handle asked for. getProperty(buffer, size)
// calls the handle's GetProperty with the name in the right width. Returns the
// text, which lives in szLocal or in the array.
template <typename G>
const char* ReadProperty(G&& getProperty, char (&szLocal)[128], std::unique_ptr<char[]>& array)
{
    uint32_t nSize = sizeof(szLocal);
    int32_t nCode = getProperty(szLocal, nSize);
    if (nCode != ZRC_ERROR_TEMPLATE_SIZE)
    {
        RaiseIfFailed(nCode);
        return szLocal;
    }
    nSize += 1;
    array.reset(new char[nSize]);
    RaiseIfFailed(getProperty(array.get(), nSize));
    return array.get();
}

// Texts in the library's narrow form: a narrow text as it stands, a wide one
// converted afresh for each use.
struct BorrowedText
{
    const char* szText;
    const char* get() const { return szText; }
};
BorrowedText Narrow(const char* szText)
{
    return {szText};
}
std::unique_ptr<char[]> Narrow(const char16_t* szText)
{
    return Sentivo::WideToNarrow(szText);
}

// Steps 4 to 8 of a property read, for either character width: the needed
// size is reported before the buffer is looked at.
template <typename Char>
void DeliverText(const Char* szText, size_t nLength, Char* szValue, uint32_t* pnValueSize)
{
    const uint32_t nGiven = *pnValueSize;
    const uint32_t nNeeded = static_cast<uint32_t>(nLength + 1);
    *pnValueSize = nNeeded;
    if (nGiven < nNeeded)
        SENTIVO_THROW_CODE(ZRC_ERROR_TEMPLATE_SIZE);
    if (szValue == nullptr)
        SENTIVO_THROW_CODE(ZRC_ERROR_TEMPLATE_PTR);
    std::memcpy(szValue, szText, nNeeded * sizeof(Char));
}

// The value in the caller's width, with its length in code units.
void DeliverValue(const char* szText, char* szValue, uint32_t* pnValueSize)
{
    DeliverText(szText, std::strlen(szText), szValue, pnValueSize);
}

void DeliverValue(const char* szText, char16_t* szValue, uint32_t* pnValueSize)
{
    const std::unique_ptr<char16_t[]> wide = Sentivo::NarrowToWide(szText);
    DeliverText(wide.get(), Sentivo::WideLength(wide.get()), szValue, pnValueSize);
}

// Reads the value of a name in either width; an unknown name is -206 here.
template <typename Char>
const char* ReadNamedProperty(ClSentivoSDKHandle& handle, const Char* szName, char (&szLocal)[128],
                              std::unique_ptr<char[]>& array)
{
    if (szName == nullptr)
        SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_PARAMETER);
    return ReadProperty([&](char* szBuffer, uint32_t& nSize)
                        { return handle.GetProperty(Narrow(szName).get(), szBuffer, nSize); },
                        szLocal, array);
}

template <typename Char>
int32_t SetPropertyIn(SentivoHandle hHandle, const Char* szName, const Char* szValue)
{
    return SilentFrame(
        [&]
        {
            ClSentivoSDKHandle& handle = *Resolve(hHandle);
            // The probe reports an unknown name before the value is looked at.
            char szLocal[128];
            std::unique_ptr<char[]> array;
            ReadNamedProperty(handle, szName, szLocal, array);
            if (szValue == nullptr)
                SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_PARAMETER);
            handle.SetProperty(Narrow(szName).get(), Narrow(szValue).get());
        });
}

template <typename Char>
int32_t GetPropertyIn(SentivoHandle hHandle, const Char* szName, Char* szValue,
                      uint32_t* pnValueSize)
{
    return SilentFrame(
        [&]
        {
            ClSentivoSDKHandle& handle = *Resolve(hHandle);
            char szLocal[128];
            std::unique_ptr<char[]> array;
            const char* szText = ReadNamedProperty(handle, szName, szLocal, array);
            if (pnValueSize == nullptr)
                SENTIVO_THROW_CODE(ZRC_ERROR_TEMPLATE_SIZE_PTR);
            DeliverValue(szText, szValue, pnValueSize);
        });
}

} // namespace

extern "C"
{

    SENTIVO_API int32_t SentivoInitialize(void* pReserved)
    {
        SdkLog(Sentivo::eLogTrace, "SentivoInitialize(%p) Enter", pReserved);
        const int32_t nCode = SilentFrame([] { ClSDK::CreateInstance(); });
        if (nCode == ZRC_SUCCESS)
        {
            SdkLog(Sentivo::eLogTrace, "SentivoInitialize(%p) Leave", pReserved);
            return ZRC_SUCCESS;
        }
        SdkLog(Sentivo::eLogError, "SentivoInitialize(%p) Error(%d): %s", pReserved, nCode,
               ErrorDescription(nCode));
        return nCode;
    }

    SENTIVO_API int32_t SentivoUninitialize(void)
    {
        SdkLog(Sentivo::eLogTrace, "SentivoUninitialize(void) Enter");
        const int32_t nCode = SilentFrame([] { ClSDK::ReleaseInstance(); });
        if (nCode == ZRC_SUCCESS)
        {
            SdkLog(Sentivo::eLogTrace, "SentivoUninitialize(void) Leave");
            return ZRC_SUCCESS;
        }
        SdkLog(Sentivo::eLogError, "SentivoUninitialize(void) Error(%d): %s", nCode,
               ErrorDescription(nCode));
        return nCode;
    }

    SENTIVO_API int32_t SentivoCreateHandle(SentivoHandle* pHandle)
    {
        return SilentFrame(
            [&]
            {
                if (ClSDK::GetInitCount() == 0)
                    SENTIVO_THROW("Initialization required prior to handle creation",
                                  ZRC_ERROR_NOT_INITIALIZED);
                if (pHandle == nullptr)
                    SENTIVO_THROW("handle reference is NULL pointer", ZRC_ERROR_BAD_POINTER);
                const SentivoHandle hNull = nullptr;
                if (!Sentivo::ProbeWrite(pHandle, &hNull, sizeof(hNull)))
                    SENTIVO_THROW("protection fault while accessing handle reference",
                                  ZRC_ERROR_BAD_POINTER);
                RaiseIfFailed(Sentivo::CreateBlock(pHandle));
                Resolve(*pHandle)->OnCreate();
            });
    }

    SENTIVO_API int32_t SentivoDestroyHandle(SentivoHandle* pHandle)
    {
        return SilentFrame(
            [&]
            {
                if (ClSDK::GetInitCount() == 0)
                    SENTIVO_THROW_CODE(ZRC_ERROR_NOT_INITIALIZED);
                if (pHandle == nullptr)
                    SENTIVO_THROW("handle reference is NULL pointer", ZRC_ERROR_INVALID_PARAMETER);
                // The variable must be readable and writable before anything is
                // freed, so that a failure leaves the handle alive.
                SentivoHandle hValue = nullptr;
                if (!Sentivo::ProbeRead(pHandle, &hValue, sizeof(hValue)) ||
                    !Sentivo::ProbeWrite(pHandle, &hValue, sizeof(hValue)))
                {
                    SENTIVO_THROW("protection fault while accessing handle reference",
                                  ZRC_ERROR_BAD_POINTER);
                }
                Sentivo::ResolveForDestroy(hValue)->DestroyHandle(pHandle);
            });
    }

    SENTIVO_API int32_t SentivoReset(SentivoHandle hHandle)
    {
        return LoggedFrame("SentivoReset", [&] { Resolve(hHandle)->Reset(); });
    }

    SENTIVO_API int32_t SentivoSetImage(SentivoHandle hHandle, int32_t nImageIndex, void* pBitmap,
                                        uint32_t nBitmapSize)
    {
        return LoggedFrame("SentivoSetImage",
                           [&] { Resolve(hHandle)->SetImage(nImageIndex, pBitmap, nBitmapSize); });
    }

    SENTIVO_API int32_t SentivoDetectFinger(SentivoHandle hHandle)
    {
        return LoggedFrame("SentivoDetectFinger", [&] { Resolve(hHandle)->DetectFinger(); });
    }

    SENTIVO_API int32_t SentivoDetectFake(SentivoHandle hHandle, double* pdScore)
    {
        return LoggedFrame("SentivoDetectFake", [&] { Resolve(hHandle)->DetectFake(pdScore); });
    }

    SENTIVO_API int32_t SentivoEvaluateLiveliness(SentivoHandle hHandle, double* pdScore)
    {
        return LoggedFrame("SentivoEvaluateLiveliness",
                           [&] { Resolve(hHandle)->EvaluateLiveliness(pdScore); });
    }

    SENTIVO_API int32_t SentivoSetPropertyA(SentivoHandle hHandle, const char* szName,
                                            const char* szValue)
    {
        return SetPropertyIn(hHandle, szName, szValue);
    }

    SENTIVO_API int32_t SentivoSetPropertyW(SentivoHandle hHandle, const char16_t* szName,
                                            const char16_t* szValue)
    {
        return SetPropertyIn(hHandle, szName, szValue);
    }

    SENTIVO_API int32_t SentivoGetPropertyA(SentivoHandle hHandle, const char* szName,
                                            char* szValue, uint32_t* pnValueSize)
    {
        return GetPropertyIn(hHandle, szName, szValue, pnValueSize);
    }

    SENTIVO_API int32_t SentivoGetPropertyW(SentivoHandle hHandle, const char16_t* szName,
                                            char16_t* szValue, uint32_t* pnValueSize)
    {
        return GetPropertyIn(hHandle, szName, szValue, pnValueSize);
    }

    SENTIVO_API const char* SentivoGetErrorDescriptionA(int32_t nErrorCode)
    {
        return ErrorDescription(nErrorCode);
    }

    SENTIVO_API const char16_t* SentivoGetErrorDescriptionW(int32_t nErrorCode)
    {
        return ErrorDescriptionW(nErrorCode);
    }

} // extern "C"
