// Words, items, tokens and characters of sets, beside the plainest way of finding them.
#include "Foundation/Core/Text/StringScanner.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "Core/String/PlainTexts.h"
#include "Foundation/Core/String/UStringForwardIterator.h"
#include "Foundation/Core/Text/StringTools.h"
#include "Support/Memory.h"

namespace platform = zelkor::platform;

namespace {

using Text = std::u16string;
using test::Of;
using test::String;

void ExpectParts(const Text& text, const Text& separators, bool words) {
    using Scanner = CT_StringScanner;
    const std::vector<test::Place> parts = test::Split(text, separators, words);
    const CT_UString string = String(text);
    const char16_t *const set = separators.c_str(), one = separators[0];
    const auto count =
        words ? Scanner::n_WordCount(string, set) : Scanner::n_ItemCount(string, one);
    ASSERT_EQ(count, parts.size());
    for (std::uint32_t n = 0; n <= count + 1; ++n) {
        const test::Place part = n - 1 < count ? parts[n - 1] : test::Place{text.size(), 0};
        CT_UString own = string, rest = string;
        if (words) {
            Scanner::v_SubWord(&own, own, set, n);
            Scanner::v_RemoveWord(&rest, set, n);
        } else {
            Scanner::v_Item(&own, own, one, n);
            Scanner::v_RemoveItem(&rest, one, n);
        }
        ASSERT_EQ(Of(own), text.substr(part.begin, part.length)) << n;
        ASSERT_EQ(Of(rest), Text(text).erase(part.begin, part.length)) << n;
    }
}

void ExpectTokens(const Text& text, const Text& separators) {
    CT_UString walked = String(text);
    CT_UStringForwardIterator tokens(walked, separators.c_str());
    walked.v_Append(u"x");
    for (const test::Place& part : test::Split(text, separators, true)) {
        ASSERT_TRUE(tokens.b_MoveNext());
        ASSERT_EQ(Of(tokens.rcco_Current()), text.substr(part.begin, part.length));
    }
    const bool trailing = !text.empty() && separators.find(text.back()) != Text::npos;
    ASSERT_FALSE(tokens.b_MoveNext());
    ASSERT_TRUE(!trailing || tokens.rcco_Current().n_GetLength() == 0);
    ASSERT_FALSE(tokens.b_MoveNext());
}

// Also from behind the text, and from 0xFFFFFFFF, one before its first character.
void ExpectFound(const Text& text, const Text& set) {
    const CT_UString string = String(text), units = String(set);
    for (std::uint32_t from = 0xFFFFFFFF; from != text.size() + 2; ++from) {
        const auto expect = [&](auto* find, std::size_t ahead, std::size_t back) {
            ASSERT_EQ(find(units, string, from, 1), static_cast<std::uint32_t>(ahead)) << from;
            ASSERT_EQ(find(units, string, from, -1), static_cast<std::uint32_t>(back)) << from;
        };
        const Text head = text.substr(0, from + 1);
        using Tools = CT_StringTools;
        expect(Tools::sn_FindAny, text.find_first_of(set, from), head.find_last_of(set));
        expect(Tools::sn_FindNot, text.find_first_not_of(set, from), head.find_last_not_of(set));
    }
}

// Lengths around the sizes that scans take at a time, and sets of all kinds: none, few, many, of
// ASCII and of others.
TEST(StringScannerTest, FindsWhatPlainSplittingFinds) {
    const Text sets[] = {u"", u",", u"()", u",; \u4E00", u"0123456789,", u"\u4E00\u4E01,;: ()[]{}"};
    const Text letters = u"aaabb,,;\u4E00\u8E00 (";
    std::mt19937 random(20);
    for (const unsigned length : {0u, 1u, 2u, 15u, 16u, 17u, 31u, 33u, 63u, 64u, 65u, 128u, 193u}) {
        for (const unsigned variety : {1u, 4u, 9u, 13u}) {
            Text text;
            while (text.size() < length) text += letters[random() % variety];
            for (std::size_t i = 0; i < length && variety == 9; i += 70) text[i] = 0;
            for (const Text& set : sets) {
                SCOPED_TRACE(testing::Message() << length << ' ' << variety << ' ' << &set - sets);
                ExpectParts(text, set, true);
                if (set.size() == 1) ExpectParts(text, set, false);
                ExpectTokens(text, set);
                ExpectFound(text, set);
                if (HasFatalFailure()) return;
            }
        }
    }
}

TEST(StringScannerTest, StaysWhereItWasWithoutMemory) {
    const CT_UString text(u"a word");
    CT_UStringForwardIterator tokens(text, u" ");
    platform::FailAllocation(1);
    EXPECT_THROW(tokens.b_MoveNext(), CT_SmartHeapException);
    EXPECT_TRUE(tokens.b_MoveNext());
    EXPECT_EQ(Of(tokens.rcco_Current()), u"a");
}

}  // namespace
