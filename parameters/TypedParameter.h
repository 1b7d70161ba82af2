#pragma once
// TpParameter<T, Owner>: a parameter that stands for one value of type T,
// either a plain member (reached through the value link) or a pair of
// accessors on an owner object.
#include <new>
#include <typeinfo>
#include <utility>

#include "parameters/Parameter.h"
#include "sdk/Exception.h"

// Casts a parameter to the class P that an operation needs; another class is
// a programming error reported as -701 "pCast is not set".
template <typename P> P& CastParameter(ClParameter& parameter)
{
    P* pCast = dynamic_cast<P*>(&parameter);
    if (pCast == nullptr)
        SENTIVO_THROW("pCast is not set", ZRC_ERROR_BAD_POINTER);
    return *pCast;
}

template <typename P> const P& CastParameter(const ClParameter& parameter)
{
    const P* pCast = dynamic_cast<const P*>(&parameter);
    if (pCast == nullptr)
        SENTIVO_THROW("pCast is not set", ZRC_ERROR_BAD_POINTER);
    return *pCast;
}

// Allocates a P and copies source into it: the body of every Clone.
template <typename P> ClParameter* CloneParameter(const P& source)
{
    P* pCopy = new (std::nothrow) P();
    if (pCopy == nullptr)
        SENTIVO_THROW_BAD_ALLOC();
    try
    {
        source.CopyTo(*pCopy);
    }
    catch (...)
    {
        delete pCopy;
        throw;
    }
    return pCopy;
}

// A call through an accessor pointer of a second base class of the owner is
// well-defined, but the sanitizer's vptr check checks the adjusted object
// address against the owner class and reports it. The check is turned off
// for the three accessor calls only.
#if defined(__GNUC__) || defined(__clang__)
#define SENTIVO_ACCESSOR_CALL __attribute__((no_sanitize("vptr")))
#else
#define SENTIVO_ACCESSOR_CALL
#endif

template <typename T, typename Owner = ClParameter> class TpParameter : public ClParameter
{
public:
    using ValueType = T;
    using OwnerType = Owner;
    // The accessor forms of the owner classes: the setter takes the new value
    // by constant reference, the getter returns a reference to the value.
    using Setter = void (Owner::*)(const T&);
    using Getter = T& (Owner::*)();

    TpParameter() { m_pType = &typeid(T); }

    ClParameter* Clone() const override { return CloneParameter(*this); }

    void CopyTo(ClParameter& target) const override
    {
        TpParameter& copy = CastParameter<TpParameter>(target);
        ClParameter::CopyTo(copy);
        copy.m_pOwner = m_pOwner;
        copy.m_pSetter = m_pSetter;
        copy.m_pGetter = m_pGetter;
        copy.m_pValue = m_pValue;
        // A link to our own value pointer becomes a link to the copy's own;
        // a link to a pointer held elsewhere is followed by the copy as well.
        copy.m_ppValue = m_ppValue == &m_pValue ? &copy.m_pValue : m_ppValue;
        copy.m_Default = m_Default;
    }

    void CopyDefault(const ClParameter& other) override
    {
        m_Default = CastParameter<TpParameter>(other).m_Default;
    }
    void DefaultFromValue(const ClParameter& other) override
    {
        m_Default = CastParameter<TpParameter>(other).Value();
    }
    void CopyValue(const ClParameter& other, bool bForce) override
    {
        if (!bForce && IsConnection())
            return;
        StoreValue(CastParameter<TpParameter>(other).Value());
    }
    void ResetValue() override { StoreValue(m_Default); }
    void ValueFromDefault(const ClParameter& other) override
    {
        StoreValue(CastParameter<TpParameter>(other).m_Default);
    }
    void SwapValuesAndDefaults() override
    {
        T value = Value();
        StoreValue(m_Default);
        m_Default = std::move(value);
    }
    bool IsDefault() const override { return Value() == m_Default; }

    void* GetValuePointer() override { return ValuePointer(); }

    // Binds the parameter to a member: clears flag 16, aims the value pointer
    // at the member and the value link at the value pointer, and takes the
    // member's current value as default.
    void Bind(T& member)
    {
        m_nFlags &= static_cast<uint8_t>(~eFlagUnbound);
        m_pOwner = nullptr;
        m_pValue = &member;
        m_ppValue = &m_pValue;
        m_Default = member;
    }
    // The same, then sets the flags (eFlagInput, eFlagOutput, ...).
    void Bind(T& member, uint8_t nFlags)
    {
        Bind(member);
        m_nFlags = nFlags;
    }
    // Binds the parameter to accessors of an owner. The value link goes to a
    // static fallback, which no access uses while the owner is set.
    void BindAccessors(Owner* pOwner, Setter pSetter, Getter pGetter)
    {
        m_nFlags &= static_cast<uint8_t>(~eFlagUnbound);
        m_pOwner = pOwner;
        m_pSetter = pSetter;
        m_pGetter = pGetter;
        m_pValue = nullptr;
        m_ppValue = &s_pFallback;
        m_Default = Value();
    }
    void BindAccessors(Owner* pOwner, Setter pSetter, Getter pGetter, uint8_t nFlags)
    {
        BindAccessors(pOwner, pSetter, pGetter);
        m_nFlags = nFlags;
    }

    // Typed access to the value and the default slot.
    SENTIVO_ACCESSOR_CALL T Value() const
    {
        if (m_pOwner != nullptr)
            return (m_pOwner->*CheckedGetter())();
        return *LinkedPointer();
    }
    SENTIVO_ACCESSOR_CALL void StoreValue(const T& value)
    {
        if (m_pOwner != nullptr)
        {
            if (m_pSetter == nullptr)
                SENTIVO_THROW("Point is Null", ZRC_ERROR_BAD_POINTER);
            (m_pOwner->*m_pSetter)(value);
            return;
        }
        *LinkedPointer() = value;
    }
    const T& DefaultValue() const { return m_Default; }
    void SetDefaultValue(const T& value) { m_Default = value; }
    // Where the value lives: the getter's target or the linked pointer.
    SENTIVO_ACCESSOR_CALL T* ValuePointer()
    {
        if (m_pOwner != nullptr)
            return &(m_pOwner->*CheckedGetter())();
        return m_ppValue != nullptr ? *m_ppValue : nullptr;
    }

    // The raw binding, for a parameter that follows a pointer held elsewhere.
    void SetValuePointer(T* pValue) { m_pValue = pValue; }
    void SetValueLink(T** ppValue) { m_ppValue = ppValue; }
    T** GetValueLink() const { return m_ppValue; }
    Owner* GetOwner() const { return m_pOwner; }

protected:
    // The target of the value link; an unbound parameter reports -701
    // instead of writing through a null pointer.
    T* LinkedPointer() const
    {
        if (m_ppValue == nullptr || *m_ppValue == nullptr)
            SENTIVO_THROW("Point is Null", ZRC_ERROR_BAD_POINTER);
        return *m_ppValue;
    }
    Getter CheckedGetter() const
    {
        if (m_pGetter == nullptr)
            SENTIVO_THROW("Point is Null", ZRC_ERROR_BAD_POINTER);
        return m_pGetter;
    }

    Owner* m_pOwner = nullptr;
    Setter m_pSetter = nullptr;
    Getter m_pGetter = nullptr;
    T** m_ppValue = &m_pValue;
    T* m_pValue = nullptr;
    T m_Default{};

private:
    static T s_Fallback;
    static T* s_pFallback;
};

template <typename T, typename Owner> T TpParameter<T, Owner>::s_Fallback{};
template <typename T, typename Owner>
T* TpParameter<T, Owner>::s_pFallback = &TpParameter<T, Owner>::s_Fallback;
