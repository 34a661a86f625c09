// Strings when memory runs out.
#include <functional>
#include <string>
#include <utility>

#include "Core/String/StringTexts.h"
#include "Support/Memory.h"

namespace {

using test::kAll;

template <typename Kind>
class StringMemoryTest : public testing::Test {};
TYPED_TEST_SUITE(StringMemoryTest, test::BothKinds);

TYPED_TEST(StringMemoryTest, ExhaustionAtAnyAllocationChangesAndLeaksNothing) {
    using String = typename TypeParam::String;
    using Unit = typename TypeParam::Unit;
    const auto longer = TypeParam::Text(std::string(700, 'n'));
    const String long_text(longer.c_str());
    const CT_UString wide(u"-- a set and a text of its own, long enough to grow every block ----");
    const CT_CString narrow("-- a set and a text of its own, long enough to grow any block ----");
    const std::function<void(String&)> edits[] = {
        [&](String& s) { s.v_Set(longer.c_str()); },
        [&](String& s) { s.v_Set(&wide); },
        [&](String& s) { s.v_Set(&narrow); },
        [&](String& s) { s.v_Set(wide.qcuz_Get()); },
        [&](String& s) { s.v_Set(narrow.qccz_Get()); },
        [&](String& s) { s.v_Set(300, FALSE); },
        [&](String& s) { s.v_Append(&long_text); },
        [&](String& s) { s.v_Append(&wide); },
        [&](String& s) { s.v_Append(&narrow); },
        [&](String& s) { s.v_Append(TypeParam::Get(s)); },
        [](String& s) {
            for (int i = 0; i < 60; ++i) {
                String t = s;
                t.v_Append(Unit{'x'});
                s = t;
            }
        },
        [&](String& s) { s.v_Insert(&long_text, kAll, 3); },
        [](String& s) { s.v_Insert(&s, kAll, 3); },
        [&](String& s) { s.v_Replace(&long_text, 0, kAll, 3); },
        [](String& s) { s.vv_Replace(Unit{'x'}, 100, 3); },
        [](String& s) { s.vv_Remove(2, 2); },
        [](String& s) { s.vv_ToUpper(); },
        [&](String& s) { s.vv_Strip(&wide); },
        [&](String& s) { s.vv_Translate(&wide, &narrow); },
        [](String& s) { s.vv_SetLength(90); },
        [](String& s) { s.v_Format(TypeParam::Text("%5000d").c_str(), 5); },
        [&](String& s) {
            (void)s.vi_Compare(&wide);
            (void)s.vi_Compare(&narrow);
        },
    };
    using Pair = std::pair<String, String>;
    // The edit made of many steps stops between two of them, and so may leave some "x".
    const auto read = [](const Pair& strings) {
        const std::string left = test::Ascii<TypeParam>(strings.first);
        return left.substr(0, left.find_last_not_of('x') + 1) +
               test::Ascii<TypeParam>(strings.second);
    };
    for (const bool shared : {false, true}) {
        for (const auto& edit : edits) {
            SCOPED_TRACE(testing::Message() << "edit " << &edit - edits << ", shared " << shared);
            const auto make = [&] {
                const String text = test::Make<TypeParam>("a text, to which things happen -");
                return Pair(text, shared ? text : String());
            };
            test::ExpectUnchangedWithoutMemory(
                make, [&](Pair& strings) { edit(strings.first); }, read);
        }
    }
}

}  // namespace
