// Containers of parameters and their dotted paths.
#include "parameters/ParameterContainer.h"

#include "ParameterTestSupport.h"

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
