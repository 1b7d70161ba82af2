#include "image/ArrayDynamic.h"
#include "image/ArrayStatic.h"

#include <string>

#include <gtest/gtest.h>

#include "ImageTestSupport.h"

namespace
{

// An element whose array allocations fail on request.
struct Refusing
{
    static bool s_bRefuse;
    int nValue = -1;
    static void* operator new[](size_t nBytes, const std::nothrow_t& tag) noexcept
    {
        return s_bRefuse ? nullptr : ::operator new[](nBytes, tag);
    }
    static void operator delete[](void* p) noexcept { ::operator delete[](p); }
};
bool Refusing::s_bRefuse = false;

} // namespace

TEST(ArrayStatic, CreateReplacesTheBlockAndCopiesAreDeep)
{
    TpArrayStatic<std::string> array(3);
    EXPECT_EQ(array.Size(), 3u);
    EXPECT_TRUE(array[2].empty()); // built in place
    array[0] = "a";
    array[2] = "c";

    TpArrayStatic<std::string> copy(array);
    array[0] = "changed";
    EXPECT_EQ(copy[0], "a");
    EXPECT_EQ(copy[2], "c");
    copy = copy;
    EXPECT_EQ(copy[2], "c");

    array.Create(5);
    EXPECT_EQ(array.Capacity(), 5u);
    EXPECT_TRUE(array[0].empty());
    array.Resize(0);
    EXPECT_EQ(array.Data(), nullptr);

    TpArrayStatic<Refusing> refusing(2);
    refusing[1].nValue = 4;
    Refusing::s_bRefuse = true;
    ExpectThrows<ClExBadAlloc>([&] { refusing.Create(8); }, -102, "Memory allocation failed");
    Refusing::s_bRefuse = false;
    EXPECT_EQ(refusing.Capacity(), 2u);
    EXPECT_EQ(refusing[1].nValue, 4);
}

TEST(ArrayDynamic, GrowsByNKeepingItsContents)
{
    TpArrayDynamic<int, 3> array;
    for (int i = 0; i < 7; ++i)
    {
        array.Add(i * 10);
        EXPECT_EQ(array.Capacity(), (static_cast<uint32_t>(i) / 3 + 1) * 3);
    }
    ASSERT_EQ(array.Size(), 7u);
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(array[i], i * 10);

    TpArrayDynamic<int, 3> copy(array);
    array.RemoveAt(1);
    EXPECT_EQ(array.Size(), 6u);
    EXPECT_EQ(array[1], 20);
    EXPECT_EQ(array[5], 60);
    EXPECT_EQ(copy.Size(), 7u);
    EXPECT_EQ(copy[1], 10);
    copy = array;
    EXPECT_EQ(copy.Size(), 6u);
    EXPECT_EQ(copy[5], 60);

    array.Clear();
    EXPECT_EQ(array.Size(), 0u);
    EXPECT_EQ(array.Capacity(), 9u);
    array.Resize(4);
    EXPECT_EQ(array.Size(), 4u);
    EXPECT_EQ(array.Capacity(), 4u);
    array.Add(1);
    EXPECT_EQ(array.Capacity(), 7u);

    // A failed growth keeps capacity, count and elements.
    TpArrayDynamic<Refusing, 2> refusing;
    refusing.Add(Refusing{1});
    refusing.Add(Refusing{2});
    Refusing::s_bRefuse = true;
    ExpectThrows<ClExBadAlloc>([&] { refusing.Add(Refusing{3}); }, -102);
    Refusing::s_bRefuse = false;
    EXPECT_EQ(refusing.Capacity(), 2u);
    EXPECT_EQ(refusing.Size(), 2u);
    EXPECT_EQ(refusing[1].nValue, 2);
}
