// The parameter tree: container paths, numeric, enumeration, pointer and
// string text forms, bound members and accessors, and the saved records.
#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <tuple>
#include <utility>

#include <gtest/gtest.h>

#include "image/FpImage.h"
#include "image/ImageTestSupport.h"
#include "image/MemoryStream.h"
#include "parameters/ParameterContainer.h"
#include "parameters/ParameterInterface.h"
#include "parameters/ParameterNumeric.h"

namespace
{

// The value text, or the default text; it must fit, and the reported size
// must count the terminator.
std::string Text(const ClParameter& parameter, bool bDefault = false)
{
    char szBuffer[400] = "";
    uint32_t nSize = sizeof(szBuffer);
    EXPECT_TRUE(bDefault ? parameter.GetDefaultText(szBuffer, nSize)
                         : parameter.GetText(szBuffer, nSize));
    EXPECT_EQ(nSize, std::strlen(szBuffer) + 1);
    return szBuffer;
}

// A numeric parameter with a member of its own.
template <typename T> struct TpBound : TpParameterNumeric<T>
{
    explicit TpBound(T initial = T()) : value(initial) { this->Bind(value); }
    T value;
};

// An owner with two bases, so that its member pointers carry an adjustment
// of the object address; the accessors live in the second base.
struct ClFirstBase
{
    virtual ~ClFirstBase() = default;
    double m_dPadding = -1.0;
};

struct ClQueryValues
{
    virtual ~ClQueryValues() = default;
    void SetScore(const double& dValue) { ++m_nSetCalls, m_dScore = dValue; }
    double& GetScore() { return m_dScore; }
    double m_dScore = 50.0;
    int m_nSetCalls = 0;
};

struct ClDetectionLike : ClFirstBase, ClQueryValues
{
};

} // namespace

TEST(TypedParameter, AccessorsOfAnOwnerWithTwoBases)
{
    ClDetectionLike owner;
    ClParameterContainer root;
    root.AddDouble<ClDetectionLike>("dQueryScore")
        ->BindAccessors(&owner, &ClDetectionLike::SetScore, &ClDetectionLike::GetScore);
    ClParameter& score = *root.Find("dQueryScore");
    score.SetText("80");
    EXPECT_EQ(owner.m_nSetCalls, 1);
    EXPECT_EQ(owner.m_dScore, 80.0);
    EXPECT_EQ(owner.m_dPadding, -1.0);
    owner.m_dScore = 0.5;
    EXPECT_EQ(Text(score), "0.5");
    score.ResetValue(); // the default came from the getter; it goes back through the setter
    EXPECT_EQ(owner.m_dScore, 50.0);
    EXPECT_EQ(owner.m_nSetCalls, 2);
}

TEST(TypedParameter, CloneReaimsItsOwnLinkAndKeepsAnExternalOne)
{
    int nOther = 9;
    TpBound<int> source(3);
    std::unique_ptr<ClParameter> pCopy(source.Clone());
    source.SetValuePointer(&nOther); // re-aiming the source does not move the copy
    pCopy->SetText("2");
    EXPECT_EQ(source.value, 2);
    EXPECT_EQ(nOther, 9);

    double dFirst = 1.0, dSecond = 2.0;
    double* pExternal = &dFirst;
    TpParameterNumeric<double> linked;
    linked.SetValueLink(&pExternal);
    std::unique_ptr<ClParameter> pLinked(linked.Clone());
    pExternal = &dSecond; // a pointer held elsewhere is followed by the copy too
    pLinked->SetText("6");
    EXPECT_EQ(dFirst, 1.0);
    EXPECT_EQ(dSecond, 6.0);
}

TEST(TypedParameter, CopyValueLeavesAConnectionUnlessForced)
{
    ClImage first, second;
    ClImage *pInImage = &first, *pSource = &second;
    TpBound<long> a, b(30);
    ClParameterContainer target, source;
    target.AddImage("pInImage")->Bind(pInImage, ClParameter::eFlagInput);
    target.AddChild("lA", a.Clone());
    source.AddImage("pInImage")->Bind(pSource, ClParameter::eFlagInput);
    source.AddChild("lB", b.Clone());
    target.CopyValue(source, false);
    EXPECT_EQ(pInImage, &first);
    EXPECT_EQ(a.value, 30);
    target.CopyValue(source, true);
    EXPECT_EQ(pInImage, &second);
}

TEST(ParameterContainer, Paths)
{
    // Root "A" holding the int "B" and the container "C", which holds the int
    // "D"; child names ignore case and stay unique.
    ClParameterContainer root("A");
    ClParameterContainer* pC = new ClParameterContainer();
    ClParameter* pB = root.AddInt("B");
    root.AddChild("C", pC);
    ClParameter* pD = pC->AddInt("D");
    ExpectThrows<ClExVelmoran>([&] { root.AddLong("b"); }, ZRC_ERROR_PARAM_VALUE_DUPLICATE);
    EXPECT_EQ(root.GetChildCount(), 2u);
    EXPECT_EQ(root.FindChild("c"), pC);
    // The root's name (compared exactly) may stand in front; a leading "."
    // starts at the root; behind a plain parameter the rest is ignored.
    const std::tuple<ClParameterContainer*, const char*, ClParameter*> cases[] = {
        {&root, "b", pB},        {&root, "A.B", pB},   {&root, ".B", pB},   {&root, "a.B", nullptr},
        {&root, "A", nullptr},   {&root, "", nullptr}, {&root, "C.D", pD},  {&root, "A.C.D", pD},
        {&root, "C.X", nullptr}, {&root, "C.D.E", pD}, {&root, ".", &root}, {pC, ".", &root},
        {pC, ".C.D", pD},        {pC, "D", pD},        {pC, "B", nullptr}};
    for (const auto& [pStart, szPath, pExpected] : cases)
        EXPECT_EQ(pStart->Find(szPath), pExpected) << szPath;

    // A part may be 254 characters long; one of exactly 255 is an error, a
    // longer one is cut and found nowhere.
    const std::string s254(254, 'p'), s255(255, 'q'), s300(300, 'r');
    ClParameterContainer* pSub = new ClParameterContainer();
    root.AddChild(s254.c_str(), pSub);
    ClParameter* pLeaf = pSub->AddInt(s254.c_str());
    root.AddInt(s300.c_str());
    EXPECT_EQ(root.Find((s254 + "." + s254).c_str()), pLeaf);
    EXPECT_EQ(root.Find(s300.c_str()), nullptr);
    for (const std::string& path : {s255, s254 + "." + s255})
        ExpectThrows([&] { root.Find(path.c_str()); }, ZRC_ERROR_INTERNAL,
                     "Parameter path part was to long max len is 255");
}

TEST(ParameterNumeric, TextForms)
{
    // The value text keeps one digit behind the point; the default text is "%f".
    TpBound<double> d(2.0);
    EXPECT_EQ(Text(d, true), "2.000000");
    const std::pair<double, const char*> doubles[] = {
        {2.0, "2.0"}, {0.25, "0.25"}, {100.0, "100.0"}, {-0.5, "-0.5"}, {10.000001, "10.000001"}};
    for (const auto& [dValue, szText] : doubles)
    {
        d.value = dValue;
        EXPECT_EQ(Text(d), szText);
    }
    // Integers keep their zeros.
    EXPECT_EQ(Text(TpBound<long>(-7000000000L)), "-7000000000");
    EXPECT_EQ(Text(TpBound<long>(100)), "100");
}

TEST(ParameterNumeric, SetTextReadsDecimalAndHexadecimal)
{
    TpBound<unsigned int> u;
    TpBound<int> i;
    TpBound<double> d;
    // After the later of the first "X" and the first "x" the text is
    // hexadecimal, whatever stands in front; otherwise a truncated float.
    const std::tuple<ClParameter*, const char*, double> cases[] = {
        {&u, "0x1F", 31}, {&u, "zz0X1f", 31}, {&u, "0X1x10", 16}, {&u, "1x2X3", 3},
        {&d, "0x20", 32}, {&i, "-2.9", -2},   {&i, "1e3", 1000},  {&d, "2.5", 2.5}};
    for (const auto& [pParameter, szText, dExpected] : cases)
    {
        pParameter->SetText(szText);
        EXPECT_EQ(pParameter->AsNumeric()->GetValue(), dExpected) << szText;
    }
    for (const char* szBad : {"12abc", "0x1G", "3 "})
        ExpectThrows([&] { u.SetText(szBad); }, ZRC_ERROR_INTERNAL, "Failed to set Parameter");
    EXPECT_EQ(u.value, 3u);
}

TEST(ParameterNumeric, LimitsClampOrThrowOnlyWhenAsked)
{
    TpBound<int> n(4);
    n.SetLimits(0, 10);
    // Flag 32 clamps first, so nothing is out of range; flag 64 alone throws
    // and keeps the value; without either the limits are only advice.
    const std::tuple<uint8_t, const char*, int, bool> cases[] = {
        {ClParameter::eFlagClamp | ClParameter::eFlagRangeError, "15", 10, false},
        {ClParameter::eFlagClamp, "-3", 0, false},
        {ClParameter::eFlagRangeError, "15", 4, true},
        {ClParameter::eFlagRangeError, "10", 10, false},
        {ClParameter::eFlagInput, "99", 99, false}};
    for (const auto& [nFlags, szText, nExpected, bThrows] : cases)
    {
        n.value = 4;
        n.SetFlags(nFlags);
        if (bThrows)
            ExpectThrows<ClExRange>([&] { n.SetText(szText); }, ZRC_ERROR_PARAM_OUT_OF_RANGE,
                                    "Value out of range");
        else
            n.SetText(szText);
        EXPECT_EQ(n.value, nExpected) << szText;
    }
}

TEST(ParameterNumeric, IsDefaultToleratesTheLastBitOfADouble)
{
    const double dNaN = std::numeric_limits<double>::quiet_NaN();
    const double d52 = 1.0 + std::ldexp(1.0, -52), d51 = 1.0 + std::ldexp(1.0, -51);
    for (auto [dDefault, dValue, bExpected] : {std::tuple{1.0, d52, true},
                                               {1.0, d51, false},
                                               {1.0, dNaN, false},
                                               {dNaN, 1.0, false},
                                               {dNaN, dNaN, true}})
    {
        TpBound<double> d(dDefault);
        d.value = dValue;
        EXPECT_EQ(d.IsDefault(), bExpected) << dDefault << " " << dValue;
    }
}

TEST(ParameterEnumPointer, EntriesTakeOnlyTheirExactTextAndConnectionsPrintTheirAddress)
{
    bool bMember = true;
    ClParameterContainer root;
    TpParameterEnumPointer<bool>* pBool = root.AddBool("bMovementDetection");
    pBool->Bind(bMember, ClParameter::eFlagInput);
    EXPECT_EQ(Text(*pBool), "True");
    pBool->SetText("False");
    EXPECT_EQ(Text(*pBool), "False");
    for (const char* szText : {"true", "1"})
        ExpectThrows<ClExVelmoran>([&] { pBool->SetText(szText); }, ZRC_ERROR_PARAM_OUT_OF_RANGE);
    EXPECT_FALSE(bMember);

    // The same text with another value is a duplicate; a value without an
    // entry has no text.
    long lMember = 3;
    TpParameterEnumPointer<long> parameter;
    parameter.Bind(lMember);
    parameter.AddEntry(1, "one");
    ExpectThrows<ClExVelmoran>([&] { parameter.AddEntry(2, "one"); },
                               ZRC_ERROR_PARAM_VALUE_DUPLICATE);
    ExpectThrows<ClExVelmoran>([&] { Text(parameter); }, ZRC_ERROR_PARAM_OUT_OF_RANGE);
    parameter.SetText("one");
    EXPECT_EQ(lMember, 1);

    // A connection prints NULL or its address.
    ClImage image;
    ClImage* pInImage = nullptr;
    TpParameterEnumPointer<ClImage*>* pImage = root.AddImage("pInImage");
    pImage->Bind(pInImage, ClParameter::eFlagInput);
    EXPECT_EQ(Text(*pImage), "NULL");
    pInImage = &image;
    char szExpected[32];
    std::snprintf(szExpected, sizeof(szExpected), "%p", static_cast<void*>(&image));
    EXPECT_EQ(Text(*pImage), szExpected);
}

TEST(ParameterString, BufferSizesBothWays)
{
    char szBuffer[11] = "2.0.1012.0";
    char* szMember = szBuffer;
    TpParameterString<char*, ClParameter, 0> parameter;
    parameter.Bind(szMember, sizeof(szBuffer));
    // Reading: the size is in-out; too small reports what is needed and copies nothing.
    char szOut[16] = "XXXXXXXXXXXXXXX";
    uint32_t nSize = 10;
    EXPECT_FALSE(parameter.GetText(szOut, nSize));
    EXPECT_EQ(nSize, 11u);
    EXPECT_STREQ(szOut, "XXXXXXXXXXXXXXX");
    EXPECT_EQ(Text(parameter), "2.0.1012.0");

    // Writing: the text and its terminator must fit the bound buffer.
    parameter.SetText("1234567890");
    EXPECT_STREQ(szBuffer, "1234567890");
    ExpectThrows([&] { parameter.SetText("12345678901"); }, ZRC_ERROR_TEMPLATE_SIZE,
                 "String memeory ar too small");
    ExpectThrows([&] { parameter.SetText(nullptr); }, ZRC_ERROR_BAD_POINTER, "Point is Null");
    EXPECT_STREQ(szBuffer, "1234567890");
    szMember = nullptr; // a null member is refused rather than written through
    ExpectThrows([&] { parameter.SetText("x"); }, ZRC_ERROR_BAD_POINTER, "Point is Null");
}

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
