#pragma once
// ClParameterContainer: the tree node of the parameter system. It owns its
// children and gives the parameters of a processor one address space of
// dotted paths ("Sub.nFilterWidth", ".pInImage").
#include "image/ArrayDynamic.h"
#include "parameters/Parameter.h"
#include "parameters/ParameterEnumPointer.h"
#include "parameters/ParameterNumeric.h"
#include "parameters/ParameterString.h"

class ClImage;

class ClParameterContainer : public ClParameter
{
public:
    // Longest path part that can be matched; a part of exactly this length
    // is reported.
    static constexpr uint32_t kMaxPathPart = 255;

    ClParameterContainer();
    explicit ClParameterContainer(const char* szName);
    ~ClParameterContainer() override;

    ClParameter* Clone() const override;
    void CopyTo(ClParameter& target) const override;
    void CopyDefault(const ClParameter& other) override;
    void DefaultFromValue(const ClParameter& other) override;
    void CopyValue(const ClParameter& other, bool bForce) override;
    void ResetValue() override;
    void ValueFromDefault(const ClParameter& other) override;
    void SwapValuesAndDefaults() override;
    bool IsDefault() const override;

    ClParameterContainer* AsContainer() override { return this; }
    ClParameter* AsParameter() override { return this; }
    void* GetValuePointer() override { return this; }
    bool IsContainer() const override { return true; }

    void SetText(const char*) override {}
    bool GetText(char* szBuffer, uint32_t& nSize) const override;
    bool GetDefaultText(char*, uint32_t&) const override { return false; }

    // Adds an existing parameter, which the container then owns; a name that
    // is already there (letter case ignored) throws -46.
    void AddChild(ClParameter* pParameter);
    void AddChild(const char* szName, ClParameter* pParameter);
    ClParameter* FindChild(const char* szName) const;
    ClParameter* Find(const char* szPath);
    ClParameter* Root();

    uint32_t GetChildCount() const { return m_Children.Size(); }
    ClParameter* GetChild(uint32_t nIndex) const { return m_Children[nIndex]; }

    // Creates a parameter of class P, names it and adds it; on failure the
    // parameter is deleted and the exception passed on. The creation helpers
    // of the typed parameters are built on this.
    template <typename P> P* AddNew(const char* szName)
    {
        P* pParameter = new (std::nothrow) P();
        if (pParameter == nullptr)
            SENTIVO_THROW_BAD_ALLOC();
        try
        {
            AddChild(szName, pParameter);
        }
        catch (const ClException&)
        {
            delete pParameter;
            throw;
        }
        return pParameter;
    }

    // Creation helpers: each returns a new child, ready to be bound.
    // An image input: an enumeration over ClImage* with an empty map, marked
    // as a connection.
    TpParameterEnumPointer<ClImage*>* AddImage(const char* szName);
    // A boolean: an enumeration with the entries 0 "False" and 1 "True".
    TpParameterEnumPointer<bool>* AddBool(const char* szName);
    // AddDouble<OwnerClass>(name) gives a double bound later to accessors.
    template <typename Owner = ClParameter>
    TpParameterNumeric<double, Owner>* AddDouble(const char* szName)
    {
        return AddNew<TpParameterNumeric<double, Owner>>(szName);
    }
    TpParameterNumeric<int>* AddInt(const char* szName);
    TpParameterNumeric<long>* AddLong(const char* szName);
    TpParameterNumeric<unsigned int>* AddUnsigned(const char* szName);
    TpParameterString<char*, ClParameter, 0>* AddString(const char* szName);
    // An enumeration over T with an empty map, for the caller's entries.
    template <typename T> TpParameterEnumPointer<T>* AddEnum(const char* szName)
    {
        return AddNew<TpParameterEnumPointer<T>>(szName);
    }

private:
    void DeleteChildren();
    const ClParameterContainer& OtherContainer(const ClParameter& other) const;

    TpArrayDynamic<ClParameter*, 10> m_Children;
};
