#include <cstring>
#include <tuple>

#include <gtest/gtest.h>

#include "image/FpImage.h"
#include "image/MemoryStream.h"
#include "parameters/ParameterInterface.h"
#include "sdk/Exception.h"

namespace
{

using Record = ClParameterInterface::ClParameter;
const ClParameterInterface::EDirection eIn = ClParameterInterface::eInput;
const ClParameterInterface::EDirection eOut = ClParameterInterface::eOutput;
// A saved record with a one-letter name and no value: name, direction,
// unlimited mark, three doubles, two flags and the kind.
const size_t kRecordBytes = 4 + 2 + 1 + 1 + 24 + 2 + 1;

} // namespace

TEST(ParameterInterface, RecordsAndTheirForms)
{
    uint8_t nByte = 7;
    bool bFlag = true;
    int32_t eMode = 2;
    const int32_t values[] = {0, 2, 5};
    ClImage* pInImage = nullptr;
    ClParameterInterface list;
    list.Add(pInImage, "pInImage", "input image", eIn);
    list.Add(nByte, "nThreshold", "threshold", eIn, 0, 255);
    const Record& flag = list.Add(bFlag, "bFlag", "a flag", eOut);
    const Record& mode = list.AddEnum(eMode, "eMode", "a mode", eIn, "A\0Bb\0C\0", values);

    // Appended in order at the tail; names are compared exactly.
    const Record* pRecord = list.First()->GetNext();
    EXPECT_STREQ(pRecord->GetName(), "nThreshold");
    EXPECT_EQ(pRecord->GetDefault(), 7.0); // the member's value
    EXPECT_EQ(pRecord->GetNext(), &flag);
    EXPECT_EQ(mode.GetNext(), nullptr);
    EXPECT_EQ(list.Find("eMode"), &mode);
    EXPECT_EQ(list.Find("emode"), nullptr);

    // A bool is an enumeration of "False" and "True" with its own kind.
    EXPECT_EQ(flag.GetKind(), ClParameterInterface::eKindBool);
    EXPECT_EQ(std::memcmp(flag.GetEntryTexts(), "False\0True\0", 12), 0);
    EXPECT_EQ(mode.GetKind(), ClParameterInterface::eKindEnum);
    ASSERT_EQ(mode.GetEntryCount(), 3u);
    EXPECT_NE(mode.GetEntryValues(), values); // an owned copy
    EXPECT_EQ(mode.GetEntryValues()[2], 5);
}

TEST(ParameterInterface, AutomaticLimitsAroundTheCurrentValue)
{
    const double a = ClParameterInterface::kAutoLower, b = ClParameterInterface::kAutoUpper;
    double dPositive = 3.0, dNegative = -3.0;
    uint8_t nByte = 240; // 320 is kept within the byte
    int32_t nZero = 0;
    float fValue = 1.5f;
    ClParameterInterface list;
    const std::tuple<const Record&, double, double> cases[] = {
        {list.Add(dPositive, "p", "", eIn, a, b), 2.0, 4.0},
        {list.Add(dNegative, "n", "", eIn, a, b), -4.0, -2.0},
        {list.Add(nByte, "b", "", eIn, a, b), 160.0, 255.0},
        {list.Add(fValue, "f", "", eIn, a, b), 1.0, 2.0},
        {list.Add(nZero, "z", "", eIn, a, b), 0.0, 0.0}};
    for (const auto& [record, dLower, dUpper] : cases)
    {
        SCOPED_TRACE(record.GetName());
        EXPECT_DOUBLE_EQ(record.GetLower(), dLower);
        EXPECT_DOUBLE_EQ(record.GetUpper(), dUpper);
        EXPECT_EQ(record.IsUnlimited(), dLower == dUpper);
    }
}

TEST(ParameterInterface, SaveWritesTheFixedLayout)
{
    uint8_t nByte = 0x2A;
    ClParameterInterface list;
    Record& byte = list.Add(nByte, "n", "", eOut, 1.0, 9.0);
    byte.SetFlags(3, 4);
    ClMemoryStream stream;
    byte.Save(stream);
    // Name, direction, unlimited mark, lower, upper, default, flags, kind, value.
    Bytes expected{2, 0, 0, 0, 'n', 0, 1, 0};
    const double doubles[] = {1.0, 9.0, 42.0};
    expected.resize(expected.size() + sizeof(doubles));
    std::memcpy(expected.data() + 8, doubles, sizeof(doubles));
    expected.insert(expected.end(), {3, 4, 0, 0x2A});
    EXPECT_EQ(stream.m_Bytes, expected);
}

TEST(ParameterInterface, LoadRestoresOnlyARecordOfTheSameName)
{
    double dValue = 2.5, dOther = 0;
    ClParameterInterface list;
    Record& record = list.Add(dValue, "d", "", eIn, -1.0, 8.0);
    record.SetFlags(1, 2);
    ClMemoryStream stream;
    record.Save(stream);
    Record& stranger = list.Add(dOther, "x", "", eOut, 5.0, 6.0);
    EXPECT_EQ(stranger.Load(stream), ZRC_ERROR_FORMAT_NOTSUPPORTED);
    EXPECT_EQ(stranger.GetLower(), 5.0);
    EXPECT_EQ(dOther, 0.0);

    ClParameterInterface other;
    Record& target = other.Add(dOther, "d", "", eOut, 0, 0);
    stream.m_nPosition = 0;
    EXPECT_EQ(target.Load(stream), ZRC_SUCCESS);
    EXPECT_EQ(std::make_tuple(dOther, target.GetLower(), target.GetUpper(), target.GetDefault()),
              std::make_tuple(2.5, -1.0, 8.0, 2.5));
    EXPECT_EQ(target.GetFlag1(), 1);
    EXPECT_EQ(target.GetFlag2(), 2);
    // Direction and the unlimited mark are read only to be skipped.
    EXPECT_TRUE(target.GetDirection() == eOut && target.IsUnlimited());

    // Kind 2 reads back what it wrote; kind 1 writes two bytes but reads four.
    uint16_t nUnsigned = 60000;
    int16_t nSigned = -300;
    ClMemoryStream sixteen;
    list.Add(nUnsigned, "u", "", eIn, 0, 0).Save(sixteen);
    Record& signedRecord = list.Add(nSigned, "s", "", eIn, 0, 0);
    signedRecord.Save(sixteen);
    nUnsigned = 0;
    EXPECT_EQ(list.Find("u")->Load(sixteen), ZRC_SUCCESS);
    EXPECT_EQ(nUnsigned, 60000);
    EXPECT_THROW(signedRecord.Load(sixteen), ClExStreamUnexpectedEnd); // alone it runs short
    // Followed by two more bytes it loads; the member takes the first two of the four.
    sixteen.WriteValue<uint16_t>(0xBEEF);
    sixteen.m_nPosition = kRecordBytes + 2;
    nSigned = 7;
    EXPECT_EQ(signedRecord.Load(sixteen), ZRC_SUCCESS);
    EXPECT_EQ(nSigned, -300);
    EXPECT_EQ(sixteen.m_nPosition, sixteen.m_Bytes.size());
}
