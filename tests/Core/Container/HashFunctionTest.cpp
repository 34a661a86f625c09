#include "Foundation/Core/Container/HashFunction.h"

#include "Foundation/Core/Container/HashDetail.h"
#include "HashSupport.h"

namespace {

using F = CT_HashFunction;
using Function = CT_VoidHashTable::HashFunction;

TEST(HashFunctionTest, AgreeWithTheDefinitionForTextsInEveryForm) {
    struct Functions {
        Function exact, exact_twin, folding, folding_twin;
    };
    const Functions forms[] = {
        {&F::sn_HashCaseQCCZ, &F::sn_HashCaseQCZ, &F::sn_HashNoCaseQCCZ, &F::sn_HashNoCaseQCZ},
        {&F::sn_HashCasePQCCZ, &F::sn_HashCasePQCZ, &F::sn_HashNoCasePQCCZ, &F::sn_HashNoCasePQCZ},
        {&F::sn_HashCStringPCCO, &F::sn_HashCStringPCO, &F::sn_HashCStringNoCasePCCO,
         &F::sn_HashCStringNoCasePCO},
        {&F::sn_HashCStringPPCCO, &F::sn_HashCStringPPCO, &F::sn_HashCStringNoCasePPCCO,
         &F::sn_HashCStringNoCasePPCO},
        {&F::sn_HashCaseQCUZ, &F::sn_HashCaseQUZ, &F::sn_HashNoCaseQCUZ, &F::sn_HashNoCaseQUZ},
        {&F::sn_HashCasePQCUZ, &F::sn_HashCasePQUZ, &F::sn_HashNoCasePQCUZ, &F::sn_HashNoCasePQUZ},
        {&F::sn_HashUStringPCCO, &F::sn_HashUStringPCO, &F::sn_HashUStringNoCasePCCO,
         &F::sn_HashUStringNoCasePCO},
        {&F::sn_HashUStringPPCCO, &F::sn_HashUStringPPCO, &F::sn_HashUStringNoCasePPCCO,
         &F::sn_HashUStringNoCasePPCO},
        {&F::sn_HashStringPCCO, &F::sn_HashStringPCO, &F::sn_HashStringNoCasePCCO,
         &F::sn_HashStringNoCasePCO},
        {&F::sn_HashStringPPCCO, &F::sn_HashStringPPCO, &F::sn_HashStringNoCasePPCCO,
         &F::sn_HashStringNoCasePPCO},
        {&F::sn_HashPN4, &CT_VoidHashTable::sn_HashInteger, &F::sn_HashPN4, &F::sn_HashPN4},
    };
    test::Random random;
    std::deque<test::KeyText> texts;
    for (const char* const text : {"", "i", "\xE9", "zZ{`@["}) texts.emplace_back(text);
    for (const char byte : std::string("z\xEF\xF0\xFF"))
        texts.emplace_back(std::string(300, byte) + '\xFF');
    while (texts.size() < 200) texts.emplace_back(random.Text(20));
    for (const test::KeyText& text : texts) {
        for (const unsigned int size : {1u, 13u, 4093u, 0x80000001u, 0xFFFFFFFFu}) {
            for (int i = 0; i < 11; ++i) {
                SCOPED_TRACE(i);
                const auto form = static_cast<test::Form>(i);
                const void* const key = text.Key(form);
                const unsigned int exact = text.Hash(form, false) % size + 1;
                const unsigned int folded = text.Hash(form, true) % size + 1;
                ASSERT_EQ(forms[i].exact(key, size), exact);
                ASSERT_EQ(forms[i].exact_twin(key, size), exact);
                ASSERT_EQ(forms[i].folding(key, size), folded);
                ASSERT_EQ(forms[i].folding_twin(key, size), folded);
            }
        }
    }
    EXPECT_EQ(F::sn_HashCaseQCUZ(u"abc", 13), 6u);
    EXPECT_EQ(F::sn_HashCaseQCCZ("\xE9", 0x20000000), 0x0FFFFF19u + 1);  // 0xFFFFFFE9, folded
    EXPECT_NE(F::sn_HashNoCaseQCUZ(u"\u00C9", 4093), F::sn_HashNoCaseQCUZ(u"\u00E9", 4093));
    const Function by_value[] = {&F::sn_HashN, &F::sn_HashN4};
    for (const Function function : by_value) {
        EXPECT_EQ(function(reinterpret_cast<const void*>(std::uintptr_t{0xFFFFFFFE}), 13),
                  F::sn_HashN(0xFFFFFFFE, 13));
    }
    EXPECT_EQ(F::sn_HashN4(27, 13), 2u);
}

TEST(HashFunctionTest, RemaindersWithoutDivisionAreExact) {
    using foundation::detail::Reciprocal, foundation::detail::Remainder;
    test::Random random;
    for (int i = 0; i < 200'000; ++i) {
        const std::uint32_t divisor = std::max(1u, random() >> random(32));
        const std::uint32_t value = random(), multiple = value / divisor * divisor;
        for (const std::uint32_t number : {value, multiple, multiple - 1, 0xFFFFFFFFu}) {
            ASSERT_EQ(Remainder(number, divisor, Reciprocal(divisor)), number % divisor)
                << number << " by " << divisor;
        }
    }
}

}  // namespace
