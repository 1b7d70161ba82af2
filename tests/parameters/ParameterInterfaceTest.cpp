#include <algorithm>
#include <cstring>
#include <vector>

#include <gtest/gtest.h>

#include "image/FpImage.h"
#include "image/Stream.h"
#include "parameters/ParameterInterface.h"
#include "sdk/Exception.h"

namespace
{

using Record = ClParameterInterface::ClParameter;
using Bytes = std::vector<uint8_t>;

class ClMemoryStream : public ClStream
{
public:
    uint32_t Write(const void* pData, uint32_t nBytes) override
    {
        const uint8_t* p = static_cast<const uint8_t*>(pData);
        m_Bytes.insert(m_Bytes.end(), p, p + nBytes);
        return nBytes;
    }
    uint32_t Read(void* pData, uint32_t nBytes) override
    {
        const uint32_t nMoved =
            static_cast<uint32_t>(std::min<size_t>(nBytes, m_Bytes.size() - m_nPosition));
        std::memcpy(pData, m_Bytes.data() + m_nPosition, nMoved);
        m_nPosition += nMoved;
        return nMoved;
    }
    Bytes m_Bytes;
    size_t m_nPosition = 0;
};

void AppendDouble(Bytes& bytes, double d)
{
    uint8_t raw[8];
    std::memcpy(raw, &d, 8);
    bytes.insert(bytes.end(), raw, raw + 8);
}

} // namespace

TEST(ParameterInterface, RecordsKeepTheOrderOfTheAddCalls)
{
    uint8_t nByte = 7;
    double dGain = 1.5;
    ClImage* pInImage = nullptr;
    ClParameterInterface list;
    EXPECT_EQ(list.First(), nullptr);
    list.Add(pInImage, "pInImage", "input image", ClParameterInterface::eInput);
    list.Add(nByte, "nThreshold", "threshold", ClParameterInterface::eInput, 0, 255);
    list.Add(dGain, "dOutGain", "gain", ClParameterInterface::eOutput, 0, 0);
    ASSERT_EQ(list.GetCount(), 3u);

    const Record* pRecord = list.First();
    EXPECT_STREQ(pRecord->GetName(), "pInImage");
    EXPECT_EQ(pRecord->GetKind(), ClParameterInterface::eKindImage);
    EXPECT_EQ(pRecord->GetValuePointer(), &pInImage);
    pRecord = pRecord->GetNext();
    EXPECT_STREQ(pRecord->GetName(), "nThreshold");
    EXPECT_STREQ(pRecord->GetDescription(), "threshold");
    EXPECT_EQ(pRecord->GetKind(), ClParameterInterface::eKindUInt8);
    EXPECT_FALSE(pRecord->IsUnlimited());
    EXPECT_EQ(pRecord->GetDefault(), 7.0);
    pRecord = pRecord->GetNext();
    EXPECT_EQ(pRecord->GetDirection(), ClParameterInterface::eOutput);
    EXPECT_TRUE(pRecord->IsUnlimited());
    EXPECT_EQ(pRecord->GetNext(), nullptr);
    EXPECT_EQ(list.Find("dOutGain"), pRecord);
    EXPECT_EQ(list.Find("doutgain"), nullptr);
}

TEST(ParameterInterface, AutomaticLimitsAroundTheCurrentValue)
{
    double dPositive = 3.0, dNegative = -3.0;
    uint8_t nByte = 240, nSmall = 3;
    int32_t nZero = 0;
    float fValue = 1.5f;
    ClParameterInterface list;
    const double a = ClParameterInterface::kAutoLower, b = ClParameterInterface::kAutoUpper;
    const Record& positive = list.Add(dPositive, "p", "", ClParameterInterface::eInput, a, b);
    const Record& negative = list.Add(dNegative, "n", "", ClParameterInterface::eInput, a, b);
    const Record& byte = list.Add(nByte, "b", "", ClParameterInterface::eInput, a, b);
    const Record& small = list.Add(nSmall, "s", "", ClParameterInterface::eInput, a, b);
    const Record& zero = list.Add(nZero, "z", "", ClParameterInterface::eInput, a, b);
    const Record& single = list.Add(fValue, "f", "", ClParameterInterface::eInput, a, b);

    EXPECT_DOUBLE_EQ(positive.GetLower(), 2.0);
    EXPECT_DOUBLE_EQ(positive.GetUpper(), 4.0);
    EXPECT_DOUBLE_EQ(negative.GetLower(), -4.0);
    EXPECT_DOUBLE_EQ(negative.GetUpper(), -2.0);
    EXPECT_DOUBLE_EQ(byte.GetLower(), 160.0);
    EXPECT_EQ(byte.GetUpper(), 255.0); // 320 kept within the byte range
    EXPECT_DOUBLE_EQ(small.GetUpper(), 4.0);
    EXPECT_TRUE(zero.IsUnlimited());
    EXPECT_FALSE(positive.IsUnlimited());
    EXPECT_DOUBLE_EQ(single.GetUpper(), 2.0);
}

TEST(ParameterInterface, BoolAndEnumerationForms)
{
    bool bFlag = true;
    int32_t eMode = 2;
    const int32_t values[] = {0, 2, 5};
    ClParameterInterface list;
    const Record& flag = list.Add(bFlag, "bFlag", "a flag", ClParameterInterface::eInput);
    EXPECT_EQ(flag.GetKind(), ClParameterInterface::eKindBool);
    EXPECT_EQ(flag.GetEntryCount(), 2u);
    EXPECT_EQ(std::memcmp(flag.GetEntryTexts(), "False\0True\0", 12), 0);
    EXPECT_EQ(flag.GetEntryValues(), nullptr);
    EXPECT_EQ(flag.GetDefault(), 1.0);

    const Record& mode =
        list.AddEnum(eMode, "eMode", "a mode", ClParameterInterface::eInput, "A\0Bb\0C\0", values);
    EXPECT_EQ(mode.GetKind(), ClParameterInterface::eKindEnum);
    ASSERT_EQ(mode.GetEntryCount(), 3u);
    EXPECT_EQ(std::memcmp(mode.GetEntryTexts(), "A\0Bb\0C\0", 8), 0);
    EXPECT_NE(mode.GetEntryValues(), values);
    EXPECT_EQ(mode.GetEntryValues()[2], 5);
    EXPECT_EQ(mode.GetDefault(), 2.0);
}

TEST(ParameterInterface, SaveWritesTheFixedLayout)
{
    uint8_t nByte = 0x2A;
    int16_t nShort = -2;
    ClImage* pImage = nullptr;
    ClParameterInterface list;
    Record& byte = list.Add(nByte, "n", "", ClParameterInterface::eOutput, 1.0, 9.0);
    byte.SetFlags(3, 4);
    Record& shortRecord = list.Add(nShort, "s", "", ClParameterInterface::eInput, 0, 0);
    Record& image = list.Add(pImage, "p", "", ClParameterInterface::eInput);

    ClMemoryStream stream;
    byte.Save(stream);
    Bytes expected{2, 0, 0, 0, 'n', 0, 1, 0};
    AppendDouble(expected, 1.0);
    AppendDouble(expected, 9.0);
    AppendDouble(expected, 42.0);
    expected.insert(expected.end(), {3, 4, 0, 0x2A});
    EXPECT_EQ(stream.m_Bytes, expected);

    stream.m_Bytes.clear();
    shortRecord.Save(stream);
    ASSERT_EQ(stream.m_Bytes.size(), 6u + 2 + 24 + 2 + 1 + 2);
    EXPECT_EQ(stream.m_Bytes[7], 1);  // unlimited
    EXPECT_EQ(stream.m_Bytes[34], 1); // kind
    EXPECT_EQ(Bytes(stream.m_Bytes.end() - 2, stream.m_Bytes.end()), (Bytes{0xFE, 0xFF}));

    stream.m_Bytes.clear();
    image.Save(stream);
    EXPECT_EQ(stream.m_Bytes.size(), 6u + 2 + 24 + 2 + 1); // no value for an image
    EXPECT_EQ(stream.m_Bytes.back(), ClParameterInterface::eKindImage);
}

TEST(ParameterInterface, LoadRestoresOnlyARecordOfTheSameName)
{
    double dValue = 2.5;
    ClParameterInterface list;
    Record& record = list.Add(dValue, "dValue", "", ClParameterInterface::eInput, -1.0, 8.0);
    record.SetFlags(1, 2);
    ClMemoryStream stream;
    record.Save(stream);

    double dOther = 0;
    ClParameterInterface other;
    Record& target = other.Add(dOther, "dValue", "", ClParameterInterface::eOutput, 0, 0);
    Record& stranger = other.Add(dOther, "dOther", "", ClParameterInterface::eOutput, 5.0, 6.0);
    EXPECT_EQ(stranger.Load(stream), ZRC_ERROR_FORMAT_NOTSUPPORTED);
    EXPECT_EQ(stranger.GetLower(), 5.0);
    EXPECT_EQ(dOther, 0.0);

    stream.m_nPosition = 0;
    EXPECT_EQ(target.Load(stream), ZRC_SUCCESS);
    EXPECT_EQ(dOther, 2.5);
    EXPECT_EQ(target.GetLower(), -1.0);
    EXPECT_EQ(target.GetUpper(), 8.0);
    EXPECT_EQ(target.GetDefault(), 2.5);
    EXPECT_EQ(target.GetFlag1(), 1);
    EXPECT_EQ(target.GetFlag2(), 2);
    // Direction and the unlimited mark are read only to be skipped.
    EXPECT_EQ(target.GetDirection(), ClParameterInterface::eOutput);
    EXPECT_TRUE(target.IsUnlimited());
    EXPECT_EQ(stream.m_nPosition, stream.m_Bytes.size());
}

TEST(ParameterInterface, SixteenBitKindsAreNotSymmetric)
{
    int16_t nSigned = -300;
    uint16_t nUnsigned = 60000;
    ClParameterInterface list;
    Record& signedRecord = list.Add(nSigned, "nSigned", "", ClParameterInterface::eInput, 0, 0);
    Record& unsignedRecord =
        list.Add(nUnsigned, "nUnsigned", "", ClParameterInterface::eInput, 0, 0);

    // Kind 2 reads back what it wrote.
    ClMemoryStream stream;
    unsignedRecord.Save(stream);
    nUnsigned = 0;
    EXPECT_EQ(unsignedRecord.Load(stream), ZRC_SUCCESS);
    EXPECT_EQ(nUnsigned, 60000);

    // Kind 1 writes two bytes and reads four: alone, its record runs short.
    ClMemoryStream alone;
    signedRecord.Save(alone);
    nSigned = 0;
    EXPECT_THROW(signedRecord.Load(alone), ClExStreamUnexpectedEnd);

    // Followed by two more bytes, it loads and consumes them too.
    ClMemoryStream followed;
    nSigned = -300;
    signedRecord.Save(followed);
    followed.WriteValue<uint16_t>(0xBEEF);
    nSigned = 7;
    EXPECT_EQ(signedRecord.Load(followed), ZRC_SUCCESS);
    EXPECT_EQ(followed.m_nPosition, followed.m_Bytes.size());
    EXPECT_EQ(nSigned, -300); // the member takes the first two of the four bytes
}
