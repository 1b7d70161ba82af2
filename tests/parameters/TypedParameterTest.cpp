// Parameters bound to members and accessors: owners with two bases, clones
// and copies of connected values.
#include "parameters/TypedParameter.h"

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
