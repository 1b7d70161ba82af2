#pragma once
// A TpArrayStatic with an element count that grows by N elements when full,
// keeping its contents. A failed growth leaves the array as it was and throws
// ClExBadAlloc.
#include "image/ArrayStatic.h"

template <typename T, uint32_t N> class TpArrayDynamic : public TpArrayStatic<T>
{
    static_assert(N > 0, "the growth step must be positive");

public:
    TpArrayDynamic() = default;
    TpArrayDynamic(const TpArrayDynamic& other) : TpArrayStatic<T>(other), m_nCount(other.m_nCount)
    {
    }
    TpArrayDynamic& operator=(const TpArrayDynamic& other)
    {
        if (this != &other)
        {
            TpArrayStatic<T>::operator=(other);
            m_nCount = other.m_nCount;
        }
        return *this;
    }

    uint32_t Size() const override { return m_nCount; }
    void Resize(uint32_t nSize) override
    {
        TpArrayStatic<T>::Create(nSize);
        m_nCount = nSize;
    }

    void Add(const T& value)
    {
        if (m_nCount == this->m_nCapacity)
            Grow();
        this->m_pData[m_nCount++] = value;
    }

    // Removes the element at nIndex, keeping the order of the others.
    void RemoveAt(uint32_t nIndex)
    {
        for (uint32_t i = nIndex + 1; i < m_nCount; ++i)
            this->m_pData[i - 1] = std::move(this->m_pData[i]);
        --m_nCount;
    }

    // Forgets the elements but keeps the block.
    void Clear() { m_nCount = 0; }

    T* begin() { return this->m_pData; }
    T* end() { return this->m_pData + m_nCount; }
    const T* begin() const { return this->m_pData; }
    const T* end() const { return this->m_pData + m_nCount; }

private:
    void Grow()
    {
        const uint32_t nCapacity = this->m_nCapacity + N;
        T* pData = new (std::nothrow) T[nCapacity];
        if (pData == nullptr)
            SENTIVO_THROW_BAD_ALLOC();
        for (uint32_t i = 0; i < m_nCount; ++i)
            pData[i] = this->m_pData[i];
        delete[] this->m_pData;
        this->m_pData = pData;
        this->m_nCapacity = nCapacity;
    }

    uint32_t m_nCount = 0;
};
