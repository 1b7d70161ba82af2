#include <memory>
#include <string>

#include <gtest/gtest.h>

#include "image/FpImage.h"
#include "parameters/ParameterContainer.h"
#include "ThrowsCode.h"

namespace
{

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
    void SetScore(const double& dValue)
    {
        ++m_nSetCalls;
        m_dScore = dValue;
        m_dRate = dValue / 100.0; // setting one value moves the other
    }
    double& GetScore() { return m_dScore; }
    void SetRate(const double& dValue)
    {
        ++m_nSetCalls;
        m_dRate = dValue;
        m_dScore = dValue * 100.0;
    }
    double& GetRate() { return m_dRate; }

    double m_dScore = 50.0;
    double m_dRate = 0.5;
    int m_nSetCalls = 0;
};

struct ClDetectionLike : ClFirstBase, ClQueryValues
{
};

std::string Text(const ClParameter& parameter)
{
    char szBuffer[64];
    uint32_t nSize = sizeof(szBuffer);
    EXPECT_TRUE(parameter.GetText(szBuffer, nSize));
    return szBuffer;
}

} // namespace

TEST(TypedParameter, BindingAimsAtTheMemberAndTakesItsValueAsDefault)
{
    int nMember = 17;
    TpParameterNumeric<int> parameter;
    parameter.SetFlags(ClParameter::eFlagUnbound | ClParameter::eFlagInput |
                       ClParameter::eFlagOutput);
    parameter.Bind(nMember);
    EXPECT_EQ(parameter.GetFlags(), ClParameter::eFlagInput | ClParameter::eFlagOutput);
    EXPECT_EQ(parameter.GetValuePointer(), &nMember);
    EXPECT_EQ(parameter.DefaultValue(), 17);
    EXPECT_EQ(*parameter.GetValueLink(), &nMember);

    parameter.SetText("42");
    EXPECT_EQ(nMember, 42);
    EXPECT_EQ(parameter.DefaultValue(), 17);

    parameter.Bind(nMember, ClParameter::eFlagOutput);
    EXPECT_EQ(parameter.GetFlags(), ClParameter::eFlagOutput);
    EXPECT_EQ(parameter.DefaultValue(), 42);
}

TEST(TypedParameter, UnboundParameterReportsANullPointer)
{
    TpParameterNumeric<double> parameter;
    EXPECT_EQ(parameter.GetValuePointer(), nullptr);
    EXPECT_THROWS_CODE(parameter.SetText("1"), ClException, ZRC_ERROR_BAD_POINTER, "Point is Null");
    char szBuffer[16];
    uint32_t nSize = sizeof(szBuffer);
    EXPECT_THROWS_CODE(parameter.GetText(szBuffer, nSize), ClException, ZRC_ERROR_BAD_POINTER,
                       "Point is Null");
}

TEST(TypedParameter, TextOperationsAreAbstractOnThePlainParameter)
{
    double dMember = 1.0;
    TpParameter<double> parameter;
    parameter.Bind(dMember);
    char szBuffer[16];
    uint32_t nSize = sizeof(szBuffer);
    EXPECT_THROWS_CODE(parameter.SetText("2"), ClException, ZRC_ERROR_INTERNAL,
                       "Abstract function");
    EXPECT_THROWS_CODE(parameter.GetText(szBuffer, nSize), ClException, ZRC_ERROR_INTERNAL,
                       "Abstract function");
    EXPECT_THROWS_CODE(parameter.GetDefaultText(szBuffer, nSize), ClException, ZRC_ERROR_INTERNAL,
                       "Abstract function");
    EXPECT_FALSE(parameter.IsNumeric());
    EXPECT_EQ(parameter.AsNumeric(), nullptr);
}

TEST(TypedParameter, AccessorsOfAnOwnerWithTwoBases)
{
    ClDetectionLike owner;
    ClParameterContainer root;
    TpParameterNumeric<double, ClDetectionLike>* pScore =
        root.AddDouble<ClDetectionLike>("dQueryScore");
    TpParameterNumeric<double, ClDetectionLike>* pRate =
        root.AddDouble<ClDetectionLike>("dQueryRate");
    pScore->BindAccessors(&owner, &ClDetectionLike::SetScore, &ClDetectionLike::GetScore,
                          ClParameter::eFlagInput | ClParameter::eFlagOutput);
    pRate->BindAccessors(&owner, &ClDetectionLike::SetRate, &ClDetectionLike::GetRate);
    EXPECT_EQ(pScore->DefaultValue(), 50.0);
    EXPECT_EQ(pScore->GetOwner(), &owner);
    EXPECT_EQ(pScore->GetValuePointer(), &owner.m_dScore);
    EXPECT_EQ(Text(*pScore), "50.0");

    pScore->SetText("80");
    EXPECT_EQ(owner.m_nSetCalls, 1);
    EXPECT_EQ(owner.m_dScore, 80.0);
    EXPECT_EQ(Text(*pRate), "0.8");
    EXPECT_EQ(owner.m_dPadding, -1.0);

    // Reset and swap go through the setter as well.
    pScore->ResetValue();
    EXPECT_EQ(owner.m_dScore, 50.0);
    EXPECT_EQ(owner.m_dRate, 0.5);
    EXPECT_EQ(owner.m_nSetCalls, 2);

    // A clone keeps the owner and the accessors.
    std::unique_ptr<ClParameter> pCopy(pRate->Clone());
    pCopy->SetText("0.25");
    EXPECT_EQ(owner.m_dScore, 25.0);
    EXPECT_TRUE(pCopy->AsNumeric() != nullptr);

    // Through a path, as the handle reaches its properties.
    root.Find("DQUERYSCORE")->SetText("10");
    EXPECT_EQ(owner.m_dRate, 0.1);
}

TEST(TypedParameter, CloneFollowsTheMemberWithItsOwnLink)
{
    int nMember = 3;
    int nOther = 9;
    TpParameterNumeric<int> source;
    source.Bind(nMember);
    source.SetName("nValue");
    source.SetDescription("a value");
    source.SetLimits(1, 5);
    source.SetFlags(ClParameter::eFlagInput | ClParameter::eFlagClamp);

    std::unique_ptr<ClParameter> pClone(source.Clone());
    auto& copy = dynamic_cast<TpParameterNumeric<int>&>(*pClone);
    EXPECT_STREQ(copy.GetName(), "nValue");
    EXPECT_STREQ(copy.GetDescription(), "a value");
    EXPECT_EQ(copy.GetFlags(), source.GetFlags());
    EXPECT_EQ(copy.GetType(), &typeid(int));
    EXPECT_EQ(copy.Upper(), 5);
    EXPECT_NE(copy.GetValueLink(), source.GetValueLink());

    copy.SetText("4");
    EXPECT_EQ(nMember, 4);
    copy.SetText("8"); // the limits and the clamp came along
    EXPECT_EQ(nMember, 5);

    // Re-aiming the source's own pointer does not move the copy.
    source.SetValuePointer(&nOther);
    copy.SetText("2");
    EXPECT_EQ(nMember, 2);
    EXPECT_EQ(nOther, 9);
}

TEST(TypedParameter, CloneKeepsALinkToAPointerHeldElsewhere)
{
    double dFirst = 1.0;
    double dSecond = 2.0;
    double* pExternal = &dFirst;
    TpParameterNumeric<double> source;
    source.SetValueLink(&pExternal);

    std::unique_ptr<ClParameter> pClone(source.Clone());
    auto& copy = dynamic_cast<TpParameterNumeric<double>&>(*pClone);
    EXPECT_EQ(copy.GetValueLink(), &pExternal);
    copy.SetText("5");
    EXPECT_EQ(dFirst, 5.0);
    pExternal = &dSecond;
    copy.SetText("6");
    source.SetText("7");
    EXPECT_EQ(dFirst, 5.0);
    EXPECT_EQ(dSecond, 7.0);
}

TEST(TypedParameter, ValueAndDefaultOperations)
{
    long lA = 10, lB = 20;
    TpParameterNumeric<long> a, b;
    a.Bind(lA);
    b.Bind(lB);
    lA = 11;
    lB = 21;

    a.CopyValue(b, false);
    EXPECT_EQ(lA, 21);
    a.CopyDefault(b);
    EXPECT_EQ(a.DefaultValue(), 20);
    a.DefaultFromValue(b);
    EXPECT_EQ(a.DefaultValue(), 21);
    lB = 30;
    a.ValueFromDefault(b);
    EXPECT_EQ(lA, 20);
    a.SetDefaultValue(-1);
    a.ResetValue();
    EXPECT_EQ(lA, -1);
    EXPECT_TRUE(a.IsDefault());

    a.SetDefaultValue(5);
    a.SwapValuesAndDefaults();
    EXPECT_EQ(lA, 5);
    EXPECT_EQ(a.DefaultValue(), -1);

    // Parameters of another value type are refused.
    TpParameterNumeric<int> other;
    EXPECT_THROWS_CODE(a.CopyValue(other, true), ClException, ZRC_ERROR_BAD_POINTER,
                       "pCast is not set");
    EXPECT_THROWS_CODE(a.CopyDefault(other), ClException, ZRC_ERROR_BAD_POINTER,
                       "pCast is not set");
    std::unique_ptr<ClParameter> pOther(other.Clone());
    EXPECT_THROWS_CODE(a.CopyTo(*pOther), ClException, ZRC_ERROR_BAD_POINTER, "pCast is not set");
}

TEST(TypedParameter, CopyValueLeavesConnectionsUnlessForced)
{
    ClImage first, second;
    ClImage* pInImage = &first;
    ClImage* pSource = &second;
    int nMember = 1, nSourceMember = 2;

    ClParameterContainer target, source;
    target.AddImage("pInImage")->Bind(pInImage, ClParameter::eFlagInput);
    target.AddInt("nValue")->Bind(nMember);
    source.AddImage("pInImage")->Bind(pSource, ClParameter::eFlagInput);
    source.AddInt("nValue")->Bind(nSourceMember);

    target.CopyValue(source, false);
    EXPECT_EQ(pInImage, &first);
    EXPECT_EQ(nMember, 2);
    target.CopyValue(source, true);
    EXPECT_EQ(pInImage, &second);
}
