#include "Foundation/Core/Container/HashFunction.h"

#include "Foundation/Core/Container/Internal/HashDetail.h"
#include "HashSupport.h"

namespace {

using namespace test::hash;

TEST(HashFunctionTest, AgreeWithTheDefinitionForTextsInEveryForm) {
    Random random;
    std::deque<KeyText> texts;
    for (const char* const text : {"", "i", "\xE9", "zZ{`@["}) texts.emplace_back(text);
    for (const char byte : std::string("z\xEF\xF0\xFF"))
        texts.emplace_back(std::string(300, byte) + '\xFF');
    while (texts.size() < 200) texts.emplace_back(random.Text(20));
    for (const KeyText& text : texts) {
        for (int i = 0; i < 44; ++i) {
            SCOPED_TRACE(i);
            const auto form = static_cast<Form>(i / 4);
            const bool folds = i % 4 > 1;
            for (const unsigned int size : {1u, 13u, 4093u, 0x80000001u, 0xFFFFFFFFu}) {
                ASSERT_EQ(kFunctions[form].hashes[folds][i % 2](text.Key(form), size),
                          text.Hash(form, folds) % size + 1);
            }
        }
    }
    const Table::HashFunction by_value[] = {&F::sn_HashN, &F::sn_HashN4};
    for (const auto function : by_value) {
        EXPECT_EQ(function(reinterpret_cast<const void*>(std::uintptr_t{0xFFFFFFFE}), 13),
                  F::sn_HashN(0xFFFFFFFE, 13));
    }
    EXPECT_EQ(F::sn_HashN4(27, 13), 2u);
}

TEST(HashFunctionTest, RemaindersWithoutDivisionAreExact) {
    using zelkor::detail::Reciprocal, zelkor::detail::Remainder;
    Random random;
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
