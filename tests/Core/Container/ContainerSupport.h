// What the tests of the arrays and lists share.
#ifndef TESTS_CORE_CONTAINER_CONTAINERSUPPORT_H
#define TESTS_CORE_CONTAINER_CONTAINERSUPPORT_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <vector>

#include "Foundation/Core/Container/VoidArray.h"
#include "Support/Memory.h"

namespace test {

inline std::vector<int> Ints(const CT_VoidArray& array) {
    std::vector<int> items(array.n_GetCount());
    int index = 0;
    for (int& item : items) array.v_GetAt(&item, ++index);
    return items;
}

inline void Append(CT_VoidArray& array, std::initializer_list<int> items) {
    for (const int item : items) array.v_Insert(&item);
}

}  // namespace test

#endif
