#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "parameters/ParameterContainer.h"
#include "ThrowsCode.h"

namespace
{

// Records the order in which parameters are destroyed.
std::vector<std::string> g_Destroyed;

class ClProbe : public TpParameter<int>
{
public:
    ~ClProbe() override { g_Destroyed.push_back(GetName() != nullptr ? GetName() : ""); }
};

// Root "A" holding the int "B" and the container "C", which holds the int "D".
struct Tree
{
    int nB = 1;
    int nD = 2;
    ClParameterContainer root{"A"};
    ClParameterContainer* pC = nullptr;
    ClParameter* pB = nullptr;
    ClParameter* pD = nullptr;

    Tree()
    {
        root.AddInt("B")->Bind(nB);
        pC = new ClParameterContainer();
        root.AddChild("C", pC);
        pC->AddInt("D")->Bind(nD);
        pB = root.FindChild("B");
        pD = pC->FindChild("D");
    }
};

} // namespace

TEST(ParameterContainer, ChildrenAreFoundWithoutRegardToCase)
{
    ClParameterContainer root;
    EXPECT_EQ(root.FindChild("x"), nullptr);
    EXPECT_TRUE(root.IsContainer());
    EXPECT_EQ(root.GetFlags(), ClParameter::eFlagContainer);
    EXPECT_EQ(root.GetType(), &typeid(ClParameterContainer));

    int nValue = 0, nOther = 0;
    TpParameterNumeric<int>* pValue = root.AddInt("nValue");
    pValue->Bind(nValue);
    EXPECT_EQ(pValue->GetParent(), &root);
    EXPECT_EQ(root.FindChild("NVALUE"), pValue);
    EXPECT_EQ(root.Find("nvalue"), pValue);

    EXPECT_THROWS_CODE(root.AddUnsigned("NValue"), ClExVelmoran, ZRC_ERROR_PARAM_VALUE_DUPLICATE,
                       nullptr);
    root.AddInt("abc")->Bind(nOther);
    EXPECT_THROWS_CODE(root.AddDouble("ABC"), ClExVelmoran, ZRC_ERROR_PARAM_VALUE_DUPLICATE,
                       nullptr);
    EXPECT_EQ(root.GetChildCount(), 2u);

    // More children than one growth step, each still found.
    for (int i = 0; i < 25; ++i)
        root.AddLong(("l" + std::to_string(i)).c_str());
    EXPECT_EQ(root.GetChildCount(), 27u);
    EXPECT_EQ(root.FindChild("L24"), root.GetChild(26));
    EXPECT_EQ(root.FindChild("abc"), root.GetChild(1));
}

TEST(ParameterContainer, ChildrenAreDeletedInReverseOrder)
{
    g_Destroyed.clear();
    {
        ClParameterContainer root;
        root.AddNew<ClProbe>("first");
        root.AddNew<ClProbe>("second");
        root.AddNew<ClProbe>("third");
        // A refused duplicate is deleted at once.
        EXPECT_THROWS_CODE(root.AddNew<ClProbe>("FIRST"), ClExVelmoran,
                           ZRC_ERROR_PARAM_VALUE_DUPLICATE, nullptr);
        ASSERT_EQ(g_Destroyed.size(), 1u);
        EXPECT_EQ(g_Destroyed[0], "FIRST");
    }
    EXPECT_EQ(g_Destroyed, (std::vector<std::string>{"FIRST", "third", "second", "first"}));
}

TEST(ParameterContainer, PathsWithAndWithoutTheRootName)
{
    Tree tree;
    ClParameterContainer& root = tree.root;
    EXPECT_EQ(root.Find("B"), tree.pB);
    EXPECT_EQ(root.Find("A.B"), tree.pB);
    EXPECT_EQ(root.Find(".B"), tree.pB);
    EXPECT_EQ(root.Find("b"), tree.pB);
    EXPECT_EQ(root.Find("a.B"), nullptr); // the root's name is compared exactly
    EXPECT_EQ(root.Find("A"), nullptr);   // the root's name alone addresses nothing
    EXPECT_EQ(root.Find(""), nullptr);
    EXPECT_EQ(root.Find(nullptr), nullptr);

    EXPECT_EQ(root.Find("C.D"), tree.pD);
    EXPECT_EQ(root.Find("A.C.D"), tree.pD);
    EXPECT_EQ(root.Find("C.X"), nullptr);
    EXPECT_EQ(root.Find("C.D.E"), tree.pD); // behind a plain parameter the rest is ignored
    EXPECT_EQ(root.Find("B.anything"), tree.pB);
    EXPECT_EQ(root.Find("C"), tree.pC);
    EXPECT_EQ(root.Find("X.D"), nullptr);

    // From a nested container: "." and absolute paths start at the root;
    // relative paths start here, and the root's name is not stepped over.
    EXPECT_EQ(tree.pC->Find("."), &root);
    EXPECT_EQ(tree.pC->Find(".B"), tree.pB);
    EXPECT_EQ(tree.pC->Find(".C.D"), tree.pD);
    EXPECT_EQ(tree.pC->Find("D"), tree.pD);
    EXPECT_EQ(tree.pC->Find("B"), nullptr);
    EXPECT_EQ(tree.pC->Root(), &root);
    EXPECT_EQ(root.Find("."), &root);

    tree.pD->SetText("77");
    EXPECT_EQ(tree.nD, 77);
}

TEST(ParameterContainer, PathPartLengthLimit)
{
    ClParameterContainer root;
    const std::string s254(254, 'p');
    const std::string s255(255, 'q');
    const std::string s300(300, 'r');
    ClParameterContainer* pSub = new ClParameterContainer();
    root.AddChild(s254.c_str(), pSub);
    pSub->AddInt(s254.c_str());
    root.AddInt(s255.c_str());
    root.AddInt(s300.c_str());

    EXPECT_EQ(root.Find(s254.c_str()), pSub);
    EXPECT_EQ(root.Find((s254 + "." + s254).c_str()), pSub->GetChild(0));
    EXPECT_THROWS_CODE(root.Find(s255.c_str()), ClException, ZRC_ERROR_INTERNAL,
                       "Parameter path part was to long max len is 255");
    EXPECT_THROWS_CODE(root.Find((s255 + ".x").c_str()), ClException, ZRC_ERROR_INTERNAL,
                       "Parameter path part was to long max len is 255");
    EXPECT_THROWS_CODE(root.Find((s254 + "." + s255).c_str()), ClException, ZRC_ERROR_INTERNAL,
                       "Parameter path part was to long max len is 255");
    EXPECT_EQ(root.Find(s300.c_str()), nullptr);
    EXPECT_EQ(root.Find((s254 + "." + s300).c_str()), nullptr);
}

TEST(ParameterContainer, DeepPaths)
{
    ClParameterContainer root;
    ClParameterContainer* pLevel = &root;
    std::string path;
    for (int i = 0; i < 40; ++i)
    {
        ClParameterContainer* pNext = new ClParameterContainer();
        const std::string name = "Level" + std::to_string(i);
        pLevel->AddChild(name.c_str(), pNext);
        path += name + ".";
        pLevel = pNext;
    }
    int nLeaf = 0;
    pLevel->AddInt("nLeaf")->Bind(nLeaf);
    root.Find((path + "nLeaf").c_str())->SetText("5");
    EXPECT_EQ(nLeaf, 5);
    EXPECT_EQ(pLevel->Find(("." + path + "NLEAF").c_str()), pLevel->GetChild(0));
    EXPECT_EQ(pLevel->Root(), &root);
}

TEST(ParameterContainer, TextOfAContainer)
{
    Tree tree;
    char szBuffer[4] = "XXX";
    uint32_t nSize = 4;
    EXPECT_TRUE(tree.root.GetText(szBuffer, nSize));
    EXPECT_EQ(nSize, 1u);
    EXPECT_STREQ(szBuffer, "");

    char szOne[2] = "Y";
    nSize = 1;
    EXPECT_TRUE(tree.root.GetText(szOne, nSize));
    EXPECT_EQ(szOne[0], 'Y');
    nSize = 8;
    EXPECT_TRUE(tree.root.GetText(nullptr, nSize));
    EXPECT_EQ(nSize, 1u);

    nSize = 4;
    EXPECT_FALSE(tree.root.GetDefaultText(szBuffer, nSize));
    EXPECT_EQ(nSize, 4u);
    tree.root.SetText("ignored");
    EXPECT_EQ(tree.nB, 1);
    EXPECT_EQ(tree.root.GetValuePointer(), &tree.root);
}

TEST(ParameterContainer, DefaultsAcrossTheTree)
{
    EXPECT_TRUE(ClParameterContainer().IsDefault());

    Tree tree;
    EXPECT_TRUE(tree.root.IsDefault());
    tree.nD = 9;
    EXPECT_FALSE(tree.root.IsDefault());

    tree.root.SwapValuesAndDefaults();
    EXPECT_EQ(tree.nD, 2);
    EXPECT_EQ(tree.nB, 1);
    tree.root.SwapValuesAndDefaults();
    EXPECT_EQ(tree.nD, 9);

    tree.root.ResetValue();
    EXPECT_EQ(tree.nD, 2);
    EXPECT_TRUE(tree.root.IsDefault());

    // Matching by index between two trees of one shape.
    Tree other;
    other.nB = 10;
    other.nD = 20;
    tree.root.DefaultFromValue(other.root);
    EXPECT_FALSE(tree.root.IsDefault());
    tree.root.ResetValue();
    EXPECT_EQ(tree.nB, 10);
    EXPECT_EQ(tree.nD, 20);
    tree.root.ValueFromDefault(other.root);
    EXPECT_EQ(tree.nB, 1);
    tree.root.CopyDefault(other.root);
    EXPECT_TRUE(tree.root.IsDefault());

    EXPECT_THROWS_CODE(tree.root.DefaultFromValue(*tree.pB), ClException, ZRC_ERROR_BAD_POINTER,
                       "pCast is not set");
    EXPECT_THROWS_CODE(tree.root.ValueFromDefault(*tree.pB), ClException, ZRC_ERROR_BAD_POINTER,
                       "pCast is not set");
    EXPECT_THROWS_CODE(tree.root.CopyTo(*tree.pB), ClException, ZRC_ERROR_BAD_POINTER,
                       "pCast is not set");
}

TEST(ParameterContainer, CloneCopiesTheWholeTree)
{
    Tree tree;
    std::unique_ptr<ClParameter> pClone(tree.root.Clone());
    ClParameterContainer* pCopy = pClone->AsContainer();
    ASSERT_NE(pCopy, nullptr);
    EXPECT_STREQ(pCopy->GetName(), "A");
    ASSERT_EQ(pCopy->GetChildCount(), 2u);

    ClParameter* pD = pCopy->Find("A.C.D");
    ASSERT_NE(pD, nullptr);
    EXPECT_NE(pD, tree.pD);
    EXPECT_EQ(pD->GetParent()->GetParent(), pCopy);
    EXPECT_EQ(pCopy->Find(".C")->AsContainer()->Root(), pCopy);

    // The copies stand for the same members.
    pD->SetText("123");
    EXPECT_EQ(tree.nD, 123);
    EXPECT_FALSE(pCopy->IsDefault());

    // Copying into an existing container replaces its children.
    ClParameterContainer target("T");
    target.AddInt("old");
    tree.root.CopyTo(target);
    EXPECT_STREQ(target.GetName(), "A");
    EXPECT_EQ(target.FindChild("old"), nullptr);
    EXPECT_NE(target.Find("C.D"), nullptr);
}
