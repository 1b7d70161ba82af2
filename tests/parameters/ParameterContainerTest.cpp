#include <memory>
#include <string>
#include <tuple>
#include <vector>

#include <gtest/gtest.h>

#include "parameters/ParameterContainer.h"
#include "ParameterTestSupport.h"

namespace
{

// Records the order in which parameters are destroyed.
std::vector<std::string> g_Destroyed;

class ClProbe : public TpParameter<int>
{
public:
    ~ClProbe() override { g_Destroyed.push_back(GetName()); }
};

// Root "A" holding the int "B" and the container "C", which holds the int "D".
struct Tree
{
    Tree()
    {
        root.AddChild("B", b.Clone());
        root.AddChild("C", pC);
        pC->AddChild("D", d.Clone());
    }
    TpBound<int> b{1}, d{2};
    ClParameterContainer root{"A"};
    ClParameterContainer* pC = new ClParameterContainer();
    ClParameter* B() { return root.GetChild(0); }
    ClParameter* D() { return pC->GetChild(0); }
};

} // namespace

TEST(ParameterContainer, ChildNamesIgnoreCaseAndStayUnique)
{
    g_Destroyed.clear();
    {
        ClParameterContainer root;
        EXPECT_EQ(root.FindChild("x"), nullptr);
        ClParameter* pFirst = root.AddNew<ClProbe>("first");
        root.AddNew<ClProbe>("abc");
        EXPECT_EQ(root.FindChild("FIRST"), pFirst);
        // A refused duplicate is deleted at once.
        ExpectThrows<ClExVelmoran>([&] { root.AddNew<ClProbe>("ABC"); },
                                   ZRC_ERROR_PARAM_VALUE_DUPLICATE);
        ExpectThrows<ClExVelmoran>([&] { root.AddInt("First"); }, ZRC_ERROR_PARAM_VALUE_DUPLICATE);
        EXPECT_EQ(g_Destroyed, std::vector<std::string>{"ABC"});
        for (int i = 0; i < 25; ++i) // more children than one growth step
            root.AddLong(("l" + std::to_string(i)).c_str());
        EXPECT_EQ(root.FindChild("L24"), root.GetChild(26));
    }
    // Children are deleted in reverse order of insertion.
    EXPECT_EQ(g_Destroyed, (std::vector<std::string>{"ABC", "abc", "first"}));
}

TEST(ParameterContainer, Paths)
{
    Tree t;
    // With or without the root's name (compared exactly) in front, absolute
    // with a leading "."; behind a plain parameter the rest is ignored.
    // From the nested C, "." and absolute paths start at the root.
    const std::tuple<ClParameterContainer*, const char*, ClParameter*> cases[] = {
        {&t.root, "B", t.B()},     {&t.root, "A.B", t.B()},     {&t.root, ".B", t.B()},
        {&t.root, "b", t.B()},     {&t.root, "a.B", nullptr},   {&t.root, "A", nullptr},
        {&t.root, "", nullptr},    {&t.root, nullptr, nullptr}, {&t.root, "C", t.pC},
        {&t.root, "C.D", t.D()},   {&t.root, "A.C.D", t.D()},   {&t.root, "C.X", nullptr},
        {&t.root, "X.D", nullptr}, {&t.root, "C.D.E", t.D()},   {&t.root, ".", &t.root},
        {t.pC, ".", &t.root},      {t.pC, ".C.D", t.D()},       {t.pC, "D", t.D()},
        {t.pC, "B", nullptr}};
    for (const auto& [pStart, szPath, pExpected] : cases)
    {
        SCOPED_TRACE(szPath != nullptr ? szPath : "null");
        EXPECT_EQ(pStart->Find(szPath), pExpected);
    }
}

TEST(ParameterContainer, PathPartLengthLimit)
{
    ClParameterContainer root;
    const std::string s254(254, 'p'), s255(255, 'q'), s300(300, 'r');
    ClParameterContainer* pSub = new ClParameterContainer();
    root.AddChild(s254.c_str(), pSub);
    ClParameter* pLeaf = pSub->AddInt(s254.c_str());
    root.AddInt(s255.c_str());
    root.AddInt(s300.c_str());
    EXPECT_EQ(root.Find((s254 + "." + s254).c_str()), pLeaf);
    EXPECT_EQ(root.Find(s300.c_str()), nullptr);
    EXPECT_EQ(root.Find((s254 + "." + s300).c_str()), nullptr);
    for (const std::string& path : {s255, s255 + ".x", s254 + "." + s255})
        ExpectThrows([&] { root.Find(path.c_str()); }, ZRC_ERROR_INTERNAL,
                     "Parameter path part was to long max len is 255");
}

TEST(ParameterContainer, ValuesAndDefaultsAcrossTheTree)
{
    EXPECT_TRUE(ClParameterContainer().IsDefault());
    Tree t;
    EXPECT_TRUE(t.root.IsDefault());
    t.d.value = 9;
    EXPECT_FALSE(t.root.IsDefault());
    t.root.SwapValuesAndDefaults();
    EXPECT_EQ(t.d.value, 2);
    t.root.ResetValue();
    EXPECT_EQ(t.d.value, 9);

    // Matching by index between two trees of one shape.
    Tree other;
    other.b.value = 10;
    other.d.value = 20;
    t.root.DefaultFromValue(other.root);
    t.root.ResetValue();
    EXPECT_EQ(t.b.value, 10);
    EXPECT_EQ(t.d.value, 20);
    t.root.ValueFromDefault(other.root);
    EXPECT_EQ(t.d.value, 2);
    t.root.CopyDefault(other.root);
    EXPECT_TRUE(t.root.IsDefault());
    ExpectThrows([&] { t.root.DefaultFromValue(*t.B()); }, ZRC_ERROR_BAD_POINTER,
                 "pCast is not set");
    ExpectThrows([&] { t.root.ValueFromDefault(*t.B()); }, ZRC_ERROR_BAD_POINTER,
                 "pCast is not set");

    // The text of a container is empty; setting it does nothing.
    char szBuffer[4] = "XXX";
    uint32_t nSize = 1;
    EXPECT_TRUE(t.root.GetText(szBuffer, nSize));
    EXPECT_EQ(szBuffer[0], 'X');
    EXPECT_EQ(Text(t.root), "");
    EXPECT_FALSE(t.root.GetDefaultText(szBuffer, nSize));
    t.root.SetText("ignored");
    EXPECT_EQ(t.b.value, 1);
}

TEST(ParameterContainer, CloneCopiesTheWholeTree)
{
    Tree t;
    std::unique_ptr<ClParameter> pClone(t.root.Clone());
    ClParameterContainer* pCopy = pClone->AsContainer();
    ClParameter* pD = pCopy->Find("A.C.D");
    ASSERT_NE(pD, nullptr);
    EXPECT_NE(pD, t.D());
    EXPECT_EQ(pCopy->Find(".C")->AsContainer()->Find("."), pCopy);
    pD->SetText("123"); // the copies stand for the same members
    EXPECT_EQ(t.d.value, 123);

    // Copying into an existing container replaces its children; a plain
    // parameter is no target.
    ClParameterContainer target("T");
    target.AddInt("old");
    t.root.CopyTo(target);
    EXPECT_STREQ(target.GetName(), "A");
    EXPECT_EQ(target.FindChild("old"), nullptr);
    EXPECT_NE(target.Find("C.D"), nullptr);
    ExpectThrows([&] { t.root.CopyTo(*t.B()); }, ZRC_ERROR_BAD_POINTER, "pCast is not set");
}
