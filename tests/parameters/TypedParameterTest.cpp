#include <memory>

#include <gtest/gtest.h>

#include "image/FpImage.h"
#include "parameters/ParameterContainer.h"
#include "ParameterTestSupport.h"

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
    }
    double& GetScore() { return m_dScore; }
    double m_dScore = 50.0;
    int m_nSetCalls = 0;
};

struct ClDetectionLike : ClFirstBase, ClQueryValues
{
};

} // namespace

TEST(TypedParameter, BindingAndAbstractTextOperations)
{
    int nMember = 17;
    TpParameterNumeric<int> parameter;
    ExpectThrows([&] { parameter.SetText("1"); }, ZRC_ERROR_BAD_POINTER, "Point is Null");
    parameter.SetFlags(ClParameter::eFlagUnbound | ClParameter::eFlagInput);
    parameter.Bind(nMember);
    EXPECT_EQ(parameter.GetFlags(), ClParameter::eFlagInput); // binding clears flag 16
    EXPECT_EQ(parameter.GetValuePointer(), &nMember);
    parameter.SetText("42");
    EXPECT_EQ(nMember, 42);
    EXPECT_EQ(parameter.DefaultValue(), 17);

    // The plain typed parameter has no text form.
    TpParameter<double> plain;
    char szBuffer[16];
    uint32_t nSize = sizeof(szBuffer);
    ExpectThrows([&] { plain.SetText("2"); }, ZRC_ERROR_INTERNAL, "Abstract function");
    ExpectThrows([&] { plain.GetText(szBuffer, nSize); }, ZRC_ERROR_INTERNAL, "Abstract function");
    ExpectThrows([&] { plain.GetDefaultText(szBuffer, nSize); }, ZRC_ERROR_INTERNAL,
                 "Abstract function");
}

TEST(TypedParameter, AccessorsOfAnOwnerWithTwoBases)
{
    ClDetectionLike owner;
    ClParameterContainer root;
    root.AddDouble<ClDetectionLike>("dQueryScore")
        ->BindAccessors(&owner, &ClDetectionLike::SetScore, &ClDetectionLike::GetScore);
    ClParameter& score = *root.Find("DQUERYSCORE");
    EXPECT_EQ(score.GetValuePointer(), &owner.m_dScore);
    score.SetText("80");
    EXPECT_EQ(owner.m_nSetCalls, 1);
    EXPECT_EQ(owner.m_dScore, 80.0);
    EXPECT_EQ(owner.m_dPadding, -1.0);
    owner.m_dScore = 0.5;
    EXPECT_EQ(Text(score), "0.5");

    score.ResetValue(); // the default came from the getter; it goes back through the setter
    EXPECT_EQ(owner.m_dScore, 50.0);
    std::unique_ptr<ClParameter> pCopy(score.Clone()); // keeps owner and accessors
    pCopy->SetText("25");
    EXPECT_EQ(owner.m_dScore, 25.0);
    EXPECT_EQ(owner.m_nSetCalls, 3);
}

TEST(TypedParameter, CloneReaimsItsOwnLinkAndKeepsAnExternalOne)
{
    int nOther = 9;
    TpBound<int> source(3);
    source.SetName("nValue");
    source.SetDescription("a value");
    source.SetLimits(1, 5);
    source.SetFlags(ClParameter::eFlagInput | ClParameter::eFlagClamp);

    std::unique_ptr<ClParameter> pCopy(source.Clone());
    EXPECT_STREQ(pCopy->GetName(), "nValue");
    EXPECT_STREQ(pCopy->GetDescription(), "a value");
    EXPECT_EQ(pCopy->GetType(), &typeid(int));
    pCopy->SetText("8"); // the member, the limits and the clamp came along
    EXPECT_EQ(source.value, 5);
    // Re-aiming the source's own pointer does not move the copy.
    source.SetValuePointer(&nOther);
    pCopy->SetText("2");
    EXPECT_EQ(source.value, 2);
    EXPECT_EQ(nOther, 9);

    // A link to a pointer held elsewhere is followed by the copy too.
    double dFirst = 1.0, dSecond = 2.0;
    double* pExternal = &dFirst;
    TpParameterNumeric<double> linked;
    linked.SetValueLink(&pExternal);
    std::unique_ptr<ClParameter> pLinked(linked.Clone());
    pExternal = &dSecond;
    pLinked->SetText("6");
    EXPECT_EQ(dFirst, 1.0);
    EXPECT_EQ(dSecond, 6.0);
}

TEST(TypedParameter, ValueAndDefaultOperations)
{
    TpBound<long> a(10), b(20);
    a.value = 11;
    b.value = 21;
    a.CopyValue(b, false);
    EXPECT_EQ(a.value, 21);
    a.CopyDefault(b);
    EXPECT_EQ(a.DefaultValue(), 20);
    a.DefaultFromValue(b);
    EXPECT_EQ(a.DefaultValue(), 21);
    b.value = 30;
    a.ValueFromDefault(b);
    EXPECT_EQ(a.value, 20);
    a.SwapValuesAndDefaults();
    EXPECT_EQ(a.value, 21);
    EXPECT_EQ(a.DefaultValue(), 20);
    a.ResetValue();
    EXPECT_EQ(a.value, 20);

    // Parameters of another value type are refused.
    TpParameterNumeric<int> other;
    ExpectThrows([&] { a.CopyValue(other, true); }, ZRC_ERROR_BAD_POINTER, "pCast is not set");

    // Without force a connection is left as it is.
    ClImage first, second;
    ClImage* pInImage = &first;
    ClImage* pSource = &second;
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
