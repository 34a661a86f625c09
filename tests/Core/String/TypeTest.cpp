// CT_Type: registration, casts and the end of a prototype.
#include "Foundation/Core/String/Type.h"

#include <gtest/gtest.h>

#include <tuple>

#include "Foundation/Core/String/CString.h"
#include "Foundation/Core/String/UStringWrapper.h"

namespace {

TEST(TypeTest, AStringKnowsItsClasses) {
    CT_UString wide(u"x");
    CT_CString narrow("x");
    CT_UStringWrapper derived(&wide);
    const CT_Type* const base = CT_String::spcco_GetType();
    const CT_Type* const units = CT_UString::spcco_GetType();
    const CT_Type* const bytes = CT_CString::spcco_GetType();
    const std::tuple<const CT_String*, const CT_Type*, bool, bool> cases[] = {
        {&wide, base, false, true},    {&wide, units, true, true},
        {&wide, bytes, false, false},  {&narrow, base, false, true},
        {&narrow, bytes, true, true},  {&narrow, units, false, false},
        {&derived, units, true, true}, {&wide, nullptr, false, false}};
    for (const auto& [object, type, is_a, is_kind_of] : cases) {
        EXPECT_EQ(object->vpv_IsA(type), is_a ? object : nullptr);
        EXPECT_EQ(object->vpv_IsKindOf(type), is_kind_of ? object : nullptr);
    }
}

// Classes registered the way a client does it, with a part at an offset and one that is there
// twice.
struct Part {
    std::uint64_t number = 0;
};
struct Left : Part {};
struct Right : Part {};
struct Whole : Left, Right {};

TEST(TypeTest, CastsFollowTheOffsetsAndRefuseWhatIsAmbiguous) {
    Part part_object;
    const CT_Type part("Part", &part_object, sizeof part_object);
    const CT_Type right("Right", &part_object, sizeof part_object);
    Whole prototype;
    CT_Type whole("Whole", &prototype, sizeof prototype);
    EXPECT_TRUE(CT_Type::sb_InConstruct(&prototype));
    EXPECT_TRUE(CT_Type::sb_InConstruct(static_cast<Right*>(&prototype)));
    EXPECT_FALSE(CT_Type::sb_InConstruct(&prototype + 1));
    CT_Type::sv_Enter(static_cast<Part*>(static_cast<Left*>(&prototype)), &part);
    CT_Type::sv_Enter(static_cast<Part*>(static_cast<Right*>(&prototype)), &part);
    CT_Type::sv_Enter(static_cast<Right*>(&prototype), &right);
    CT_Type::sv_Enter(&prototype, &whole);
    whole.v_Enter();
    EXPECT_FALSE(CT_Type::sb_InConstruct(&prototype));
    EXPECT_EQ(whole.n_GetTypes(), 4u);

    Whole object;
    EXPECT_EQ(whole.pv_CastTo(&object, &right), static_cast<Right*>(&object));
    EXPECT_EQ(whole.pv_CastTo(&object, &whole), &object);
    EXPECT_EQ(whole.pv_CastTo(&object, &part), nullptr);

    CT_Type::sv_ToDestruct(&whole);
    EXPECT_FALSE(CT_Type::sb_InDestruct(&object));
    for (int level = 0; level < 4; ++level) EXPECT_TRUE(CT_Type::sb_InDestruct(&prototype));
    EXPECT_FALSE(CT_Type::sb_InDestruct(&prototype)) << "the mark went with the last level";
}

// A registered string class of a client: its prototype passes through all constructors.
class Title : public CT_UString {
public:
    explicit Title(const CT_Type* type) : CT_UString(type) {
        if (CT_Type::sb_InConstruct(this)) CT_Type::sv_Enter(this, type);
    }
};

TEST(TypeTest, AClientsStringClassRegistersThroughTheChain) {
    alignas(Title) static unsigned char place[sizeof(Title)];
    CT_Type type("Title", place, sizeof(Title));
    auto* const prototype = new (place) Title(&type);
    type.v_Enter();
    EXPECT_EQ(type.n_GetTypes(), 3u);
    EXPECT_EQ(type.pv_CastTo(prototype, CT_UString::spcco_GetType()), prototype);
    EXPECT_EQ(type.pv_CastTo(prototype, CT_CString::spcco_GetType()), nullptr);
    CT_Type::sv_ToDestruct(&type);
    prototype->~Title();
    EXPECT_EQ(type.n_GetTypes(), 1u) << "two levels were the library's";
}

}  // namespace
