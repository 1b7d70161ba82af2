#include "image/ArrayDynamic.h"
#include "image/ArrayStatic.h"

#include <string>
#include <tuple>

#include <gtest/gtest.h>

#include "ImageTestSupport.h"

using std::make_tuple;

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

TEST(Array, StaticCopiesAreDeepAndAFailedCreateKeepsTheBlock)
{
    TpArrayStatic<std::string> array(3), copy;
    array[2] = "c";
    copy = array;
    copy = copy;
    array[2] = "changed";
    array.Create(5);
    EXPECT_EQ(make_tuple(copy[2], array.Capacity(), array[0], array[4]),
              make_tuple("c", 5u, "", ""));
    array.Resize(0);
    EXPECT_EQ(array.Data(), nullptr);

    TpArrayStatic<Refusing> refusing(2);
    refusing[1].nValue = 4;
    Refusing::s_bRefuse = true;
    ExpectThrows<ClExBadAlloc>([&] { refusing.Create(8); }, -102, "Memory allocation failed");
    Refusing::s_bRefuse = false;
    EXPECT_EQ(make_tuple(refusing.Capacity(), refusing[1].nValue), make_tuple(2u, 4));
}

TEST(Array, DynamicGrowsByNKeepingItsContents)
{
    TpArrayDynamic<int, 3> array;
    for (int i = 0; i < 7; ++i)
        array.Add(i * 10);
    TpArrayDynamic<int, 3> copy(array);
    array.RemoveAt(1);
    EXPECT_EQ(make_tuple(array.Size(), array.Capacity(), array[1], array[5], copy.Size(), copy[1]),
              make_tuple(6u, 9u, 20, 60, 7u, 10));
    copy = array;
    EXPECT_EQ(make_tuple(copy.Size(), copy[5]), make_tuple(6u, 60));
    array.Clear();
    EXPECT_EQ(make_tuple(array.Size(), array.Capacity()), make_tuple(0u, 9u));
    array.Resize(4);
    array.Add(1);
    EXPECT_EQ(make_tuple(array.Size(), array.Capacity()), make_tuple(5u, 7u));

    // A failed growth keeps capacity, count and elements.
    TpArrayDynamic<Refusing, 2> refusing;
    refusing.Add(Refusing{1});
    refusing.Add(Refusing{2});
    Refusing::s_bRefuse = true;
    ExpectThrows<ClExBadAlloc>([&] { refusing.Add(Refusing{3}); }, -102);
    Refusing::s_bRefuse = false;
    EXPECT_EQ(make_tuple(refusing.Capacity(), refusing.Size(), refusing[1].nValue),
              make_tuple(2u, 2u, 2));
}
