#include "image/FpImage.h"

#include <cmath>
#include <cstddef>
#include <cstring>
#include <limits>
#include <new>

#include "sdk/Exception.h"

namespace
{

const double kNaN = std::numeric_limits<double>::quiet_NaN();

// Pixel buffers released on a thread, kept for that thread's next image of
// the same size. A capture makes and drops some hundred scratch images of a
// few sizes; handed back to the allocator each time, their pages went back
// to the system on a worker thread and had to be faulted in again on the
// next capture, so two handles on two threads spent their time in the
// kernel. The cache holds at most kMaxBuffers buffers and kMaxBytes per
// thread, touches no other thread and changes no pixel. The sanitizer
// builds go without it, so that every buffer is a fresh allocation there.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int kMaxBuffers = 0;
#else
constexpr int kMaxBuffers = 48;
#endif
constexpr size_t kMaxBytes = size_t(8) << 20;

class ClBufferCache
{
public:
    ~ClBufferCache()
    {
        for (int i = 0; i < m_nCount; ++i)
            delete[] m_Entries[i].pUnits;
        s_bGone = true;
    }
    // A cached buffer of exactly nUnits, or null.
    uint64_t* Take(size_t nUnits)
    {
        for (int i = m_nCount - 1; i >= 0; --i)
            if (m_Entries[i].nUnits == nUnits)
            {
                uint64_t* pUnits = m_Entries[i].pUnits;
                for (int k = i + 1; k < m_nCount; ++k)
                    m_Entries[k - 1] = m_Entries[k];
                --m_nCount;
                m_nBytes -= nUnits * 8;
                return pUnits;
            }
        return nullptr;
    }
    // Keeps the buffer; when the cache is full, the buffers released longest
    // ago make room (they are the least likely to be asked for next).
    bool Give(uint64_t* pUnits, size_t nUnits)
    {
        if (kMaxBuffers == 0 || nUnits * 8 > kMaxBytes)
            return false;
        while (m_nCount == kMaxBuffers || m_nBytes + nUnits * 8 > kMaxBytes)
        {
            delete[] m_Entries[0].pUnits;
            m_nBytes -= m_Entries[0].nUnits * 8;
            for (int i = 1; i < m_nCount; ++i)
                m_Entries[i - 1] = m_Entries[i];
            --m_nCount;
        }
        m_Entries[m_nCount++] = {pUnits, nUnits};
        m_nBytes += nUnits * 8;
        return true;
    }
    // The thread's cache, or null once the thread's exit destroyed it.
    static ClBufferCache* OfThisThread()
    {
        if (s_bGone || kMaxBuffers == 0)
            return nullptr;
        static thread_local ClBufferCache cache;
        return s_bGone ? nullptr : &cache;
    }

private:
    struct StEntry
    {
        uint64_t* pUnits;
        size_t nUnits;
    };
    StEntry m_Entries[kMaxBuffers > 0 ? kMaxBuffers : 1] = {};
    int m_nCount = 0;
    size_t m_nBytes = 0;
    static thread_local bool s_bGone;
};
thread_local bool ClBufferCache::s_bGone = false;

// The buffer is allocated in whole eight-byte units; this releases it as the
// array it was allocated as, or keeps it in the thread's cache.
struct UnitArrayDeleter
{
    size_t nUnits;
    void operator()(uint8_t* p) const
    {
        uint64_t* pUnits = reinterpret_cast<uint64_t*>(p);
        ClBufferCache* pCache = ClBufferCache::OfThisThread();
        if (pCache == nullptr || !pCache->Give(pUnits, nUnits))
            delete[] pUnits;
    }
};

uint64_t* AllocateUnits(size_t nUnits)
{
    ClBufferCache* pCache = ClBufferCache::OfThisThread();
    uint64_t* pUnits = pCache != nullptr ? pCache->Take(nUnits) : nullptr;
    return pUnits != nullptr ? pUnits : new (std::nothrow) uint64_t[nUnits];
}

} // namespace

ClImage::ClImage()
{
    Clear();
}

ClImage::~ClImage() = default;

void ClImage::Clear()
{
    m_eDataType = eUnknownType;
    m_eContent = eUnknown;
    m_nWidth = 0;
    m_nHeight = 0;
    m_nXResolution = 0;
    m_nYResolution = 0;
    m_Data.reset();
    m_nPlanes = 0;
    m_dLowerBound = kNaN;
    m_dUpperBound = kNaN;
    m_nOrigin = 0;
}

ClImage::EContent ClImage::ContentOfPlanes(uint32_t nPlanes)
{
    switch (nPlanes)
    {
    case 1:
        return eGrayscale;
    case 3:
        return eRGB;
    case 4:
        return eRGBA;
    default:
        return eUnknown;
    }
}

void ClImage::Create(EDataType eType, int32_t nWidth, int32_t nHeight, uint32_t nPlanes,
                     int32_t nXResolution, int32_t nYResolution)
{
    const int64_t nOldBytes = ByteSize();

    // The header is stored first and stays whatever happens below.
    m_nXResolution = nXResolution;
    m_nYResolution = nYResolution;
    m_nPlanes = nPlanes;
    m_eDataType = eType;
    m_nWidth = nWidth;
    m_nHeight = nHeight;
    m_eContent = ContentOfPlanes(nPlanes);
    SetBoundsForType(eType);

    const int64_t nStride = RowStride();
    const int64_t nNewBytes = MulSaturated(nStride, nHeight);
    // A long-lived image keeps its buffer while it is the only sharer and the
    // byte size is the same: no allocation per capture. A zero or negative
    // area never counts as the same size, so it always throws below.
    if (m_Data && m_Data.use_count() == 1 && nHeight > 0 && nNewBytes > 0 && nOldBytes == nNewBytes)
        return;

    if (nHeight < 1 || nStride < 1)
        SENTIVO_THROW("Image area must be positive", ZRC_ERROR_INTERNAL);

    // The byte size saturates for absurd requests; those ask for the largest
    // block and fail as any other failed allocation.
    const uint64_t nUnits64 = static_cast<uint64_t>(nNewBytes) / 8 + (nNewBytes % 8 != 0 ? 1 : 0);
    // An array request beyond PTRDIFF_MAX bytes would throw a standard
    // exception instead of failing; the largest block is the largest request.
    const uint64_t nMaxUnits = static_cast<uint64_t>(std::numeric_limits<ptrdiff_t>::max()) / 8;
    const size_t nUnits = static_cast<size_t>(nUnits64 > nMaxUnits ? nMaxUnits : nUnits64);
    uint64_t* pUnits = AllocateUnits(nUnits);
    if (pUnits == nullptr)
    {
        Clear();
        SENTIVO_THROW_BAD_ALLOC();
    }
    m_Data.reset(reinterpret_cast<uint8_t*>(pUnits), UnitArrayDeleter{nUnits});
}

void ClImage::CreateAs(const ClImage& other, EDataType eType)
{
    if (&other == this)
        SENTIVO_THROW("this function dose not work on the same image.",
                      ZRC_ERROR_INVALID_PARAMETER);
    Create(eType, other.m_nWidth, other.m_nHeight, other.m_nPlanes, other.m_nXResolution,
           other.m_nYResolution);
    m_eContent = other.m_eContent;
    m_nOrigin = other.m_nOrigin;
}

void ClImage::CreateLike(const ClImage& other)
{
    if (&other == this)
        return;
    Create(other.m_eDataType, other.m_nWidth, other.m_nHeight, other.m_nPlanes,
           other.m_nXResolution, other.m_nYResolution);
    m_eContent = other.m_eContent;
    m_nOrigin = other.m_nOrigin;
    m_dLowerBound = other.m_dLowerBound;
    m_dUpperBound = other.m_dUpperBound;
}

ClImage& ClImage::Assign(const ClImage& other)
{
    if (&other == this)
        return *this;
    CreateLike(other);
    if (other.Data() != nullptr)
        std::memcpy(Data(), other.Data(), static_cast<size_t>(ByteSize()));
    return *this;
}

void ClImage::Swap(ClImage& other)
{
    if (&other == this)
        return;
    std::swap(m_eDataType, other.m_eDataType);
    std::swap(m_eContent, other.m_eContent);
    std::swap(m_nWidth, other.m_nWidth);
    std::swap(m_nHeight, other.m_nHeight);
    std::swap(m_nXResolution, other.m_nXResolution);
    std::swap(m_nYResolution, other.m_nYResolution);
    m_Data.swap(other.m_Data);
    std::swap(m_nPlanes, other.m_nPlanes);
    std::swap(m_dLowerBound, other.m_dLowerBound);
    std::swap(m_dUpperBound, other.m_dUpperBound);
    std::swap(m_nOrigin, other.m_nOrigin);
}

void ClImage::SetBoundsForType(EDataType eType)
{
    const uint32_t nBits = SampleSize(eType) * 8;
    if (eType == eFloat32 || eType == eDouble64)
    {
        m_dLowerBound = -1.0;
        m_dUpperBound = 1.0;
    }
    else if (eType == eUInt8 || eType == eUInt16 || eType == eUInt32)
    {
        // Derived from the size bits, so a new integer width needs no code.
        m_dLowerBound = 0.0;
        m_dUpperBound = std::ldexp(1.0, static_cast<int>(nBits)) - 1.0;
    }
    else if (eType == eInt8 || eType == eInt16 || eType == eInt32)
    {
        m_dLowerBound = -std::ldexp(1.0, static_cast<int>(nBits) - 1);
        m_dUpperBound = std::ldexp(1.0, static_cast<int>(nBits) - 1) - 1.0;
    }
    else
    {
        m_dLowerBound = kNaN;
        m_dUpperBound = kNaN;
    }
}

void ClImage::FillZero()
{
    if (m_Data)
        std::memset(m_Data.get(), 0, static_cast<size_t>(ByteSize()));
}

void ClImage::FillBytes(const void* pValue, uint32_t nValueSize, EDataType eValueType)
{
    if (eValueType != m_eDataType)
        SENTIVO_THROW("Image Type is not the assigned type", ZRC_ERROR_INTERNAL);
    if (!m_Data)
        return;
    // The first row sample by sample (one byte wide: a memset), every other
    // row as a copy of it.
    const int64_t nSamples = static_cast<int64_t>(m_nPlanes) * m_nWidth;
    const size_t nRowBytes = static_cast<size_t>(nSamples) * nValueSize;
    uint8_t* pFirst = Row<uint8_t>(0);
    if (nValueSize == 1)
        std::memset(pFirst, *static_cast<const uint8_t*>(pValue), nRowBytes);
    else
        for (int64_t i = 0; i < nSamples; ++i)
            std::memcpy(pFirst + i * nValueSize, pValue, nValueSize);
    for (int32_t y = 1; y < m_nHeight; ++y)
        std::memcpy(Row<uint8_t>(y), pFirst, nRowBytes);
}

const char* ClImage::TypeText(EDataType eType)
{
    switch (eType)
    {
    case eUnknownType:
        return "unknown";
    case eUInt8:
        return "uint8";
    case eUInt16:
        return "uint16";
    case eUInt32:
        return "uint32";
    case eInt8:
        return "int8";
    case eInt16:
        return "int16";
    case eInt32:
        return "int32";
    case eFloat32:
        return "float32";
    case eDouble64:
        return "double64";
    case eDefaultType:
        return "default";
    }
    return "not valid";
}

const char* ClImage::TypeEnumText(EDataType eType)
{
    switch (eType)
    {
    case eUInt8:
        return "unsigned char";
    case eUInt16:
        return "unsigned short";
    case eUInt32:
        return "unsigned int";
    case eInt8:
        return "signed char";
    case eInt16:
        return "signed short";
    case eInt32:
        return "signed int";
    case eFloat32:
        return "float";
    case eDouble64:
        return "double";
    case eDefaultType:
        return "default";
    case eUnknownType:
        break;
    }
    return "";
}
