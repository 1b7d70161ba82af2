// Saving and loading the records of a parameter tree.
#include "parameters/ParameterInterface.h"

#include "ParameterTestSupport.h"
#include "image/MemoryStream.h"

TEST(ParameterInterface, SaveAndLoadRoundTrip)
{
    const auto eIn = ClParameterInterface::eInput, eOut = ClParameterInterface::eOutput;
    double dValue = 2.5, dOther = 0;
    ClParameterInterface list;
    ClParameterInterface::ClParameter& record = list.Add(dValue, "d", "", eIn, -1.0, 8.0);
    record.SetFlags(1, 2);
    ClMemoryStream stream;
    record.Save(stream);
    // A record of another name refuses it and stays as it is.
    ClParameterInterface::ClParameter& stranger = list.Add(dOther, "x", "", eOut, 5.0, 6.0);
    EXPECT_EQ(stranger.Load(stream), ZRC_ERROR_FORMAT_NOTSUPPORTED);
    EXPECT_EQ(stranger.GetLower(), 5.0);
    EXPECT_EQ(dOther, 0.0);

    ClParameterInterface other;
    ClParameterInterface::ClParameter& target = other.Add(dOther, "d", "", eOut, 0, 0);
    stream.m_nPosition = 0;
    EXPECT_EQ(target.Load(stream), ZRC_SUCCESS);
    EXPECT_EQ(std::make_tuple(dOther, target.GetLower(), target.GetUpper(), target.GetDefault(),
                              int{target.GetFlag1()}, int{target.GetFlag2()}),
              std::make_tuple(2.5, -1.0, 8.0, 2.5, 1, 2));
    // Direction and the unlimited mark are read only to be skipped.
    EXPECT_TRUE(target.GetDirection() == eOut && target.IsUnlimited());
    EXPECT_EQ(stream.m_nPosition, stream.m_Bytes.size());

    // A 16-bit signed value is written as two bytes but read as four: alone
    // it runs short, followed by two more bytes it takes the first two.
    int16_t nSigned = -300;
    ClParameterInterface::ClParameter& sixteen = list.Add(nSigned, "s", "", eIn, 0, 0);
    ClMemoryStream signedStream;
    sixteen.Save(signedStream);
    EXPECT_THROW(sixteen.Load(signedStream), ClExStreamUnexpectedEnd);
    signedStream.WriteValue<uint16_t>(0xBEEF);
    signedStream.m_nPosition = 0;
    nSigned = 7;
    EXPECT_EQ(sixteen.Load(signedStream), ZRC_SUCCESS);
    EXPECT_EQ(nSigned, -300);
    EXPECT_EQ(signedStream.m_nPosition, signedStream.m_Bytes.size());
}
