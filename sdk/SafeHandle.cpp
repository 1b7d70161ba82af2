#include "sdk/SafeHandle.h"

#include <cstring>
#include <memory>
#include <new>

#include "sdk/MemoryProbe.h"
#include "sdk/SDKBase.h"
#include "sdk/SentivoSDKHandle.h"

namespace Sentivo
{

namespace
{

// One entry per handle type of the library.
const char* const kSignatureTable[] = {kHandleSignature};

bool HasSignature(const char (&szGuard)[8], const char* szSignature)
{
    return std::strncmp(szGuard, szSignature, sizeof(szGuard)) == 0;
}

// Reads the caller's block through the probe. The standard exceptions raised
// here pass through; a fault on reading is -43.
SafeHandleBlock ReadBlock(SentivoHandle hValue)
{
    if (TpSingleton<ClSentivoSDK>::GetInitCount() == 0)
        SENTIVO_THROW_CODE(ZRC_ERROR_NOT_INITIALIZED);
    if (hValue == nullptr)
        SENTIVO_THROW_CODE(ZRC_ERROR_NO_HANDLE);
    SafeHandleBlock block;
    if (!ProbeRead(hValue, &block, sizeof(block)))
        SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_HANDLE);
    return block;
}

} // namespace

ClSentivoSDKHandle* Resolve(SentivoHandle hValue)
{
    const SafeHandleBlock block = ReadBlock(hValue);
    if (!HasSignature(block.m_szHead, kHandleSignature) ||
        !HasSignature(block.m_szTail, kHandleSignature) || block.m_pObject == nullptr)
    {
        SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_HANDLE);
    }
    return block.m_pObject;
}

ClSentivoSDKHandle* ResolveForDestroy(SentivoHandle hValue)
{
    const SafeHandleBlock block = ReadBlock(hValue);
    for (const char* szSignature : kSignatureTable)
    {
        if (HasSignature(block.m_szHead, szSignature) && HasSignature(block.m_szTail, szSignature))
        {
            if (block.m_pObject == nullptr)
                SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_HANDLE);
            return block.m_pObject;
        }
    }
    SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_HANDLE);
}

int32_t CreateBlock(SentivoHandle* pHandle)
{
    if (pHandle == nullptr)
        SENTIVO_THROW_CODE(ZRC_ERROR_INVALID_PARAMETER);
    std::unique_ptr<SafeHandleBlock> pBlock(new (std::nothrow) SafeHandleBlock);
    if (!pBlock)
        return ZRC_ERROR_OUT_OF_MEMORY;
    ClSentivoSDKHandle* pObject = new (std::nothrow) ClSentivoSDKHandle();
    if (pObject == nullptr)
        return ZRC_ERROR_OUT_OF_MEMORY;
    std::memcpy(pBlock->m_szHead, kHandleSignature, sizeof(kHandleSignature));
    std::memcpy(pBlock->m_szTail, kHandleSignature, sizeof(kHandleSignature));
    pBlock->m_pObject = pObject;
    *pHandle = pBlock.release();
    return 0;
}

int32_t DestroyBlock(SentivoHandle* pHandle)
{
    try
    {
        if (*pHandle == nullptr)
            SENTIVO_THROW_CODE(ZRC_ERROR_NO_HANDLE);
        ClSentivoSDKHandle* pObject = Resolve(*pHandle);
        delete pObject;
        delete static_cast<SafeHandleBlock*>(*pHandle);
        *pHandle = nullptr;
    }
    catch (const ClException& e)
    {
        return e.GetCode();
    }
    return 0;
}

} // namespace Sentivo
