// Words, items, tokens and characters of sets, beside the plainest way of finding them.
#include "Foundation/Core/String/StringScanner.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "Core/String/PlainTexts.h"
#include "Foundation/Core/String/StringTools.h"
#include "Foundation/Core/String/UStringForwardIterator.h"
#include "Support/Memory.h"

namespace {

using Text = std::u16string;
using test::Of;
using test::String;

void ExpectParts(const Text& text, const Text& separators, bool words) {
    const std::vector<test::Place> parts = test::Split(text, separators, words);
    const CT_UString string = String(text);
    const std::uint32_t count = words ? CT_StringScanner::n_WordCount(string, separators.c_str())
                                      : CT_StringScanner::n_ItemCount(string, separators[0]);
    ASSERT_EQ(count, parts.size());
    for (std::uint32_t n = 0; n <= count + 1; ++n) {
        Text wanted, rest = text;
        if (n - 1 < count) {
            wanted = text.substr(parts[n - 1].begin, parts[n - 1].length);
            rest.erase(parts[n - 1].begin, parts[n - 1].length);
        }
        CT_UString part(u"before"), remaining = string, own = string;
        if (words) {
            CT_StringScanner::v_SubWord(&part, string, separators.c_str(), n);
            CT_StringScanner::v_SubWord(&own, own, separators.c_str(), n);
            CT_StringScanner::v_RemoveWord(&remaining, separators.c_str(), n);
        } else {
            CT_StringScanner::v_Item(&part, string, separators[0], n);
            CT_StringScanner::v_Item(&own, own, separators[0], n);
            CT_StringScanner::v_RemoveItem(&remaining, separators[0], n);
        }
        ASSERT_EQ(Of(part), wanted) << n;
        ASSERT_EQ(Of(own), wanted) << n;
        ASSERT_EQ(Of(remaining), rest) << n;
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

void ExpectFound(const Text& text, const Text& set) {
    const CT_UString string = String(text);
    for (std::uint32_t from = 0; from <= text.size() + 1; ++from) {
        const std::size_t last = std::min<std::size_t>(from, text.size() - 1);
        const auto position = [](std::size_t found) { return static_cast<std::uint32_t>(found); };
        const auto any = text.find_first_of(set, from), no = text.find_first_not_of(set, from);
        const auto last_any = text.empty() ? Text::npos : text.find_last_of(set, last);
        const auto last_no = text.empty() ? Text::npos : text.find_last_not_of(set, last);
        using Tools = CT_StringTools;
        ASSERT_EQ(Tools::sn_FindAny(set.c_str(), string, from, 1), position(any)) << from;
        ASSERT_EQ(Tools::sn_FindNot(set.c_str(), string, from, 1), position(no)) << from;
        ASSERT_EQ(Tools::sn_FindAny(set.c_str(), string, from, -1), position(last_any)) << from;
        ASSERT_EQ(Tools::sn_FindNot(set.c_str(), string, from, -1), position(last_no)) << from;
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
