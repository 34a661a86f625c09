#include "Foundation/Core/Base/HeapObject.h"

#include <gtest/gtest.h>

#include "Foundation/Core/Base/SmartHeap.h"
#include "Foundation/Core/CompList/CompList.h"
#include "Foundation/Core/Container/Array.h"
#include "Foundation/Core/Container/StringNumberMap.h"
#include "Foundation/Core/Container/StringOrdinalMap.h"
#include "Foundation/Core/Container/StringStringMap.h"
#include "Foundation/Core/Language/Codepage.h"
#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UString.h"
#include "Foundation/Core/SymbolTable/BiLingualWordList.h"
#include "Foundation/Core/SymbolTable/SymbolTable.h"
#include "Support/Errors.h"

namespace platform = zelkor::platform;

namespace {

// Of a class that others derive from with more in it: these do not fit its pool.
template <typename Class>
struct Larger : Class {
    char more[100] = {};
};

TEST(HeapObjectTest, ComesFromItsPoolOrTheHeapAndThrowsWhateverHandlerGivesUp) {
    const auto before = platform::SetMemoryErrorHandler([](const auto*) { return false; });
    void (*const makers[])() = {
        [] { delete new CT_Buffer; },
        [] { delete new Larger<CT_Buffer>; },
        [] { delete static_cast<CT_String*>(new CT_CString); },
        [] { delete static_cast<CT_String*>(new CT_UString); },
        [] { delete static_cast<CT_String*>(new Larger<CT_UString>); },
        [] { delete new CT_VoidArray(4); },
        [] { delete new CT_Symbol; },
        [] { delete new CT_SymbolTable; },
        [] { delete new CT_StringOrdinalMap; },
        [] { delete new CT_StringNumberMap; },
        [] { delete new CT_StringStringMap; },
        [] { delete new CT_BiLingualCWordList; },
        [] { delete new CT_BiLingualUWordList; },
        [] { delete new CT_Codepage; },
        [] { CT_CompList(CT_CompList::kOneByte, 1, FALSE, FALSE, 0, 0).b_Add("word", 1); },
    };
    int number = 0;
    for (const auto make : makers) {
        SCOPED_TRACE(number++);
        platform::FailAllocation(1, true);
        EXPECT_THROW(make(), CT_SmartHeapException);
        platform::FailAllocation(0);
        const std::int64_t before_it = platform::LiveBlocks();
        make();
        EXPECT_EQ(platform::LiveBlocks(), before_it);
    }
    platform::SetMemoryErrorHandler(before);
}

}  // namespace
