#include "parameters/ParameterInterface.h"

#include <algorithm>
#include <cstring>
#include <new>

#include "image/Stream.h"
#include "parameters/Parameter.h"
#include "sdk/Exception.h"

namespace
{

template <typename T> T* NewArray(size_t nCount)
{
    T* pArray = new (std::nothrow) T[nCount];
    if (pArray == nullptr)
        SENTIVO_THROW_BAD_ALLOC();
    return pArray;
}

// A null name compares as the empty text.
bool SameName(const char* szFirst, const char* szSecond)
{
    return std::strcmp(szFirst != nullptr ? szFirst : "", szSecond != nullptr ? szSecond : "") == 0;
}

template <typename T> void WriteMember(ClStream& stream, const void* pValue)
{
    T value{};
    if (pValue != nullptr)
        std::memcpy(&value, pValue, sizeof(T));
    stream.WriteValue(value);
}

template <typename T> void ReadMember(ClStream& stream, void* pValue, size_t nStored = sizeof(T))
{
    T value{};
    stream.ReadValue(value);
    if (pValue != nullptr)
        std::memcpy(pValue, &value, std::min(nStored, sizeof(T)));
}

} // namespace

ClParameterInterface::ClParameter::ClParameter(EKind eKind, EDirection eDirection, void* pValue,
                                               const char* szName, const char* szDescription,
                                               double dLower, double dUpper, double dDefault)
    : m_eKind(eKind), m_eDirection(eDirection), m_nUnlimited(dLower == dUpper ? 1 : 0),
      m_dLower(dLower), m_dUpper(dUpper), m_dDefault(dDefault), m_pValue(pValue)
{
    try
    {
        ReplaceOwnedText(m_szName, szName);
        ReplaceOwnedText(m_szDescription, szDescription);
    }
    catch (...)
    {
        delete[] m_szName;
        throw;
    }
}

ClParameterInterface::ClParameter::~ClParameter()
{
    delete[] m_szEntryTexts;
    delete[] m_pEntryValues;
    delete[] m_szName;
    delete[] m_szDescription;
}

void ClParameterInterface::ClParameter::SetEntries(const char* szTexts, const int32_t* pValues)
{
    uint32_t nCount = 0;
    size_t nBytes = 1; // the closing empty text
    if (szTexts != nullptr)
    {
        for (const char* p = szTexts; *p != '\0'; p += std::strlen(p) + 1)
        {
            ++nCount;
            nBytes += std::strlen(p) + 1;
        }
    }
    char* szCopy = NewArray<char>(nBytes);
    if (nBytes > 1)
        std::memcpy(szCopy, szTexts, nBytes - 1);
    szCopy[nBytes - 1] = '\0';
    int32_t* pCopy = nullptr;
    if (pValues != nullptr && nCount > 0)
    {
        try
        {
            pCopy = NewArray<int32_t>(nCount);
        }
        catch (...)
        {
            delete[] szCopy;
            throw;
        }
        std::memcpy(pCopy, pValues, nCount * sizeof(int32_t));
    }
    delete[] m_szEntryTexts;
    delete[] m_pEntryValues;
    m_szEntryTexts = szCopy;
    m_pEntryValues = pCopy;
    m_nEntryCount = nCount;
}

uint32_t ClParameterInterface::ClParameter::SavedValueSize() const
{
    switch (m_eKind)
    {
    case eKindUInt8:
        return 1;
    case eKindInt16:
    case eKindUInt16:
        return 2;
    case eKindInt32:
    case eKindFloat:
        return 4;
    case eKindDouble:
        return 8;
    default:
        return 0;
    }
}

uint32_t ClParameterInterface::ClParameter::LoadedValueSize() const
{
    // Kind 1 is read with four bytes where two were written; readers of
    // stored records depend on this, so it stays.
    return m_eKind == eKindInt16 ? 4 : SavedValueSize();
}

void ClParameterInterface::ClParameter::Save(ClStream& stream) const
{
    stream.WriteText(m_szName);
    stream.WriteValue(static_cast<uint8_t>(m_eDirection));
    stream.WriteValue(static_cast<uint8_t>(m_nUnlimited));
    stream.WriteValue(m_dLower);
    stream.WriteValue(m_dUpper);
    stream.WriteValue(m_dDefault);
    stream.WriteValue(m_nFlag1);
    stream.WriteValue(m_nFlag2);
    stream.WriteValue(static_cast<uint8_t>(m_eKind & 0xFF));
    switch (m_eKind)
    {
    case eKindUInt8:
        WriteMember<uint8_t>(stream, m_pValue);
        break;
    case eKindInt16:
        WriteMember<int16_t>(stream, m_pValue);
        break;
    case eKindUInt16:
        WriteMember<uint16_t>(stream, m_pValue);
        break;
    case eKindInt32:
        WriteMember<int32_t>(stream, m_pValue);
        break;
    case eKindDouble:
        WriteMember<double>(stream, m_pValue);
        break;
    case eKindFloat:
        WriteMember<float>(stream, m_pValue);
        break;
    default:
        break;
    }
}

int32_t ClParameterInterface::ClParameter::Load(ClStream& stream)
{
    char* szName = nullptr;
    stream.ReadText(szName);
    const bool bSame = SameName(szName, m_szName);
    delete[] szName;
    if (!bSame)
        return ZRC_ERROR_FORMAT_NOTSUPPORTED;

    uint8_t nSkipped = 0;
    double dLower = 0, dUpper = 0, dDefault = 0;
    uint8_t nFlag1 = 0, nFlag2 = 0;
    stream.ReadValue(nSkipped); // direction
    stream.ReadValue(nSkipped); // unlimited
    stream.ReadValue(dLower);
    stream.ReadValue(dUpper);
    stream.ReadValue(dDefault);
    stream.ReadValue(nFlag1);
    stream.ReadValue(nFlag2);
    stream.ReadValue(nSkipped); // kind: the record's own kind decides
    m_dLower = dLower;
    m_dUpper = dUpper;
    m_dDefault = dDefault;
    m_nFlag1 = nFlag1;
    m_nFlag2 = nFlag2;

    switch (m_eKind)
    {
    case eKindUInt8:
        ReadMember<uint8_t>(stream, m_pValue);
        break;
    case eKindInt16:
        // Four bytes are read; the member takes the first two of them.
        ReadMember<int32_t>(stream, m_pValue, sizeof(int16_t));
        break;
    case eKindUInt16:
        ReadMember<uint16_t>(stream, m_pValue);
        break;
    case eKindInt32:
        ReadMember<int32_t>(stream, m_pValue);
        break;
    case eKindDouble:
        ReadMember<double>(stream, m_pValue);
        break;
    case eKindFloat:
        ReadMember<float>(stream, m_pValue);
        break;
    default:
        break;
    }
    return ZRC_SUCCESS;
}

ClParameterInterface::~ClParameterInterface()
{
    ClParameter* pRecord = m_pFirst;
    while (pRecord != nullptr)
    {
        ClParameter* pNext = pRecord->m_pNext;
        delete pRecord;
        pRecord = pNext;
    }
}

ClParameterInterface::ClParameter& ClParameterInterface::Append(ClParameter* pRecord)
{
    pRecord->m_pNext = nullptr;
    if (m_pLast != nullptr)
        m_pLast->m_pNext = pRecord;
    else
        m_pFirst = pRecord;
    m_pLast = pRecord;
    ++m_nCount;
    return *pRecord;
}

ClParameterInterface::ClParameter* ClParameterInterface::Find(const char* szName) const
{
    for (ClParameter* pRecord = m_pFirst; pRecord != nullptr; pRecord = pRecord->m_pNext)
    {
        if (SameName(pRecord->m_szName, szName))
            return pRecord;
    }
    return nullptr;
}

ClParameterInterface::ClParameter&
ClParameterInterface::AddNumber(EKind eKind, void* pMember, double dValue, const char* szName,
                                const char* szDescription, EDirection eDirection, double dLower,
                                double dUpper)
{
    if (dLower == kAutoLower && dUpper == kAutoUpper)
    {
        // Automatic limits: a third of the value below and above it.
        const double dSmall = 2.0 * dValue / 3.0;
        const double dLarge = 4.0 * dValue / 3.0;
        dLower = std::min(dSmall, dLarge);
        dUpper = std::max(dSmall, dLarge);
        if (eKind == eKindUInt8)
        {
            dLower = std::clamp(dLower, 0.0, 255.0);
            dUpper = std::clamp(dUpper, 0.0, 255.0);
        }
    }
    ClParameter* pRecord = new (std::nothrow)
        ClParameter(eKind, eDirection, pMember, szName, szDescription, dLower, dUpper, dValue);
    if (pRecord == nullptr)
        SENTIVO_THROW_BAD_ALLOC();
    return Append(pRecord);
}

ClParameterInterface::ClParameter&
ClParameterInterface::AddEnumRecord(void* pMember, double dValue, const char* szName,
                                    const char* szDescription, EDirection eDirection,
                                    const char* szTexts, const int32_t* pValues)
{
    ClParameter* pRecord = new (std::nothrow)
        ClParameter(eKindEnum, eDirection, pMember, szName, szDescription, 0.0, 0.0, dValue);
    if (pRecord == nullptr)
        SENTIVO_THROW_BAD_ALLOC();
    try
    {
        pRecord->SetEntries(szTexts, pValues);
    }
    catch (...)
    {
        delete pRecord;
        throw;
    }
    return Append(pRecord);
}

ClParameterInterface::ClParameter& ClParameterInterface::Add(ClImage*& pMember, const char* szName,
                                                             const char* szDescription,
                                                             EDirection eDirection)
{
    ClParameter* pRecord = new (std::nothrow)
        ClParameter(eKindImage, eDirection, &pMember, szName, szDescription, 0.0, 0.0, 0.0);
    if (pRecord == nullptr)
        SENTIVO_THROW_BAD_ALLOC();
    return Append(pRecord);
}

ClParameterInterface::ClParameter& ClParameterInterface::Add(bool& bMember, const char* szName,
                                                             const char* szDescription,
                                                             EDirection eDirection)
{
    ClParameter& record = AddEnumRecord(&bMember, bMember ? 1.0 : 0.0, szName, szDescription,
                                        eDirection, "False\0True\0", nullptr);
    record.SetKind(eKindBool);
    return record;
}
