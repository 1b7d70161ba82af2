#pragma once
// ClImage: the one raster type of the library. A typed raster with
// interleaved planes, rows padded to four bytes, a pixel buffer shared between
// copies (the count of sharers is atomic) and a declared value range.
#include <cstdint>
#include <limits>

#include <boost/shared_ptr.hpp>

class ClBitmap;
template <typename T> struct SampleTraits;

class ClImage
{
public:
    // The value describes the sample: bits 0-4 its size in bytes, bit 6
    // floating point, bit 7 signed.
    enum EDataType : uint8_t
    {
        eUnknownType = 0,
        eUInt8 = 1,
        eUInt16 = 2,
        eUInt32 = 4,
        eInt8 = 129,
        eInt16 = 130,
        eInt32 = 132,
        eFloat32 = 196,
        eDouble64 = 200,
        eDefaultType = 255
    };

    enum EContent : int32_t
    {
        eUnknown = 0,
        eGrayscale = 1,
        eRGB = 2,
        eRGBA = 3,
        eHSV = 4,
        eXYZ = 5,
        eCIELab = 6,
        eCIELUV = 7,
        eComplexSpectrum = 8
    };

    ClImage();
    ClImage(const ClImage& other) = default;
    explicit ClImage(const ClBitmap& bitmap);
    ClImage& operator=(const ClImage& other) = default;
    virtual ~ClImage();

    // Header.
    EDataType DataType() const { return m_eDataType; }
    EContent Content() const { return m_eContent; }
    int32_t Width() const { return m_nWidth; }
    int32_t Height() const { return m_nHeight; }
    uint32_t Planes() const { return m_nPlanes; }
    int32_t XResolution() const { return m_nXResolution; }
    int32_t YResolution() const { return m_nYResolution; }
    double LowerBound() const { return m_dLowerBound; }
    double UpperBound() const { return m_dUpperBound; }
    uint32_t Origin() const { return m_nOrigin; }

    void SetContent(EContent eContent) { m_eContent = eContent; }
    void SetLowerBound(double dValue) { m_dLowerBound = dValue; }
    void SetUpperBound(double dValue) { m_dUpperBound = dValue; }
    void SetBounds(double dLower, double dUpper)
    {
        m_dLowerBound = dLower;
        m_dUpperBound = dUpper;
    }
    void SetOrigin(uint32_t nOrigin) { m_nOrigin = nOrigin; }
    void SetResolution(int32_t nX, int32_t nY)
    {
        m_nXResolution = nX;
        m_nYResolution = nY;
    }

    // Layout.
    static uint32_t SampleSize(EDataType eType) { return eType & 31u; }
    uint32_t SampleSize() const { return SampleSize(m_eDataType); }
    // Bytes per row, padded to a multiple of four.
    int64_t RowStride() const { return Stride(m_eDataType, m_nWidth, m_nPlanes); }
    // Samples per row as the pixel loops step; 0 when the sample size is 0.
    int64_t RowPitch() const { return SampleSize() == 0 ? 0 : RowStride() / SampleSize(); }
    // Bytes of the raster in use: stride times height.
    int64_t ByteSize() const { return m_nHeight > 0 ? MulSaturated(RowStride(), m_nHeight) : 0; }
    static int64_t Stride(EDataType eType, int64_t nWidth, int64_t nPlanes)
    {
        const int64_t nBytes = MulSaturated(MulSaturated(SampleSize(eType), nPlanes), nWidth);
        const int64_t nMax = std::numeric_limits<int64_t>::max() - 3;
        return (nBytes > nMax ? nMax : nBytes + 3) & ~int64_t(3);
    }
    // Sizes of absurd requests stick at the end of the range instead of
    // wrapping, so they turn into a failed request for the largest block.
    static int64_t MulSaturated(int64_t a, int64_t b)
    {
        int64_t nProduct;
        if (__builtin_mul_overflow(a, b, &nProduct))
            return (a < 0) != (b < 0) ? std::numeric_limits<int64_t>::min()
                                      : std::numeric_limits<int64_t>::max();
        return nProduct;
    }

    uint8_t* Data() { return m_Data.get(); }
    const uint8_t* Data() const { return m_Data.get(); }
    template <typename T> T* Row(int32_t y)
    {
        return reinterpret_cast<T*>(m_Data.get() + static_cast<int64_t>(y) * RowStride());
    }
    template <typename T> const T* Row(int32_t y) const
    {
        return reinterpret_cast<const T*>(m_Data.get() + static_cast<int64_t>(y) * RowStride());
    }
    // How many images share this buffer (0 when there is none).
    long ShareCount() const { return m_Data.use_count(); }

    // Operations.
    void Clear();
    void Create(EDataType eType, int32_t nWidth, int32_t nHeight, uint32_t nPlanes = 1,
                int32_t nXResolution = 0, int32_t nYResolution = 0);
    void CreateAs(const ClImage& other, EDataType eType);
    void CreateLike(const ClImage& other);
    ClImage& Assign(const ClImage& other);
    void Swap(ClImage& other);
    void SetBoundsForType(EDataType eType);

    // Fill with zero bytes, whatever the type; any other value needs the
    // image's type to be the value's type.
    template <typename T> void Fill(T value);

    bool FromBitmap(const ClBitmap& bitmap);
    ClImage& AssignBitmap(const ClBitmap& bitmap);

    // Text of a data type in messages ("uint8") and in parameter
    // enumerations ("unsigned char").
    static const char* TypeText(EDataType eType);
    static const char* TypeEnumText(EDataType eType);
    static EContent ContentOfPlanes(uint32_t nPlanes);

private:
    friend class ClBitmap;
    void FillZero();
    void FillBytes(const void* pValue, uint32_t nValueSize, EDataType eValueType);

    EDataType m_eDataType;
    EContent m_eContent;
    int32_t m_nWidth;
    int32_t m_nHeight;
    int32_t m_nXResolution;
    int32_t m_nYResolution;
    boost::shared_ptr<uint8_t> m_Data;
    uint32_t m_nPlanes;
    double m_dLowerBound;
    double m_dUpperBound;
    uint32_t m_nOrigin;
};

#include "image/SampleTraits.h"

template <typename T> void ClImage::Fill(T value)
{
    if (value == T(0))
    {
        FillZero();
        return;
    }
    FillBytes(&value, sizeof(T), SampleTraits<T>::eType);
}
