#include "image/ArrayDynamic.h"

#include <gtest/gtest.h>

using std::make_tuple;

TEST(Array, DynamicGrowsByNKeepingItsContents)
{
    TpArrayDynamic<int, 3> array;
    for (int i = 0; i < 7; ++i)
        array.Add(i * 10);
    TpArrayDynamic<int, 3> copy(array);
    array.RemoveAt(1);
    EXPECT_EQ(make_tuple(array.Size(), array.Capacity(), array[0], array[1], array[5]),
              make_tuple(6u, 9u, 0, 20, 60));
    EXPECT_EQ(make_tuple(copy.Size(), copy[1], copy[6]), make_tuple(7u, 10, 60));
    // Clear keeps the block; growth after a Resize starts from its size.
    array.Clear();
    EXPECT_EQ(make_tuple(array.Size(), array.Capacity()), make_tuple(0u, 9u));
    array.Resize(4);
    array.Add(1);
    EXPECT_EQ(make_tuple(array.Size(), array.Capacity(), array[4]), make_tuple(5u, 7u, 1));
}
