#include "Foundation/Core/Base/HeapObject.h"

#include <gtest/gtest.h>

#include "Foundation/Core/Base/SmartHeap.h"
#include "Foundation/Core/CompList/CompList.h"
#include "Foundation/Core/Container/Array.h"
#include "Foundation/Core/Container/StringOrdinalMap.h"
#include "Foundation/Core/Language/Codepage.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/SymbolTable/SymbolTable.h"

namespace platform = zelkor::platform;

namespace {

// Of a class that others derive from with more in it: these do not fit its pool.
struct Larger : CT_Buffer {
    char more[100];
};

TEST(HeapObjectTest, MakingOneThrowsWhateverHandlerGivesUp) {
    const auto before = platform::SetMemoryErrorHandler([](const auto*) { return false; });
    void (*const makers[])() = {
        [] { delete new CT_Buffer; },
        [] { delete new Larger; },
        [] { delete new CT_CString; },
        [] { delete new CT_VoidArray(4); },
        [] { delete new CT_Symbol; },
        [] { delete new CT_SymbolTable; },
        [] { delete new CT_StringOrdinalMap; },
        [] { delete new CT_Codepage; },
        [] { CT_CompList(CT_CompList::kOneByte, 1, FALSE, FALSE, 0, 0).b_Add("word", 1); },
    };
    int number = 0;
    for (const auto make : makers) {
        SCOPED_TRACE(number++);
        platform::FailAllocation(1, true);
        EXPECT_THROW(make(), CT_SmartHeapException);
        platform::FailAllocation(0);
    }
    platform::SetMemoryErrorHandler(before);
}

}  // namespace
