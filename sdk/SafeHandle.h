#pragma once
// Handles: the value a caller holds points to a small guarded block around
// one handle object. A handle is proved by what it points to, not looked up:
// the guard texts at both ends must read the signature, and the caller's
// memory is read through a probe, so a wild pointer gives -43 and no crash.
#include <cstdint>

#include "sentivo/sentivo.h"

class ClSentivoSDKHandle;

namespace Sentivo
{

struct SafeHandleBlock
{
    char m_szHead[8];
    ClSentivoSDKHandle* m_pObject;
    char m_szTail[8];
};

// The signature of this library's handles.
constexpr char kHandleSignature[8] = "Sentivo";

// -2 outside initialisation, -42 for null, -43 for anything but a live block.
ClSentivoSDKHandle* Resolve(SentivoHandle hValue);
// The same, recognising the block by the table of handle signatures.
ClSentivoSDKHandle* ResolveForDestroy(SentivoHandle hValue);
// Creates block and object and stores the block in *pHandle; returns 0 or
// -102 (the caller raises it).
int32_t CreateBlock(SentivoHandle* pHandle);
// Frees object and block and zeroes *pHandle; returns 0 or the code.
int32_t DestroyBlock(SentivoHandle* pHandle);

} // namespace Sentivo
