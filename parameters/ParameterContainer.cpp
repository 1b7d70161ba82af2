#include "parameters/ParameterContainer.h"

#include <cstring>
#include <strings.h>

#include "sdk/Exception.h"

namespace
{

// Copies one part of a dotted path into szPart (kMaxPathPart + 1 bytes) and
// returns the position behind it. Only a part of exactly the maximum length
// is reported; a longer one is cut, its rest left in the path, and so simply
// fails to match.
const char* ExtractPathPart(const char* szPath, char* szPart)
{
    uint32_t n = 0;
    while (szPath[n] != '\0' && szPath[n] != '.' && n < ClParameterContainer::kMaxPathPart)
    {
        szPart[n] = szPath[n];
        ++n;
    }
    szPart[n] = '\0';
    if (n == ClParameterContainer::kMaxPathPart && (szPath[n] == '\0' || szPath[n] == '.'))
        SENTIVO_THROW("Parameter path part was to long max len is 255", ZRC_ERROR_INTERNAL);
    return szPath + n;
}

} // namespace

ClParameterContainer::ClParameterContainer()
{
    m_pType = &typeid(ClParameterContainer);
    m_nFlags = eFlagContainer;
}

ClParameterContainer::ClParameterContainer(const char* szName) : ClParameterContainer()
{
    SetName(szName);
}

ClParameterContainer::~ClParameterContainer()
{
    DeleteChildren();
}

void ClParameterContainer::DeleteChildren()
{
    // Children go in reverse order of insertion.
    for (uint32_t i = m_Children.Size(); i > 0; --i)
        delete m_Children[i - 1];
    m_Children.Clear();
}

const ClParameterContainer& ClParameterContainer::OtherContainer(const ClParameter& other) const
{
    const ClParameterContainer* pOther = const_cast<ClParameter&>(other).AsContainer();
    if (pOther == nullptr)
        SENTIVO_THROW("pCast is not set", ZRC_ERROR_BAD_POINTER);
    return *pOther;
}

ClParameter* ClParameterContainer::Clone() const
{
    ClParameterContainer* pCopy = new (std::nothrow) ClParameterContainer(GetName());
    if (pCopy == nullptr)
        SENTIVO_THROW_BAD_ALLOC();
    try
    {
        CopyTo(*pCopy);
    }
    catch (const ClException&)
    {
        delete pCopy;
        throw;
    }
    return pCopy;
}

void ClParameterContainer::CopyTo(ClParameter& target) const
{
    target.SetName(GetName());
    ClParameterContainer* pTarget = target.AsContainer();
    if (pTarget == nullptr)
        SENTIVO_THROW("pCast is not set", ZRC_ERROR_BAD_POINTER);
    pTarget->DeleteChildren();
    for (const ClParameter* pChild : m_Children)
        pTarget->AddChild(pChild->Clone());
}

// The operations below match children by index: both trees must have the
// same shape, which the callers guarantee.
void ClParameterContainer::CopyDefault(const ClParameter& other)
{
    const ClParameterContainer& source = OtherContainer(other);
    for (uint32_t i = 0; i < m_Children.Size(); ++i)
        m_Children[i]->CopyDefault(*source.m_Children[i]);
}

void ClParameterContainer::DefaultFromValue(const ClParameter& other)
{
    const ClParameterContainer& source = OtherContainer(other);
    for (uint32_t i = 0; i < m_Children.Size(); ++i)
        m_Children[i]->DefaultFromValue(*source.m_Children[i]);
}

void ClParameterContainer::CopyValue(const ClParameter& other, bool bForce)
{
    const ClParameterContainer& source = OtherContainer(other);
    for (uint32_t i = 0; i < m_Children.Size(); ++i)
        m_Children[i]->CopyValue(*source.m_Children[i], bForce);
}

void ClParameterContainer::ResetValue()
{
    for (ClParameter* pChild : m_Children)
        pChild->ResetValue();
}

void ClParameterContainer::ValueFromDefault(const ClParameter& other)
{
    const ClParameterContainer& source = OtherContainer(other);
    for (uint32_t i = 0; i < m_Children.Size(); ++i)
        m_Children[i]->ValueFromDefault(*source.m_Children[i]);
}

void ClParameterContainer::SwapValuesAndDefaults()
{
    for (ClParameter* pChild : m_Children)
        pChild->SwapValuesAndDefaults();
}

bool ClParameterContainer::IsDefault() const
{
    for (const ClParameter* pChild : m_Children)
    {
        if (!pChild->IsDefault())
            return false;
    }
    return true;
}

bool ClParameterContainer::GetText(char* szBuffer, uint32_t& nSize) const
{
    if (nSize > 1 && szBuffer != nullptr)
        szBuffer[0] = '\0';
    nSize = 1;
    return true;
}

void ClParameterContainer::AddChild(ClParameter* pParameter)
{
    if (FindChild(pParameter->GetName()) != nullptr)
        SENTIVO_THROW_CODE(ZRC_ERROR_PARAM_VALUE_DUPLICATE);
    pParameter->SetParent(this);
    m_Children.Add(pParameter);
}

void ClParameterContainer::AddChild(const char* szName, ClParameter* pParameter)
{
    pParameter->SetName(szName);
    AddChild(pParameter);
}

ClParameter* ClParameterContainer::FindChild(const char* szName) const
{
    if (szName == nullptr)
        return nullptr;
    for (ClParameter* pChild : m_Children)
    {
        const char* szChild = pChild->GetName();
        if (szChild != nullptr && strcasecmp(szChild, szName) == 0)
            return pChild;
    }
    return nullptr;
}

ClParameter* ClParameterContainer::Root()
{
    ClParameter* pTop = this;
    while (pTop->GetParent() != nullptr)
        pTop = pTop->GetParent();
    return pTop->AsParameter();
}

ClParameter* ClParameterContainer::Find(const char* szPath)
{
    if (szPath == nullptr)
        return nullptr;
    if (std::strcmp(szPath, ".") == 0)
        return Root();

    ClParameter* pResult = nullptr;
    const char* pPos = szPath;
    if (szPath[0] == '.')
    {
        // Absolute: the position stays on the leading dot.
        pResult = Root();
    }
    else
    {
        char szPart[kMaxPathPart + 1];
        pPos = ExtractPathPart(pPos, szPart);
        // A path may begin with the root's own name, spelled exactly.
        if (GetParent() == nullptr && GetName() != nullptr && std::strcmp(szPart, GetName()) == 0)
        {
            // The root's name alone addresses nothing.
            if (*pPos == '\0')
                return nullptr;
            pPos = ExtractPathPart(pPos + 1, szPart);
        }
        pResult = FindChild(szPart);
    }

    if (*pPos == '.' && pResult != nullptr && pResult->IsContainer())
        return pResult->AsContainer()->Find(pPos + 1);
    return pResult;
}

TpParameterEnumPointer<ClImage*>* ClParameterContainer::AddImage(const char* szName)
{
    TpParameterEnumPointer<ClImage*>* pParameter = AddNew<TpParameterEnumPointer<ClImage*>>(szName);
    pParameter->SetConnection(true);
    return pParameter;
}

TpParameterEnumPointer<bool>* ClParameterContainer::AddBool(const char* szName)
{
    TpParameterEnumPointer<bool>* pParameter = AddNew<TpParameterEnumPointer<bool>>(szName);
    pParameter->AddEntry(false, "False");
    pParameter->AddEntry(true, "True");
    return pParameter;
}

TpParameterNumeric<int>* ClParameterContainer::AddInt(const char* szName)
{
    return AddNew<TpParameterNumeric<int>>(szName);
}

TpParameterNumeric<long>* ClParameterContainer::AddLong(const char* szName)
{
    return AddNew<TpParameterNumeric<long>>(szName);
}

TpParameterNumeric<unsigned int>* ClParameterContainer::AddUnsigned(const char* szName)
{
    return AddNew<TpParameterNumeric<unsigned int>>(szName);
}

TpParameterString<char*, ClParameter, 0>* ClParameterContainer::AddString(const char* szName)
{
    return AddNew<TpParameterString<char*, ClParameter, 0>>(szName);
}
