#pragma once
// An array that owns one block and knows its capacity. Create replaces the
// block without keeping the contents; elements with constructors are built
// in place. No index is checked: callers size the array before use.
#include <cstdint>
#include <new>
#include <utility>

#include "sdk/Exception.h"

template <typename T> class TpArrayStatic
{
public:
    TpArrayStatic() = default;
    explicit TpArrayStatic(uint32_t nSize) { Create(nSize); }
    TpArrayStatic(const TpArrayStatic& other) { CopyFrom(other); }
    TpArrayStatic& operator=(const TpArrayStatic& other)
    {
        if (this != &other)
        {
            TpArrayStatic copy(other);
            Swap(copy);
        }
        return *this;
    }
    virtual ~TpArrayStatic() { delete[] m_pData; }

    // The number of elements: the capacity here, the count in TpArrayDynamic.
    virtual uint32_t Size() const { return m_nCapacity; }
    // Discards the old elements; new ones are not cleared.
    virtual void Resize(uint32_t nSize) { Create(nSize); }

    void Create(uint32_t nSize)
    {
        T* pData = nullptr;
        if (nSize > 0)
        {
            pData = new (std::nothrow) T[nSize];
            if (pData == nullptr)
                SENTIVO_THROW_BAD_ALLOC();
        }
        delete[] m_pData;
        m_pData = pData;
        m_nCapacity = nSize;
    }

    uint32_t Capacity() const { return m_nCapacity; }
    T* Data() { return m_pData; }
    const T* Data() const { return m_pData; }
    T& operator[](size_t i) { return m_pData[i]; }
    const T& operator[](size_t i) const { return m_pData[i]; }

    void Swap(TpArrayStatic& other)
    {
        std::swap(m_pData, other.m_pData);
        std::swap(m_nCapacity, other.m_nCapacity);
    }

protected:
    void CopyFrom(const TpArrayStatic& other)
    {
        Create(other.m_nCapacity);
        for (uint32_t i = 0; i < m_nCapacity; ++i)
            m_pData[i] = other.m_pData[i];
    }

    T* m_pData = nullptr;
    uint32_t m_nCapacity = 0;
};
